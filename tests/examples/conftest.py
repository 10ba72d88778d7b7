"""The tests in engine/ need the example engine where all others have a recording host.

They run in an interpreter of their own, which test_engine.py starts.
"""

collect_ignore = ["engine"]
