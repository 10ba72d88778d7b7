"""Room drawing, pixel work, particles and records for a game engine on pygame.

larkspur is a native module of Python 2.7. The engine provides two modules, `gm6` and `gmapi`, which
have to be registered in `sys.modules` before larkspur is imported: larkspur does not import them,
and binds two new, empty modules where they are missing. It draws on pygame's Surfaces and calls
back into the engine's modules for what stays in Python.

Call it in this order: import the engine's modules, then larkspur; `set_SDL_screen()` with each
Surface that `pygame.display.set_mode()` returns; `RegisterInstancesDict()` once the engine's
modules hold what it fetches; then `Room_Draw()` once a frame. All calls belong on one thread.

Arguments: functions take positional arguments only. A wrong number of them raises TypeError in the
interpreter's words, as does an argument of a wrong type, unless a function says otherwise. Where an
int is taken, a float raises TypeError and a number outside of int32 OverflowError; of a colour that
is called unsigned the lowest 32 bits count instead. Floats are taken in single precision. A `GMVar`
stands for the value in its first cell wherever a number or a particle type is taken; where an int
is taken, a float in it loses its fraction. An object of a type derived from `pygame.Surface` is a
Surface, but not to `part_type_shape()`.

Colours: a GM colour is an int 0x00BBGGRR, red in the lowest byte, whose top byte is ignored. A
pixel value is an int in the format of the surface, as its `map_rgb()` gives it: 0x00RRGGBB on the
usual display of 32 bits.

Failures: some calls fail without an exception. The interpreter then raises SystemError with the
text "error return without exception set", or "NULL result without error in PyObject_Call" where a
type such as int was called. Lines on standard output and standard error are written by the module's
native code: replacing `sys.stdout` or `sys.stderr` does not catch them.

A Surface has to be in use: a display that was closed, and a subsurface of one, raise RuntimeError
where pixels are needed. Pixel routines work on 32 bits a pixel. Functions that take the Surface
which they work on need no open display, but for `GMSprite_from_surface()` and scaled views.

Example:
    >>> import sys, types
    >>> gm6 = sys.modules["gm6"] = types.ModuleType("gm6")
    >>> gmapi = sys.modules["gmapi"] = types.ModuleType("gmapi")
    >>> import pygame
    >>> import larkspur
    >>> class Thing(object):
    ...     pass
    >>> gm6.game = gmapi.game = Thing()
    >>> gm6.game.sprites, gm6.game.backgrounds, gm6.game.rooms, gm6.game.objects = [], [], [], []
    >>> for name in (
    ...     "SpriteData_load_images", "BackgroundData_load_images", "Room_Compile", "Room_Create",
    ...     "Room_InitializeBackgrounds", "Room_AddInstance", "Room_AddDrawnInstance",
    ...     "Room_ResortDrawnObjects", "Room_SetBackgroundIndex", "Room_StepAlarms",
    ...     "Room_MoveInstances", "Room_HandleCollisions", "Room_StepEvents",
    ...     "Room_DrawBackgrounds", "Room_RenderBackground", "Room_Leave", "Room_MouseButtonDown",
    ...     "Room_MouseButtonUp", "Room_HandleKeyrelease", "Room_HandleKeypress",
    ... ):
    ...     setattr(gm6, name, lambda *arguments: None)
    >>> gmapi.draw_sprite_ext = lambda *arguments: None
    >>> gmapi.py_ParticleSystem = type("ParticleSystem", (object,), {})
    >>> gmapi.py_draw_props = Thing()
    >>> gmapi.py_draw_props.color, gmapi.py_draw_props.alpha = (255, 0, 0), 1.0
    >>> gmapi.py_self_stack = []
    >>> gmapi.pygame = pygame
    >>> pygame.display.init()
    >>> screen = pygame.display.set_mode((64, 48), 0, 32)
    >>> larkspur.set_SDL_screen(screen)
    >>> instances = {}
    >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
"""

from typing import TYPE_CHECKING, Any, ClassVar, Iterator, type_check_only

import pygame
from typing_extensions import TypeAlias

__version__: str
"""The version of larkspur, three numbers with dots between them."""

_Int: TypeAlias = "int | GMVar"
_Float: TypeAlias = "float | GMVar"

@type_check_only
class particle_type_handle:
    """The handle of a particle type: opaque, made by `part_type_create()`, passed back.

    The module has no class of this name: the live object is a `PyCObject`. It owns the type, which
    lives as long as the handle; each particle made from the type holds a reference to the handle.
    It has no attributes, is compared by identity, can be a key of a dictionary, and can be neither
    copied nor pickled.

    Example:
        >>> particle_type = larkspur.part_type_create()
        >>> type(particle_type)
        <type 'PyCObject'>
        >>> particle_type == larkspur.part_type_create()
        False
    """

@type_check_only
class particle_handle:
    """The handle of a particle: opaque, made by `CParticle_new()`, passed back.

    The module has no class of this name: the live object is a `PyCObject`. It owns the particle,
    which ends with the handle's last reference, and only then: a particle whose life has run out
    stays. A particle holds its type's handle and, when one is attached, its `Beancounter`. A
    particle handle can be neither copied nor pickled, and is not taken from a `GMVar`.

    Example:
        >>> particle = larkspur.CParticle_new(larkspur.part_type_create(), 0, 0)
        >>> type(particle)
        <type 'PyCObject'>
    """

# Display and engine

def set_SDL_screen(surface: pygame.Surface, /) -> None:
    """Makes a Surface the display that is drawn on.

    `draw_rectangle()`, `fast_draw_rectangle_color()` and particles draw on this Surface;
    `GMSprite_from_surface()` and scaled views make their pictures in its format. Call it after each
    `pygame.display.set_mode()`, before anything is drawn. The colour white of new particle types
    comes from it: its red, green and blue masks together.

    The module holds a reference to the Surface until the next call. While no display is open, the
    functions that need one raise RuntimeError, also where another Surface was given. After
    `pygame.display.quit()` a new display is a new Surface: call this again. Where pygame has only
    put a new size into the same Surface, that is noticed. A failed call changes nothing.

    Args:
        surface: What `pygame.display.set_mode()` returned. Any other Surface is taken as well.

    Raises:
        TypeError: "set_SDL_screen() needs a pygame Surface, got int", with the type that came.
        RuntimeError: The Surface is that of a display that was closed, or pygame uses another SDL
            than larkspur.

    Example:
        >>> screen = pygame.display.set_mode((64, 48), 0, 32)
        >>> larkspur.set_SDL_screen(screen)
        >>> larkspur.set_SDL_screen(None)
        Traceback (most recent call last):
        TypeError: set_SDL_screen() needs a pygame Surface, got NoneType
    """

def RegisterInstancesDict(
    instances: dict[int, Any], type1: type, type2: type, type3: type, /
) -> None:
    """Registers the engine: its instances, its instance types and its callables.

    Keeps the four arguments until the next call, and fetches these attributes, in this order: of
    `gm6` `SpriteData_load_images`, `BackgroundData_load_images`, `Room_Compile`, `Room_Create`,
    `Room_InitializeBackgrounds`, `Room_AddInstance`, `Room_AddDrawnInstance`,
    `Room_ResortDrawnObjects`, `Room_SetBackgroundIndex`, `Room_StepAlarms`, `Room_MoveInstances`,
    `Room_HandleCollisions`, `Room_StepEvents`, `Room_DrawBackgrounds`, `Room_RenderBackground`,
    `Room_Leave`, `Room_MouseButtonDown`, `Room_MouseButtonUp`, `Room_HandleKeyrelease` and
    `Room_HandleKeypress`; of `gmapi` `draw_sprite_ext`, `py_ParticleSystem`, `py_draw_props`,
    `py_self_stack` and `pygame`, of which it takes `draw.rect` and `Surface`.

    What was fetched is used from then on: where one of these attributes is replaced later, call it
    again. What an earlier call fetched is never released. Until the first call, whatever needs one
    of them raises RuntimeError.

    The call never fails. Arguments of a wrong number leave no registry and no types, without a
    word, and the attributes are fetched all the same. An attribute that is missing leaves an
    exception pending although the call returns: the interpreter raises AttributeError at some later
    place, which has nothing to do with it. `python2.7 -m larkspur_check` names what is missing.

    Args:
        instances: From instance id to instance. An `InstanceList` looks ids up in it. It is held,
            not copied: what the engine adds later is found.
        type1: An `InstanceList` stores objects of exactly this type as they are, without a lookup.
        type2: Another such type. Where the engine has only one, pass it three times.
        type3: Another such type.

    Example:
        >>> ball = Thing()
        >>> larkspur.RegisterInstancesDict({100001: ball}, Thing, Thing, Thing)
        >>> found = larkspur.InstanceList()
        >>> found.append(100001)
        >>> found[0] is ball
        True
        >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
    """

def init_subsystems(*ignored: object) -> None:
    """Initialises SDL's video subsystem.

    `pygame.display.init()` does so too, so an engine that calls that need not call this. It may be
    called at any time; whether SDL succeeded is not told.

    Args:
        ignored: Arguments are accepted and ignored.

    Example:
        >>> pygame.display.quit()
        >>> bool(pygame.display.get_init())
        False
        >>> larkspur.init_subsystems()
        >>> bool(pygame.display.get_init())
        True
        >>> screen = pygame.display.set_mode((64, 48), 0, 32)
        >>> larkspur.set_SDL_screen(screen)
    """

def GMSprite_from_surface(surface: pygame.Surface, name: object = None, /) -> GMSprite:
    """Makes a sprite of one subimage from a Surface.

    The subimage is a copy in the format of the display: later changes of the Surface do not show in
    it. A display has no alpha channel as a rule, so the alpha of single pixels is lost and
    transparent pixels become opaque. A colour key and the alpha of the whole Surface come along.

    `w` and `rightbound` are the Surface's width, `h` and `bottombound` its height, in pixels; all
    other numbers of the sprite are 0. The sprite is in no list and has no index until the engine
    puts it into `gm6.game.sprites`.

    Args:
        surface: Of any depth. It is read only, and no reference to it is kept.
        name: The sprite's name, usually a str.

    Returns:
        A new sprite.

    Raises:
        TypeError: "GMSprite_from_surface() needs a pygame Surface, got int", with the type that
            came.
        RuntimeError: There is no display, or the Surface is that of a display that was closed.
        pygame.error: SDL can not convert the Surface; with SDL's text.

    Example:
        >>> picture = pygame.Surface((8, 4), pygame.SRCALPHA)
        >>> picture.fill((10, 20, 30, 0))
        <rect(0, 0, 8, 4)>
        >>> sprite = larkspur.GMSprite_from_surface(picture, "spr_ball")
        >>> sprite.name, sprite.w, sprite.h, len(sprite.subimages)
        ('spr_ball', 8, 4, 1)
        >>> sprite.subimages[0].get_at((0, 0))
        (10, 20, 30, 255)
    """

# Rooms

def Room_Draw(room: GMRoom | Any, surface: pygame.Surface, /) -> None:
    """Draws a frame of a room.

    In this order:

    1. Counts the frame. When the wall clock's second has changed since the last call, `gmapi.fps`
    is set to the number of calls since it was set last; 0 the first time.
    2. Reads `room.view_enabled`, and takes a tuple of `room.drawn_objects`. The frame draws what is
    in this tuple, in its order, whatever its objects do to the list meanwhile.
    3. With views: for each of the views 0 to 7 whose item of `room.view_visible` is true, moves the
    view to the instance that it follows, sets its scale, has
    `gm6.Room_DrawBackgrounds(room, surface, x, y)` draw the backgrounds and draws the objects. A
    list that is shorter says by its length how many views there are. Tiles are not drawn with
    views. Where no view is visible nothing is drawn.
    4. Without views: sets the view scale to 1, calls `room.DrawBackgrounds(surface, 0, 0)`, blits
    each of `room.tiles` from the `surf` of its background in `gmapi.game.backgrounds`, sets
    `room.view_current` to 0 and calls `Draw()` of each object. Stops at the first failure.

    In a view an object of exactly the type `gmapi.py_ParticleSystem` is drawn in view 0 alone, by
    its `py_RealDraw(-x, -y)` where `py_automatic_draw` is true, with the view's position truncated
    to ints; another one by its draw code or, where it has none, by `gmapi.draw_sprite_ext`. An
    object that fails makes the frame fail once the view's other objects are drawn; later views are
    not drawn then.

    What was drawn before a failure stays. A frame can fail without an exception: SystemError.
    [How a frame is drawn](../drawing-a-frame.md) has every step.

    Args:
        room: A `GMRoom`; without views any object with its attributes will do.
        surface: The Surface that is drawn on, usually the display.

    Raises:
        TypeError: `surface` is no Surface, `room.tiles` no list of `RoomTileData`,
            `gmapi.game.backgrounds` holds something other than `BackgroundData`, the `surf` of
            one is no Surface, draw code is no code object, or with views the room is no `GMRoom` or
            a member of its views no `Floatlist8`.
        IndexError: A tile's `background_idx` is negative or too large.
        AttributeError: The room lacks one of these attributes.
        ValueError: A view's port has a negative size, or one that SDL refuses.
        RuntimeError: The Surface is that of a display that was closed, there is no display for a
            scaled view, or `RegisterInstancesDict()` was not called.
        SystemError: A step failed without an exception, as an object with fewer than 9 events does.
        Exception: Whatever the engine's code raises.

    Writes:
        "Error making tuple from drawn_objects": on standard error, when `drawn_objects` can not be
            iterated.
        "Drawing backgrounds failed.": on standard error, when `DrawBackgrounds()` fails without
            views.
        "ERror!": on standard error, when an object without views has no `Draw`.
        "Error!": on standard error, when an object's `Draw()` fails without views.
        "An error has occurred 615": on standard error, when an exception is pending once the view
            is placed; so "An error has occurred 638" once its scale is set, "660", "660 a" and "An
            error has occurred 661" once the backgrounds are drawn, "Error after GI 3" before the
            object of this position, and "An error has occurred" at the view's end.
        "Error drawing instance": on standard error, when an exception is pending after an object
            of a view; "Error drawing PS" after a particle system.
        "Events too small!": on standard error, when an object has fewer than 9 events.
        "Code eval failed": on standard error, when draw code fails the first time it runs.
        "Error setting attribute string to code.": on standard error, when `py_Draw` can not be
            set; "Error setting attribute string to number." when it was to be 1.
        "Error in PyList_GetItem -1": on standard error, when draw code has emptied
            `gmapi.py_self_stack`.

    Example:
        >>> class Square(object):
        ...     def Draw(self):
        ...         screen.fill((255, 0, 0), (1, 1, 2, 2))
        >>> room = larkspur.GMRoom()
        >>> room.tiles = []
        >>> room.drawn_objects = [Square()]
        >>> larkspur.Room_Draw(room, screen)
        >>> screen.get_at((1, 1)), screen.get_at((3, 3))
        ((255, 0, 0, 255), (0, 0, 0, 255))
        >>> room.drawn_objects = [None]
        >>> larkspur.Room_Draw(room, screen)
        Traceback (most recent call last):
        AttributeError: 'NoneType' object has no attribute 'Draw'
    """

def draw_sprite_ext(*ignored: object) -> None:
    """Always fails: the engine's own `gmapi.draw_sprite_ext` draws sprites.

    Nothing is drawn. The name is kept for engines that look it up.

    Args:
        ignored: Arguments are accepted and ignored.

    Raises:
        SystemError: Always, with the interpreter's text for a failure without an exception.

    Writes:
        "This does not behave properly on Mac, and does not provide the desired speed boost on
            Linux.": on standard error, at each call.

    Example:
        >>> larkspur.draw_sprite_ext()
        Traceback (most recent call last):
        SystemError: error return without exception set
    """

# Rectangles and fills

def fill_translucent(
    surface: pygame.Surface,
    x1: _Int,
    y1: _Int,
    x2: _Int,
    y2: _Int,
    colour: _Int,
    alpha: _Int,
    /,
) -> None:
    """Blends one colour over a rectangle.

    Painted are columns `x1` to `x2 - 1` of rows `y1` to `y2`: the last column is left out and the
    last row is not. `x2` is at most the Surface's width - 1 and `y2` its height - 1, so the
    Surface's last column is never painted. What lies outside is clipped. Corners in reverse order
    paint nothing.

    Each of the three low bytes of a pixel becomes floor(colour * alpha / 256) +
    floor(pixel * (255 - alpha) / 256), so 255 gives 254 and alpha 0 still darkens. The top byte
    becomes 0: on a Surface with an alpha channel the pixels become transparent.

    Args:
        surface: 32 bits a pixel. It is drawn on.
        x1: Left column, in pixels.
        y1: Top row.
        x2: Right column, not painted.
        y2: Bottom row, painted.
        colour: A pixel value; its alpha bits do not count. What `Surface.map_rgb()` gives for a
            Surface with alpha is negative in pygame 1.9.6 and too large for an int32 in others, so
            take `& 0xFFFFFF` of it.
        alpha: 0 to 255; of other numbers the low byte counts.

    Raises:
        TypeError: "fill_translucent() needs a pygame Surface, got int", with the type that came.
        ValueError: The Surface has no 32 bits a pixel.
        RuntimeError: Its pixels can not be reached, as those of a display that was closed.

    Example:
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.fill_translucent(screen, 2, 2, 6, 4, 0xFF8000, 255)
        >>> screen.get_at((2, 2)), screen.get_at((5, 4))
        ((254, 127, 0, 255), (254, 127, 0, 255))
        >>> screen.get_at((6, 4)), screen.get_at((5, 5))
        ((0, 0, 0, 255), (0, 0, 0, 255))
    """

def draw_rectangle(
    x1: _Float, y1: _Float, x2: _Float, y2: _Float, outline: _Float = 0.0, /
) -> None:
    """Draws a rectangle on the display, in the current colour and alpha.

    Colour and alpha are `gmapi.py_draw_props.color` and `gmapi.py_draw_props.alpha`, read at each
    call from the object that `RegisterInstancesDict()` fetched.

    A coordinate c becomes round((c - v) * s) + v, halves away from zero, with v the position of the
    view that is drawn or was drawn last, and s its scale: port size divided by view size. So it is
    scaled around the view's corner, which stays where it is: c is a place in the room only in a
    view whose corner and port are at 0, 0. To paint at column or row p of the display, pass (p - v)
    / s + v. A frame without views sets 0 and 1. Before the first `Room_Draw()` the scale is 0, so
    that nothing shows but a pixel of an outline, at (0, 0).

    An alpha of exactly 1.0 is opaque. Then the rectangle is the display's
    `fill(color, (x1, y1, x2 - x1, y2 - y1))`, and an outline `gmapi.pygame.draw.rect` of the same
    rectangle with a width of 1: `x2` and `y2` are not painted. Any other alpha blends as
    `fill_translucent()` does, with the coordinates truncated, the low byte of trunc(alpha * 255)
    and, for a pixel value, the int that `gmapi.__color_to_int(color)` returns: `x2` is not painted,
    and `y2` is.

    Args:
        x1: Left edge, before it is scaled as above.
        y1: Top edge, likewise.
        x2: Right edge, likewise.
        y2: Bottom edge, likewise.
        outline: With an opaque alpha, 0.5 or more and -0.5 or less draw an outline. With any other
            alpha a number that is not 0 asks for one, and fails.

    Raises:
        SystemError: A translucent outline is asked for.
        RuntimeError: There is no display, or `RegisterInstancesDict()` found no
            `gmapi.py_draw_props` or, for an outline, no `gmapi.pygame.draw.rect`.
        pygame.error: "display Surface quit", from the display's own `fill()`.
        AttributeError: `color`, `alpha` or `gmapi.__color_to_int` is missing.
        ValueError: The display has no 32 bits a pixel and alpha is not 1.0.
        TypeError: `alpha` is no number, pygame does not take `color`, or `__color_to_int()` returns
            no int.

    Writes:
        "Can't do alphablending on outline rectangles yet.": on standard error, for a translucent
            outline.
        "An error occurred filling surface.": on standard error, when the display's `fill()` fails.
        "An error occurred calling pygame.draw.rect(screen,color,%f,%f,%f,%f,1).": on standard
            error, with the rectangle's numbers, when `pygame.draw.rect` fails.

    Example:
        >>> room.drawn_objects = []
        >>> larkspur.Room_Draw(room, screen)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.draw_rectangle(2, 2, 6, 6)
        >>> screen.get_at((2, 2)), screen.get_at((5, 5)), screen.get_at((6, 6))
        ((255, 0, 0, 255), (255, 0, 0, 255), (0, 0, 0, 255))
        >>> larkspur.draw_rectangle(12, 2, 16, 6, 1)
        >>> screen.get_at((12, 2)), screen.get_at((13, 3))
        ((255, 0, 0, 255), (0, 0, 0, 255))
    """

