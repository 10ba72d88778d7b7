"""The processes that do the jobs (worker.py): larkspur's, an older larkspur's, pygame-ce's."""

from __future__ import division

import base64
import json
import os
import subprocess
import sys

import table
from jobs import PEER
from measuring import times_in_turns

HERE = os.path.dirname(os.path.abspath(__file__))


class WorkerProcess(object):
    def __init__(self, python, kind, module_directory=None):
        environment = dict(os.environ)
        if module_directory:
            environment["PYTHONPATH"] = module_directory
        self.process = subprocess.Popen(
            [python, os.path.join(HERE, "worker.py"), kind],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            universal_newlines=True,
            env=environment,
        )
        self.versions = self.read()["versions"]

    def read(self):
        line = self.process.stdout.readline()
        if not line:
            sys.exit("bench: a worker has ended; what it said is above")
        answer = json.loads(line)
        if "error" in answer:
            sys.exit("bench: a worker has failed:\n%s" % answer["error"])
        return answer

    def ask(self, **request):
        self.process.stdin.write(json.dumps(request) + "\n")
        self.process.stdin.flush()
        return self.read()

    def way(self, name):
        return lambda calls: self.ask(time=name, calls=calls)["seconds"]

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def pixels_apart(one, other):
    """Mean difference of a channel of two pictures; of what they both have where one is a few
    pixels larger. None where they can't be compared."""
    import numpy

    if any(abs(a - b) > 3 for a, b in zip(one["size"], other["size"])):
        return None
    width, height = (min(pair) for pair in zip(one["size"], other["size"]))

    def channels(picture):
        columns, rows = picture["size"]
        flat = numpy.frombuffer(base64.b64decode(picture["rgba"]), numpy.uint8)
        return flat.reshape(rows, columns, 4)[:height, :width].astype(int)

    return abs(channels(one) - channels(other)).mean()


class Workers(object):
    """
    own, older, peer  the last two are None where nobody asked for them
    revision          name of the older one
    """

    def __init__(self, own, older=None, revision=None, peer=None):
        self.own, self.older, self.revision, self.peer = own, older, revision, peer

    def versions(self):
        """Pairs of a name and its version, each once."""
        found = []
        for worker in (self.own, self.older, self.peer):
            for pair in sorted(worker.versions.items() if worker else ()):
                if pair not in found:
                    found.append(pair)
        return found

    def end(self):
        for worker in (self.own, self.older, self.peer):
            if worker:
                worker.end()

    def prepared_ways(self, job, size):
        """Name -> (worker, its name there) of all ways to do a job that are to be timed."""
        requests = [(self.own, ["larkspur"] + sorted(job.against), "")]
        if self.older:
            requests.append((self.older, ["larkspur"], self.revision))
        if self.peer and PEER in job.against:
            requests.append((self.peer, [PEER], ""))
        found = {}
        for worker, who, shown_as in requests:
            for name in worker.ask(prepare=job.name, size=size, who=who)["ways"]:
                found[shown_as or name] = worker, name
        return found

    def check_pictures(self, job, size, found):
        """Ends the run when ways that should make the same picture do not."""
        pictures = {name: worker.ask(show=way) for name, (worker, way) in found.items()}
        own = pictures["larkspur"]
        for name, picture in sorted(pictures.items()):
            most = 0 if name == self.revision else job.apart
            if not picture or not own or most is None:
                continue
            apart = pixels_apart(own, picture)
            if apart is None or apart > most:
                sys.exit(
                    "bench: %s at %s: the pictures of larkspur and %s differ by %s, and may by %s"
                    % (job.name, table.size_text(size), name, apart, most)
                )

    def times(self, job, size, effort):
        """Name -> samples of each way, in seconds per call; empty where there is but one."""
        found = self.prepared_ways(job, size)
        if len(found) < 2:
            return {}
        if size == job.sizes[0]:
            self.check_pictures(job, size, found)
        ways = {name: worker.way(way) for name, (worker, way) in found.items()}
        return times_in_turns(ways, effort.rounds, effort.seconds_per_sample)
