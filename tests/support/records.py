"""What the record types consist of, as a person would list it, and a look at their native tables.

The lists are written down from the rules and share nothing with the field tables in src.
"""

import collections
import copy
import ctypes
import pickle

import larkspur

# kind: "int", "float" (single precision), "lenient" (reads as None while unset) or "strict"
# (AttributeError while unset); the last three columns are for object members.
Member = collections.namedtuple("Member", "name kind doc visited released")

# members   in member-table order
# storage   names in storage order
# releases  names in the order in which a dying record releases them; others it keeps for good
RecordType = collections.namedtuple("RecordType", "type name doc members storage releases")


def _ints(names, doc):
    return [Member(name, "int", doc, False, False) for name in names.split()]


def _strict(names):
    return [Member(name, "strict", "", True, True) for name in names.split()]


def _room_members():
    kinds = {
        "i": ("int", False, False),
        "f": ("float", False, False),
        "o": ("lenient", True, True),  # seen by garbage collection, released
        "r": ("lenient", False, True),  # released only
        "k": ("lenient", False, False),
    }  # kept for good
    rows = """
        i id o name i room_width i room_height i snapx i snapy i isogrid i room_speed
        i room_persistent i bgcolor i draw_bgcolor o room_caption o creation_code
        r bg0 r bg1 r bg2 r bg3 r bg4 r bg5 r bg6 r bg7 i view_enabled i numviews
        o view_xview o view_yview o view_object o view_hborder o view_vborder o view_wview
        o view_hview o view_xport o view_yport o view_wport o view_hport o background_index
        o instances o tiles i tile_w i tile_h i tile_hsep i tile_vsep i tile_hoffset
        i tile_voffset i created o all_objects o drawn_objects o deactivated_objects
        o keypressed_objects o keyreleased_objects o mouse_leftpressed_objects
        o mouse_rightpressed_objects o collisioned_objects o stepped_objects o moving_objects
        o alarmed_objects o animated_objects o key_objects o mouse_objects o cached_bg
        o cached_bg_scaled f frame_duration k creation_code_compiled r background_x
        r background_y r background_width r background_height r background_xscale
        r background_yscale r background_hspeed r background_vspeed r background_blend
        r background_alpha r background_htiled r background_vtiled r background_visible
        k view_visible i view_current k initial_view_data""".split()
    members = []
    for letter, name in zip(rows[::2], rows[1::2]):
        kind, visited, released = kinds[letter]
        members.append(Member(name, kind, None, visited, released))
    return members


_EVENT_LISTS = """all_objects drawn_objects deactivated_objects keypressed_objects
    keyreleased_objects mouse_leftpressed_objects mouse_rightpressed_objects collisioned_objects
    stepped_objects moving_objects alarmed_objects animated_objects key_objects mouse_objects
    """.split()
_VIEW_LISTS = """view_xview view_yview view_object view_hborder view_vborder view_wview view_hview
    view_xport view_yport view_wport view_hport""".split()
_BACKGROUND_SLOTS = ["bg%d" % slot for slot in range(8)]
_BACKGROUND_EFFECTS = """background_xscale background_yscale background_hspeed background_vspeed
    background_blend background_alpha background_htiled background_vtiled""".split()

ROOM = RecordType(
    larkspur.GMRoom,
    "larkspur.GMRoom",
    "GM-compatible backgrounds.",
    _room_members(),
    """id name room_width room_height snapx snapy isogrid room_speed room_persistent bgcolor
    draw_bgcolor room_caption frame_duration creation_code""".split()
    + _BACKGROUND_SLOTS
    + ["view_enabled", "numviews"]
    + _VIEW_LISTS
    + """background_index initial_view_data background_x background_y background_visible
    background_width background_height""".split()
    + _BACKGROUND_EFFECTS
    + """view_visible instances tiles tile_w tile_h tile_hsep tile_vsep tile_hoffset tile_voffset
    created""".split()
    + _EVENT_LISTS
    + ["view_current", "cached_bg", "cached_bg_scaled", "creation_code_compiled"],
    ["name", "room_caption", "creation_code"]
    + _BACKGROUND_SLOTS
    + _VIEW_LISTS
    + ["background_index", "instances", "tiles"]
    + _EVENT_LISTS
    + ["cached_bg", "cached_bg_scaled", "background_x", "background_y", "background_visible"]
    + _BACKGROUND_EFFECTS
    + ["background_width", "background_height"],
)

TILE = RecordType(
    larkspur.RoomTileData,
    "larkspur.RoomTileData",
    "GM-compatible room tile entries.",
    _ints("x y id background_idx tilex tiley w h layer_depth locked", ""),
    "x y background_idx tilex tiley w h layer_depth id locked".split(),
    [],
)