def fast_draw_rectangle_color(
    x1: _Int,
    y1: _Int,
    x2: _Int,
    y2: _Int,
    colour1: _Int,
    colour2: _Int,
    colour3: _Int,
    colour4: _Int,
    alpha: _Float,
    outline: _Int,
    /,
) -> None:
    """Draws a rectangle on the display whose corners have colours of their own.

    `x1` and `x2`, and `y1` and `y2`, change places where the second is the smaller one. With a =
    trunc(255 * alpha), the first of these that fits is drawn:

    1. All four colours equal: with a below 255 as `fill_translucent()` does, also for an outline;
    the colour is a pixel value here. With a of 255 and more nothing is drawn.
    2. `colour1` equals `colour2` and `colour3` equals `colour4`: a gradient from `colour1` in row
    `y1` downwards, which would reach `colour4` in row `y2`. Columns `x1` to `x2 - 1`, rows `y1` to
    `y2 - 1`. With a other than 255 it is blended with the byte a over what is there; a translucent
    outline is not drawn. An opaque outline has row `y1` in `colour1` and row `y2` in `colour4`,
    columns `x1` to `x2 - 1`, and columns `x1` and `x2` of rows `y1 + 1` to `y2` in the gradient,
    which starts a row lower there.
    3. Any other colours, filled and with a of 255: a gradient from `colour1` in column `x1` to the
    right, which would reach `colour2` in column `x2`. Columns `x1` to `x2 - 1`, rows `y1` to `y2`,
    the last one included. `colour3` and `colour4` are ignored.
    4. Anything else is not drawn.

    `x2` is at most the display's width - 1 and `y2` its height - 1; what lies outside is clipped.
    The gradient downwards takes its steps from `y2` as it came, the one to the right from the
    clipped `x2`. The colours between are those of `fast_draw_gradient_v()`: the first row or column
    holds 255/256 of its own colour and 1/256 of the other one.

    Args:
        x1: Left column, in pixels of the display.
        y1: Top row.
        x2: Right column.
        y2: Bottom row.
        colour1: Top left, a GM colour; unsigned, as are the others.
        colour2: Top right.
        colour3: Bottom right.
        colour4: Bottom left.
        alpha: 0.0 to 1.0.
        outline: Not 0 for an outline.

    Raises:
        RuntimeError: There is no display.
        ValueError: The display has no 32 bits a pixel, or `y1` of a gradient downwards or `x1` of
            one to the right is below -32768.

    Writes:
        "BUG: should actually fill.": on standard output, for one opaque colour.
        "BUG: need to draw translucent outline vgrad.": on standard output, for a translucent
            outline with a gradient downwards.
        "Horizontal gradient, complex gradient, or no gradient. 127/0": on standard output, with a
            and the outline flag, for what is not drawn otherwise.

    Example:
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> red, blue = 0x0000FF, 0xFF0000
        >>> larkspur.fast_draw_rectangle_color(0, 0, 4, 4, red, red, blue, blue, 1.0, 0)
        >>> [screen.get_at((0, y))[:3] for y in range(5)]
        [(254, 0, 0), (190, 0, 64), (126, 0, 128), (62, 0, 192), (0, 0, 0)]
        >>> larkspur.fast_draw_rectangle_color(10, 0, 14, 4, red, blue, blue, red, 1.0, 0)
        >>> [screen.get_at((x, 4))[:3] for x in range(10, 15)]
        [(254, 0, 0), (190, 0, 64), (126, 0, 128), (62, 0, 192), (0, 0, 0)]
        >>> larkspur.fast_draw_rectangle_color(20, 0, 24, 4, red, red, red, red, 0.5, 0)
        >>> screen.get_at((20, 0))
        (0, 0, 126, 255)
    """

# Gradients

def fast_draw_gradient_v(
    surface: pygame.Surface,
    x1: _Int,
    y1: _Int,
    x2: _Int,
    y2: _Int,
    top: _Int,
    bottom: _Int,
    alpha: _Int,
    /,
) -> None:
    """Blends a vertical gradient over a rectangle.

    Painted are columns `x1` to `x2 - 1` of rows `y1` to `y2 - 1`. `x2` is at most the Surface's
    width - 1 and `y2` its height - 1, so its last column and its last row are never painted. What
    lies outside is clipped; the gradient's steps come from `y1` and `y2` as they came. Nothing is
    painted where `y1` is not less than `y2`.

    Row `y1` has the colour `top`, row `y2` would have `bottom`. The share of `top` starts at 1.0
    and loses 1 / (y2 - y1) with each row, in single precision; a channel becomes
    floor((top * w + bottom * (256 - w)) / 256) with w = trunc(255 * share). Then each channel of a
    pixel becomes floor(colour * alpha / 256) + floor(pixel * (255 - alpha) / 256), and the pixel's
    top byte 0.

    Args:
        surface: 32 bits a pixel. It is drawn on.
        x1: Left column, in pixels.
        y1: Top row, -32768 or more.
        x2: Right column, not painted.
        y2: Bottom row, not painted.
        top: A GM colour; unsigned.
        bottom: A GM colour; unsigned.
        alpha: 0 to 255; of other numbers the low byte counts.

    Raises:
        TypeError: "fast_draw_gradient_v() needs a pygame Surface, got int", with the type that
            came.
        ValueError: The Surface has no 32 bits a pixel, or `y1` is below -32768.
        RuntimeError: Its pixels can not be reached, as those of a display that was closed.

    Example:
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.fast_draw_gradient_v(screen, 0, 0, 4, 4, 0x0000FF, 0xFF0000, 255)
        >>> [screen.get_at((0, y))[:3] for y in range(5)]
        [(253, 0, 0), (189, 0, 63), (125, 0, 127), (61, 0, 191), (0, 0, 0)]
    """

def fast_draw_gradients_vc(
    surface: pygame.Surface,
    x1: _Int,
    y1: _Int,
    x2: _Int,
    y2: _Int,
    top: _Int,
    bottom: _Int,
    opacity: _Float,
    constant: _Int,
    constant_opacity: _Float,
    /,
) -> None:
    """Blends a vertical gradient and a constant colour above it over a rectangle.

    The rectangle and the colours of a gradient's rows are those of `fast_draw_gradient_v()`. The
    layers lie over each other in the order of the arguments, the last one uppermost: its share is
    its opacity, and each layer below gets its opacity times what the layers above have left. What
    remains goes to the old pixel. Each share counts as trunc(share * 256) in 256ths, modulo 256: a
    share of 1.0 counts as 0. So black is painted where one layer has the whole share, such as an
    opaque uppermost one, and where all layers are invisible. An opaque layer below a translucent
    one is painted as it should be.

    Each channel of a pixel becomes the sum of floor(channel * weight / 256) over the layers and the
    old pixel; its top byte becomes 0.

    Args:
        surface: 32 bits a pixel. It is drawn on.
        x1: Left column, in pixels.
        y1: Top row, -32768 or more.
        x2: Right column, not painted.
        y2: Bottom row, not painted.
        top: The gradient's first colour, a GM colour; unsigned.
        bottom: Its last colour, a GM colour; unsigned.
        opacity: The gradient's, 0.0 to 1.0.
        constant: The colour above it, a pixel value; unsigned.
        constant_opacity: Its opacity, 0.0 to 1.0.

    Raises:
        TypeError: "fast_draw_gradients_vc() needs a pygame Surface, got int", with the type that
            came.
        ValueError: The Surface has no 32 bits a pixel, or `y1` is below -32768.
        RuntimeError: Its pixels can not be reached, as those of a display that was closed.

    Example:
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.fast_draw_gradients_vc(screen, 0, 0, 4, 2, 0, 0, 0.5, 0xFF0000, 0.5)
        >>> screen.get_at((0, 0))
        (127, 0, 0, 255)
        >>> larkspur.fast_draw_gradients_vc(screen, 0, 0, 4, 2, 0, 0, 0.5, 0xFF0000, 1.0)
        >>> screen.get_at((0, 0))
        (0, 0, 0, 255)
    """

def fast_draw_gradients_vv(
    surface: pygame.Surface,
    x1: _Int,
    y1: _Int,
    x2: _Int,
    y2: _Int,
    top1: _Int,
    bottom1: _Int,
    opacity1: _Float,
    top2: _Int,
    bottom2: _Int,
    opacity2: _Float,
    /,
) -> None:
    """Blends two vertical gradients over a rectangle, the second above the first.

    The rectangle and the colours of the rows are those of `fast_draw_gradient_v()`, the shares of
    the layers those of `fast_draw_gradients_vc()`: a share of 1.0 counts as 0.

    Args:
        surface: 32 bits a pixel. It is drawn on.
        x1: Left column, in pixels.
        y1: Top row, -32768 or more.
        x2: Right column, not painted.
        y2: Bottom row, not painted.
        top1: The lower gradient's first colour, a GM colour; unsigned.
        bottom1: Its last colour, a GM colour; unsigned.
        opacity1: Its opacity, 0.0 to 1.0.
        top2: The upper gradient's first colour, a GM colour; unsigned.
        bottom2: Its last colour, a GM colour; unsigned.
        opacity2: Its opacity, 0.0 to 1.0.

    Raises:
        TypeError: "fast_draw_gradients_vv() needs a pygame Surface, got int", with the type that
            came.
        ValueError: The Surface has no 32 bits a pixel, or `y1` is below -32768.
        RuntimeError: Its pixels can not be reached, as those of a display that was closed.

    Example:
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> red, blue = 0x0000FF, 0xFF0000
        >>> larkspur.fast_draw_gradients_vv(screen, 0, 0, 4, 2, red, red, 0.5, blue, blue, 0.5)
        >>> screen.get_at((0, 0))
        (63, 0, 127, 255)
    """

def fast_draw_gradients_vcv(
    surface: pygame.Surface,
    x1: _Int,
    y1: _Int,
    x2: _Int,
    y2: _Int,
    top1: _Int,
    bottom1: _Int,
    opacity1: _Float,
    constant: _Int,
    constant_opacity: _Float,
    top2: _Int,
    bottom2: _Int,
    opacity2: _Float,
    /,
) -> None:
    """Blends a gradient, a constant colour above it and a gradient above both over a rectangle.

    The rectangle and the colours of the rows are those of `fast_draw_gradient_v()`. As in
    `fast_draw_gradients_vc()` each layer gets its opacity times what the layers above have left,
    but it counts as trunc(share * 255) in 256ths, and the old pixel gets 255 less trunc(255 times
    what all layers cover). So a share of 1.0 counts as 255 here, and opaque layers show.

    Args:
        surface: 32 bits a pixel. It is drawn on.
        x1: Left column, in pixels.
        y1: Top row, -32768 or more.
        x2: Right column, not painted.
        y2: Bottom row, not painted.
        top1: The lower gradient's first colour, a GM colour; unsigned.
        bottom1: Its last colour, a GM colour; unsigned.
        opacity1: Its opacity, 0.0 to 1.0.
        constant: The colour between them, a pixel value; unsigned.
        constant_opacity: Its opacity, 0.0 to 1.0.
        top2: The upper gradient's first colour, a GM colour; unsigned.
        bottom2: Its last colour, a GM colour; unsigned.
        opacity2: Its opacity, 0.0 to 1.0.

    Raises:
        TypeError: "fast_draw_gradients_vcv() needs a pygame Surface, got int", with the type that
            came.
        ValueError: The Surface has no 32 bits a pixel, or `y1` is below -32768.
        RuntimeError: Its pixels can not be reached, as those of a display that was closed.

    Example:
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.fast_draw_gradients_vcv(
        ...     screen, 0, 0, 4, 2, red, red, 0.0, 0x00FF00, 1.0, blue, blue, 0.5
        ... )
        >>> screen.get_at((0, 0))
        (0, 126, 126, 255)
    """

def fast_draw_gradients_vcvvc(
    surface: pygame.Surface,
    x1: _Int,
    y1: _Int,
    x2: _Int,
    y2: _Int,
    top1: _Int,
    bottom1: _Int,
    opacity1: _Float,
    constant1: _Int,
    constant_opacity1: _Float,
    top2: _Int,
    bottom2: _Int,
    opacity2: _Float,
    top3: _Int,
    bottom3: _Int,
    opacity3: _Float,
    constant2: _Int,
    constant_opacity2: _Float,
    /,
) -> None:
    """Blends five layers over a rectangle: gradient, constant, two gradients, constant.

    The rectangle and the colours of the rows are those of `fast_draw_gradient_v()`, the shares of
    the layers those of `fast_draw_gradients_vc()`: a share of 1.0 counts as 0.

    Args:
        surface: 32 bits a pixel. It is drawn on.
        x1: Left column, in pixels.
        y1: Top row, -32768 or more.
        x2: Right column, not painted.
        y2: Bottom row, not painted.
        top1: The undermost layer's first colour, a GM colour; unsigned.
        bottom1: Its last colour, a GM colour; unsigned.
        opacity1: Its opacity, 0.0 to 1.0.
        constant1: The second layer's colour, a pixel value; unsigned.
        constant_opacity1: Its opacity, 0.0 to 1.0.
        top2: The third layer's first colour, a GM colour; unsigned.
        bottom2: Its last colour, a GM colour; unsigned.
        opacity2: Its opacity, 0.0 to 1.0.
        top3: The fourth layer's first colour, a GM colour; unsigned.
        bottom3: Its last colour, a GM colour; unsigned.
        opacity3: Its opacity, 0.0 to 1.0.
        constant2: The uppermost layer's colour, a pixel value; unsigned.
        constant_opacity2: Its opacity, 0.0 to 1.0.

    Raises:
        TypeError: "fast_draw_gradients_vcvvc() needs a pygame Surface, got int", with the type that
            came.
        ValueError: The Surface has no 32 bits a pixel, or `y1` is below -32768.
        RuntimeError: Its pixels can not be reached, as those of a display that was closed.

    Example:
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.fast_draw_gradients_vcvvc(
        ...     screen, 0, 0, 4, 2,
        ...     red, red, 0.5, 0x00FF00, 0.5, blue, blue, 0.0, blue, blue, 0.0, 0xFFFFFF, 0.5
        ... )
        >>> screen.get_at((0, 0))
        (158, 190, 127, 255)
    """

# Transforms

def rotoscale(
    surface: pygame.Surface, xscale: _Float, yscale: _Float, angle: _Float, /
) -> pygame.Surface:
    """Makes a scaled and turned copy of a Surface, without smoothing.

    With an angle of 0 the sides are those of `scale()`. Any other angle, 360 too, scales the
    picture by `xscale` in both directions and turns it about its middle: of `yscale` only the sign
    counts then. (So it is with SDL_gfx 2.0.25; other versions differ.) The sides are even numbers
    then; the turned picture can lose its last row or column. What it does not cover is 0 or, where
    the Surface has a colour key, the key's colour.

    The alpha of single pixels is kept; of an opaque Surface what is not covered is opaque, too. The
    copy has 32 bits a pixel (8, and its palette, for a Surface of 8 bits), no colour key, whatever
    the Surface has, and not its alpha of the whole. Of a Surface that has neither 8 nor 32
    bits it has an alpha channel and red in the lowest byte, and the alpha of the whole has darkened
    its colours.

    Args:
        surface: Of any depth; each side 1 to 32767 pixels, and at most 16383 columns where it has
            neither 8 nor 32 bits a pixel. It is read only.
        xscale: Factor of the width; a negative one mirrors, and fails with 8 bits a pixel.
        yscale: As `xscale`, of the height, when the angle is 0.
        angle: Degrees, counter-clockwise; the fraction is dropped: 45.9 counts as 45.

    Returns:
        A new Surface.

    Raises:
        TypeError: "rotoscale() needs a pygame Surface, got int", with the type that came.
        ValueError: The Surface is of a kind that can not be scaled, or a factor is negative with 8
            bits a pixel; the text says why.
        RuntimeError: It is the Surface of a display that was closed.
        pygame.error: "Width or height is too large", and what else SDL says when it makes none.

    Example:
        >>> arrow = pygame.Surface((8, 4))
        >>> larkspur.rotoscale(arrow, 2, 2, 0).get_size()
        (16, 8)
        >>> larkspur.rotoscale(arrow, 2, 1, 0).get_size()
        (16, 4)
        >>> larkspur.rotoscale(arrow, 2, 1, 90).get_size()
        (10, 16)
    """

def scale(surface: pygame.Surface, xscale: _Float, yscale: _Float, /) -> pygame.Surface:
    """Makes a scaled copy of a Surface, with smoothing.

    A side becomes floor(side * factor + 0.5), with the factor taken without its sign, and 1 at
    least. The alpha of single pixels is kept, and smoothed like a colour. The copy has 32 bits a
    pixel (8, and its palette, for a Surface of 8 bits). A colour key comes along as it is, though
    smoothing makes new colours along its edges, which show as a fringe: convert such a picture with
    `convert_alpha()` before. The alpha of the whole does not come along.

    Of a Surface that has neither 8 nor 32 bits the copy has an alpha channel and red in the lowest
    byte. Pixels in the key's colour are transparent in it, the number of the key stands for another
    colour, and the alpha of the whole has darkened its colours: convert such a Surface before.

    Args:
        surface: Of any depth; each side 1 to 32767 pixels. It is read only.
        xscale: Factor of the width; a negative one mirrors, and fails with 8 bits a pixel.
        yscale: As `xscale`, of the height.

    Returns:
        A new Surface.

    Raises:
        TypeError: "scale() needs a pygame Surface, got int", with the type that came.
        ValueError: The Surface is of a kind that can not be scaled, or a factor is negative with 8
            bits a pixel; the text says why.
        RuntimeError: It is the Surface of a display that was closed.
        SystemError: SDL refuses the size.

    Example:
        >>> larkspur.scale(arrow, 1.5, 3).get_size()
        (12, 12)
        >>> larkspur.scale(pygame.Surface((5, 4), 0, 32), 0.5, 0.6).get_size()
        (3, 2)
        >>> arrow.set_colorkey((1, 2, 3))
        >>> larkspur.scale(arrow, 2, 2).get_colorkey()
        (1, 2, 3, 255)
        >>> larkspur.rotoscale(arrow, 2, 2, 0).get_colorkey() is None
        True
        >>> larkspur.scale(arrow, 1e6, 1e6)
        Traceback (most recent call last):
        SystemError: error return without exception set
    """

