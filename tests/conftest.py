"""What every test stands on: a display without a window, a host, and larkspur itself.

Run with the built module on PYTHONPATH; script/test does all of it. Native test helpers are looked
for in LARKSPUR_BUILD_DIR.
"""

import os
import sys

os.environ.setdefault("SDL_VIDEODRIVER", "dummy")
os.environ.setdefault("SDL_AUDIODRIVER", "dummy")
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from support import build, long_lived
from support import host as host_support

# larkspur binds the host's modules when it is imported, so they have to exist before.
host_support.install_modules()

import hypothesis  # noqa: E402
import larkspur  # noqa: E402
import pygame  # noqa: E402
import pytest  # noqa: E402

# The run of all checks tries the same examples each time, so that its outcome is that of the
# change alone; a developer's run tries new ones.
hypothesis.settings.register_profile("repeatable", derandomize=True, database=None)
if os.environ.get("CI"):
    hypothesis.settings.load_profile("repeatable")

pytest_plugins = ["support.first_failures"]


def pytest_report_header(config):
    line = "dispatch levels without kernel tests, as this machine or its compiler lacks them: "
    if "LARKSPUR_BUILD_DIR" not in os.environ:
        return line + "unknown, LARKSPUR_BUILD_DIR is not set"
    return line + (", ".join(build.untested_levels()) or "none")


def pytest_collection_finish(session):
    long_lived.set_aside()


DISPLAY_SIZE = (320, 240)


@pytest.fixture
def display():
    """The display's Surface, 320 x 240 with 32 bits, black, given to set_SDL_screen()."""
    pygame.display.init()
    screen = pygame.display.set_mode(DISPLAY_SIZE, 0, 32)
    screen.fill((0, 0, 0))
    larkspur.set_SDL_screen(screen)
    return screen


@pytest.fixture
def host(display):
    """A fresh recording host, registered with larkspur; see support.host.RecordingHost."""
    recording = host_support.RecordingHost(display)
    recording.register(larkspur)
    yield recording
    recording.forget()