SPRITE = RecordType(
    larkspur.GMSprite,
    "larkspur.GMSprite",
    "GM-compatible sprites.",
    _ints("w", "unscaled sprite width.")
    + _ints("h", "unscaled sprite height.")
    + _ints(
        """xorigin yorigin leftbound rightbound topbound bottombound transparent
          use_video_memory load_only_on_use smooth_edges preload_texture bounding_box_type
          precise_collision_checking""",
        "",
    )
    + _strict("name subimages scalecache"),
    """w h leftbound rightbound topbound bottombound xorigin yorigin transparent
    precise_collision_checking bounding_box_type smooth_edges preload_texture use_video_memory
    load_only_on_use name subimages scalecache""".split(),
    ["name", "subimages", "scalecache"],
)

BACKGROUND = RecordType(
    larkspur.BackgroundData,
    "larkspur.BackgroundData",
    "GM-compatible backgrounds.",
    _strict("name surf scaled_data_cache") + _ints("w h transparent", ""),
    "name surf scaled_data_cache w h transparent".split(),
    ["name", "surf", "scaled_data_cache"],
)

FLOAT_LIST = RecordType(
    larkspur.Floatlist8, "larkspur.Floatlist8", "A list of 8 floats.", [], [], []
)

ALL = [ROOM, TILE, SPRITE, BACKGROUND, FLOAT_LIST]
COLLECTED = [ROOM, SPRITE, BACKGROUND]


def storage_members(record):
    """The members in storage order."""
    by_name = dict((member.name, member) for member in record.members)
    return [by_name[name] for name in record.storage]


def int_names(record):
    """Names of the int members in storage order."""
    return [member.name for member in storage_members(record) if member.kind == "int"]


def object_names(record):
    """Names of the object members in storage order."""
    return [
        member.name for member in storage_members(record) if member.kind in ("lenient", "strict")
    ]


# Ways to make a record out of another one by way of its pickled state.
ROUND_TRIPS = [
    lambda record: pickle.loads(pickle.dumps(record, 0)),
    lambda record: pickle.loads(pickle.dumps(record, 1)),
    lambda record: pickle.loads(pickle.dumps(record, 2)),
    copy.copy,
    copy.deepcopy,
]

# Arguments of __setstate__() that hold no state; long enough to be one, where they have a length.
NO_STATES = [(), (None,), (5,), ("12345" * 4,), ({},), (iter(range(20)),)]

# What is left of a released or deleted member.
UNSET = object()


def read(instance, name):
    """A member's value as code that meets a dying record sees it: UNSET or the value."""
    value = getattr(instance, name, UNSET)
    return UNSET if value is None else value


# --- The type objects themselves -----------------------------------------------------------------

_TYPE_FIELDS = """refcount type size name basicsize itemsize dealloc print getattr setattr compare
    repr as_number as_sequence as_mapping hash call str getattro setattro as_buffer flags doc
    traverse clear richcompare weaklistoffset iter iternext methods members getset base""".split()

HAVE_GC = 1 << 14
BASE_TYPE = 1 << 10
CHECK_TYPES = 1 << 4


class TypeRecord(ctypes.Structure):
    """The head of a type object; every field is one word."""

    _fields_ = [(name, ctypes.c_void_p) for name in _TYPE_FIELDS]


class MemberRecord(ctypes.Structure):
    _fields_ = [
        ("name", ctypes.c_char_p),
        ("type", ctypes.c_int),
        ("offset", ctypes.c_ssize_t),
        ("flags", ctypes.c_int),
        ("doc", ctypes.c_char_p),
    ]


class MethodRecord(ctypes.Structure):
    _fields_ = [
        ("name", ctypes.c_char_p),
        ("function", ctypes.c_void_p),
        ("flags", ctypes.c_int),
        ("doc", ctypes.c_char_p),
    ]


def type_record(record_type):
    return TypeRecord.from_address(id(record_type))


def _rows(address, row_type):
    rows = []
    while address:
        row = row_type.from_address(address)
        if not row.name:
            break
        rows.append(row)
        address += ctypes.sizeof(row_type)
    return rows


def member_table(record_type):
    """The rows of a type's native member table."""
    return _rows(type_record(record_type).members, MemberRecord)


def method_table(record_type):
    """The rows of a type's native method table."""
    return _rows(type_record(record_type).methods, MethodRecord)


def clear(instance):
    """Calls the type's clear slot; returns its result."""
    slot = type_record(type(instance)).clear
    return ctypes.PYFUNCTYPE(ctypes.c_int, ctypes.py_object)(slot)(instance)


Visitor = ctypes.PYFUNCTYPE(ctypes.c_int, ctypes.py_object, ctypes.c_void_p)


def traverse(instance, visit):
    """Calls the type's traverse slot with visit(object) -> int; returns its result."""
    slot = type_record(type(instance)).traverse
    call = ctypes.PYFUNCTYPE(ctypes.c_int, ctypes.py_object, Visitor, ctypes.c_void_p)(slot)
    return call(instance, Visitor(lambda visited, _: visit(visited)), None)