def flip_vh(surface: pygame.Surface, /) -> pygame.Surface:
    """Makes a copy of a Surface turned by half a circle, one row too low.

    Row i of the copy shows row height - i of the Surface from right to left. So the first row of
    the copy is blank, in the colour 0, and the first row of the Surface does not appear. The copy
    has the Surface's size and format, and neither its colour key nor the alpha of the whole.

    Args:
        surface: 32 bits a pixel. It is read only.

    Returns:
        A new Surface.

    Raises:
        TypeError: "flip_vh() needs a pygame Surface, got int", with the type that came.
        RuntimeError: It is the Surface of a display that was closed.
        pygame.error: The Surface has no 32 bits a pixel, or SDL makes no copy.

    Writes:
        "Error: non-32bit surfaces not yet flippable.": on standard error, when the Surface has no
            32 bits a pixel.

    Example:
        >>> stripes = pygame.Surface((2, 3), 0, 32)
        >>> for row, colour in enumerate([(255, 0, 0), (0, 255, 0), (0, 0, 255)]):
        ...     stripes.set_at((0, row), colour)
        >>> turned = larkspur.flip_vh(stripes)
        >>> [turned.get_at((1, row))[:3] for row in range(3)]
        [(0, 0, 0), (0, 0, 255), (0, 255, 0)]
    """

def flip_v(surface: pygame.Surface, /) -> pygame.Surface:
    """Makes a copy of a Surface upside down.

    The copy has the Surface's size and format, and neither its colour key, nor the alpha of the
    whole, nor its palette: with 8 bits a pixel it has the palette of a new Surface.

    Args:
        surface: Of any depth. It is read only.

    Returns:
        A new Surface.

    Raises:
        TypeError: "flip_v() needs a pygame Surface, got int", with the type that came.
        RuntimeError: It is the Surface of a display that was closed.
        pygame.error: SDL makes no copy.

    Example:
        >>> turned = larkspur.flip_v(stripes)
        >>> [turned.get_at((0, row))[:3] for row in range(3)]
        [(0, 0, 255), (0, 255, 0), (255, 0, 0)]
    """

def flip_h(surface: pygame.Surface, /) -> pygame.Surface:
    """Makes a copy of a Surface mirrored from left to right.

    The copy has the Surface's size and format, and neither its colour key nor the alpha of the
    whole.

    Args:
        surface: 32 bits a pixel. It is read only.

    Returns:
        A new Surface.

    Raises:
        TypeError: "flip_h() needs a pygame Surface, got int", with the type that came.
        RuntimeError: It is the Surface of a display that was closed.
        pygame.error: The Surface has no 32 bits a pixel, or SDL makes no copy.

    Writes:
        "Cannot horizontally flip non-32-bit surfaces.": on standard error, when the Surface has no
            32 bits a pixel.

    Example:
        >>> turned = larkspur.flip_h(stripes)
        >>> [turned.get_at((1, row))[:3] for row in range(3)]
        [(255, 0, 0), (0, 255, 0), (0, 0, 255)]
    """

# Particle types

def part_type_create(*ignored: object) -> particle_type_handle:
    """Makes a particle type.

    Its particles are opaque, live for 30 steps, have the size 1.0 and both scales 1.0, and neither
    move, turn nor change. All three colours are the display's white: 0xFFFFFF with 32 bits a pixel,
    and before `set_SDL_screen()`. On a display of another depth it is another number, which tints:
    set 0xFFFFFF with `part_type_color3()` there. They are drawn with blend mode 0. There is no
    shape yet: a particle can be stepped, and drawn once `part_type_shape()` has set one.

    A particle's size, life, speed, direction, orientation and colours are chosen when it is made:
    later changes of them reach new particles alone. Shape, blend mode, scales, alphas, and what
    sizes and orientations grow, wiggle and are held by, are read at each step and at each drawing.

    A type keeps the pictures that its particles were drawn with, under their size, colour, alpha
    and angle. Changes of shape or blend mode do not empty that cache: call
    `CParticle_type_cache_clear()` after them.

    Args:
        ignored: Arguments are accepted and ignored.

    Returns:
        A new handle; its type lives as long as the handle or a particle of it.

    Example:
        >>> spark = larkspur.part_type_create()
        >>> particle = larkspur.CParticle_new(spark, 0, 0)
        >>> larkspur.CParticle_step(particle)
        29
    """

def part_type_shape(
    particle_type: particle_type_handle | GMVar, surface: pygame.Surface, /
) -> None:
    """Sets the picture that a type's particles are drawn with.

    The type holds a reference to the Surface itself: what is drawn on it later shows in particles
    that are drawn from it directly, and not in pictures that the type has kept. A white shape takes
    the particles' colours best.

    Other depths have their limits, which show when a particle is drawn. None of them is added as it
    is: white, opaque and of natural size. A shape of 8 bits that is scaled is neither tinted, nor
    added at full alpha, nor faded with blend mode 0. One of 15, 16 or 24 bits gets an alpha channel
    and red in the lowest byte when it is scaled, so that adding it at full alpha exchanges red and
    blue.

    Args:
        particle_type: The type.
        surface: Exactly a pygame Surface, not of a type derived from it. Any depth is taken; with
            32 bits a pixel and an alpha channel, in the display's order of colours, every kind of
            drawing works.

    Raises:
        SystemError: `surface` is no such Surface, or the first argument no particle type. The type
            stays as it is.

    Writes:
        "part_type_shape: A pygame Surface is required.": on standard error, when it is none.
        "Returning NULL!": on standard output, when the first argument is neither a particle type
            nor a `GMVar`.

    Example:
        >>> dot = pygame.Surface((4, 4), pygame.SRCALPHA)
        >>> dot.fill((255, 255, 255, 255))
        <rect(0, 0, 4, 4)>
        >>> larkspur.part_type_shape(spark, dot)
        >>> larkspur.part_type_shape(spark, "dot.png")
        Traceback (most recent call last):
        SystemError: error return without exception set
    """

def part_type_sprite(
    particle_type: particle_type_handle | GMVar,
    sprite: object,
    animate: _Float,
    stretch: _Float,
    random: _Float,
    /,
) -> None:
    """Keeps a sprite as a type's shape; its particles can not be drawn then.

    Drawing needs a Surface as the shape, so `CParticle_dec_ttl_and_render()` raises TypeError until
    `part_type_shape()` is called. No subimage is chosen: to show one, hand it to
    `part_type_shape()`.

    Args:
        particle_type: The type.
        sprite: Any object; a reference to it is held.
        animate: Not 0 for an animated sprite. Stored, and not used by drawing.
        stretch: Truncated and stored for an animated sprite, 0 for another; not used by drawing.
        random: Looked at when `animate` is 0; not 0 only writes the line.

    Raises:
        TypeError: "part_type_sprite() needs a particle type, got int; pass what part_type_create()
            returned", with the type that came.

    Writes:
        "XXX need to select a random subimage.": on standard output, when `random` is not 0 and
            `animate` is.
        "Returning NULL!": on standard output, when the first argument is neither a particle type
            nor a `GMVar`.

    Example:
        >>> other = larkspur.part_type_create()
        >>> larkspur.part_type_sprite(other, sprite, 1, 0, 0)
        >>> try:
        ...     larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(other, 0, 0), 0, 0)
        ... except TypeError as error:
        ...     print(str(error).split(",")[0])
        CParticle_dec_ttl_and_render() needs a particle type whose shape is a pygame Surface
    """

def part_type_size(
    particle_type: particle_type_handle | GMVar,
    min: _Float,
    max: _Float,
    incr: _Float,
    wiggle: _Float,
    /,
) -> None:
    """Sets the size of a type's particles, as a factor of the shape's size.

    A new particle has a size between `min` and `max`. In each step it gets a random number between
    -w and w with w = wiggle * (max - min), then incr * (max - min); then it is held between `min`
    and `max`. So where `min` equals `max` no particle changes its size, whatever `incr` and
    `wiggle` are. As long as w is not 0, a particle of natural size is drawn as a scaled one.

    Args:
        particle_type: The type.
        min: Smallest size; 1.0 in a new type.
        max: Largest size; 1.0 in a new type.
        incr: Growth a step, in shares of max - min; 0.0 in a new type.
        wiggle: Random change a step, in shares of max - min; 0.0 in a new type.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> growing = larkspur.part_type_create()
        >>> larkspur.part_type_shape(growing, dot)
        >>> larkspur.part_type_size(growing, 1, 3, 1, 0)
        >>> particle = larkspur.CParticle_new(growing, 20, 20)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        29
        >>> screen.get_at((14, 14)), screen.get_at((25, 25)), screen.get_at((26, 26))
        ((255, 255, 255, 255), (255, 255, 255, 255), (0, 0, 0, 255))
    """

def part_type_scale(
    particle_type: particle_type_handle | GMVar, xscale: _Float, yscale: _Float, /
) -> None:
    """Sets factors by which the shape is drawn wider and higher.

    A particle is trunc(width * xscale * size) pixels wide and trunc(height * yscale * size) high;
    where one of these is 0 nothing is drawn. A negative number draws the mirrored picture.

    Args:
        particle_type: The type.
        xscale: Of the width; 1.0 in a new type.
        yscale: Of the height; 1.0 in a new type.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> wide = larkspur.part_type_create()
        >>> larkspur.part_type_shape(wide, dot)
        >>> larkspur.part_type_scale(wide, 2, 1)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(wide, 10, 10), 0, 0)
        29
        >>> screen.get_at((6, 8)), screen.get_at((13, 11)), screen.get_at((14, 11))
        ((255, 255, 255, 255), (255, 255, 255, 255), (0, 0, 0, 255))
    """

def part_type_orientation(
    particle_type: particle_type_handle | GMVar,
    min: _Float,
    max: _Float,
    incr: _Float,
    wiggle: _Float,
    relative: _Float,
    /,
) -> None:
    """Sets the angle at which a type's particles are drawn.

    A new particle has an angle between `min` and `max`. In each step it gets a random number
    between -wiggle and wiggle. Then, where `incr` is not 0, it gets `incr`, and 360 more when it is
    below 0 or 360 less when it is above 360. Then it is held between `min` and `max`: a particle
    that is to turn round and round needs 0 and 360 there.

    Turned are pictures that are scaled or faded. A scaled one is turned by the multiple of 16
    degrees below its angle, a faded one of natural size by whole degrees; an opaque one of natural
    size is not turned at all. Keep angles of scaled ones at 0 or more: of a negative one the low 12
    bits are taken, so -5 turns by 4080 degrees, which looks like 120.

    Args:
        particle_type: The type.
        min: Smallest angle, degrees counter-clockwise; 0.0 in a new type.
        max: Largest angle; 0.0 in a new type.
        incr: Degrees a step; 0.0 in a new type.
        wiggle: Random degrees a step; 0.0 in a new type.
        relative: Truncated and stored; not used.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> bar = pygame.Surface((8, 2), pygame.SRCALPHA)
        >>> bar.fill((255, 255, 255, 255))
        <rect(0, 0, 8, 2)>
        >>> turning = larkspur.part_type_create()
        >>> larkspur.part_type_shape(turning, bar)
        >>> larkspur.part_type_scale(turning, 2, 2)
        >>> def drawn_size():
        ...     screen.fill((0, 0, 0))
        ...     larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(turning, 30, 20), 0, 0)
        ...     return pygame.mask.from_threshold(
        ...         screen, (255, 255, 255), (9, 9, 9)
        ...     ).get_bounding_rects()[0].size
        >>> drawn_size()
        (16, 4)
        >>> larkspur.part_type_orientation(turning, 96, 96, 0, 0, 0)
        >>> drawn_size()
        (5, 17)
    """

def part_type_life(
    particle_type: particle_type_handle | GMVar, min: _Float, max: _Float, /
) -> None:
    """Sets how many steps a type's particles live.

    A new particle has trunc(min + r * (max - min)) steps to live, with r a random number from 0 up
    to but not including 1. One with n steps shows in n - 1 frames: it is moved before it is drawn,
    and with none left it is not drawn.

    Args:
        particle_type: The type.
        min: Least steps, truncated; 30 in a new type.
        max: Most steps, truncated; 30 in a new type. No particle gets as many unless `min` is the
            same.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> brief = larkspur.part_type_create()
        >>> larkspur.part_type_life(brief, 2.9, 2.9)
        >>> particle = larkspur.CParticle_new(brief, 0, 0)
        >>> [larkspur.CParticle_step(particle) for step in range(3)]
        [1, 0, -1]
    """

def part_type_speed(
    particle_type: particle_type_handle | GMVar,
    min: _Float,
    max: _Float,
    incr: _Float,
    wiggle: _Float,
    /,
) -> None:
    """Sets the speed of a type's particles.

    A new particle has a speed between `min` and `max`, which stays as it is: `incr` and `wiggle`
    are stored and not used.

    Args:
        particle_type: The type.
        min: Smallest speed, pixels a step; 0.0 in a new type.
        max: Largest speed; 0.0 in a new type.
        incr: Stored only.
        wiggle: Stored only.

    Raises:
        TypeError: "part_type_speed() needs a particle type, got int; pass what part_type_create()
            returned", with the type that came.

    Writes:
        "Returning NULL!": on standard output, when the first argument is neither a particle type
            nor a `GMVar`.

    Example:
        >>> falling = larkspur.part_type_create()
        >>> larkspur.part_type_shape(falling, dot)
        >>> larkspur.part_type_speed(falling, 10, 10, 0, 0)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(falling, 20, 20), 0, 0)
        29
        >>> screen.get_at((20, 20)), screen.get_at((20, 30))
        ((0, 0, 0, 255), (255, 255, 255, 255))
    """

def part_type_direction(
    particle_type: particle_type_handle | GMVar,
    min: _Float,
    max: _Float,
    incr: _Float,
    wiggle: _Float,
    /,
) -> None:
    """Sets the direction in which a type's particles move.

    A new particle has a direction between `min` and `max`, which stays as it is: `incr` and
    `wiggle` are stored and not used. 0 degrees move down, 90 left, 180 up and 270 right.

    Args:
        particle_type: The type.
        min: Smallest direction, degrees clockwise from down; 0.0 in a new type.
        max: Largest direction; 0.0 in a new type.
        incr: Stored only.
        wiggle: Stored only.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> larkspur.part_type_direction(falling, 90, 90, 0, 0)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(falling, 20, 20), 0, 0)
        29
        >>> screen.get_at((20, 30)), screen.get_at((10, 20))
        ((0, 0, 0, 255), (255, 255, 255, 255))
    """

def part_type_gravity(
    particle_type: particle_type_handle | GMVar, amount: _Float, direction: _Float, /
) -> None:
    """Stores a gravity, which does nothing.

    Particles keep the speed and direction that they were made with.

    Args:
        particle_type: The type.
        amount: Stored only; 0.0 in a new type.
        direction: Stored only; 0.0 in a new type.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> heavy = larkspur.part_type_create()
        >>> larkspur.part_type_shape(heavy, dot)
        >>> larkspur.part_type_gravity(heavy, 10, 270)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(heavy, 20, 20), 0, 0)
        29
        >>> screen.get_at((20, 20))
        (255, 255, 255, 255)
    """

def part_type_color3(
    particle_type: particle_type_handle | GMVar,
    colour1: _Int,
    colour2: _Int,
    colour3: _Int,
    /,
) -> None:
    """Sets the colours of a type's particles at birth, half life and death.

    Between them the colour changes evenly with each step. A channel c of the shape becomes
    max(0, c - (255 - t)), with t the colour's channel: a white shape takes the colour itself, and
    white leaves the shape as it is.

    Args:
        particle_type: The type.
        colour1: A GM colour. White is 0xFFFFFF exactly.
        colour2: A GM colour.
        colour3: A GM colour.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> red_ones = larkspur.part_type_create()
        >>> larkspur.part_type_shape(red_ones, dot)
        >>> larkspur.part_type_color3(red_ones, 0x0000FF, 0x0000FF, 0x0000FF)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(red_ones, 10, 10), 0, 0)
        29
        >>> screen.get_at((10, 10))
        (255, 0, 0, 255)
    """

def part_type_alpha2(
    particle_type: particle_type_handle | GMVar, start: _Float, end: _Float, /
) -> None:
    """Sets the alpha of a type's particles at birth and death.

    As `part_type_alpha3()` with (start + end) / 2 at half life.

    Args:
        particle_type: The type.
        start: Alpha at birth, 0.0 to 1.0; 1.0 in a new type.
        end: Alpha at death, 0.0 to 1.0; 1.0 in a new type.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> fading = larkspur.part_type_create()
        >>> larkspur.part_type_shape(fading, dot)
        >>> larkspur.part_type_scale(fading, 2, 2)
        >>> larkspur.part_type_alpha2(fading, 1.0, 0.0)
        >>> larkspur.part_type_life(fading, 4, 4)
        >>> particle = larkspur.CParticle_new(fading, 20, 20)
        >>> def red_after_step():
        ...     screen.fill((0, 0, 0))
        ...     larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        ...     return screen.get_at((20, 20))[0]
        >>> [red_after_step() for step in range(4)]
        [189, 125, 61, 0]
    """

def part_type_alpha3(
    particle_type: particle_type_handle | GMVar,
    start: _Float,
    half: _Float,
    end: _Float,
    /,
) -> None:
    """Sets the alpha of a type's particles at birth, half life and death.

    Between them the alpha changes evenly with each step. With blend mode 0 a picture that is scaled
    gets less alpha, when the shape has an alpha channel; without one it is drawn opaque. One of the
    shape's natural size is faded in the display's format, which has no alpha channel as a rule:
    there it is drawn opaque, and without its own transparency. Give a type that is to fade a shape
    with an alpha channel and a scale other than 1. With any other blend mode fading makes a picture
    darker, of any size.

    Args:
        particle_type: The type.
        start: Alpha at birth, 0.0 to 1.0; 1.0 in a new type.
        half: Alpha at half life, 0.0 to 1.0; 1.0 in a new type.
        end: Alpha at death, 0.0 to 1.0; 1.0 in a new type.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> larkspur.part_type_alpha3(fading, 0.0, 1.0, 0.0)
        >>> particle = larkspur.CParticle_new(fading, 20, 20)
        >>> [red_after_step() for step in range(4)]
        [125, 255, 125, 0]
    """

