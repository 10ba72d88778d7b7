"""The stand-in engine's room logic: the game, its rooms and what happens in them each step.

larkspur reads and calls this module by name: `game`, `view_xscale` and `view_yscale` (written by
the renderer), the Room_ functions and the two image loaders. It looks for gm6 and gmapi the
moment it is imported, so both are registered before: importing either brings in the other first.
"""

import gmapi
import larkspur
from engine import drawing, instances, particles, resources
from engine.resources import game

# For larkspur to call.
BackgroundData_load_images = resources.BackgroundData_load_images
SpriteData_load_images = resources.SpriteData_load_images

view_xscale = 1
view_yscale = 1

screen = None  # the display surface that start() was given
current_room = None
image_directory = "."  # where sprites and backgrounds are loaded from after unpickling
keys_held = set()

# Which of a room's lists an instance joins: those of the events that its kind has.
_LISTS_BY_EVENT = (
    ("alarmed_objects", resources.EVENT_ALARM),
    ("stepped_objects", resources.EVENT_STEP),
    ("collisioned_objects", resources.EVENT_COLLISION),
    ("key_objects", resources.EVENT_KEYBOARD),
    ("mouse_objects", resources.EVENT_MOUSE),
    ("keypressed_objects", resources.EVENT_KEYPRESS),
    ("keyreleased_objects", resources.EVENT_KEYRELEASE),
)
_LISTS_BY_BUTTON = (
    ("mouse_leftpressed_objects", resources.MOUSE_LEFT_PRESS),
    ("mouse_rightpressed_objects", resources.MOUSE_RIGHT_PRESS),
)
_INSTANCE_LISTS = tuple(name for name, _ in _LISTS_BY_EVENT + _LISTS_BY_BUTTON) + (
    "all_objects",
    "drawn_objects",
    "deactivated_objects",
    "moving_objects",
    "animated_objects",
)

_MOUSE_PRESSES = {
    1: ("mouse_leftpressed_objects", resources.MOUSE_LEFT_PRESS),
    3: ("mouse_rightpressed_objects", resources.MOUSE_RIGHT_PRESS),
}
_MOUSE_RELEASES = {1: resources.MOUSE_LEFT_RELEASE, 3: resources.MOUSE_RIGHT_RELEASE}


def start(display):
    """Bind larkspur to a display surface and to this engine. Call again after a new set_mode."""
    global screen
    screen = display
    larkspur.set_SDL_screen(display)
    # The third kind of object that a list of instances takes as it is: there are only two here.
    larkspur.RegisterInstancesDict(
        instances.registry, instances.Instance, particles.py_ParticleSystem, instances.Instance
    )


def goto_room(room):
    """Leave the current room, if any, and enter this one."""
    global current_room
    if current_room is not None:
        current_room.Leave()
    current_room = room
    keys_held.clear()
    room.Create()


def step():
    """One step of the current room: alarms, input, movement, collisions, particles."""
    room = current_room
    for work in (room.StepAlarms, room.StepEvents, room.MoveInstances, room.HandleCollisions):
        work()
        if current_room is not room:
            return  # game code has gone to another room


def draw():
    """Draw the current room on the screen (not yet shown). Errors in draw code are raised."""
    try:
        larkspur.Room_Draw(current_room, screen)
    finally:
        screen.set_clip(None)


# --- What larkspur.GMRoom's methods forward to ---------------------------------------------------


def Room_Compile(room):
    room.creation_code_compiled = compile(room.creation_code or "", "<%s>" % room.name, "exec")


def Room_Create(room):
    """Enter a room. It is built on the first visit; unless it is persistent, on every one."""
    if room.created and room.room_persistent:
        return
    for name in _INSTANCE_LISTS:
        setattr(room, name, larkspur.InstanceList())
    room.InitializeBackgrounds()
    room.created = 1
    for placement in room.instances:
        create_instance(room, placement.game_object, placement.x, placement.y, **placement.settings)
    if room.creation_code_compiled is None:
        room.Compile()
    exec(room.creation_code_compiled, gmapi.__dict__)
    for instance in list(room.all_objects):
        instances.run_event(instance, resources.EVENT_OTHER, resources.OTHER_ROOM_START)
    room.ResortDrawnObjects()


