"""Kept inputs of a fuzz target: one file in the tree, a line of hexadecimal digits for each, and
the folder of files that a fuzzer reads.

fuzz_corpus.py unpack FILE FOLDER    makes a file of each line
fuzz_corpus.py pack FILE FOLDER      writes a line for each file
"""

import binascii
import io
import os
import sys


def unpack(path, folder):
    with io.open(path, "rb") as lines:
        for number, line in enumerate(lines):
            with io.open(os.path.join(folder, str(number)), "wb") as kept:
                kept.write(binascii.unhexlify(line.strip()))


def pack(path, folder):
    inputs = []
    for name in os.listdir(folder):
        with io.open(os.path.join(folder, name), "rb") as kept:
            inputs.append(binascii.hexlify(kept.read()))
    with io.open(path, "wb") as lines:
        lines.writelines(line + b"\n" for line in sorted(inputs))


if __name__ == "__main__":
    {"unpack": unpack, "pack": pack}[sys.argv[1]](*sys.argv[2:])