def part_type_blend(particle_type: particle_type_handle | GMVar, blend: _Float, /) -> None:
    """Sets how a type's particles are drawn over what is there.

    0 draws them as pygame's `blit()` does. 1 and 128 add their bytes to those of the display, each
    sum stopping at 255; alpha does not count then, so transparent pixels of the shape should be
    black. Any other number is drawn as 0, with a line at each drawing.

    With any number but 0 a picture that touches or crosses the right edge of the display is not
    drawn. An added picture that crosses the upper edge, or lies above it however far, is moved down
    to the first row; one that crosses the left or the lower edge is cut off there, and a clip
    rectangle does not count. Where a view can leave an emitter above itself, have its particles
    stepped with `CParticle_step()` and not drawn meanwhile.

    Args:
        particle_type: The type.
        blend: 0, 1 or 128, truncated; 0 in a new type.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> glowing = larkspur.part_type_create()
        >>> glow = pygame.Surface((4, 4), 0, 32)
        >>> glow.fill((40, 20, 0))
        <rect(0, 0, 4, 4)>
        >>> larkspur.part_type_shape(glowing, glow)
        >>> larkspur.part_type_blend(glowing, 1)
        >>> screen.fill((0, 0, 100))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(glowing, 10, 10), 0, 0)
        29
        >>> screen.get_at((10, 10))
        (40, 20, 100, 255)
    """

def CParticle_type_cache_clear(particle_type: particle_type_handle | GMVar, /) -> None:
    """Empties a type's cache of pictures.

    Call it when the shape's pixels, the shape itself or the blend mode have changed, or the display
    has another format: pictures that were kept show the old state. The next drawing makes them
    anew.

    Args:
        particle_type: The type.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is no `GMVar` either.

    Example:
        >>> def colour_drawn():
        ...     larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(wide, 10, 10), 0, 0)
        ...     return screen.get_at((10, 10))[:3]
        >>> dot.fill((0, 255, 0, 255))
        <rect(0, 0, 4, 4)>
        >>> colour_drawn()
        (255, 255, 255)
        >>> larkspur.CParticle_type_cache_clear(wide)
        >>> colour_drawn()
        (0, 255, 0)
    """

# Particles

def CParticle_new(
    particle_type: particle_type_handle | GMVar, x: _Float, y: _Float, /
) -> particle_handle:
    """Makes a particle of a type.

    Direction, speed, size, life and orientation are drawn from the type's ranges, in this order, a
    random number each; the colours are the type's. The numbers come from the C library's
    `drand48()`, which larkspur seeds when it is imported.

    Args:
        particle_type: The type. The particle holds it.
        x: Place in the room, in pixels.
        y: Place in the room, in pixels, downwards.

    Returns:
        A new handle. The particle ends when the engine lets go of it.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is none, nor a `GMVar` that holds one.

    Example:
        >>> particle = larkspur.CParticle_new(spark, 10, 10)
        >>> larkspur.CParticle_dec_ttl(particle)
        29
        >>> larkspur.CParticle_new("spark", 10, 10)
        Traceback (most recent call last):
        SystemError: error return without exception set
    """

def CParticle_new_size_color(
    particle_type: particle_type_handle | GMVar, x: _Float, y: _Float, size: _Float, colour: _Int, /
) -> particle_handle:
    """Makes a particle of a type with a given size and colour.

    As `CParticle_new()`, with four random numbers in the order direction, speed, orientation, life.
    The size may lie outside of the type's range, and stays there as long as the type's sizes do not
    change; otherwise the first step brings it into the range.

    Args:
        particle_type: The type. The particle holds it.
        x: Place in the room, in pixels.
        y: Place in the room, in pixels, downwards.
        size: Factor of the shape's size.
        colour: A GM colour for the whole life. White is 0xFFFFFF exactly.

    Returns:
        A new handle.

    Raises:
        SystemError: The first argument is no particle type.

    Writes:
        "Returning NULL!": on standard output, when it is none, nor a `GMVar` that holds one.

    Example:
        >>> larkspur.part_type_shape(spark, glow)
        >>> glow.fill((255, 255, 255))
        <rect(0, 0, 4, 4)>
        >>> particle = larkspur.CParticle_new_size_color(spark, 20, 20, 2.0, 0xFF0000)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        29
        >>> screen.get_at((16, 16)), screen.get_at((24, 24))
        ((0, 0, 255, 255), (0, 0, 0, 255))
    """

def CParticle_step(particle: particle_handle, /) -> int:
    """Moves a particle by one step.

    In this order: its place changes by its speed in its direction, its life gets one step shorter,
    its orientation and its size change as its type says.

    Args:
        particle: The particle.

    Returns:
        The steps that it has left. 0 and less change nothing: it is the engine that lets go of a
        particle.

    Raises:
        TypeError: "CParticle_step() needs a particle, got int; pass what CParticle_new() returned",
            with the type that came.

    Example:
        >>> particle = larkspur.CParticle_new(spark, 10, 10)
        >>> larkspur.CParticle_step(particle), larkspur.CParticle_step(particle)
        (29, 28)
    """

def CParticle_dec_ttl(particle: particle_handle, /) -> int:
    """Makes a particle's life one step shorter, and changes nothing else.

    Args:
        particle: The particle.

    Returns:
        The steps that it has left.

    Raises:
        TypeError: "CParticle_dec_ttl() needs a particle, got int; pass what CParticle_new()
            returned", with the type that came.

    Example:
        >>> larkspur.CParticle_dec_ttl(particle)
        27
    """

def CParticle_dec_ttl_and_render(
    particle: particle_handle, x_offset: _Int, y_offset: _Int, /
) -> int:
    """Moves a particle by one step and draws it on the display.

    The step is that of `CParticle_step()`; it is made also where the drawing then raises. A
    particle with no step left is not drawn. Column width // 2 and row height // 2 of the picture
    come to trunc(place + offset). At birth, half life and death it has the type's first, second and
    third alpha and its own first, second and third colour, and between them what lies between.

    Pictures that are scaled, tinted or faded are kept in one cache of the type. A kept picture is
    drawn again as it is, so what decides it, the size above all, should take few values. Where one
    more scaled picture is to be kept and the cache has more than 100 of any kind, it is emptied
    before; otherwise only `CParticle_type_cache_clear()` empties it. A tinted, opaque picture of
    natural size is drawn twice when it is made, and so adds twice in that frame.

    Args:
        particle: The particle.
        x_offset: Pixels to the right, added to its place: with a view at (100, 50), -100.
        y_offset: Pixels downwards.

    Returns:
        The steps that it has left.

    Raises:
        TypeError: The first argument is no particle, or its type's shape no pygame Surface.
        RuntimeError: There is no display, or the shape is that of one that was closed.
        ValueError: A picture that has to be tinted, faded or added, or the display that it is added
            to, has no 32 bits a pixel, or the shape can not be scaled or turned.

    Writes:
        "Error: Unexpected additive blend mode 7": on standard output, at each drawing with a blend
            mode that there is not.
        "Error reformatting shapesurf: %s": on standard error, with SDL's text, when SDL can not
            convert the shape to be faded. Nothing is drawn.

    Example:
        >>> particle = larkspur.CParticle_new(spark, 110, 60)
        >>> screen.fill((0, 0, 0))
        <rect(0, 0, 64, 48)>
        >>> larkspur.CParticle_dec_ttl_and_render(particle, -100, -50)
        29
        >>> screen.get_at((8, 8)), screen.get_at((11, 11)), screen.get_at((12, 12))
        ((255, 255, 255, 255), (255, 255, 255, 255), (0, 0, 0, 255))
    """

def CParticle_attach_beancounter(particle: particle_handle, counter: Beancounter, /) -> None:
    """Has a counter count a particle as long as it lives.

    The counter gets one more now and one less when the particle ends. A counter that the particle
    had before gets one less. The particle holds a reference to the counter.

    Args:
        particle: The particle.
        counter: The counter; `int(counter)` tells its count.

    Raises:
        TypeError: The first argument is no particle or the second no `Beancounter`.

    Example:
        >>> counter = larkspur.Beancounter()
        >>> larkspur.CParticle_attach_beancounter(particle, counter)
        >>> int(counter)
        1
        >>> del particle
        >>> int(counter)
        0
    """

# Diagnostics

def breakable(*ignored: object) -> None:
    """A place for a debugger to stop at.

    Set a breakpoint on it and call it from Python code that is looked into.

    Args:
        ignored: Arguments are accepted and ignored.

    Writes:
        "breakable": on standard output, at each call.

    Example:
        >>> larkspur.breakable("here") is None
        True
    """

# Types

