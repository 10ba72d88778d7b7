"""Particle types and particles as native callers see them: the records behind the handles."""

import ctypes

from support import native

_libc = ctypes.CDLL(None)
_libc.srand48.argtypes = [ctypes.c_long]
_libc.drand48.restype = ctypes.c_double

_as_void_ptr = ctypes.pythonapi.PyCObject_AsVoidPtr
_as_void_ptr.argtypes = [ctypes.py_object]
_as_void_ptr.restype = ctypes.c_void_p


def _fields(text):
    kinds = {"object": ctypes.c_void_p, "int": ctypes.c_int32, "float": ctypes.c_float}
    return [(name, kinds[kind]) for kind, name in (line.split() for line in text.split(","))]


class TypeRecord(ctypes.Structure):
    _fields_ = _fields(
        "object shape, object shape_surface, int blend, int animate, int stretch,"
        "int reserved_int, float reserved_float, float size_min, float size_max, float size_range,"
        "float size_incr, float size_wiggle, float xscale, float yscale, int color1, int color2,"
        "int color3, float alpha_start, float alpha_half, float alpha_end, float speed_min,"
        "float speed_max, float speed_range, float speed_incr, float speed_wiggle, float dir_min,"
        "float dir_max, float dir_range, float dir_incr, float dir_wiggle, int life_min,"
        "int life_max, int life_range, float gravity_amount, float gravity_dir, float orient_min,"
        "float orient_max, float orient_incr, float orient_wiggle, float orient_relative,"
        "object cache"
    )


class ParticleRecord(ctypes.Structure):
    _fields_ = _fields(
        "float x, float y, float direction, float speed, float vx, float vy, object beancounter,"
        "object type_handle, float size, int ttl, int color1, int color2, int color3, float life,"
        "float orientation"
    )


def values(record):
    """The plain numbers of a record as a dictionary."""
    return {
        name: getattr(record, name) for name, kind in record._fields_ if kind is not ctypes.c_void_p
    }


def type_record(handle):
    """The record of a particle type, which it keeps alive; changes reach the type."""
    record = TypeRecord.from_address(_as_void_ptr(handle))
    record.handle = handle
    return record


def particle_record(handle):
    """The record of a particle, which it keeps alive; changes reach the particle."""
    record = ParticleRecord.from_address(_as_void_ptr(handle))
    record.handle = handle
    return record


def cache_of(handle):
    """The cache dictionary of a particle type."""
    return ctypes.cast(type_record(handle).cache, ctypes.py_object).value


def seed(number):
    """Seeds the random generator that larkspur draws from."""
    _libc.srand48(number)


def next_draw():
    """Takes the next number from the generator that larkspur draws from."""
    return _libc.drand48()


def foreign_cobject():
    """A CObject that another module could have made."""
    make = ctypes.pythonapi.PyCObject_FromVoidPtr
    make.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
    make.restype = ctypes.py_object
    return make(ctypes.addressof(_memory), None)


# Long enough to be read as either record.
_memory = ctypes.create_string_buffer(1024)

step_low = native.function("CParticle_step_low", None, ctypes.POINTER(ParticleRecord))
reset_velocities = native.function(
    "CParticle_reset_velocities", None, ctypes.POINTER(ParticleRecord)
)


def values_of_model(model):
    """The plain numbers of a model's fields, as values() gives them for a record."""
    return {name: getattr(number, "item", lambda: number)() for name, number in vars(model).items()}
