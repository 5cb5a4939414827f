"""What zorvela raises: each error is one line that says what is wrong and what to do."""
from typing import Optional

__all__ = ["Error", "FileError", "ChoiceError", "TableError"]


class Error(ValueError):
    """Something that the caller can mend. Those below say what is at fault."""

    file: Optional[str] = None
    """The file at fault as it was named; None where there is none."""

    line: Optional[int] = None
    """The line at fault, from 1; None where it is not known."""


class FileError(Error):
    """A file cannot be read, is in no known format, or has no shifts of a protein."""


class ChoiceError(Error):
    """A file has no such chain or shift list."""


class TableError(Error):
    """A reference table cannot be read or is not whole."""


for _error in (Error, FileError, ChoiceError, TableError):
    _error.__module__ = "zorvela"
