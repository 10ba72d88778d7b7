"""Times jobs in a process of its own, for whoever reads its output.

    python worker.py larkspur | pygame

Requests come as JSON objects, one a line, on standard input, and so do the answers go to standard
output:

    {"prepare": JOB, "size": [W, H], "who": [NAME, ...]}  the ways of these, made anew
        {"ways": [NAME, ...]}
    {"show": WAY}                             its picture; to be asked for before it is timed
        {"size": [W, H], "rgba": BASE64} or {}
    {"time": WAY, "calls": N}                 seconds of processor time
        {"seconds": S}

What runs is told first: {"versions": {NAME: VERSION, ...}}. An error is {"error": TEXT}. Garbage
collection rests.
"""

from __future__ import division, print_function

import base64
import ctypes
import gc
import json
import os
import sys
import traceback

os.environ.setdefault("SDL_VIDEODRIVER", "dummy")
os.environ.setdefault("PYGAME_HIDE_SUPPORT_PROMPT", "1")

import pictures
import pygame
import pygame_ways


def keep_freed_memory():
    """Lets the allocator keep what is freed: results of transforms are as large as pictures, and
    whether their pages are returned and fetched anew would depend on what else was allocated."""
    trim_threshold, mmap_threshold, plenty = -1, -3, 1 << 30
    libc = ctypes.CDLL(None)
    for option in (trim_threshold, mmap_threshold):
        libc.mallopt(option, plenty)


class PygameJobs(object):
    """What pygame does, under the name that it is given here."""

    def __init__(self, name):
        self.name = name
        pygame.display.init()
        pygame.display.set_mode((640, 480), 0, 32)
        self.versions = {
            name: pygame.version.ver,
            "SDL of " + name: "%d.%d.%d" % tuple(pygame.get_sdl_version()),
        }

    def ways(self, job, size, who):
        if self.name not in who or job not in pygame_ways.WAYS:
            return {}
        found = pygame_ways.WAYS[job](size)
        return {self.name + ": " + how: way for how, way in found.items()}


class LarkspurJobs(object):
    """What larkspur does and what is measured in its process."""

    def __init__(self):
        self.pygame = PygameJobs("pygame")
        import host
        import larkspur
        import larkspur_particles
        import larkspur_pixels
        import larkspur_rooms
        import larkspur_variables

        host.set_up()
        self.versions = dict(self.pygame.versions, larkspur=larkspur.__file__)
        self.makers = {}
        for module in (larkspur_particles, larkspur_pixels, larkspur_rooms, larkspur_variables):
            self.makers.update(module.WAYS)

    def ways(self, job, size, who):
        found = self.makers[job](size)
        chosen = {name: way for name, way in found.items() if name.partition(": ")[0] in who}
        # Where pygame's way needs what the job has made, it is among these.
        return chosen if "pygame" in chosen else dict(chosen, **self.pygame.ways(job, size, who))


def shown(way):
    """The picture that a way makes, as bytes of red, green, blue and alpha, if it makes any."""
    surface = way.shown() if way.shown is not None else None
    if surface is None:
        return {}
    as_bytes = getattr(pygame.image, "tobytes", None) or pygame.image.tostring
    rgba = as_bytes(surface, "RGBA" if surface.get_masks()[3] else "RGBX")
    return {"size": surface.get_size(), "rgba": base64.b64encode(rgba).decode("ascii")}


class Worker(object):
    def __init__(self, jobs):
        self.jobs = jobs
        self.prepared = {}

    def answer(self, request):
        if "prepare" in request:
            self.prepared = {}  # the old ones go first
            gc.collect()
            pictures.forget_gaps()
            job, size, who = request["prepare"], tuple(request["size"]), request["who"]
            self.prepared = self.jobs.ways(job, size, who)
            return {"ways": sorted(self.prepared)}
        if "show" in request:
            return shown(self.prepared[request["show"]])
        return {"seconds": self.prepared[request["time"]].seconds(request["calls"])}


def main():
    # What libraries print goes to standard error: standard output is for answers.
    answers = os.fdopen(os.dup(1), "w")
    os.dup2(2, 1)

    def tell(answer):
        answers.write(json.dumps(answer) + "\n")
        answers.flush()

    keep_freed_memory()
    gc.disable()
    jobs = LarkspurJobs() if sys.argv[1] == "larkspur" else PygameJobs(sys.argv[1])
    worker = Worker(jobs)
    tell({"versions": jobs.versions})
    for line in iter(sys.stdin.readline, ""):
        try:
            tell(worker.answer(json.loads(line)))
        except Exception:
            tell({"error": traceback.format_exc()})


if __name__ == "__main__":
    main()