class GMRoom:
    """One room of the game: its settings, views, backgrounds, tiles and lists of instances.

    The engine makes a room by calling the type without arguments (arguments are ignored), fills in
    its members, appends it to `gm6.game.rooms` and gives it to `Room_Draw` each frame. A room is a
    record: it holds data, and each of its methods but the pickling ones calls a function of `gm6`.
    The type can't be subclassed; its objects take no further attributes and no weak references.

    **Members.** Number members are signed 32-bit integers that start at 0 (`frame_duration` is a
    32-bit float). They take whatever has an integer value, a `GMVar` too: floats lose their
    fraction, numbers outside of -2147483648..2147483647 keep their low 32 bits, with a
    RuntimeWarning, or raise OverflowError where they don't even fit 64 bits. A NaN raises
    ValueError, anything else TypeError, and so does deleting one. **A room, background or sprite
    that is in no list is taken for -1**, without a word. The number members of the other types go
    by the same rules.

    Object members take any object. They start unset; an unset one reads as None, and deleting one
    makes it unset again. "Kept for the engine" below means that larkspur never looks at a member.
    What `Room_Draw` looks at has to be there before the first frame: `drawn_objects`, then `tiles`
    in a room without views, and `view_visible` with all eleven `Floatlist8` members in a room with
    views.

    **As a number** a room is its position in `gm6.game.rooms`, found by identity: `int(room)`,
    `float(room)`, `"%d" % room` and `str(room)`. A room that is not in the list has none: `int()`
    and `float()` raise SystemError, `"%d" % room` raises TypeError, and `str()` gives "-1". Where
    `gm6.game.rooms` is no list, no room is in it. `repr()` shows the address. A room is always
    true. It has no hash, so it can't be a dictionary's key or in a set: use `id(room)` or the
    position.

    **Comparison.** Rooms, backgrounds and tiles compare with each other by these numbers alone, so
    a room equals the background at the same position. Comparing with a sprite goes by the numbers,
    too, and raises where one of the two has none. Comparing with a plain number does not:
    `room == 0` is always False, and which one is less means nothing. Compare `int(room)`.

    **Pickling.** A room's pickled state is a tuple of 78 pairs (name, value), one for each member.
    Pickling works with every protocol as far as the values can be pickled. Code objects and
    Surfaces can't (with protocol 2 a Surface comes back as one that raises at every use), so set
    `creation_code_compiled`, `cached_bg` and `cached_bg_scaled` to None before. A copy by
    `copy.copy()` has the very same objects in its members; it is in no list.

    **Ownership.** A room owns what its members hold, and takes part in garbage collection. Two
    things are peculiar. What `view_visible`, `initial_view_data` and `creation_code_compiled` hold
    when the room dies is never released; set them to None before the last reference goes, where
    that matters. And the collector does not look into these three, nor into `bg0` to `bg7` and the
    `background_` members other than `background_index`: a cycle through one of them is never
    collected.

    Example:
        >>> room = larkspur.GMRoom()
        >>> room.name = "garden"
        >>> room.room_width, room.room_height = 640, 480
        >>> room.room_speed, room.room_caption
        (0, None)
        >>> str(room)
        '-1'
        >>> gm6.game.rooms.append(room)
        >>> str(room), int(room), float(room)
        ('0', 0, 0.0)
        >>> room == 0, int(room) == 0
        (False, True)

        Without views a room needs these two before it can be drawn:

        >>> room.drawn_objects, room.tiles = [], []
        >>> larkspur.Room_Draw(room, screen)

        With views it needs these:

        >>> room.view_enabled, room.view_visible = 1, [1] + [0] * 7
        >>> for member in (
        ...     "view_xview", "view_yview", "view_object", "view_hborder", "view_vborder",
        ...     "view_wview", "view_hview", "view_xport", "view_yport", "view_wport", "view_hport",
        ... ):
        ...     setattr(room, member, larkspur.Floatlist8())
        >>> for view in range(8):
        ...     room.view_object[view] = -1  # follow nothing; 0 would be object 0
        >>> room.view_wview[0], room.view_hview[0] = screen.get_size()
        >>> larkspur.Room_Draw(room, screen)
    """

    # --- The room itself

    id: int
    """The room's number in the engine's own counting; int32, default 0.

    Kept for the engine. The room's integer value is not this but its position in `gm6.game.rooms`.
    """

    name: Any
    """The room's name, as a rule a str; None while unset. Kept for the engine."""

    room_width: int
    """Width in pixels; int32, default 0.

    `Room_Draw` reads it when a view follows an object: the view is moved left until it ends inside
    of the room. A view wider than the room so comes to lie at a negative position.
    """

    room_height: int
    """Height in pixels; int32, default 0. Read as `room_width` is, for the views' lower ends."""

    room_speed: int
    """Steps per second; int32, default 0. Kept for the engine."""

    frame_duration: float
    """Time that one step takes, in a unit of the engine's choice; 32-bit float, default 0.0.

    Kept for the engine. It reads back as the nearest 32-bit float, as 0.10000000149011612 for 0.1;
    numbers that are too large for one become infinite.
    """

    room_persistent: int
    """Flag: the room stays as it is when it is left; int32, default 0. Kept for the engine."""

    room_caption: Any
    """Caption of the window, as a rule a str; None while unset. Kept for the engine."""

    created: int
    """Flag: the room's instances have been made; int32, default 0. Kept for the engine."""

    creation_code: Any
    """Source text of the room's creation code; None while unset. Kept for the engine."""

    creation_code_compiled: Any
    """Compiled form of `creation_code`, as a rule a code object; None while unset.

    Kept for the engine. Never released when the room dies, and in the way of pickling.
    """

    # --- Backgrounds as the room's author set them

    bgcolor: int
    """Colour behind everything, in the engine's numbering; int32, default 0.

    Kept for the engine: larkspur never clears the screen.
    """

    draw_bgcolor: int
    """Flag: paint `bgcolor`; int32, default 0. Kept for the engine."""

    bg0: Any
    """Background slot 0 as the room's author filled it; None while unset. Kept for the engine."""

    bg1: Any
    """Background slot 1; None while unset. Kept for the engine."""

    bg2: Any
    """Background slot 2; None while unset. Kept for the engine."""

    bg3: Any
    """Background slot 3; None while unset. Kept for the engine."""

    bg4: Any
    """Background slot 4; None while unset. Kept for the engine."""

    bg5: Any
    """Background slot 5; None while unset. Kept for the engine."""

    bg6: Any
    """Background slot 6; None while unset. Kept for the engine."""

    bg7: Any
    """Background slot 7; None while unset. Kept for the engine."""

    # --- Backgrounds as the game changes them

    background_index: Any
    """Position in `gm6.game.backgrounds` of what each slot shows, as a rule a list of eight.

    None while unset. Kept for the engine, as all of this group.
    """

    background_visible: Any
    """Flag for each slot: draw it; None while unset. Kept for the engine."""

    background_x: Any
    """Left edge of each slot's picture in the room, pixels; None while unset.

    Kept for the engine.
    """

    background_y: Any
    """Top edge of each slot's picture in the room, pixels; None while unset.

    Kept for the engine.
    """

    background_width: Any
    """Width of each slot's picture, pixels; None while unset. Kept for the engine."""

    background_height: Any
    """Height of each slot's picture, pixels; None while unset. Kept for the engine."""

    background_xscale: Any
    """Horizontal factor of each slot's picture; None while unset. Kept for the engine."""

    background_yscale: Any
    """Vertical factor of each slot's picture; None while unset. Kept for the engine."""

    background_hspeed: Any
    """Pixels by which each slot moves to the right in a step; None while unset.

    Kept for the engine.
    """

    background_vspeed: Any
    """Pixels by which each slot moves down in a step; None while unset. Kept for the engine."""

    background_blend: Any
    """Colour that tints each slot's picture; None while unset. Kept for the engine."""

    background_alpha: Any
    """Opacity of each slot's picture, as a rule 0.0 to 1.0; None while unset.

    Kept for the engine.
    """

    background_htiled: Any
    """Flag for each slot: repeat the picture sideways; None while unset. Kept for the engine."""

    background_vtiled: Any
    """Flag for each slot: repeat the picture up and down; None while unset.

    Kept for the engine.
    """

    cached_bg: Any
    """Surface with the backgrounds as they were drawn last; None while unset.

    Kept for the engine: larkspur neither makes nor draws it.
    """

    cached_bg_scaled: Any
    """Surface with the scaled backgrounds; None while unset. Kept for the engine."""

    # --- Views

    view_enabled: int
    """Flag: draw the room view by view; int32, default 0.

    `Room_Draw` reads it in each frame. While it is 0, the whole room is drawn one to one, tiles
    included. Tiles are not drawn in a room with views.
    """

    numviews: int
    """Number of views; int32, default 0.

    Kept for the engine: `Room_Draw` goes by `view_visible` alone.
    """

    view_visible: Any
    """Flag for each view: draw it; a sequence of truth values, None while unset.

    `Room_Draw` reads elements 0 to 7, in this order, in each frame of a room with views. A shorter
    sequence ends the loop: an empty one draws nothing at all. While it is unset, `Room_Draw` raises
    TypeError. Never released when the room dies.
    """

    view_current: int
    """Number of the view that is being drawn or was drawn last, 0 to 7; int32, default 0.

    larkspur writes it before it draws the backgrounds of a view, and sets it to 0 in a frame
    without views once the tiles are drawn. It never reads it.
    """

    view_xview: Floatlist8
    """Left edge of each view in the room, pixels; None while unset.

    Element v belongs to view v, here and in the ten lists below. `Room_Draw` reads them anew for
    each view that it draws, and raises TypeError when one of them is no `Floatlist8`. It writes
    this one and `view_yview` for a view that follows an object (see `view_object`). A particle
    system's `py_RealDraw` gets `-view_xview[v]` and `-view_yview[v]`, cut toward zero to whole
    pixels; `draw_sprite_ext` gets an instance's own position, and has to take the view off itself.
    """

    view_yview: Floatlist8
    """Top edge of each view in the room, pixels; None while unset.

    Read, and written when the view follows an object.
    """

    view_wview: Floatlist8
    """Width in the room of what each view shows, pixels; None while unset.

    The horizontal scale is `view_wport[v] / view_wview[v]`, infinite or NaN for a width of 0.
    """

    view_hview: Floatlist8
    """Height in the room of what each view shows, pixels; None while unset.

    The vertical scale is `view_hport[v] / view_hview[v]`, infinite or NaN for a height of 0.
    """

    view_xport: Floatlist8
    """Left edge of each view's port on the target, pixels; None while unset.

    A view is drawn one to one, straight on the target, when its port begins at (0, 0) and its width
    and height in the room are those of the target; then `view_wport` and `view_hport` do not
    matter. The backgrounds of any other view are drawn on a surface of the port's size first,
    which is blitted to (`view_xport[v]`, `view_yport[v]`), cut toward zero and to 16 bits.
    """

    view_yport: Floatlist8
    """Top edge of each view's port on the target, pixels; None while unset."""

    view_wport: Floatlist8
    """Width of each view's port on the target, pixels, cut toward zero; None while unset.

    A view that is not drawn one to one raises ValueError when this or the height is negative, or
    so large that no surface of this size can be made.
    The scale goes by the number as it is, not by the cut one.
    """

    view_hport: Floatlist8
    """Height of each view's port on the target, pixels, cut toward zero; None while unset."""

    view_object: Floatlist8
    """Position in `gm6.game.objects` of the object that each view follows; None while unset.

    A negative number follows nothing. **A fresh `Floatlist8` holds zeros, so all views of a fresh
    room follow object 0: set every element to -1 first.** The number is cut toward zero, so
    -0.5 is object 0 as well.

    The view goes to the object's first instance (that of its first child with one, where it has
    none itself): its left edge to the instance's x minus `view_hborder`, or to 0 where that is
    negative. If it then ends beyond the room, it goes back until it ends with the room, to a
    negative position where it is wider than the room. The same goes for y, `view_vborder` and the
    height. The new position is written to `view_xview` and `view_yview`.

    When there is no instance, the view stays. When there is no such object, or one without
    `instances` or `children`, it stays, too, and `Room_Draw` returns with the exception pending, so
    that it comes up at some later place, which has nothing to do with it. Lines on standard error,
    from "An error has occurred 615" on, tell of it in each frame.
    """

    view_hborder: Floatlist8
    """Distance from a view's left edge to the instance that it follows, pixels; None while unset.

    The instance is kept at exactly this distance, except at the ends of the room. Half of the
    view's width keeps it in the middle.
    """

    view_vborder: Floatlist8
    """Distance from a view's top edge to the instance that it follows, pixels; None while unset."""

    initial_view_data: Any
    """The views' settings before the game changed them; None while unset.

    Kept for the engine. Never released when the room dies.
    """

    # --- Instances and tiles

    instances: Any
    """The instances that the room starts with; None while unset. Kept for the engine."""

    tiles: list[RoomTileData]
    """The room's tiles; a list, None while unset.

    `Room_Draw` reads it in a frame without views and blits the tiles in the list's order, whatever
    their depth. It raises TypeError for anything but a list (while unset, too), and for an item
    that is no `RoomTileData`.
    """

    drawn_objects: Any
    """What is drawn, in this order: instances and particle systems; None while unset.

    `Room_Draw` makes a tuple of it at the start of each frame and draws that, so the engine has to
    keep it sorted, and may change it while it is drawn. Any iterable will do, as a rule an
    `InstanceList`. What can't be iterated, None included, raises TypeError after the line "Error
    making tuple from drawn_objects" on standard error.
    """

    # --- Lists of instances by event

    all_objects: Any
    """All active instances of the room, as a rule an `InstanceList`; None while unset.

    Kept for the engine, as all of this group.
    """

    deactivated_objects: Any
    """Instances that rest; None while unset. Kept for the engine."""

    keypressed_objects: Any
    """Instances that notice a key going down; None while unset. Kept for the engine."""

    keyreleased_objects: Any
    """Instances that notice a key going up; None while unset. Kept for the engine."""

    mouse_leftpressed_objects: Any
    """Instances that notice the left mouse button going down; None while unset.

    Kept for the engine.
    """

    mouse_rightpressed_objects: Any
    """Instances that notice the right mouse button going down; None while unset.

    Kept for the engine.
    """

    collisioned_objects: Any
    """Instances with collision events; None while unset. Kept for the engine."""

    stepped_objects: Any
    """Instances with step events; None while unset. Kept for the engine."""

    moving_objects: Any
    """Instances that move; None while unset. Kept for the engine."""

    alarmed_objects: Any
    """Instances with alarms; None while unset. Kept for the engine."""

    animated_objects: Any
    """Instances whose pictures change; None while unset. Kept for the engine."""

    key_objects: Any
    """Instances that notice a key being held; None while unset. Kept for the engine."""

    mouse_objects: Any
    """Instances with other mouse events; None while unset. Kept for the engine."""

    # --- Settings of the room editor

    snapx: int
    """Horizontal step of the editor's grid, pixels; int32, default 0. Kept for the engine."""

    snapy: int
    """Vertical step of the editor's grid, pixels; int32, default 0. Kept for the engine."""

    isogrid: int
    """Flag: the editor's grid is isometric; int32, default 0. Kept for the engine."""

    tile_w: int
    """Width of the editor's tiles, pixels; int32, default 0. Kept for the engine."""

    tile_h: int
    """Height of the editor's tiles, pixels; int32, default 0. Kept for the engine."""

    tile_hsep: int
    """Gap between the editor's tiles side by side, pixels; int32, default 0.

    Kept for the engine.
    """

    tile_vsep: int
    """Gap between the editor's rows of tiles, pixels; int32, default 0. Kept for the engine."""

    tile_hoffset: int
    """Left edge of the editor's first tile, pixels; int32, default 0. Kept for the engine."""

    tile_voffset: int
    """Top edge of the editor's first tile, pixels; int32, default 0. Kept for the engine."""

    # --- Methods that call the engine

    def Compile(self, *ignored: Any) -> Any:
        """Calls `gm6.Room_Compile(room)` to compile the room's creation code.

        This and the 17 methods below call the function that `RegisterInstancesDict` found in `gm6`
        when it ran last; a function that is replaced in `gm6` afterwards is not seen before the
        next `RegisterInstancesDict`. The purpose after the colon is what an engine uses it for:
        larkspur does not ask. It calls one method itself, `DrawBackgrounds`. No method takes
        keywords.

        Args:
            ignored: Any number of arguments, none of which is passed on.

        Returns:
            What the function returns.

        Raises:
            RuntimeError: `RegisterInstancesDict` has not run yet, or found no such function.
            Exception: What the function raises passes through.

        Example:
            >>> def compile_room(room):
            ...     return "compiled %s" % room.name
            >>> gm6.Room_Compile = compile_room
            >>> room.Compile() is None  # the function of before is still called
            True
            >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
            >>> room.Compile()
            'compiled garden'
        """

    def Create(self, *ignored: Any) -> Any:
        """Calls `gm6.Room_Create(room)` to enter the room.

        Args:
            ignored: Any number of arguments, none of which is passed on.

        Returns:
            What the function returns.

        Raises:
            RuntimeError: See `Compile`.
        """

    def InitializeBackgrounds(self, *ignored: Any) -> Any:
        """Calls `gm6.Room_InitializeBackgrounds(room)` to fill `background_x` and the like.

        Args:
            ignored: Any number of arguments, none of which is passed on.

        Returns:
            What the function returns.

        Raises:
            RuntimeError: See `Compile`.
        """

    def AddInstance(self, instance: Any, *ignored: Any) -> Any:
        """Calls `gm6.Room_AddInstance(room, instance)` to enter an instance in the room's lists.

        Args:
            instance: Passed on as it is, whatever it is.
            ignored: Further arguments, none of which is passed on.

        Returns:
            What the function returns.

        Raises:
            TypeError: There is no argument.
            RuntimeError: See `Compile`.

        Example:
            >>> def add_instance(room, instance):
            ...     room.instances.append(instance)
            >>> gm6.Room_AddInstance = add_instance
            >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
            >>> room.instances = []
            >>> room.AddInstance("somebody")
            >>> room.instances
            ['somebody']
        """

    def AddDrawnInstance(self, instance: Any, *ignored: Any) -> Any:
        """Calls `gm6.Room_AddDrawnInstance(room, instance)` to enter it in `drawn_objects`.

        Args:
            instance: Passed on as it is, whatever it is.
            ignored: Further arguments, none of which is passed on.

        Returns:
            What the function returns.

        Raises:
            TypeError: There is no argument.
            RuntimeError: See `Compile`.
        """

    def ResortDrawnObjects(self, *ignored: Any) -> Any:
        """Calls `gm6.Room_ResortDrawnObjects(room)` to put `drawn_objects` in drawing order.

        Args:
            ignored: Any number of arguments, none of which is passed on.

        Returns:
            What the function returns.

        Raises:
            RuntimeError: See `Compile`.
        """

    def SetBackgroundIndex(self, slot: Any, index: Any, /) -> Any:
        """Calls `gm6.Room_SetBackgroundIndex(room, slot, index)` to show a background in a slot.

        Args:
            slot: Passed on as it is, as a rule 0 to 7.
            index: Passed on as it is, as a rule a position in `gm6.game.backgrounds`.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are not exactly two arguments.
            RuntimeError: See `Compile`.
        """

    def StepAlarms(self) -> Any:
        """Calls `gm6.Room_StepAlarms(room)` to count down the alarms and run those due.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are arguments.
            RuntimeError: See `Compile`.
        """

    def MoveInstances(self) -> Any:
        """Calls `gm6.Room_MoveInstances(room)` to move the instances by their speeds.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are arguments.
            RuntimeError: See `Compile`.
        """

    def HandleCollisions(self) -> Any:
        """Calls `gm6.Room_HandleCollisions(room)` to run the collision events.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are arguments.
            RuntimeError: See `Compile`.
        """

    def StepEvents(self) -> Any:
        """Calls `gm6.Room_StepEvents(room)` to run the step events.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are arguments.
            RuntimeError: See `Compile`.
        """

    def DrawBackgrounds(self, surface: Any, x: Any, y: Any, /) -> Any:
        """Calls `gm6.Room_DrawBackgrounds(room, surface, x, y)` to draw the backgrounds.

        `Room_Draw` fetches this method from a room without views and calls it with (surface, 0, 0),
        two ints. For a view it calls the function itself, with the same four arguments: the target,
        or the surface on which a scaled view composes its backgrounds, and the view's position
        before it followed its object, two floats.

        Args:
            surface: Passed on as it is, as a rule a Surface to draw on.
            x: Passed on as it is, as a rule the view's left edge in the room, pixels.
            y: Passed on as it is, as a rule its top edge.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are not exactly three arguments.
            RuntimeError: See `Compile`.

        Example:
            >>> def draw_backgrounds(room, surface, x, y):
            ...     calls.append((surface is screen, x, y))
            >>> calls = []
            >>> gm6.Room_DrawBackgrounds = draw_backgrounds
            >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
            >>> room.view_xview[0] = 20
            >>> larkspur.Room_Draw(room, screen)
            >>> room.view_enabled = 0
            >>> larkspur.Room_Draw(room, screen)
            >>> calls
            [(True, 20.0, 0.0), (True, 0, 0)]
        """

    def RenderBackground(self) -> Any:
        """Calls `gm6.Room_RenderBackground(room)` to draw the backgrounds ahead, in `cached_bg`.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are arguments.
            RuntimeError: See `Compile`.
        """

    def Leave(self) -> Any:
        """Calls `gm6.Room_Leave(room)` to leave the room.

        Returns:
            What the function returns.

        Raises:
            TypeError: There are arguments.
            RuntimeError: See `Compile`.
        """

    def MouseButtonDown(self, button: Any, /) -> Any:
        """Calls `gm6.Room_MouseButtonDown(room, button)`: a mouse button went down.

        Args:
            button: Passed on as it is.

        Returns:
            What the function returns.

        Raises:
            TypeError: There is not exactly one argument.
            RuntimeError: See `Compile`.
        """

    def MouseButtonUp(self, button: Any, /) -> Any:
        """Calls `gm6.Room_MouseButtonUp(room, button)`: a mouse button went up.

        Args:
            button: Passed on as it is.

        Returns:
            What the function returns.

        Raises:
            TypeError: There is not exactly one argument.
            RuntimeError: See `Compile`.
        """

    def HandleKeyrelease(self, key: Any, /) -> Any:
        """Calls `gm6.Room_HandleKeyrelease(room, key)`: a key went up.

        Args:
            key: Passed on as it is.

        Returns:
            What the function returns.

        Raises:
            TypeError: There is not exactly one argument.
            RuntimeError: See `Compile`.
        """

    def HandleKeypress(self, key: Any, /) -> Any:
        """Calls `gm6.Room_HandleKeypress(room, key)`: a key went down.

        Args:
            key: Passed on as it is.

        Returns:
            What the function returns.

        Raises:
            TypeError: There is not exactly one argument.
            RuntimeError: See `Compile`.

        Example:
            >>> def handle_keypress(room, key):
            ...     return "%s: key %d" % (room.name, key)
            >>> gm6.Room_HandleKeypress = handle_keypress
            >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
            >>> room.HandleKeypress(32)
            'garden: key 32'
        """

    # --- Conversion, comparison, pickling

    def __int__(self) -> int:
        """The room's position in `gm6.game.rooms`.

        Raises:
            SystemError: The room is not in the list.
            AttributeError: There is no `gm6.game` or `gm6.game.rooms`.
        """

    def __float__(self) -> float:
        """The room's position in `gm6.game.rooms`.

        Raises:
            SystemError: The room is not in the list.
            AttributeError: There is no `gm6.game` or `gm6.game.rooms`.
        """

    def __str__(self) -> str:
        """The room's position in `gm6.game.rooms` in decimal, "-1" when it is not in the list.

        Raises:
            AttributeError: There is no `gm6.game` or `gm6.game.rooms`.
        """

    def __cmp__(self, other: Any, /) -> int:
        """Compares the integer values of two rooms, or of a room and a background or tile.

        The interpreter calls this for the operators and `cmp()` with such an operand. It is how
        `room in rooms` and `rooms.index(room)` compare, too, after they have looked whether it is
        the same object; so search lists of rooms by position.

        Returns:
            -1, 0 or 1; -1 as well when one of them is in no list, so that `==` says False even of a
            room and itself (`cmp()` of a room and itself is 0 without a look at the list).

        Raises:
            AttributeError: There is no `gm6.game` or list in it.

        Writes:
            "XXX need to set an exception.": on standard error, when one of them has no position.

        Example:
            >>> background = larkspur.BackgroundData()
            >>> gm6.game.backgrounds.append(background)
            >>> room == background, int(room) == int(background) == 0
            (True, True)
        """

    def __reduce__(self, *ignored: Any) -> tuple[Any, ...]:
        """What pickling takes: (`GMRoom`, (), state).

        The state is a tuple of 78 pairs (name, value), in this order: `id`, `name`, `room_width`,
        `room_height`, `snapx`, `snapy`, `isogrid`, `room_speed`, `room_persistent`, `bgcolor`,
        `draw_bgcolor`, `room_caption`, `creation_code`, `bg0` to `bg7`, `view_enabled`, `numviews`,
        `view_xview`, `view_yview`, `view_object`, `view_hborder`, `view_vborder`, `view_wview`,
        `view_hview`, `view_xport`, `view_yport`, `view_wport`, `view_hport`, `background_index`,
        `instances`, `tiles`, `tile_w`, `tile_h`, `tile_hsep`, `tile_vsep`, `tile_hoffset`,
        `tile_voffset`, `created`, `all_objects`, `drawn_objects`, `deactivated_objects`,
        `keypressed_objects`, `keyreleased_objects`, `mouse_leftpressed_objects`,
        `mouse_rightpressed_objects`, `collisioned_objects`, `stepped_objects`, `moving_objects`,
        `alarmed_objects`, `animated_objects`, `key_objects`, `mouse_objects`, `cached_bg`,
        `cached_bg_scaled`, `frame_duration`, `creation_code_compiled`, `background_x`,
        `background_y`, `background_width`, `background_height`, `background_xscale`,
        `background_yscale`, `background_hspeed`, `background_vspeed`, `background_blend`,
        `background_alpha`, `background_htiled`, `background_vtiled`, `background_visible`,
        `view_visible`, `view_current`, `initial_view_data`. Unset members have the value None.

        Args:
            ignored: Any number of arguments, not looked at.

        Example:
            >>> state = room.__reduce__()[2]
            >>> len(state), state[:3]
            (78, (('id', 0), ('name', 'garden'), ('room_width', 640)))
        """

    def __setstate__(self, state: Any, /) -> None:
        """Sets the members that a state names, one after the other.

        A pair that can't be set, as its name is no member's or its value of a wrong type, is passed
        over without a word, so that a state from another version of the engine can be restored.
        Members that the state does not name stay as they are.

        Args:
            state: A tuple or list of pairs (name, value), each a tuple or list.

        Raises:
            TypeError: There is no state, it is neither tuple nor list, or has an item that is no
                pair; what stands before that item has been set.

        Example:
            >>> other = larkspur.GMRoom()
            >>> other.__setstate__([("name", "cellar"), ("smell", "musty"), ("room_width", 320)])
            >>> other.name, other.room_width
            ('cellar', 320)
        """

    if TYPE_CHECKING:  # what the interpreter makes of __cmp__, in the words of type checkers
        __hash__: ClassVar[None]  # type: ignore[assignment]

        def __lt__(self, other: Any, /) -> bool: ...
        def __le__(self, other: Any, /) -> bool: ...
        def __gt__(self, other: Any, /) -> bool: ...
        def __ge__(self, other: Any, /) -> bool: ...

