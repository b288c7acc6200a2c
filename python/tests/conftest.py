"""Where the tests find the command line and the data."""

from __future__ import annotations

import os
from pathlib import Path

import pytest

LIBRARY = Path(__file__).resolve().parent.parent.parent


@pytest.fixture(scope="session")
def tool() -> str:
    """The command-line tool of the same build."""
    path = os.environ.get("POKERMATH")
    if path is None:
        pytest.skip("POKERMATH is not set: the path of the command-line tool")
    return path


@pytest.fixture(scope="session")
def data() -> Path:
    return LIBRARY / "tests/data"
