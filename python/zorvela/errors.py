"""The errors of zorvela. Each message is one line that tells what is wrong and what to do."""
from typing import Optional

__all__ = ["Error", "FileError", "ChoiceError", "TableError"]


class Error(ValueError):
    """An error that the caller can fix. Its classes tell the cause."""

    file: Optional[str] = None
    """The file with the error, under the name that was given; None without a file."""

    line: Optional[int] = None
    """The line with the error, from 1; None if unknown."""


class FileError(Error):
    """A file cannot be read, has an unknown format, or has no shifts of a protein."""


class ChoiceError(Error):
    """A file does not have the chosen chain or shift list."""


class TableError(Error):
    """A reference table cannot be read or is incomplete."""


for _error in (Error, FileError, ChoiceError, TableError):
    _error.__module__ = "zorvela"
