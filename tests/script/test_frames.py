"""What is worked out of samples of frames: whose code it was, and how times grow."""

import ctypes
import math
import os
import sys

import larkspur
import pytest
from support.scripts import TREE

sys.path.insert(0, os.path.join(TREE, "bench", "frames"))

import frames
import owners


def address_of(library, name):
    return ctypes.cast(getattr(library, name), ctypes.c_void_p).value


# The module brings in the libraries that it is linked with.
module = ctypes.CDLL(larkspur.__file__)
everything = ctypes.CDLL(None)


@pytest.mark.parametrize(
    "library, name, owner",
    [
        (module, "flip_v", ("larkspur", "flip_v")),
        (module, "SDL_UpperBlit", ("SDL", None)),
        (module, "zoomSurface", ("SDL_gfx", None)),
        (everything, "PyObject_Call", ("Python", None)),
        (everything, "strtol", ("rest", None)),
    ],
)
def test_address_belongs_to_whose_code_is_there(library, name, owner):
    assert owners.Owners().of(address_of(library, name) + 1, 0) == owner


def test_copies_of_the_c_library_belong_to_their_caller():
    here, caller = address_of(everything, "memcpy") + 1, address_of(module, "flip_h") + 5
    assert owners.Owners().of(here, caller) == ("larkspur", "flip_h")


def test_address_that_nothing_is_loaded_at_belongs_to_the_rest():
    assert owners.Owners().of(16, 0) == ("rest", None)


@pytest.mark.parametrize("power", [0.5, 1.0, 1.5])
def test_exponent_is_that_of_the_growth_over_nothing(power):
    points = [(0, 3.0, 900)] + [(n, 3.0 + n**power, 900) for n in (10, 100, 1000)]
    assert frames.exponent(points)[0] == pytest.approx(power)


def test_error_of_an_exponent_follows_from_the_samples():
    # Of a slope between two points a decade apart, each known to a tenth.
    points = [(0, 0.0, 1), (10, 10.0, 100), (100, 100.0, 100)]
    assert frames.exponent(points)[1] == pytest.approx(2 * (2 * 0.1**2) ** 0.5 / math.log(10))


def test_time_of_few_samples_says_nothing_of_an_exponent():
    assert frames.exponent([(0, 0.0, 1), (10, 10.0, 19), (100, 100.0, 500)]) is None


def test_times_that_hardly_grew_say_nothing_of_an_exponent():
    times = ((0, 100.0), (10, 110.0), (100, 119.0), (1000, 500.0))
    assert frames.exponent([(number, time, 900) for number, time in times]) is None


def test_rounds_add_samples_and_give_the_median_time():
    entry = frames.Frames()
    for milliseconds, own in ((3.0, 10), (1.0, 30), (2.0, 20)):
        layers = {"larkspur": own, "Python": 100 - own}
        entry.add(
            {
                "milliseconds": milliseconds,
                "samples": 100,
                "layers": layers,
                "functions": {"blit": own},
            }
        )
    assert entry.milliseconds == 2.0
    assert entry.own_milliseconds == pytest.approx(0.3)  # of 0.3, 0.3 and 0.4
    assert entry.shares(entry.layers) == {"larkspur": 0.2, "Python": 0.8}
    assert entry.shares(entry.functions) == {"blit": 0.2}


def test_results_have_a_panel_for_each_display_of_a_series():
    entry = frames.Frames()
    layers = {"larkspur": 30, "Python": 70}
    entry.add({"milliseconds": 2.0, "samples": 100, "layers": layers, "functions": {}})
    found = {("tiles", (640, 480), False): [(0, entry), (5000, entry)]}
    charts = frames.as_results(found, 2)["charts"]
    assert [chart["series"] for chart in charts if chart["panels"]] == ["tiles"]
    (panel,) = charts[-1]["panels"]
    assert panel["name"] == "640 x 480, no views"
    assert panel["bars"] == [
        {"label": number, "milliseconds": 2.0, "shares": {"larkspur": 0.3, "Python": 0.7}}
        for number in ("0", "5000")
    ]