def Room_Leave(room):
    """Leave a room. One that is not persistent loses its instances and particle systems."""
    for instance in list(room.all_objects):
        instances.run_event(instance, resources.EVENT_OTHER, resources.OTHER_ROOM_END)
    if room.room_persistent:
        return
    for instance in list(room.all_objects) + list(room.deactivated_objects):
        forget_instance(room, instance)
    for name in _INSTANCE_LISTS:
        setattr(room, name, larkspur.InstanceList())
    room.created = 0


def Room_AddInstance(room, instance):
    """Enter an instance in every list of the room in which it takes part."""
    kind = instance.object_index
    events = kind.py_objectdata.events
    instance.room = room
    room.all_objects.append(instance)
    for name, event in _LISTS_BY_EVENT:
        if events[event]:
            getattr(room, name).append(instance)
    for name, button in _LISTS_BY_BUTTON:
        if button in events[resources.EVENT_MOUSE]:
            getattr(room, name).append(instance)
    if not kind.still:
        room.moving_objects.append(instance)
        room.animated_objects.append(instance)
    if instance.visible:
        room.AddDrawnInstance(instance)


def Room_AddDrawnInstance(room, instance):
    """Enter an instance or a particle system among the things drawn; sort before drawing."""
    room.drawn_objects.append(instance)


def Room_ResortDrawnObjects(room):
    """Put what is drawn in order: deepest first, the rest as it was."""
    room.drawn_objects.sort(key=_depth)


def Room_InitializeBackgrounds(room):
    """Fill the room's background lists from its eight slots."""
    slots = [getattr(room, "bg%d" % number) for number in range(8)]

    def values(name, default):
        return [default if slot is None else getattr(slot, name) for slot in slots]

    room.background_visible = [slot is not None for slot in slots]
    room.background_x, room.background_y = values("x", 0), values("y", 0)
    room.background_hspeed, room.background_vspeed = values("hspeed", 0), values("vspeed", 0)
    room.background_htiled, room.background_vtiled = (
        values("htiled", False),
        values("vtiled", False),
    )
    room.background_blend = values("blend", gmapi.c_white)
    room.background_alpha = values("alpha", 1.0)
    room.background_index = [-1] * 8
    room.background_width, room.background_height = [0] * 8, [0] * 8
    room.background_xscale, room.background_yscale = [1.0] * 8, [1.0] * 8
    for number, slot in enumerate(slots):
        if slot is None:
            continue
        room.SetBackgroundIndex(number, int(slot.background))
        if slot.stretch:
            room.background_xscale[number] = room.room_width / float(slot.background.w)
            room.background_yscale[number] = room.room_height / float(slot.background.h)


def Room_SetBackgroundIndex(room, number, index):
    """Show the background with this index in slot `number`; -1 shows none."""
    room.background_index[number] = index
    if index >= 0:
        background = game.backgrounds[index]
        room.background_width[number] = background.w
        room.background_height[number] = background.h
    room.cached_bg = None


def Room_DrawBackgrounds(room, surface, xview, yview):
    """Draw the room's backgrounds; the first thing drawn in a frame or in each of its views.

    In a view the tiles are drawn here, too: larkspur draws those of rooms without views alone.

    `surface` is the screen, or what a scaled view composes its backgrounds on; (xview, yview) is
    the view's position before it followed its instance in this frame.
    """
    drawing.begin_pass(room)
    if room.cached_bg is not None:
        surface.blit(room.cached_bg, (0, 0))
        return
    if room.draw_bgcolor:
        surface.fill(gmapi.color_to_rgb(room.bgcolor))
    for number in range(8):
        if room.background_visible[number] and room.background_index[number] >= 0:
            drawing.draw_background_slot(room, number, surface)
    if room.view_enabled:
        drawing.draw_tiles(room, surface)


def Room_RenderBackground(room):
    """Keep a picture of a room's backgrounds, for rooms without views where none of them moves."""
    room.cached_bg = None
    picture = gmapi.pygame.Surface((room.room_width, room.room_height), 0, screen)
    room.DrawBackgrounds(picture, 0, 0)
    room.cached_bg = picture


def Room_StepAlarms(room):
    for instance in list(room.alarmed_objects):
        alarm = instance.alarm
        for number in instance.object_index.py_objectdata.events[resources.EVENT_ALARM]:
            if alarm[number] > 0:
                alarm[number] -= 1
                if alarm[number] == 0:
                    alarm[number] = -1
                    instances.run_event(instance, resources.EVENT_ALARM, number)


