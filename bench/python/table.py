"""The table: a line for each ratio, with its target and whether that is reached."""

from __future__ import division, print_function

from jobs import BASE, PEER

REACHED, SHORT, NONE = "reached", "SHORT", ""
MODULE = "larkspur"  # among the versions: where it was built


class Row(object):
    """
    ratio    quartiles of the other's time over ours
    how      what the other called
    seconds  median of ours, per call
    """

    def __init__(self, job, size, who, ratio, how, seconds):
        self.job, self.size, self.who, self.ratio = job, size, who, ratio
        self.how, self.seconds = how, seconds
        self.target = job.target(who, size)

    def verdict(self):
        return verdict(self.target, self.ratio)


def verdict(target, ratio):
    """What to say of a ratio's quartiles, by their median."""
    if target is None:
        return NONE
    return REACHED if ratio[1] >= target else SHORT


def size_text(size):
    return "%d x %d" % tuple(size) if size else ""


def figure(value):
    return "%.2f" % value if value < 10 else "%.1f" % value if value < 100 else "%.0f" % value


def seconds_text(seconds):
    for unit, factor in (("s", 1), ("ms", 1e3), ("us", 1e6)):
        if seconds * factor >= 1:
            return "%s %s" % (figure(seconds * factor), unit)
    return "%s ns" % figure(seconds * 1e9)


FORM = "%-11s %-8s %-30s %-7s %-19s %-8s %s"


def line(row):
    low, median, high = map(figure, row.ratio)
    return (
        FORM
        % (
            size_text(row.size),
            seconds_text(row.seconds),
            row.who,
            figure(row.target) if row.target else "",
            "%s (%s-%s)" % (median, low, high),
            row.verdict(),
            row.how,
        )
    ).rstrip()


def summary(rows, jobs, compared, peers):
    """Lines on how many targets were reached, which were not, and which nobody has looked at."""
    judged = [row for row in rows if row.verdict()]
    short = [row for row in judged if row.verdict() == SHORT]
    lines = ["%d of %d targets reached" % (len(judged) - len(short), len(judged))]
    lines += [
        "    short: %s, %s against %s: %s of %s"
        % (
            row.job.name,
            size_text(row.size) or "-",
            row.who,
            figure(row.ratio[1]),
            figure(row.target),
        )
        for row in short
    ]
    for who, was_there, option in ((BASE, compared, "--compare " + BASE), (PEER, peers, "--peers")):
        if not was_there and any(job.against.get(who) for job in jobs):
            lines.append("targets against %s are measured with %s" % (who, option))
    return lines


def processor():
    """Its name, where the system tells."""
    try:
        with open("/proc/cpuinfo") as told:
            names = [each.split(":", 1)[1] for each in told if each.startswith("model name")]
    except IOError:
        names = []
    return names[0].strip() if names else "unknown processor"


def as_results(rows, workers, samples):
    """All that plots are made of."""
    told = ["%s %s" % pair for pair in workers.versions() if pair[0] != MODULE]
    return {
        "told": "%s; %s; medians and quartiles of %d samples"
        % (processor(), ", ".join(told), samples),
        "rows": [
            {
                "job": row.job.name,
                "size": row.size,
                "who": row.who,
                "how": row.how,
                "low": row.ratio[0],
                "median": row.ratio[1],
                "high": row.ratio[2],
                "target": row.target,
                "verdict": row.verdict(),
                "seconds": row.seconds,
            }
            for row in rows
        ],
    }


def print_table(rows, jobs, workers):
    for pair in [("processor", processor())] + workers.versions():
        print("%-22s %s" % pair)
    print("\nThe other's time over ours: median of the rounds' ratios (quartiles).\n")
    print(FORM % ("size", "ours", "compared with", "target", "ratio", "", "by its best way"))
    for job in jobs:
        own = [row for row in rows if row.job is job]
        if own:
            print("\n" + job.name)
            for row in own:
                print(line(row))
    print()
    print("\n".join(summary(rows, jobs, workers.revision == BASE, workers.peer is not None)))
