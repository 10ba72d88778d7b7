"""Ways to do a job: timed functions, and the pictures that they make."""

import ctypes
import os
import sys
import time

import pygame

processor_time = getattr(time, "process_time", None) or time.clock


class Way(object):
    """
    seconds  function of a number of calls: makes them, returns their seconds of processor time
    shown    function that makes one call and returns the Surface drawn on or made; None for none
    """

    def __init__(self, seconds, shown=None):
        self.seconds, self.shown = seconds, shown


def calling(function, *arguments):
    """A call from Python, looped in Python, that makes no picture."""

    def seconds(calls):
        numbers = range(calls)
        begin = processor_time()
        for _ in numbers:
            function(*arguments)
        return processor_time() - begin

    return Way(seconds)


def making(function, *arguments):
    """A call from Python that returns a Surface."""
    return Way(calling(function, *arguments).seconds, lambda: function(*arguments))


def drawing(target, function, *arguments):
    """A call from Python that draws on a Surface."""
    return drawing_with(target, calling(function, *arguments).seconds)


def drawing_with(target, seconds):
    """What draws on a Surface."""

    def shown():
        seconds(1)
        return target

    return Way(seconds, shown)


def build_path(*parts):
    """Of something that was built with the benches."""
    directory = os.environ.get("LARKSPUR_BUILD_DIR")
    if not directory:
        sys.exit("LARKSPUR_BUILD_DIR must name the build directory; script/bench sets it")
    path = os.path.join(directory, *parts)
    if not os.path.exists(path):
        sys.exit("%s is not there: build with -DLARKSPUR_BENCH=ON" % path)
    return path


POINTER, WORD, NUMBER, INTEGER = (ctypes.c_void_p, ctypes.c_uint32, ctypes.c_double, ctypes.c_int)


class NativeLoops(object):
    """The timing loops around native functions, from bench/pixel/calls.cpp: seconds of calls.

    Surfaces among the arguments stand for SDL's surfaces inside them, and live as long as the loop.
    """

    loops = None

    def __call__(self, name, *arguments):
        if self.loops is None:
            self.loops = ctypes.PyDLL(build_path("bench", "pixel", "bench_calls.so"))
        function = getattr(self.loops, name)
        plain = [
            POINTER(surface_address(argument)) if isinstance(argument, pygame.Surface) else argument
            for argument in arguments
        ]

        def seconds(calls, _kept=arguments):
            function.restype = ctypes.c_double
            return function(*(plain + [ctypes.c_long(calls)]))

        return seconds


native_loop = NativeLoops()


def surface_address(surface):
    """Of the SDL surface inside a pygame 1 Surface; it follows reference count and type. Valid
    while the Surface lives."""
    return ctypes.c_void_p.from_address(id(surface) + 2 * ctypes.sizeof(ctypes.c_void_p)).value
