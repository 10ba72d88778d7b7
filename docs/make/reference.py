"""Makes the pages of docs/reference/ that have their source elsewhere.

    python3 docs/make/reference.py            # writes them
    python3 docs/make/reference.py --check    # names those that are not current; status 1 if any

functions.md and types.md come from python/larkspur.pyi, native.md from include/larkspur.h and
examples/native/tour.c. Needs Python 3.9 and nothing else.
"""

from __future__ import print_function

import argparse
import os
import sys

import native_page
import python_pages
import stub

REFERENCE = os.path.join(native_page.TREE, "docs", "reference")


def pages():
    """From a page's file name to its text."""
    entries = stub.read()
    return {
        python_pages.FUNCTIONS: python_pages.functions_page(entries),
        python_pages.TYPES: python_pages.types_page(entries),
        "native.md": native_page.page(),
    }


def read(path):
    if not os.path.exists(path):
        return ""
    with open(path) as page:
        return page.read()


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("--check", action="store_true", help="change nothing")
    options = parser.parse_args()
    made = pages()
    stale = [name for name in sorted(made) if read(os.path.join(REFERENCE, name)) != made[name]]
    if options.check:
        for name in stale:
            print("docs/reference/%s is not current: run script/docs" % name)
        sys.exit(1 if stale else 0)
    for name in stale:
        with open(os.path.join(REFERENCE, name), "w") as page:
            page.write(made[name])
        print("docs/reference/%s" % name)


if __name__ == "__main__":
    main()