class RoomTileData:
    """One tile of a room: a rectangle of a background, and where it is drawn.

    The engine makes tiles by calling the type without arguments (arguments are ignored), fills in
    their members and puts them into the list `GMRoom.tiles`. In a frame without views `Room_Draw`
    blits each from the `surf` of its background, in the list's order, one to one and clipped by the
    Surfaces. Tiles are not drawn in rooms with views.

    **Members.** All members are signed 32-bit integers that start at 0 and can't be deleted; what
    they take is told with the number members of `GMRoom`. The type can't be subclassed; its objects
    take no further attributes and no weak references.

    **As a number** a tile is its `id`: `int(tile)`, `float(tile)`, `"%d" % tile` and `str(tile)`.
    `repr()` shows the address. A tile is always true, and has no hash. Tiles compare with each
    other, with rooms and with backgrounds by these numbers alone: two fresh tiles are equal, and so
    are all with one id, whatever else they hold. Comparing with a sprite goes by the numbers, too,
    comparing with a plain number does not: `tile == 12` is always False. Compare `tile.id`.

    **Pickling.** The pickled state is a tuple of ten ints: `x`, `y`, `background_idx`, `tilex`,
    `tiley`, `w`, `h`, `layer_depth`, `id`, `locked`. Every protocol will do. A tile holds no
    references.

    Example:
        >>> background = larkspur.BackgroundData()
        >>> background.surf = pygame.Surface((32, 32), 0, screen)
        >>> shown = background.surf.fill((0, 160, 0), (16, 0, 16, 16))
        >>> gm6.game.backgrounds = [background]
        >>> tile = larkspur.RoomTileData()
        >>> tile.background_idx = int(background)
        >>> tile.tilex, tile.tiley, tile.w, tile.h = 16, 0, 16, 16
        >>> tile.x, tile.y = 8, 8
        >>> room = larkspur.GMRoom()
        >>> room.drawn_objects, room.tiles = [], [tile]
        >>> shown = screen.fill((0, 0, 0))
        >>> larkspur.Room_Draw(room, screen)
        >>> [tuple(screen.get_at((x, 8)))[:3] for x in (7, 8, 23, 24)]
        [(0, 0, 0), (0, 160, 0), (0, 160, 0), (0, 0, 0)]
    """

    x: int
    """Left edge in the room, pixels; int32, default 0. Drawing takes the low 16 bits, signed."""

    y: int
    """Top edge in the room, pixels; int32, default 0. Drawing takes the low 16 bits, signed."""

    id: int
    """The tile's number; int32, default 0. It is the tile's integer value."""

    background_idx: int
    """Position in `gmapi.game.backgrounds` of the background; int32, default 0.

    It is `gmapi.game` here and `gm6.game` everywhere else; an engine has the same object in both.
    `Room_Draw` raises IndexError for a negative number and one without a background, and TypeError
    for an element that is no `BackgroundData` or has no Surface in `surf`. A `BackgroundData` that
    is assigned here gives its position, -1 while it is in no list.
    """

    tilex: int
    """Left edge of the rectangle in the background, pixels; int32, default 0.

    Drawing takes the low 16 bits, signed.
    """

    tiley: int
    """Top edge of the rectangle in the background, pixels; int32, default 0.

    Drawing takes the low 16 bits, signed.
    """

    w: int
    """Width of the rectangle, pixels; int32, default 0, which draws nothing.

    Drawing takes the low 16 bits, unsigned: -1 stands for 65535, that is for all there is.
    """

    h: int
    """Height of the rectangle, pixels; int32, default 0, which draws nothing.

    Drawing takes the low 16 bits, unsigned.
    """

    layer_depth: int
    """Depth of the tile's layer; int32, default 0.

    Kept for the engine, which has to sort `GMRoom.tiles` by it: larkspur does not look at it.
    """

    locked: int
    """Flag: the room editor must not change the tile; int32, default 0. Kept for the engine."""

    # --- Conversion, comparison, pickling

    def __int__(self) -> int:
        """The tile's `id`.

        Example:
            >>> tile.id = 12
            >>> int(tile), float(tile), str(tile)
            (12, 12.0, '12')
        """

    def __float__(self) -> float:
        """The tile's `id`."""

    def __str__(self) -> str:
        """The tile's `id` in decimal."""

    def __cmp__(self, other: Any, /) -> int:
        """Compares the integer values of two tiles, or of a tile and a room or background.

        The interpreter calls this for the operators and `cmp()` with such an operand.

        Returns:
            -1, 0 or 1; -1 as well when the other is in no list and so has no integer value.

        Writes:
            "XXX need to set an exception.": on standard error, when the other has no integer value.

        Example:
            >>> same, other = larkspur.RoomTileData(), larkspur.RoomTileData()
            >>> same.id, other.id = 12, 13
            >>> tile == same, tile < other, tile == 12
            (True, True, False)
        """

    def __reduce__(self, *ignored: Any) -> tuple[Any, ...]:
        """What pickling takes: (`RoomTileData`, (), state).

        Args:
            ignored: Any number of arguments, not looked at.

        Returns:
            The state has the ten members in the order `x`, `y`, `background_idx`, `tilex`, `tiley`,
            `w`, `h`, `layer_depth`, `id`, `locked`.

        Example:
            >>> tile.__reduce__()[1:]
            ((), (8, 8, 0, 16, 0, 16, 16, 0, 12, 0))
        """

    def __setstate__(self, state: Any, /) -> None:
        """Sets the ten members from a state.

        Args:
            state: A tuple or list of at least ten numbers in the order of `__reduce__`; each is cut
                to 32 bits without a warning, and further items are not looked at.

        Raises:
            TypeError: There is no state, it is neither tuple nor list, or an item is no number.
            IndexError: The state is too short.
            OverflowError: A number does not fit 64 bits.

            The members before the failing item have their new values.
        """

    if TYPE_CHECKING:  # what the interpreter makes of __cmp__, in the words of type checkers
        __hash__: ClassVar[None]  # type: ignore[assignment]

        def __lt__(self, other: Any, /) -> bool: ...
        def __le__(self, other: Any, /) -> bool: ...
        def __gt__(self, other: Any, /) -> bool: ...
        def __ge__(self, other: Any, /) -> bool: ...

class Floatlist8:
    """Eight numbers, one for each view of a room, that behave like the first of them.

    The engine makes one for each of the eleven members of a `GMRoom` that hold this type,
    `view_xview` and the like, by calling the type without arguments (arguments are ignored: a list
    of numbers given here is not taken over). `Room_Draw` reads element v when it draws view v, and
    writes `view_xview` and `view_yview` of views that follow an object.

    **A fresh list holds zeros.** In `view_object` that is the game's first object: view 0 to 7 of a
    fresh room follow it until every element is set to -1. A view that is drawn needs its size in
    `view_wview` and `view_hview`, and, unless it is drawn one to one, in `view_wport` and
    `view_hport`, too.

    **Elements.** It has a length of 8 and elements 0 to 7 (-8 to -1 from the end), each a double;
    assigning takes whatever `float()` takes. It can be iterated, so `list()`, `sum()`, `max()` and
    `in` work. There are no slices, and elements can't be deleted. It has no other list methods. The
    type can't be subclassed; its objects take no attributes and no weak references.

    **As a number** it is element 0, and arithmetic concerns element 0 alone. `+`, `-`, `*` and `/`
    give a new `Floatlist8` with the result in element 0 and the other seven elements copied.
    **Element 0 is the left operand even where the list stands on the right**: `5 - values` holds
    `values[0] - 5`. The other operand may be all that `float()` takes, another `Floatlist8` (its
    element 0) and a `GMVar` among them; but a `GMVar` on the left of `*` gives a plain float.
    Dividing by 0 gives infinity or NaN and raises nothing. `values -= x` changes the list itself;
    `+=`, `*=` and `/=` make a new one: `values += x` gives it to the name alone, and
    `room.view_xview += x` to the room. There is no `//`, `%`, `**`, negation or `abs()`, and no
    division after `from __future__ import division`.

    **Comparison.** Two lists compare by their elements 0 alone: lists that differ elsewhere are
    equal, and a NaN equals everything. A list and a plain number do not compare: `values == 2.0` is
    always False, and which one is less means nothing. Compare `values[0]`. A list is always true
    and has no hash. `repr()` shows the address.

    **As a text.** `str()` gives a whole element 0 in decimal, "-2147483648" for one outside of
    -2147483648..2147483647, and the text "%f", without any number, for one with a fraction or NaN.
    Don't use it for output: take `"%g" % values[0]`.

    **Pickling.** The pickled state is a tuple of the eight floats; every protocol will do. A list
    holds no references.

    Example:
        >>> xview = larkspur.Floatlist8()
        >>> list(xview)
        [0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0]
        >>> xview[0], xview[7] = 1.5, 64
        >>> len(xview), xview[0], xview[-1]
        (8, 1.5, 64.0)

        A room whose lists are all fresh follows object 0:

        >>> class Walker(object):
        ...     x, y = 200.0, 100.0
        >>> class WalkerKind(object):
        ...     instances, children = [Walker()], []
        >>> gm6.game.objects.append(WalkerKind())
        >>> room = larkspur.GMRoom()
        >>> room.room_width, room.room_height = 640, 480
        >>> room.drawn_objects, room.view_enabled, room.view_visible = [], 1, [1]
        >>> for member in (
        ...     "view_xview", "view_yview", "view_object", "view_hborder", "view_vborder",
        ...     "view_wview", "view_hview", "view_xport", "view_yport", "view_wport", "view_hport",
        ... ):
        ...     setattr(room, member, larkspur.Floatlist8())
        >>> room.view_wview[0], room.view_hview[0] = screen.get_size()
        >>> larkspur.Room_Draw(room, screen)
        >>> room.view_xview[0], room.view_yview[0]
        (200.0, 100.0)
        >>> for view in range(8):
        ...     room.view_object[view] = -1
        >>> room.view_xview[0] = room.view_yview[0] = 0
        >>> larkspur.Room_Draw(room, screen)
        >>> room.view_xview[0], room.view_yview[0]
        (0.0, 0.0)
    """

    # --- Elements

    def __len__(self) -> int:
        """Always 8."""

    def __getitem__(self, index: int, /) -> float:
        """Element 0 to 7, or -8 to -1 from the end.

        Args:
            index: An int or long; floats and `GMVar`s have to go through `int()`.

        Raises:
            SystemError: The index is out of range ("error return without exception set").
            IndexError: It does not even fit 64 bits.
            TypeError: The index is no int or long; slices, too.
        """

    def __setitem__(self, index: int, value: Any, /) -> None:
        """Sets element 0 to 7, or -8 to -1 from the end.

        Args:
            index: As for reading.
            value: What `float()` takes: numbers, `GMVar`s, texts such as "3.5".

        Raises:
            SystemError: The index is out of range.
            IndexError: It does not even fit 64 bits.
            TypeError: The index is no int or long, or the value is nothing that `float()` takes.
            ValueError: The value is a text without a number.
            OverflowError: The value is a long that is too large for a float.

        Example:
            >>> xview[1] = larkspur.GMVar(7)
            >>> xview[1]
            7.0
            >>> xview[8] = 1
            Traceback (most recent call last):
            SystemError: error return without exception set
        """

    def __delitem__(self, index: int, /) -> None:
        """Not supported.

        Raises:
            SystemError: Always, for an index in range ("null argument to internal routine") or out
                of it.
            IndexError: The index does not fit 64 bits.
            TypeError: The index is no int or long.
        """

    # --- Arithmetic with element 0

    def __add__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 plus `other`.

        Args:
            other: What `float()` takes.

        Raises:
            TypeError: `other` is nothing that `float()` takes.
            ValueError: `other` is a text without a number.

        Example:
            >>> list(xview + 1)
            [2.5, 7.0, 0.0, 0.0, 0.0, 0.0, 0.0, 64.0]
        """

    def __radd__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 plus `other`, as `__add__`."""

    def __sub__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 minus `other`; arguments and exceptions as of `__add__`."""

    def __rsub__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 minus `other`, although `other` stands on the left.

        Example:
            >>> (5 - xview)[0]
            -3.5
            >>> 5 - xview[0]
            3.5
        """

    def __mul__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 times `other`; arguments and exceptions as of `__add__`.

        Example:
            >>> list(xview * xview)
            [2.25, 7.0, 0.0, 0.0, 0.0, 0.0, 0.0, 64.0]
        """

    def __rmul__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 times `other`, as `__mul__`."""

    def __div__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 divided by `other`, never cut to a whole number.

        Arguments and exceptions as of `__add__`. Python 2's `/` calls this, unless the module says
        `from __future__ import division`.

        Returns:
            The new list; element 0 is infinite or NaN where `other` is 0.
        """

    def __rdiv__(self, other: Any, /) -> Floatlist8:
        """A new list with element 0 divided by `other`, although `other` stands on the left.

        Example:
            >>> (3 / xview)[0]
            0.5
        """

    def __isub__(self, other: Any, /) -> Floatlist8:
        """Subtracts `other` from element 0 of the list itself.

        The only operation in place: `+=`, `*=` and `/=` make a new list.

        Args:
            other: What `float()` takes.

        Returns:
            The list itself.

        Raises:
            TypeError: `other` is nothing that `float()` takes; nothing has changed.
            ValueError: It is a text without a number; nothing has changed.

        Example:
            >>> same = xview
            >>> xview -= 0.5
            >>> same is xview, xview[0]
            (True, 1.0)
            >>> xview += 0.5
            >>> same is xview, same[0], xview[0]
            (False, 1.0, 1.5)
        """

    # --- Conversion, comparison, pickling

    def __int__(self) -> int:
        """Element 0 cut toward zero, -2147483648 where that does not fit 32 bits or is NaN.

        Example:
            >>> xview[0] = -2.7
            >>> int(xview), float(xview), str(xview)
            (-2, -2.7, '%f')
            >>> xview[0] = 3
            >>> str(xview)
            '3'
        """

    def __float__(self) -> float:
        """Element 0."""

    def __str__(self) -> str:
        """Element 0 in decimal when it is whole, otherwise the text "%f"."""

    def __cmp__(self, other: Floatlist8, /) -> int:
        """Compares the elements 0 of two lists.

        The interpreter calls this for the operators and `cmp()` when both sides are lists.

        Returns:
            -1, 0 or 1; 0 as well when one of them is NaN.

        Example:
            >>> a, b = larkspur.Floatlist8(), larkspur.Floatlist8()
            >>> b[5] = 99
            >>> a == b, list(a) == list(b)
            (True, False)
            >>> a == 0, a[0] == 0
            (False, True)
        """

    def __reduce__(self, *ignored: Any) -> tuple[Any, ...]:
        """What pickling takes: (`Floatlist8`, (), state).

        Args:
            ignored: Any number of arguments, not looked at.

        Returns:
            The state is a tuple of the eight elements.
        """

    def __setstate__(self, state: Any, /) -> None:
        """Sets all elements at once.

        Args:
            state: A tuple or list of at least eight numbers; further items are not looked at, and
                an item that is no number is stored as -1.0.

        Raises:
            TypeError: There is no state, or it is neither tuple nor list.
            IndexError: The state is too short; the elements before its end have been set.

        Example:
            >>> xview.__setstate__((0, 10, 20, 30, 40, 50, 60, 70))
            >>> xview[7]
            70.0
        """

    if TYPE_CHECKING:  # what type checkers ask of Python 3, and Python 2 finds without
        __hash__: ClassVar[None]  # type: ignore[assignment]

        def __iter__(self) -> Iterator[float]: ...
        def __truediv__(self, other: Any, /) -> Floatlist8: ...
        def __rtruediv__(self, other: Any, /) -> Floatlist8: ...
        def __lt__(self, other: Any, /) -> bool: ...
        def __le__(self, other: Any, /) -> bool: ...
        def __gt__(self, other: Any, /) -> bool: ...
        def __ge__(self, other: Any, /) -> bool: ...

class GMSprite:
    """A sprite of the game: its pictures, its size and its bounding box.

    There are three ways to a sprite with pictures:

    - The engine calls the type without arguments (arguments are ignored), sets the members and
      fills `subimages` with Surfaces, one for each frame of the animation.
    - `GMSprite_from_surface(surface, name)` makes a sprite with one picture, a copy of the Surface
      in the display's format, and sets the size and the bounding box.
    - Unpickling (and copying with the module `copy`) has `gm6.SpriteData_load_images` load the
      pictures again, and makes the new sprite the attribute of `gmapi` under its name, in the place
      of the one that it was made from: see `__setstate__`.

    The engine appends the sprite to `gm6.game.sprites` and draws it itself. larkspur reads a sprite
    in two places: `sprite_scalecache_add`, for native callers, which takes pictures from
    `subimages` and stores transformed copies in `scalecache`; and pickling.

    **Members.** Number members are signed 32-bit integers that start at 0 and can't be deleted;
    what they take is told with those of `GMRoom`. The three object members take any object, and can
    be deleted; then reading or deleting one raises AttributeError. The type can't be subclassed;
    its objects take no further attributes and no weak references.

    **As a number** a sprite is its position in `gm6.game.sprites`, found by identity:
    `int(sprite)`, `float(sprite)`, `"%d" % sprite` and `str(sprite)`. For a sprite that is not in
    the list they raise SystemError, `str()` and `print` too, unlike those of backgrounds and rooms,
    and `"%d" % sprite` raises TypeError. `repr()` shows the address. A sprite is always true. It
    has no hash, so it can't be a dictionary's key or in a set: use `id(sprite)` or the position.

    **Comparison.** Sprites compare by their numbers with everything that `int()` takes, plain
    numbers, rooms and texts of digits among it. They raise otherwise: `sprite == None` is a
    TypeError, so ask `sprite is None`. A sprite in no list raises SystemError whatever it is
    compared with. That is how `sprite in sprites` and `sprites.index(sprite)` compare, too, after
    they have looked whether it is the same object.

    **Pickling.** The pickled state is a tuple of fifteen ints, the name and the number of pictures;
    the pictures are not in it. Every protocol will do. **Pickling takes the sprite's `scalecache`
    away**, copying with the module `copy` as well: reading it raises AttributeError until a
    dictionary is assigned again.

    **Ownership.** A sprite owns what its three object members hold, and takes part in garbage
    collection. A name that came from a pickled state is never freed.

    Example:
        >>> sprite = larkspur.GMSprite()
        >>> sprite.name, sprite.subimages, sprite.scalecache
        (None, [], {})
        >>> sprite.name = "spr_torch"
        >>> sprite.subimages = [pygame.Surface((16, 24), 0, screen) for frame in range(4)]
        >>> sprite.w, sprite.h = sprite.subimages[0].get_size()
        >>> sprite.rightbound, sprite.bottombound = sprite.w, sprite.h
        >>> sprite.xorigin, sprite.yorigin = 8, 24
        >>> gm6.game.sprites.append(sprite)
        >>> int(sprite), float(sprite), str(sprite)
        (0, 0.0, '0')
        >>> larkspur.GMSprite_from_surface(sprite.subimages[0], "spr_still").w
        16
    """

    # --- Size and bounding box

    w: int
    """Width of the unscaled sprite, pixels; int32, default 0.

    `GMSprite_from_surface` sets it. Otherwise kept for the engine, as all numbers of a sprite.
    """

    h: int
    """Height of the unscaled sprite, pixels; int32, default 0. `GMSprite_from_surface` sets it."""

    xorigin: int
    """x of the point that comes to lie at an instance's position, pixels; int32, default 0.

    Kept for the engine.
    """

    yorigin: int
    """y of the point that comes to lie at an instance's position, pixels; int32, default 0.

    Kept for the engine.
    """

    leftbound: int
    """Left end of the bounding box, pixels; int32, default 0. Kept for the engine."""

    rightbound: int
    """Right end of the bounding box, pixels; int32, default 0.

    `GMSprite_from_surface` sets it to the width, one more than the last column's number.
    """

    topbound: int
    """Upper end of the bounding box, pixels; int32, default 0. Kept for the engine."""

    bottombound: int
    """Lower end of the bounding box, pixels; int32, default 0.

    `GMSprite_from_surface` sets it to the height, one more than the last row's number.
    """

    bounding_box_type: int
    """Kind of bounding box, in the engine's numbering; int32, default 0. Kept for the engine."""

    precise_collision_checking: int
    """Flag: collisions go by the pixels; int32, default 0. Kept for the engine."""

    # --- Settings of the pictures

    transparent: int
    """Flag: the pictures have a transparent colour; int32, default 0. Kept for the engine."""

    smooth_edges: int
    """Flag: the pictures' edges are smoothed; int32, default 0. Kept for the engine."""

    use_video_memory: int
    """Flag: the pictures belong in video memory; int32, default 0. Kept for the engine."""

    load_only_on_use: int
    """Flag: load the pictures at their first use; int32, default 0. Kept for the engine."""

    preload_texture: int
    """Flag: load the pictures early; int32, default 0. Kept for the engine."""

    # --- Name and pictures

    name: Any
    """The sprite's name, as a rule a str; default None, AttributeError once deleted.

    Unpickling makes the sprite an attribute of `gmapi` under this name.
    """

    subimages: list[pygame.Surface]
    """The pictures, one for each frame; default a new empty list, AttributeError once deleted.

    `sprite_scalecache_add` takes picture i from it, from any sequence; pickling counts its items
    and raises TypeError for anything but a list.
    """

    scalecache: dict[Any, pygame.Surface]
    """Transformed copies of the pictures by keys; default a new empty dictionary.

    `sprite_scalecache_add` stores its copies here under the key that it is given, in the place of
    an entry with the same key; where there is nothing to transform, the picture itself. It does not
    look for entries: that is its caller's part. The engine may keep its own here just as well.
    **Nothing ever removes an entry**: the engine has to empty the dictionary, as soon as there are
    too many, when `subimages` changes and when the display gets another format.

    Reading it raises AttributeError once it is deleted or the sprite has been pickled or copied.
    Meanwhile, and while it is no dictionary, `sprite_scalecache_add` fails, with the line "Error
    storing item in scalecache." on standard error.
    """

    # --- Conversion and comparison

    def __int__(self) -> int:
        """The sprite's position in `gm6.game.sprites`.

        Raises:
            SystemError: The sprite is not in the list ("NULL result without error in ...").
            AttributeError: There is no `gm6.game` or `gm6.game.sprites`.
        """

    def __float__(self) -> float:
        """The sprite's position in `gm6.game.sprites`.

        Raises:
            SystemError: The sprite is not in the list.
            AttributeError: There is no `gm6.game` or `gm6.game.sprites`.
        """

    def __str__(self) -> str:
        """The sprite's position in `gm6.game.sprites` in decimal.

        Raises:
            SystemError: The sprite is not in the list.
            AttributeError: There is no `gm6.game` or `gm6.game.sprites`.

        Example:
            >>> str(larkspur.GMSprite())
            Traceback (most recent call last):
            SystemError: NULL result without error in PyObject_Call
        """

    def __eq__(self, other: object, /) -> bool:
        """Compares the integer values, both cut to their low 32 bits.

        This and the five below differ in the operator only. `cmp()` goes by them, too.

        Args:
            other: What `int()` takes; floats lose their fraction, texts are read as numbers.

        Raises:
            SystemError: One of the two is in no list.
            TypeError: `other` has no integer value, as None.
            ValueError: `other` is a text that is no whole number, or NaN.
            OverflowError: `other` does not fit 64 bits.

        Example:
            >>> sprite == 0, 0 == sprite, sprite < 1, sprite == 0.5
            (True, True, True, True)
            >>> sprite == None
            Traceback (most recent call last):
            TypeError: int() argument must be a string or a number, not 'NoneType'
        """

    def __ne__(self, other: object, /) -> bool:
        """Whether the integer values differ, as `__eq__`."""

    def __lt__(self, other: Any, /) -> bool:
        """Whether the sprite's integer value is the smaller one, as `__eq__`."""

    def __le__(self, other: Any, /) -> bool:
        """Whether the sprite's integer value is not the greater one, as `__eq__`."""

    def __gt__(self, other: Any, /) -> bool:
        """Whether the sprite's integer value is the greater one, as `__eq__`."""

    def __ge__(self, other: Any, /) -> bool:
        """Whether the sprite's integer value is not the smaller one, as `__eq__`."""

    # --- Pickling

    def __reduce__(self, *ignored: Any) -> tuple[Any, ...]:
        """What pickling takes: (`GMSprite`, (), state). Takes `scalecache` away, even if it raises.

        The state is a tuple of `w`, `h`, `leftbound`, `rightbound`, `topbound`, `bottombound`,
        `xorigin`, `yorigin`, `transparent`, `precise_collision_checking`, `bounding_box_type`,
        `smooth_edges`, `preload_texture`, `use_video_memory`, `load_only_on_use`, `name` and the
        number of pictures.

        Args:
            ignored: Any number of arguments, not looked at.

        Raises:
            TypeError: `subimages` is no list.
            AttributeError: `name` or `subimages` was deleted.

        Example:
            >>> sprite.__reduce__()[2]
            (16, 24, 0, 16, 0, 24, 8, 24, 0, 0, 0, 0, 0, 0, 0, 'spr_torch', 4)
            >>> sprite.scalecache
            Traceback (most recent call last):
            AttributeError: scalecache
            >>> sprite.scalecache = {}
        """

    def __setstate__(self, state: Any, /) -> None:
        """Restores a sprite from a state and has the engine load its pictures.

        In this order: the fifteen numbers and the name are set, `subimages` becomes a new empty
        list and `scalecache` a new empty dictionary; `gm6.SpriteData_load_images(sprite, name,
        count)` is called, which is to fill `subimages`; and the sprite becomes an attribute of
        `gmapi` under its name, whatever stood there before. It is not put into `gm6.game.sprites`.

        Args:
            state: A tuple or list as `__reduce__` gives it; numbers are cut to 32 bits without a
                warning, and further items are not looked at.

        Raises:
            TypeError: There is no state, it is neither tuple nor list, an item is no number, or the
                name can't be hashed.
            IndexError: The state is too short.
            OverflowError: A number does not fit 64 bits.
            RuntimeError: `RegisterInstancesDict` has not run, or found no such function.
            Exception: What the function raises passes through; the sprite is not published.

            Whatever was set before the failure stays.

        Writes:
            "An exception occurred!": on standard error, when the function raises or is missing.
            "Retnull": on standard output, when the sprite can't be published under its name.

        Example:
            >>> def load_images(sprite, name, count):
            ...     for number in range(count):
            ...         sprite.subimages.append(pygame.Surface((sprite.w, sprite.h), 0, screen))
            >>> gm6.SpriteData_load_images = load_images
            >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
            >>> import pickle
            >>> restored = pickle.loads(pickle.dumps(sprite))
            >>> restored.name, len(restored.subimages), gmapi.spr_torch is restored
            ('spr_torch', 4, True)
        """

    if TYPE_CHECKING:
        __hash__: ClassVar[None]  # type: ignore[assignment]

