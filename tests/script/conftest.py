import pytest
from support import scripts


@pytest.fixture
def tree(tmpdir):
    """A folder that holds a copy of the scripts and nothing else."""
    scripts.copy_scripts(tmpdir)
    return tmpdir
