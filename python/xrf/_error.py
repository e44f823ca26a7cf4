"""What goes wrong with a file."""

from __future__ import annotations


class Error(Exception):
    """A file that cannot be read or written, and where it is at fault.

    `message` says why, without the place; `file`, `line` and `column` are None where they are not
    known. Lines and columns count from 1.
    """

    def __init__(
        self,
        message: str,
        file: str | None = None,
        line: int | None = None,
        column: int | None = None,
    ) -> None:
        super().__init__(message, file, line, column)
        self.message = message
        self.file = file
        self.line = line
        self.column = column

    def __str__(self) -> str:
        place = [str(part) for part in (self.file, self.line, self.column) if part is not None]
        return ":".join(place) + ": " + self.message if place else self.message


Error.__module__ = "xrf"
