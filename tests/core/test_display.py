"""set_SDL_screen(), init_subsystems(), and following pygame's display."""

import ctypes

import larkspur
import pygame
import pytest
from support import leaks, native, pending
from support.rooms import make_view_room, set_view

SCREEN = native.variable(ctypes.c_void_p, "g_screen")
WHITE = native.variable(ctypes.c_uint32, "COLOR_WHITE")
COLOR = native.function("color_as_int", ctypes.c_uint32, ctypes.py_object)
SDL = ctypes.CDLL("libSDL-1.2.so.0")
VIDEO = 0x20


@pytest.fixture(autouse=True)
def open_display(display):
    return display


# --- set_SDL_screen ------------------------------------------------------------------------------


def test_returns_none(display):
    assert larkspur.set_SDL_screen(display) is None


@pytest.mark.parametrize("arguments", [(), (1, 2)])
def test_takes_one_argument(display, arguments):
    with pytest.raises(TypeError):
        larkspur.set_SDL_screen(*arguments)
    assert SCREEN.value == native.surface_address(display)


@pytest.mark.parametrize("screen", [None, 7, "screen", pygame.Surface, object()])
def test_what_is_no_surface_is_refused_and_the_old_one_kept(display, screen):
    with pytest.raises(TypeError) as raised:
        larkspur.set_SDL_screen(screen)
    assert "set_SDL_screen()" in str(raised.value) and "Surface" in str(raised.value)
    assert type(screen).__name__ in str(raised.value)
    assert SCREEN.value == native.surface_address(display)


def test_surface_and_white_are_published(display):
    assert SCREEN.value == native.surface_address(display)
    assert WHITE.value == 0xFFFFFF


@pytest.mark.parametrize(
    "depth, masks, white",
    [
        (32, (0xFF0000, 0xFF00, 0xFF, 0), 0xFFFFFF),
        (32, (0xFF0000, 0xFF00, 0xFF, 0xFF000000), 0xFFFFFF),
        (32, (0xFF000000, 0xFF0000, 0xFF00, 0xFF), 0xFFFFFF00),
        (16, (0xF800, 0x7E0, 0x1F, 0), 0xFFFF),
        (16, (0x7C00, 0x3E0, 0x1F, 0), 0x7FFF),
        (24, (0xFF0000, 0xFF00, 0xFF, 0), 0xFFFFFF),
    ],
)
def test_white_is_the_masks_without_alpha(depth, masks, white):
    surface = pygame.Surface((4, 4), 0, depth, masks)
    larkspur.set_SDL_screen(surface)
    assert SCREEN.value == native.surface_address(surface)
    assert WHITE.value == white


def test_surface_is_kept_until_the_next(display):
    first, second = (pygame.Surface((4, 4), 0, 32) for _ in range(2))
    before = leaks.counts([first, second])
    larkspur.set_SDL_screen(first)
    assert leaks.growth([first, second], before) == [1, 0]
    larkspur.set_SDL_screen(first)
    assert leaks.growth([first, second], before) == [1, 0]
    larkspur.set_SDL_screen(second)
    assert leaks.growth([first, second], before) == [0, 1]


def test_kind_of_surface_will_do():
    class Screen(pygame.Surface):
        pass

    screen = Screen((4, 4), 0, 32)
    larkspur.set_SDL_screen(screen)
    assert SCREEN.value == native.surface_address(screen)


def test_closed_display_is_refused(display):
    pygame.display.quit()
    with pytest.raises(RuntimeError) as raised:
        larkspur.set_SDL_screen(display)
    assert "closed" in str(raised.value)


# --- Following pygame ----------------------------------------------------------------------------


def test_new_mode_is_followed_by_the_next_use(display):
    pygame.display.set_mode((64, 48), 0, 16)
    assert COLOR((1,)) == 0xFFFF
    assert SCREEN.value == native.surface_address(display)
    assert WHITE.value == 0xFFFF
    pygame.display.set_mode((320, 240), 0, 32)
    assert COLOR((1, 2, 3)) == 0x010203
    assert WHITE.value == 0xFFFFFF


def test_closed_display_is_no_display(display):
    pygame.display.quit()
    with pytest.raises(RuntimeError) as raised:
        COLOR((1, 2, 3))
    assert "set_SDL_screen()" in str(raised.value)
    assert SCREEN.value is None


def test_without_a_video_mode_no_surface_is_a_display(display):
    surface = pygame.Surface((4, 4), 0, 32)
    larkspur.set_SDL_screen(surface)
    assert COLOR((1, 2, 3)) == 0x010203
    pygame.display.quit()
    with pytest.raises(RuntimeError):
        COLOR((1, 2, 3))


def test_display_that_is_opened_again_has_to_be_set_again(display):
    pygame.display.quit()
    pygame.display.init()
    screen = pygame.display.set_mode((320, 240), 0, 32)
    with pytest.raises(RuntimeError):
        COLOR((1, 2, 3))
    larkspur.set_SDL_screen(screen)
    assert COLOR((1, 2, 3)) == 0x010203


def test_surface_of_a_native_caller_is_honoured():
    mine = pygame.Surface((4, 4), 0, 32, (0xFF, 0xFF00, 0xFF0000, 0))
    SCREEN.value = native.surface_address(mine)
    assert COLOR((1, 2, 3)) == 0x030201
    assert SCREEN.value == native.surface_address(mine)


def test_surface_of_a_native_caller_is_drawn_on(display):
    """Before all that is inside the Surface that was given."""
    mine = pygame.Surface((9, 9), 0, 32)
    SCREEN.value = native.surface_address(mine)
    larkspur.fast_draw_rectangle_color(1, 1, 8, 8, 0xFF, 0xFF, 0xFFFF, 0xFFFF, 1.0, 0)
    assert mine.get_at((2, 2))[:3] != (0, 0, 0)
    assert display.get_at((2, 2))[:3] == (0, 0, 0)


def test_surfaces_follow_the_new_mode(host):
    """Those that are made for scaled views."""
    seen = []
    host.gm6.Room_DrawBackgrounds = lambda room, surface, x, y: seen.append(surface.get_masks())
    host.register(larkspur)
    pygame.display.set_mode((64, 48), 0, 32)
    room = make_view_room()
    assert pending.draw_view(room, host.screen, 0, ()) == (1, None)
    set_view(room, 0, xport=2)
    assert pending.draw_view(room, host.screen, 0, ()) == (1, None)
    assert seen == [host.screen.get_masks()] * 2


def test_scaled_view_needs_a_display_and_a_direct_one_does_not(host, capfd):
    surface = pygame.Surface((320, 240), 0, 32)
    pygame.display.quit()
    room = make_view_room()
    assert pending.draw_view(room, surface, 0, ()) == (1, None)
    set_view(room, 0, xport=2)
    status, error = pending.draw_view(room, surface, 0, ())
    assert status == 0 and isinstance(error, RuntimeError) and "display" in str(error)
    capfd.readouterr()


# --- init_subsystems -----------------------------------------------------------------------------


@pytest.mark.parametrize("arguments", [(), (1,), ("x", None, [])])
def test_video_is_initialised_whatever_is_given(arguments):
    pygame.display.quit()
    assert not SDL.SDL_WasInit(VIDEO)
    assert larkspur.init_subsystems(*arguments) is None
    assert SDL.SDL_WasInit(VIDEO)
    SDL.SDL_QuitSubSystem(VIDEO)


def test_display_needs_no_module_of_its_own(display):
    larkspur.init_subsystems()
    assert COLOR((1, 2, 3)) == 0x010203
    assert native.surface_address(display) == SCREEN.value
