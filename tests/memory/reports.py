"""Reads what memcheck reported: prints each report with code of larkspur among its frames, and
counts the others by where they come from.

    python reports.py DIRECTORY

Ends with status 1 where there is one of larkspur's.
"""

from __future__ import print_function

import collections
import os
import re
import sys

# What a report starts with; the stack of where the memory came from follows in the same paragraph.
KINDS = re.compile(
    r"Invalid (read|write|free)|Conditional jump|Use of uninitialised|Syscall param|"
    r"Mismatched free|Source and destination overlap|Argument .* of function|Process terminating|"
    r"Jump to the invalid address"
)
OURS = re.compile(r"[ /(]larkspur\.so\)|\((src|include)/")
FRAME = re.compile(r"(?:at|by) 0x[0-9A-F]+: (.*)")
LINE = re.compile(r"^==\d+== ?")


def reports_in(text):
    """The paragraphs of a log that report something."""
    paragraph = []
    for line in text.splitlines() + ["==0=="]:
        stripped = LINE.sub("", line)
        if stripped.strip():
            paragraph.append(stripped)
            continue
        if paragraph and KINDS.search(paragraph[0]):
            yield paragraph
        paragraph = []


def main():
    ours, others = [], collections.Counter()
    for name in sorted(os.listdir(sys.argv[1])):
        if not name.startswith("report."):
            continue
        with open(os.path.join(sys.argv[1], name)) as log:
            for report in reports_in(log.read()):
                if any(OURS.search(line) for line in report):
                    ours.append((name, report))
                else:
                    frames = [found.group(1) for found in map(FRAME.search, report) if found]
                    others[report[0].strip() + " in " + " < ".join(frames[:2])] += 1
    for name, report in ours:
        print("{}:\n{}\n".format(name, "\n".join(report)))
    for where, count in others.most_common():
        print("{:>5} without larkspur: {}".format(count, where))
    print("memcheck: {} reports with larkspur among their frames".format(len(ours)))
    return 1 if ours else 0


if __name__ == "__main__":
    sys.exit(main())
