"""Who has the code at an address of this process."""

import bisect
import ctypes
import os
import re
import subprocess

import larkspur

# What the C library's loops may be long; they call nothing.
LOOP_BYTES = 0x800


class Owners(object):
    """Who has the code at an address: a layer of the frame, and a function of ours.

    What the C library copies and fills counts for its caller.
    """

    def __init__(self):
        self.spans = []  # (begin, end, base of the file, path)
        bases = {}
        with open("/proc/self/maps") as maps:
            for line in maps:
                span, rights, _, _, _, path = (line.split(None, 5) + [""])[:6]
                begin, end = (int(word, 16) for word in span.split("-"))
                path = path.strip()
                base = bases.setdefault(path, begin)
                if "x" in rights:
                    self.spans.append((begin, end, base, path))
        library = ctypes.CDLL(None)
        self.loops = [
            ctypes.cast(getattr(library, name), ctypes.c_void_p).value
            for name in ("memcpy", "memmove", "memset")
        ]
        listed = subprocess.check_output(["nm", "-C", "-n", "--defined-only", larkspur.__file__])
        symbols = [line.split(None, 2) for line in listed.decode().splitlines()]
        symbols = [(int(place, 16), name) for place, kind, name in symbols if kind in "tTiW"]
        self.places = [place for place, _ in symbols]
        self.names = [name for _, name in symbols]

    def of(self, address, top_of_stack):
        """(layer, function or None)."""
        if any(loop <= address < loop + LOOP_BYTES for loop in self.loops):
            address = top_of_stack
        for begin, end, base, path in self.spans:
            if begin <= address < end:
                layer = layer_of(path)
                return layer, self.function(address - base) if layer == "larkspur" else None
        return "rest", None

    def function(self, place):
        name = self.names[bisect.bisect(self.places, place) - 1]
        # Of arguments, namespaces and dispatch levels nothing is left.
        name = re.sub(r" \[clone.*|\(anonymous namespace\)::|larkspur::|pixel::", "", name)
        return re.sub(r"\(.*", "", name).split(".")[0]


def layer_of(path):
    name = os.path.basename(path)
    if name.startswith("larkspur."):
        return "larkspur"
    if name.startswith("libSDL_gfx"):
        return "SDL_gfx"
    if name.startswith(("libSDL-1.2", "libSDL2")):  # the second where the first is a layer
        return "SDL"
    if "python" in path:  # the interpreter, its modules and pygame's
        return "Python"
    return "rest"
