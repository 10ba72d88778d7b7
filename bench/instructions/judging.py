"""Kept counts of instructions, and what to say of new ones. Counts are pairs (scene, count)."""

from __future__ import division

MOST_CHANGE_PERCENT = 3

HEAD = """\
# How many instructions each scene of bench/instructions/scenes.py takes, libraries included, and
# what that was counted with. Written by script/bench --instructions --keep.
"""
KEEP = "script/bench --instructions --keep"


def text_of(surroundings, counts):
    """The file that keeps them."""
    lines = ["%s: %s\n" % pair for pair in sorted(surroundings.items())]
    lines += ["%13d  %s\n" % (count, scene) for scene, count in counts]
    return HEAD + "".join(lines)


def read_kept(text):
    """(surroundings, counts): a dictionary and a list of pairs."""
    surroundings, counts = {}, []
    for line in text.splitlines():
        if line.startswith("#"):
            continue
        if line.startswith(" "):
            count, scene = line.split(None, 1)
            counts.append((scene, int(count)))
        else:
            name, value = line.split(": ", 1)
            surroundings[name] = value
    return surroundings, counts


def differences(kept, here):
    """A line for each thing that is another one here, or is there in one of both alone."""
    return [
        "%s: %s there, %s here" % (name, kept.get(name, "none"), here.get(name, "none"))
        for name in sorted(set(kept) | set(here))
        if kept.get(name) != here.get(name)
    ]


def judge(kept, counts):
    """(whether there are faults, what to print). A count that fell is none, but is told."""
    lines, faults, fallen = [], [], []
    for scene, count in counts:
        if scene not in kept:
            lines.append("%13d %9s  %s" % (count, "new", scene))
            faults.append("%s takes %d and is kept nowhere: %s" % (scene, count, KEEP))
            continue
        percent = (100 * count - 100 * kept[scene]) / kept[scene]
        lines.append("%13d %+7.2f %%  %s" % (count, percent, scene))
        if percent > MOST_CHANGE_PERCENT:
            faults.append(
                "%s grew by %.2f %%, from %d to %d instructions: mend it, or run %s and give the "
                "reason in the commit" % (scene, percent, kept[scene], count, KEEP)
            )
        elif percent < -MOST_CHANGE_PERCENT:
            fallen.append(scene)
    gone = [scene for scene in sorted(kept) if scene not in dict(counts)]
    faults += ["%s is kept and was not counted: %s" % (scene, KEEP) for scene in gone]
    if fallen:
        lines.append("-- fewer instructions in: %s; keep them: %s" % (", ".join(fallen), KEEP))
    return bool(faults), lines + ["FAILED: " + fault for fault in faults]