def Room_StepEvents(room):
    """Keys held, step events, animation; then particles and backgrounds move on by one step."""
    for key in list(keys_held):
        for instance in list(room.key_objects):
            instances.run_event(instance, resources.EVENT_KEYBOARD, key)
    for instance in list(room.stepped_objects):
        instances.run_event(instance, resources.EVENT_STEP)
    for instance in room.animated_objects:
        sprite = instance.sprite_index
        if type(sprite) is larkspur.GMSprite and len(sprite.subimages) > 1:
            instance.image_index = (instance.image_index + instance.image_speed) % len(
                sprite.subimages
            )
    for drawn in list(room.drawn_objects):
        if type(drawn) is particles.py_ParticleSystem:
            drawn.step()
    for number in range(8):
        room.background_x[number] += room.background_hspeed[number]
        room.background_y[number] += room.background_vspeed[number]


def Room_MoveInstances(room):
    for instance in room.moving_objects:
        instance.xprevious, instance.yprevious = instance.x, instance.y
        if instance.gravity:
            instance.vspeed += instance.gravity
        if instance.hspeed:
            instance.x += instance.hspeed
        if instance.vspeed:
            instance.y += instance.vspeed


def Room_HandleCollisions(room):
    """Run the collision events of each instance with every instance of the kinds it names."""
    for instance in list(room.collisioned_objects):
        events = instance.object_index.py_objectdata.events[resources.EVENT_COLLISION]
        for kind_name in events:
            box = instance.box()
            if box is None:
                break
            for other in gmapi.collision_list(box, gmapi.__dict__[kind_name]):
                if other is not instance and other.alive:
                    instances.run_event(instance, resources.EVENT_COLLISION, kind_name, other)


def Room_MouseButtonDown(room, button):
    name, key = _MOUSE_PRESSES.get(button, (None, None))
    if name is not None:
        for instance in list(getattr(room, name)):
            if gmapi.position_meeting(gmapi.mouse_x(), gmapi.mouse_y(), instance):
                instances.run_event(instance, resources.EVENT_MOUSE, key)


def Room_MouseButtonUp(room, button):
    key = _MOUSE_RELEASES.get(button)
    if key is not None:
        for instance in list(room.mouse_objects):
            if gmapi.position_meeting(gmapi.mouse_x(), gmapi.mouse_y(), instance):
                instances.run_event(instance, resources.EVENT_MOUSE, key)


def Room_HandleKeypress(room, key):
    keys_held.add(key)
    for instance in list(room.keypressed_objects):
        instances.run_event(instance, resources.EVENT_KEYPRESS, key)


def Room_HandleKeyrelease(room, key):
    keys_held.discard(key)
    for instance in list(room.keyreleased_objects):
        instances.run_event(instance, resources.EVENT_KEYRELEASE, key)


# --- Instances -----------------------------------------------------------------------------------


def create_instance(room, kind, x, y, **settings):
    """Make an instance in a room, run its create event and return it.

    The list of what is drawn is sorted by whoever changes the room while it runs.
    """
    instance = instances.Instance(kind, x, y)
    for name, value in settings.items():
        setattr(instance, name, value)
    instances.registry[instance.id] = instance
    kind.instances.append(instance)
    room.AddInstance(instance)
    instances.run_event(instance, resources.EVENT_CREATE)
    return instance


def destroy_instance(instance):
    """Run an instance's destroy event and take it out of the game; harmless when repeated."""
    if instance.alive:
        instances.run_event(instance, resources.EVENT_DESTROY)
        forget_instance(instance.room, instance)


def forget_instance(room, instance):
    """Take an instance out of its room and of the registry, without any event."""
    instance.alive = False
    _leave_lists(room, instance)
    del instances.registry[instance.id]


def deactivate_instance(instance):
    """Let an instance rest: it is neither stepped, moved, hit nor drawn."""
    _leave_lists(instance.room, instance)
    instance.room.deactivated_objects.append(instance)


def activate_instance(instance):
    """Wake an instance that was deactivated."""
    instance.room.deactivated_objects.remove(instance)
    instance.object_index.instances.append(instance)
    instance.room.AddInstance(instance)
    instance.room.ResortDrawnObjects()


def _leave_lists(room, instance):
    for members in [getattr(room, name) for name in _INSTANCE_LISTS] + [
        instance.object_index.instances
    ]:
        if any(member is instance for member in members):
            members.remove(instance)


def _depth(drawn):
    return -drawn.depth
