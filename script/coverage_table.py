"""Prints gcovr's summary, a JSON file, as one row per folder of src and one for all."""

import collections
import json
import sys

KINDS = ("line", "branch")


def folder_of(path):
    return path.rpartition("/")[0]


def table(files):
    """The rows for the files of a summary: folder, and of each kind reached, all and percent."""
    folders = collections.defaultdict(lambda: [0] * 4)
    for entry in files:
        for name in (folder_of(entry["filename"]), "all"):
            for column, kind in enumerate(KINDS):
                folders[name][2 * column] += entry[kind + "_covered"]
                folders[name][2 * column + 1] += entry[kind + "_total"]
    rows = []
    for name in sorted(folders, key=lambda name: (name == "all", name)):
        row = [name]
        for column in range(len(KINDS)):
            reached, total = folders[name][2 * column : 2 * column + 2]
            row += [reached, total, 100.0 * reached / total if total else 100.0]
        rows.append(row)
    return rows


def main():
    with open(sys.argv[1]) as summary:
        files = json.load(summary)["files"]
    print("%-20s %21s %21s" % ("", "lines", "branches"))
    for row in table(files):
        print("%-20s %6d of %5d %5.1f %% %5d of %5d %5.1f %%" % tuple(row))


if __name__ == "__main__":
    main()