class BackgroundData:
    """A background of the game: its picture and its size.

    The engine makes one by calling the type without arguments (arguments are ignored), sets its
    members and appends it to `gm6.game.backgrounds`; `gmapi.game.backgrounds`, where `Room_Draw`
    looks for the backgrounds of tiles, has to be the same list. Unpickling (and copying with the
    module `copy`) has `gm6.BackgroundData_load_images` load the picture again, and makes the new
    background the attribute of `gmapi` under its name: see `__setstate__`.

    larkspur reads one member, `surf`, when it draws tiles. The backgrounds themselves are drawn by
    the engine, in `gm6.Room_DrawBackgrounds`.

    **Members.** Number members are signed 32-bit integers that start at 0 and can't be deleted;
    what they take is told with those of `GMRoom`. The three object members take any object, and can
    be deleted; then reading or deleting one raises AttributeError. The type can't be subclassed;
    its objects take no further attributes and no weak references.

    **As a number** a background is its position in `gm6.game.backgrounds`, found by identity:
    `int(background)`, `float(background)`, `"%d" % background` and `str(background)`. One that is
    not in the list has none: `int()` and `float()` raise SystemError, `"%d" % background` raises
    TypeError, and `str()` gives "-1". `repr()` shows the address. A background is always true. It
    has no hash, so it can't be a dictionary's key or in a set.

    **Comparison.** Backgrounds, rooms and tiles compare with each other by these numbers alone, so
    a background equals the room at the same position. Comparing with a sprite goes by the numbers,
    too, and raises where one of the two has none. Comparing with a plain number does not:
    `background == 0` is always False. Compare `int(background)`.

    **Pickling.** The pickled state is the tuple (`name`, `transparent`); neither picture nor size
    is in it. Every protocol will do.

    **Ownership.** A background owns what its three object members hold, and takes part in garbage
    collection. A name that came from a pickled state is never freed.

    Example:
        >>> background = larkspur.BackgroundData()
        >>> background.name, background.surf, background.scaled_data_cache
        (None, None, {})
        >>> str(background)
        '-1'
        >>> background.name = "bg_sky"
        >>> background.surf = pygame.Surface((32, 20), 0, screen)
        >>> background.w, background.h = background.surf.get_size()
        >>> gm6.game.backgrounds = [background]
        >>> int(background), float(background), str(background)
        (0, 0.0, '0')
    """

    name: Any
    """The background's name, as a rule a str; default None, AttributeError once deleted.

    Unpickling makes the background an attribute of `gmapi` under this name.
    """

    surf: pygame.Surface
    """The picture; default None, AttributeError once deleted.

    `Room_Draw` blits tiles from it, and raises TypeError for anything but a Surface, None and a
    deleted one included. Unpickling sets it to None before the engine's function is called.
    """

    scaled_data_cache: dict[Any, Any]
    """Scaled pictures by keys; default a new empty dictionary, AttributeError once deleted.

    Kept for the engine, which has to empty it, too. It is not pickled, and pickling leaves it in
    place; unpickling sets a new empty dictionary.
    """

    w: int
    """Width in pixels; int32, default 0. Kept for the engine; not pickled."""

    h: int
    """Height in pixels; int32, default 0. Kept for the engine; not pickled."""

    transparent: int
    """Flag: the picture has a transparent colour; int32, default 0. Kept for the engine."""

    # --- Conversion, comparison, pickling

    def __int__(self) -> int:
        """The background's position in `gm6.game.backgrounds`.

        Raises:
            SystemError: The background is not in the list.
            AttributeError: There is no `gm6.game` or `gm6.game.backgrounds`.
        """

    def __float__(self) -> float:
        """The background's position in `gm6.game.backgrounds`.

        Raises:
            SystemError: The background is not in the list.
            AttributeError: There is no `gm6.game` or `gm6.game.backgrounds`.
        """

    def __str__(self) -> str:
        """The background's position in `gm6.game.backgrounds`, "-1" when it is not in the list.

        Raises:
            AttributeError: There is no `gm6.game` or `gm6.game.backgrounds`.
        """

    def __cmp__(self, other: Any, /) -> int:
        """Compares the integer values of two backgrounds, or of a background and a room or tile.

        The interpreter calls this for the operators and `cmp()` with such an operand. It is how
        `background in backgrounds` and `backgrounds.index(background)` compare, too, after they
        have looked whether it is the same object.

        Returns:
            -1, 0 or 1; -1 as well when one of them is in no list, so that `==` says False even of a
            background and itself.

        Raises:
            AttributeError: There is no `gm6.game` or list in it.

        Writes:
            "XXX need to set an exception.": on standard error, when one of them has no position.

        Example:
            >>> tile = larkspur.RoomTileData()
            >>> background == tile, background == 0, int(background) == 0
            (True, False, True)
        """

    def __reduce__(self, *ignored: Any) -> tuple[Any, ...]:
        """What pickling takes: (`BackgroundData`, (), (`name`, `transparent`)).

        Args:
            ignored: Any number of arguments, not looked at.

        Raises:
            AttributeError: `name` was deleted.

        Example:
            >>> background.__reduce__()[2]
            ('bg_sky', 0)
        """

    def __setstate__(self, state: Any, /) -> None:
        """Restores a background from a state and has the engine load its picture.

        In this order: `transparent` and `name` are set, `scaled_data_cache` becomes a new empty
        dictionary and `surf` None; `gm6.BackgroundData_load_images(background)` is called, which is
        to set `surf`, `w` and `h`; and the background becomes an attribute of `gmapi` under its
        name, whatever stood there before. It is not put into `gm6.game.backgrounds`.

        Args:
            state: A tuple or list of a name and a number, which is cut to 32 bits without a
                warning; further items are not looked at.

        Raises:
            TypeError: There is no state, it is neither tuple nor list, item 1 is no number, or the
                name can't be hashed.
            IndexError: The state is too short.
            OverflowError: The number does not fit 64 bits.
            RuntimeError: `RegisterInstancesDict` has not run, or found no such function.
            Exception: What the function raises passes through.
            With these two the background is not published, and it is never freed.

            Whatever was set before the failure stays.

        Writes:
            "An exception occurred!": on standard error, when the function raises or is missing.
            "Retnull": on standard output, when the background can't be published under its name.

        Example:
            >>> def load_background(background):
            ...     background.surf = pygame.Surface((32, 20), 0, screen)
            ...     background.w, background.h = background.surf.get_size()
            >>> gm6.BackgroundData_load_images = load_background
            >>> larkspur.RegisterInstancesDict(instances, Thing, Thing, Thing)
            >>> restored = larkspur.BackgroundData()
            >>> restored.__setstate__(("bg_sea", 1))
            >>> restored.w, restored.transparent, gmapi.bg_sea is restored
            (32, 1, True)
        """

    if TYPE_CHECKING:  # what the interpreter makes of __cmp__, in the words of type checkers
        __hash__: ClassVar[None]  # type: ignore[assignment]

        def __lt__(self, other: Any, /) -> bool: ...
        def __le__(self, other: Any, /) -> bool: ...
        def __gt__(self, other: Any, /) -> bool: ...
        def __ge__(self, other: Any, /) -> bool: ...

class InstanceList(list[Any]):
    """A list of instances that also takes an instance's id where one instance is added.

    A subtype of `list`, with a list's constructor and all of its methods. `append`, `insert`,
    `remove` and `list[i] = value` convert what they are given to an instance first:

    1. A `GMVar` stands for the value that it holds.
    2. A value of exactly one of the three types given to `RegisterInstancesDict` is the instance
       itself. An instance of a subtype is not.
    3. Of anything else `int()` is taken, and the instance is looked up under this id in the
       dictionary given to `RegisterInstancesDict`. So 100001, 100001.9, "100001" and an object
       whose `__int__()` gives 100001 are all the same id.

    **What is the list's own.** Everything else is the list's own and converts nothing: the
    constructor, `extend`, `+=`, slices, unpickling, and `in`, `index` and `count`, so that
    `100001 in found` is False although the instance with this id is there. `found + other`,
    `found * 2` and slices give a plain list. Lists compare as lists do, and have no hash. The type
    can't be subclassed; its objects take no attributes and no weak references.

    **References.** The list owns its items, but **each of these four operations releases or keeps a
    reference too many in some cases**. It stays so, as engines were written for it. An object may
    then be freed while somebody else still believes to hold it, and the process crashes some time
    later; that somebody may be the code, for a number or text that is written in it. Never is an
    object's very last reference released that way, nor any of what the interpreter shares, such as
    the ints from -5 to 256. What each does:

    - `append(id)` stores the instance without a reference of its own.
    - `insert(i, id)` releases a reference to the id object, and `insert(i, variable)` one to the
      `GMVar`. The instance out of a variable that holds it as itself gains one for good.
    - `remove(id)` releases a reference more than the list held, also where it raises as the
      instance is not in the list.
    - `list[i] = instance` keeps a reference too many, so that the instance is never freed.

    A variable counts as what it holds in `append`, `remove` and assignment. The balanced ways, to
    which an engine should keep:

    - `append`, `insert` and `remove` with the instance itself.
    - `list[i] = id`.
    - For a list from ids, the constructor or `extend` with the ids, then assign each to its own
      place (see the example).

    An engine that has to use the others needs a reference to spare for each use.

    **Pickling.** The pickled state is a tuple of the items, that is of the instances, which have to
    be picklable. `copy.copy()` gives an `InstanceList` with the same instances.

    Example:
        >>> class Instance(object):
        ...     def __init__(self, number):
        ...         self.id = number
        ...         instances[number] = self
        >>> larkspur.RegisterInstancesDict(instances, Instance, Instance, Instance)
        >>> torch, lamp = Instance(100001), Instance(100002)
        >>> found = larkspur.InstanceList()
        >>> found.append(torch)
        >>> found.insert(0, lamp)
        >>> [instance.id for instance in found]
        [100002, 100001]

        A list from ids, where every item is an id (an instance would be held once too often):

        >>> ids = [100001, larkspur.GMVar(100002)]
        >>> found = larkspur.InstanceList(ids)
        >>> for position in range(len(found)):
        ...     found[position] = found[position]
        >>> found[0] is torch, found[1] is lamp
        (True, True)
    """

    # --- Operations that convert

    def append(self, instance: Any, /) -> None:
        """Appends an instance.

        Args:
            instance: An instance, its id, or a `GMVar` with either. With an id the list does not
                take a reference to the instance: pass the instance instead.

        Raises:
            SystemError: No instance has the id ("error return without exception set").
            TypeError: The value has no integer value, or there is not exactly one argument. Also
                where the registry is no dictionary.
            ValueError: It is a text that is no whole number.
            RuntimeError: `RegisterInstancesDict` has not run, and the value is no instance.

        Example:
            >>> import sys
            >>> held = sys.getrefcount(torch)
            >>> found.append(torch)
            >>> sys.getrefcount(torch) - held
            1
            >>> found.append(100001)  # the list holds it twice, with one reference
            >>> sys.getrefcount(torch) - held
            1
            >>> found[-1] = torch  # takes one too many, which makes up for it
            >>> sys.getrefcount(torch) - held
            2
        """

    def remove(self, instance: Any, /) -> None:
        """Removes the first item that is this very instance.

        Items are compared by identity, `__eq__()` is not asked.

        Args:
            instance: An instance, its id, or a `GMVar` with either. With an id the instance loses a
                reference more than the list held, even where it is not in the list: pass the
                instance instead.

        Raises:
            SystemError: The instance is not in the list.
            KeyError: No instance has the id; nothing has changed.
            TypeError: The value has no integer value, or there is not exactly one argument. Also
                where the registry is no dictionary.
            ValueError: It is a text that is no whole number.
            RuntimeError: `RegisterInstancesDict` has not run, and the value is no instance.

        Example:
            >>> found.remove(torch)
            >>> [instance.id for instance in found]
            [100002, 100001, 100001]
        """

    def insert(self, index: Any, instance: Any, /) -> None:
        """Inserts an instance before an index.

        Args:
            index: An int32; negative ones count from the end, and those beyond an end stand for it.
            instance: An instance, its id, or a `GMVar` with either. The id object or the variable
                loses a reference: pass the instance instead.

        Raises:
            KeyError: No instance has the id; nothing has changed.
            TypeError: The index is no int, the value has no integer value, or there are not exactly
                two arguments. Also where the registry is no dictionary.
            OverflowError: The index is outside of int32.
            ValueError: The value is a text that is no whole number.
            RuntimeError: `RegisterInstancesDict` has not run, and the value is no instance.
        """

    def __setitem__(self, index: Any, instance: Any, /) -> None:
        """Puts an instance in the place of an item, or a sequence in that of a slice.

        Args:
            index: An int or long, negative ones count from the end; or a slice.
            instance: For an int an instance, its id, or a `GMVar` with either; with an instance a
                reference too many is kept, so pass its id. For a slice an iterable whose items are
                stored as they are.

        Raises:
            SystemError: The index is out of range ("error return without exception set").
            IndexError: The index does not even fit 64 bits.
            KeyError: No instance has the id; nothing has changed.
            TypeError: The index is neither int nor slice, the value has no integer value, or no
                iterable is given for a slice. Also where the registry is no dictionary.
            ValueError: The value is a text that is no whole number; or an extended slice is given
                another number of items than it has.
            RuntimeError: `RegisterInstancesDict` has not run, and the value is no instance.

        Example:
            >>> found[0] = 100001
            >>> found[0] is torch
            True
            >>> found[5] = 100001
            Traceback (most recent call last):
            SystemError: error return without exception set
        """

    def __delitem__(self, index: Any, /) -> None:
        """Deletes an item or a slice, as a list does.

        Args:
            index: An int or a slice.

        Raises:
            IndexError: The index is out of range.
            TypeError: It is neither int nor slice.
        """

    # --- Pickling

    def __reduce__(self, *ignored: Any) -> tuple[Any, ...]:
        """What pickling takes: (`InstanceList`, (), a tuple of the items).

        Args:
            ignored: Any number of arguments, not looked at.

        Example:
            >>> larkspur.InstanceList("ab").__reduce__()[1:]
            ((), ('a', 'b'))
        """

    def __setstate__(self, state: Any, /) -> None:
        """Replaces all items, without converting the new ones.

        Args:
            state: An iterable of instances. Anything else changes nothing, without a word.

        Raises:
            TypeError: There is no state.

        Example:
            >>> found.__setstate__((lamp,))
            >>> len(found), found[0] is lamp
            (1, True)
        """

