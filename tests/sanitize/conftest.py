"""The tests here are of Sanitize builds; the faulty module exists in those alone."""

import os

build_directory = os.environ.get("LARKSPUR_BUILD_DIR", "")
if not os.path.exists(os.path.join(build_directory, "tests/sanitize/larkspur_faulty.so")):
    collect_ignore_glob = ["test_*.py"]
