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
stands for the value in its first cell wherever a number or a particle type is taken.

Colours: a GM colour is an int 0x00BBGGRR, red in the lowest byte, whose top byte is ignored. A
pixel value is an int in the format of the surface, as its `map_rgb()` gives it: 0x00RRGGBB on the
usual display of 32 bits.

Failures: some calls fail without an exception. The interpreter then raises SystemError with the
text "error return without exception set". Lines on standard output and standard error are written
by the module's native code: replacing `sys.stdout` or `sys.stderr` does not catch them.

A Surface has to be in use: a display that was closed, and a subsurface of one, raise RuntimeError
where pixels are needed. Pixel routines work on 32 bits a pixel.

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

from typing import Any, type_check_only

import pygame
from typing_extensions import TypeAlias

__version__: str

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

    `draw_rectangle()`, `fast_draw_rectangle_color()`, particles and scaled views draw on this
    Surface or make their surfaces in its format. Call it once after each
    `pygame.display.set_mode()`, before anything is drawn. The colour white of new particle types
    comes from it: its red, green and blue masks together.

    The module holds a reference to the Surface until the next call. When the display is closed, the
    functions that need one raise RuntimeError until it is open again. A failed call changes
    nothing.

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
    again. What an earlier call fetched is never released.

    The call never fails. Arguments of a wrong number leave no registry and no types, without a
    word, and the attributes are fetched all the same. An attribute that is missing leaves an
    exception pending although the call returns: the interpreter raises AttributeError at some later
    place, which has nothing to do with it. `python2.7 -m larkspur_check` names what is missing.

    Args:
        instances: From instance id to instance. An `InstanceList` looks ids up in it. It is held,
            not copied: what the engine adds later is found.
        type1: A type whose instances an `InstanceList` stores as they are, without a lookup.
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
        >>> larkspur.init_subsystems()
        >>> bool(pygame.display.get_init())
        True
    """

def GMSprite_from_surface(surface: pygame.Surface, name: object = ..., /) -> GMSprite:
    """Makes a sprite of one subimage from a Surface.

    The subimage is a copy in the format of the display: later changes of the Surface do not show in
    it. A display has no alpha channel as a rule, so the alpha of single pixels is lost and
    transparent pixels become opaque. A colour key and the alpha of the whole Surface come along.

    `w` and `rightbound` are the Surface's width, `h` and `bottombound` its height, in pixels; all
    other numbers of the sprite are 0. The sprite is in no list and has no index until the engine
    puts it into `gm6.game.sprites`.

    Args:
        surface: Of any depth. It is read only, and no reference to it is kept.
        name: The sprite's name, usually a str; None without it.

    Returns:
        A new sprite.

    Raises:
        TypeError: "GMSprite_from_surface() needs a pygame Surface, got int", with the type that
            came.
        RuntimeError: There is no display, or the Surface is that of a display that was closed.

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
    is set to the number of calls that began in the second before; 0 the first time.
    2. Reads `room.view_enabled`, and takes a tuple of `room.drawn_objects`. The frame draws what is
    in this tuple, in its order, whatever its objects do to the list meanwhile.
    3. With views: for each of the views 0 to 7 whose item of `room.view_visible` is true, has
    `gm6.Room_DrawBackgrounds` draw the backgrounds and draws the objects. A list that is shorter
    says by its length how many views there are. Tiles are not drawn with views. Where no view is
    visible nothing is drawn.
    4. Without views: calls `room.DrawBackgrounds(surface, 0, 0)`, blits each of `room.tiles` from
    the `surf` of its background in `gmapi.game.backgrounds`, sets `room.view_current` to 0 and
    calls `Draw()` of each object. Stops at the first failure.

    In a view an object of exactly the type `gmapi.py_ParticleSystem` is drawn in view 0 alone, by
    its `py_RealDraw()` where `py_automatic_draw` is true; another one by its draw code or, where it
    has none, by `gmapi.draw_sprite_ext`. An object that fails makes the frame fail once the view's
    other objects are drawn; later views are not drawn then.

    What was drawn before a failure stays. A frame can fail without an exception: SystemError.

    Args:
        room: A `GMRoom`; without views any object with its attributes will do.
        surface: The Surface that is drawn on, usually the display.

    Raises:
        TypeError: `surface` is no Surface, `room.tiles` no list of `RoomTileData`,
            `gmapi.game.backgrounds` holds something other than `BackgroundData`, or with views the
            room is no `GMRoom` or a member of its views no `Floatlist8`.
        IndexError: A tile's `background_idx` is negative or too large.
        AttributeError: The room lacks one of these attributes.
        ValueError: A view's port has a negative size, or one that SDL refuses.
        RuntimeError: The Surface is that of a display that was closed, or there is no display for a
            scaled view.
        SystemError: A step failed without an exception, as an object with fewer than 9 events does.
        Exception: Whatever the engine's code raises.

    Writes:
        "Error making tuple from drawn_objects": on standard error, when `drawn_objects` is no
            sequence.
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
        colour: A pixel value, without the alpha bits: what `Surface.map_rgb()` gives for a Surface
            with alpha is too large for an int32, so take `& 0xFFFFFF` of it.
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
    """Draws a rectangle in room coordinates on the display, in the current colour and alpha.

    Colour and alpha are `gmapi.py_draw_props.color` and `gmapi.py_draw_props.alpha`, read at each
    call from the object that `RegisterInstancesDict()` fetched.

    A coordinate c becomes round((c - v) * s) + v, halves away from zero, with v the position of the
    view that is drawn or was drawn last, and s its scale: port size divided by view size. A frame
    without views sets 0 and 1. Before the first `Room_Draw()` the scale is 0, so nothing shows.

    An alpha of exactly 1.0 is opaque. Then the rectangle is the display's
    `fill(color, (x1, y1, x2 - x1, y2 - y1))`, and an outline `gmapi.pygame.draw.rect` of the same
    rectangle with a width of 1: `x2` and `y2` are not painted. Any other alpha blends as
    `fill_translucent()` does, with trunc(alpha * 255) and with what
    `gmapi.__color_to_int(color)` returns for a pixel value: `x2` is not painted, and `y2` is.

    Args:
        x1: Left edge, in pixels of the room.
        y1: Top edge.
        x2: Right edge.
        y2: Bottom edge.
        outline: With an opaque alpha, 0.5 or more and -0.5 or less draw an outline. With any other
            alpha a number that is not 0 asks for one, and fails.

    Raises:
        SystemError: A translucent outline is asked for.
        RuntimeError: There is no display, or `RegisterInstancesDict()` found no
            `gmapi.py_draw_props`.
        pygame.error: "display Surface quit", from the display's own `fill()`.
        AttributeError: `color`, `alpha` or `gmapi.__color_to_int` is missing.
        ValueError: The display has no 32 bits a pixel and alpha is not 1.0.
        TypeError: `alpha` is no number, or pygame does not take `color`.

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
    clipped `x2`. The first row or column holds 255/256 of its colour or a little less.

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
    share of 1.0 counts as 0. So an opaque uppermost layer, and layers that are all invisible, paint
    black; keep opacities below 1.0, and one of them above 0.

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
    then and leave a blank border; the turned picture can lose its last row or column.

    The copy has 32 bits a pixel (8 for a Surface of 8 bits), no colour key, whatever the Surface
    has, and not its alpha of the whole.

    Args:
        surface: Of any depth; each side 1 to 32767 pixels, and at most 16383 columns where it has
            neither 8 nor 32 bits a pixel. It is read only.
        xscale: Factor of the width; a negative one mirrors, but not with 8 bits a pixel.
        yscale: Factor of the height, when the angle is 0.
        angle: Degrees, counter-clockwise; the fraction is dropped: 45.9 counts as 45.

    Returns:
        A new Surface.

    Raises:
        TypeError: "rotoscale() needs a pygame Surface, got int", with the type that came.
        ValueError: The Surface is of a kind that can not be scaled; the text says why.
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

    A side becomes the whole part of side * factor, without its sign, and 1 at least. The copy has
    32 bits a pixel (8 for a Surface of 8 bits). A colour key comes along as it is, though smoothing
    makes new colours along its edges; the alpha of the whole does not.

    Args:
        surface: Of any depth; each side 1 to 32767 pixels. It is read only.
        xscale: Factor of the width; a negative one mirrors, but not with 8 bits a pixel.
        yscale: Factor of the height.

    Returns:
        A new Surface.

    Raises:
        TypeError: "scale() needs a pygame Surface, got int", with the type that came.
        ValueError: The Surface is of a kind that can not be scaled; the text says why.
        RuntimeError: It is the Surface of a display that was closed.
        SystemError: SDL refuses the size.

    Example:
        >>> larkspur.scale(arrow, 1.5, 3).get_size()
        (12, 12)
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
    and before `set_SDL_screen()`. It is drawn with blend mode 0. It has no shape yet: a particle
    can be stepped, and drawn once `part_type_shape()` has set one.

    A particle takes its place in these ranges, its life, speed, direction and colours, when it is
    made: later changes of them reach new particles alone. Shape, blend mode, scales, alphas, and
    what sizes and orientations grow, wiggle and are held by, are read at each step and at each
    drawing.

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

    Args:
        particle_type: The type.
        surface: Exactly a pygame Surface, not of a type derived from it. Any depth is taken;
            particles that are tinted, faded or added need 32 bits a pixel.

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
    `wiggle` are.

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
    to but not including 1.

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
    gets less alpha. One of the shape's natural size is faded in the display's format, which has no
    alpha channel as a rule: there it is drawn opaque, and without its own transparency. Give a type
    that is to fade a scale other than 1. With any other blend mode fading makes a picture darker,
    of any size.

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
    drawn. An added picture that crosses the upper edge is moved down to the first row.

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

    The step is that of `CParticle_step()`. A particle with no step left is not drawn. The picture's
    middle is at trunc(place + offset). At birth, half life and death it has the type's first,
    second and third alpha and its own first, second and third colour, and between them what lies
    between.

    Pictures that are scaled, tinted or faded are kept by the type. A kept picture is drawn again as
    it is, so what decides it, the size above all, should take few values. The cache of scaled
    pictures is emptied when one more is to be kept and there are more than 100; others are kept
    until `CParticle_type_cache_clear()`. A tinted, opaque one of natural size is drawn twice when
    it is made.

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
            to, has no 32 bits a pixel, or the shape can not be scaled or turned. The step was made
            all the same.

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