class GMVar:
    """A game variable: behaves as the value it holds, and is a table that grows as it is written.

    `GMVar(value)` holds the value in its first cell; of a `GMVar` it takes the value in that one's
    first cell. Arithmetic, comparison, truth, hash, `str()`, calling and attributes are those of
    the value in the first cell. Results are plain values, never a `GMVar`.

    **Indices.** `v[i, j]` is the cell in column i and row j, both from 0. `v[i]` is `v[i, 0]`, and
    `v[0]` is the value. A new variable has one column and one row. A cell that was never written
    reads as 0, one beyond the table as well. Writing beyond the table makes it grow to i + 1
    columns and j + 1 rows, and it never shrinks. Both indices have to be below 2147483647. They may
    be any numbers, and objects with an `__int__()` such as a `GMVar`; floats lose their fraction.
    Negative ones don't count from the end: they can't be written, `v[-1]` raises and `v[-1, 0]`
    reads 0. A `GMVar` that is stored in a cell leaves its value there. Even when the value is a
    sequence, indices go to the table: `GMVar("ab")[0]` is "ab".

    **Memory.** A new variable takes about 110 bytes. The table is a full rectangle with 8 bytes for
    each cell, written or not, and when it grows it asks for up to half as much again in reserve:
    `v[9999, 9999] = 1` asks for 800 MB, and one column more for 1.2 GB. Systems as a rule hand
    memory out only where it is written, so the first of these takes little; growing moves all that
    is there, with the old table and the new one in memory at the same time. The garbage collector
    looks at every cell. So keep indices small, and large tables with gaps in a dictionary.

    **Arithmetic.** The binary operations `+`, `-`, `*`, `/`, `%`, `&`, `^` and `|`, with the
    variable on either side, and `-v`, `+v` and `abs(v)`. They give what the interpreter gives for
    the values, except that **a product is always a float**: `GMVar(5) * 2` is 10.0, and both
    factors go through `float()`, so a text of a number can be multiplied and any other text can't.
    Two ints are divided as Python 2 does, to an int. There is no `**`, `//`, `<<`, `>>`, `~` or
    `divmod()`, `oct()` or `hex()`, no division after `from __future__ import division`, and a
    variable is no index of a list or text nor a bound of a slice: take `int(v)`. `long()`,
    `range()`, `math.sqrt()` and `"%d"` take a variable as it is; `str.format()` with a format code,
    as in `"{0:d}"`, does not: give it `v[0]`.

    `v += x` changes the variable: it stays the same object, and all its names see the new value.
    **All other assignments with an operator rebind the name to a plain value**: after `v -= 1` it
    is no `GMVar` any more, and its table is gone. Write `v[0] -= 1` instead, or `v += -1`.

    **Comparison.** `<`, `<=`, `==`, `!=`, `>` and `>=` compare the values. A variable and its value
    have the same hash, so either finds the other in a dictionary; a variable that is a key must not
    change. `cmp(v, w)` of two variables **releases one reference to each of the two values, which
    it never took**; it stays so, because engines were written for it. `sorted(found, cmp)` calls
    it, and so do two comparisons by the interpreter: that of two dictionaries that differ, by
    anything but `==` and `!=`, and that of two slice objects, both where they hold variables.
    Whoever else holds such a value, and be it the code in which it is written, may be left with an
    object that is gone, and the process crashes some time later. Never is an object's very last
    reference released that way, nor any of what the interpreter shares: ints from -5 to 256, None,
    True and False, types, the empty tuple, and strings that are interned or shorter than two. Use
    the operators; `sorted()`, `min()` and `max()` do by themselves.

    **What is the value's and what is not.** Reading, setting and deleting attributes goes to the
    value, `__class__` too: `isinstance(GMVar(5), int)` is True. `type(v) is larkspur.GMVar` tells a
    variable for sure. `repr()` shows the address, not the value. A variable can't be iterated and
    has no `in`, whatever it holds. Pickling and the module `copy` get hold of the value and lose
    the rest of the table. Protocols 0 and 1 raise TypeError for values of the interpreter's own
    types, such as ints, texts and lists, and all protocols do for None. Pickle the cells instead:
    as many as the engine knows of, for `len()` gives only the product of columns and rows.
    The type itself is called `py_larkspur.GMVar`, and can't be subclassed or pickled; variables
    take no weak references.

    **Ownership.** A variable owns the values in its cells, and takes part in garbage collection.

    Args:
        value: Anything. Of a `GMVar` the value in its first cell.

    Raises:
        TypeError: There is not exactly one argument, or a keyword.
        MemoryError: There is no memory for the table.

    Example:
        >>> v = larkspur.GMVar(5)
        >>> v + 1, v * 2, 7 / v, v == 5, str(v)
        (6, 10.0, 1, True, '5')
        >>> v[3] = "x"
        >>> v[3], v[2], v[99], v[0], len(v)
        ('x', 0, 0, 5, 4)
        >>> v[1, 2] = 2.5
        >>> v[1, 2], v[3, 2], len(v)  # 4 columns, 3 rows
        (2.5, 0, 12)
        >>> same = v
        >>> v += 1
        >>> same is v, same == 6
        (True, True)
        >>> v -= 1
        >>> type(v), type(same) is larkspur.GMVar
        (<type 'int'>, True)
    """

    def __init__(self, value: Any, /) -> None:
        """Makes the table one cell with a value in it.

        Called for an existing variable, `larkspur.GMVar.__init__(v, value)`, it makes it small
        again, and the values in its cells so far are never freed. (`v.__init__` would be the
        value's.) A variable that was made by `__new__` alone holds 0.

        Args:
            value: Anything. Of a `GMVar` the value in its first cell.

        Raises:
            TypeError: There is not exactly one argument, or a keyword.
            MemoryError: There is no memory; nothing has changed.
        """

    # --- The table

    def __len__(self) -> int:
        """The length of the value where it is a sequence, otherwise columns times rows.

        A dictionary is no sequence here. An object with `__getitem__()` is one, and has to have a
        `__len__()`.

        Raises:
            TypeError: The value is an object with `__getitem__()` and without `__len__()`.
            Exception: What the value's own code raises passes through.

        Example:
            >>> len(larkspur.GMVar("abc")), len(larkspur.GMVar(3))
            (3, 1)
        """

    def __getitem__(self, key: Any, /) -> Any:
        """The value of a cell, 0 where nothing was written.

        Args:
            key: A number i for column i of row 0, or a sequence whose items 0 and 1 are the column
                and the row. Further items are not looked at. Anything else, and a sequence of
                something else, reads 0. A `GMVar` counts as a number, whatever it holds.

        Raises:
            SystemError: A single number is negative ("error return without exception set").
            IndexError: The key is a sequence of less than two items, such as "x".
            OverflowError: An index does not fit 64 bits.
            TypeError: An index is complex, or a `GMVar` without a number.
            ValueError: An index is NaN, or a `GMVar` with a text that is no number.

        Example:
            >>> same[1, 2], same[-1, 2], same[1.9, 2], same[None]
            (2.5, 0, 2.5, 0)
            >>> same[-1]
            Traceback (most recent call last):
            SystemError: error return without exception set
        """

    def __setitem__(self, key: Any, value: Any, /) -> None:
        """Stores a value in a cell; the table grows where it has to.

        Args:
            key: A number i for column i of row 0, or a sequence whose items 0 and 1 are the column
                and the row.
            value: Anything. Of a `GMVar` the value in its first cell.

        Raises:
            SystemError: An index is negative, or the key is none ("error return without exception
                set").
            IndexError: The key is a sequence of less than two items.
            OverflowError: An index does not fit 64 bits.
            TypeError: An index is complex, or a `GMVar` without a number.
            ValueError: An index is NaN, or a `GMVar` with a text that is no number.
            MemoryError: An index is 2147483647 or more, or there is no memory.
            With all of these nothing has changed. With all but MemoryError the column and the row
                of a key that is a sequence are never freed.

        Example:
            >>> same[0] = larkspur.GMVar("north")
            >>> same == "north", same[0]
            (True, 'north')
            >>> same[0] = 6
        """

    def __delitem__(self, key: Any, /) -> None:
        """Not supported; assign 0 to reset a cell.

        Raises:
            TypeError: Always.

        Writes:
            "Assigning a blank val": on standard output, always.
        """

    # --- Arithmetic with the value

    def __add__(self, other: Any, /) -> Any:
        """The value plus `other`.

        Args:
            other: What the value can be added to; of a `GMVar` the value in its first cell.

        Returns:
            What the interpreter gives for the two values: int, long, float, text...

        Raises:
            TypeError: The interpreter can't add the two values.
            Exception: What the values' own code raises passes through.

            So it is for all operations of this group.

        Example:
            >>> same + 1, 1 + same, same + 0.5, larkspur.GMVar("a") + "b"
            (7, 7, 6.5, 'ab')
        """

    def __radd__(self, other: Any, /) -> Any:
        """`other` plus the value, as `__add__`."""

    def __sub__(self, other: Any, /) -> Any:
        """The value minus `other`, as `__add__`."""

    def __rsub__(self, other: Any, /) -> Any:
        """`other` minus the value, as `__add__`.

        Example:
            >>> same - 1, 1 - same
            (5, -5)
        """

    def __mul__(self, other: Any, /) -> float:
        """The value times `other`, always a float.

        Args:
            other: What `float()` takes, of a `GMVar` the value in its first cell.

        Raises:
            TypeError: `float()` does not take one of the two.
            ValueError: One of the two is a text without a number.

        Example:
            >>> same * 2, 2 * same, same * same, larkspur.GMVar("1.5") * 2
            (12.0, 12.0, 36.0, 3.0)
        """

    def __rmul__(self, other: Any, /) -> float:
        """`other` times the value, as `__mul__`."""

    def __div__(self, other: Any, /) -> Any:
        """The value divided by `other`, as Python 2 does it: two ints give an int.

        `/` calls this, unless the module says `from __future__ import division`.

        Raises:
            ZeroDivisionError: `other` is 0.

        Example:
            >>> same / 4, same / 4.0
            (1, 1.5)
        """

    def __rdiv__(self, other: Any, /) -> Any:
        """`other` divided by the value, as `__div__`."""

    def __mod__(self, other: Any, /) -> Any:
        """The value modulo `other`; of a text, formatted with `other`.

        Raises:
            ZeroDivisionError: `other` is 0.

        Example:
            >>> same % 4, 20 % same, larkspur.GMVar("%d lamps") % same
            (2, 2, '6 lamps')
        """

    def __rmod__(self, other: Any, /) -> Any:
        """`other` modulo the value, as `__mod__`."""

    def __and__(self, other: Any, /) -> Any:
        """The bits that the value and `other` have in common.

        Raises:
            TypeError: One of the two is a float or something else without bits.

        Example:
            >>> same & 3, same | 3, same ^ 3
            (2, 7, 5)
        """

    def __rand__(self, other: Any, /) -> Any:
        """The common bits, as `__and__`."""

    def __or__(self, other: Any, /) -> Any:
        """The bits of the value or `other`, as `__and__`."""

    def __ror__(self, other: Any, /) -> Any:
        """The bits of either, as `__and__`."""

    def __xor__(self, other: Any, /) -> Any:
        """The bits that one of the two has and the other has not, as `__and__`."""

    def __rxor__(self, other: Any, /) -> Any:
        """The bits of one but not both, as `__and__`."""

    def __iadd__(self, other: Any, /) -> GMVar:
        """Adds `other` to the value in the first cell; the only operation in place.

        A value that changes in place, such as a list, is changed itself, for its other holders too.
        Where the addition fails, the variable keeps its value.

        Args:
            other: What the value can be added to; of a `GMVar` the value in its first cell.

        Returns:
            The variable itself.

        Raises:
            TypeError: The interpreter can't add the two values.

        Example:
            >>> score = larkspur.GMVar(10)
            >>> alias = score
            >>> score += 5
            >>> alias == 15, alias is score
            (True, True)
        """

    def __neg__(self) -> Any:
        """Minus the value.

        Example:
            >>> -same, +same, abs(larkspur.GMVar(-2.5))
            (-6, 6, 2.5)
        """

    def __pos__(self) -> Any:
        """Plus the value."""

    def __abs__(self) -> Any:
        """The absolute value."""

    # --- Conversion and comparison

    def __int__(self) -> int:
        """The value through `int()`: floats are cut toward zero, texts are read.

        Raises:
            TypeError: `int()` does not take the value.
            ValueError: It is a text that is no whole number.

        Example:
            >>> int(larkspur.GMVar(-2.7)), float(larkspur.GMVar("2.5")), "%d" % larkspur.GMVar(3)
            (-2, 2.5, '3')
        """

    def __float__(self) -> float:
        """The value through `float()`.

        Raises:
            TypeError: `float()` does not take the value.
            ValueError: It is a text without a number.
        """

    def __str__(self) -> str:
        """The value through `str()`.

        Raises:
            UnicodeEncodeError: The value is a unicode text beyond ASCII; `unicode(v)` raises it
                then, too. Take `v[0]`.
            Exception: What the value's own code raises passes through.
        """

    def __nonzero__(self) -> bool:
        """Whether the value is true.

        Example:
            >>> bool(larkspur.GMVar(0)), bool(larkspur.GMVar("0")), bool(larkspur.GMVar([]))
            (False, True, False)
        """

    def __hash__(self) -> int:
        """The hash of the value.

        Raises:
            TypeError: The value has none, as lists and dictionaries.

        Example:
            >>> {6: "six"}[same]
            'six'
        """

    def __eq__(self, other: object, /) -> Any:
        """Compares the values; this and the five below differ in the operator only.

        Args:
            other: Anything; of a `GMVar` the value in its first cell.

        Returns:
            What the interpreter gives for the two values, as a rule True or False.

        Raises:
            Exception: What the values' own comparison raises passes through.

        Example:
            >>> same == 6, 6.0 == same, same < larkspur.GMVar(7), same == None
            (True, True, True, False)
        """

    def __ne__(self, other: object, /) -> Any:
        """Whether the values differ, as `__eq__`."""

    def __lt__(self, other: Any, /) -> Any:
        """Whether the value is less than `other`, as `__eq__`."""

    def __le__(self, other: Any, /) -> Any:
        """Whether the value is at most `other`, as `__eq__`."""

    def __gt__(self, other: Any, /) -> Any:
        """Whether the value is greater than `other`, as `__eq__`."""

    def __ge__(self, other: Any, /) -> Any:
        """Whether the value is at least `other`, as `__eq__`."""

    def __cmp__(self, other: GMVar, /) -> int:
        """Compares the values of two variables. Don't use it: compare with the operators.

        `cmp()` calls this for two different variables only; of a variable and anything else it asks
        the operators. Each call releases one reference to the value on either side that it never
        took, as the class's description tells. Values that have the operators but no `__cmp__()`
        are asked three times: `==`, whose answer is not looked at and never freed; `<`, where a
        true answer gives -1, and none at all does, too; then `>`.

        Returns:
            -1, 0 or 1.

        Raises:
            Exception: What the values' own comparison raises passes through.

        Example:
            >>> cmp(larkspur.GMVar(1), larkspur.GMVar(2))  # small ints are shared: none is lost
            -1
        """

    def __coerce__(self, other: Any, /) -> tuple[Any, Any]:
        """The two values in a common type, for `coerce()`.

        Raises:
            TypeError: They have none.

        Example:
            >>> coerce(larkspur.GMVar(1), 2.5)
            (1.0, 2.5)
        """

    # --- Attributes and calls of the value

    def __getattribute__(self, name: str, /) -> Any:
        """An attribute of the value.

        Raises:
            AttributeError: The value has none of this name.

        Example:
            >>> larkspur.GMVar("north").upper()
            'NORTH'
            >>> isinstance(same, int), type(same) is larkspur.GMVar
            (True, True)
        """

    def __setattr__(self, name: str, value: Any, /) -> None:
        """Sets an attribute of the value.

        Raises:
            AttributeError: The value does not take it.

        Example:
            >>> class Door(object):
            ...     locked = 1
            >>> door = Door()
            >>> larkspur.GMVar(door).locked = 0
            >>> door.locked
            0
        """

    def __delattr__(self, name: str, /) -> None:
        """Deletes an attribute of the value.

        Raises:
            AttributeError: The value has none of this name, or keeps it.
        """

    def __call__(self, *args: Any, **kwargs: Any) -> Any:
        """Calls the value.

        Args:
            args: As the value takes them.
            kwargs: As the value takes them.

        Returns:
            What the value returns.

        Raises:
            TypeError: The value can't be called.
            Exception: What the value raises passes through.

        Example:
            >>> larkspur.GMVar(len)("abc")
            3
        """

    if TYPE_CHECKING:  # what type checkers ask of Python 3 for /
        def __truediv__(self, other: Any, /) -> Any: ...
        def __rtruediv__(self, other: Any, /) -> Any: ...

class Beancounter:
    """Counts the living particles to which it is attached.

    The engine makes one by calling the type without arguments (arguments are ignored), attaches it
    to particles with `CParticle_attach_beancounter`, and reads the count with `int()`: in a
    particle system that is how many of its particles are alive. A new counter has 0. Attaching it
    to a particle adds 1. The particle's end, that is the end of the last reference to its handle,
    takes 1 off, and so does attaching another counter to the particle. Nothing else changes it, and
    there is no way to set it. A particle whose life has run out still counts while its handle is
    held.

    **Ownership.** A particle owns a reference to its counter, so the counter lives at least as
    long. The counter does not know its particles, and holds no references.

    **As a number.** `int()` and `"%d" % counter` are all there is: `float()`, arithmetic and
    comparing with numbers do not work. Two counters are equal when they are the same object, and
    the hash goes by that, too. A counter is always true, with a count of 0 as well. `str()` and
    `repr()` show the address. The type can't be subclassed; its objects take no attributes and no
    weak references.

    **Pickling** (protocol 2 only; 0 and 1 raise TypeError) and copying give a counter with 0.

    Example:
        >>> counter = larkspur.Beancounter()
        >>> int(counter)
        0
        >>> spark = larkspur.part_type_create()
        >>> particles = [larkspur.CParticle_new(spark, 0, 0) for number in range(3)]
        >>> for particle in particles:
        ...     larkspur.CParticle_attach_beancounter(particle, counter)
        >>> int(counter), "%d alive" % counter
        (3, '3 alive')
        >>> del particle, particles[1:]
        >>> int(counter), bool(counter), counter == 1
        (1, True, False)
    """

    def __int__(self) -> int:
        """The number of living particles to which the counter is attached; a C long, never below 0.

        Example:
            >>> other = larkspur.Beancounter()
            >>> larkspur.CParticle_attach_beancounter(particles[0], other)
            >>> int(counter), int(other)
            (0, 1)
        """
