"""The metadata document of a compiled container, as plain objects to read, change and write.

    from xrf import metadata

    project = metadata.read("movrel.xml")
    kernel = project.platform[0].device[0].core[0].kernel[0]
    kernel.debug = "false"
    metadata.write(project, "movrel.xml")

Each element kind has a class, and each member has the name that it has in the document. A child that
may occur several times is a list, whose attribute has the name of the element.
"""

from __future__ import annotations

import os
import warnings
from dataclasses import dataclass

from .. import _xrf
from .._error import Error
from ..types import Limits
from . import _elements
from ._elements import *

__all__ = ["Fault", "UnknownContent", "check", "parse", "read", "to_xml", "write"]
__all__ += _elements.__all__


@dataclass(frozen=True)
class Fault:
    """Something wrong with a document, and where."""

    code: int
    severity: str
    """"error", or "warning" for what the schema does not know."""
    line: int
    column: int
    element: str
    message: str


class UnknownContent(UserWarning):
    """The document holds what its schema does not know; it is not in the objects, and lost when they
    are written."""


def read(path: str | os.PathLike[str], *, limits: Limits | None = None) -> Project:
    """The document in a file. A bad one raises `xrf.Error`; content that is not known is told by the
    warning `UnknownContent`. The limits are those whose names begin with xml."""
    project, faults = _xrf.metadata_read(path, limits)
    return _project(project, [Fault(*fault) for fault in faults], os.fspath(path))


def parse(text: str, *, limits: Limits | None = None) -> Project:
    """The document in a text; see `read`."""
    project, faults = _xrf.metadata_parse(text, limits)
    return _project(project, [Fault(*fault) for fault in faults], None)


def check(path: str | os.PathLike[str], *, limits: Limits | None = None) -> list[Fault]:
    """Every fault of a document, in its order. One without errors can be read."""
    return [Fault(*fault) for fault in _xrf.metadata_read(path, limits)[1]]


def write(project: Project, path: str | os.PathLike[str]) -> None:
    """Writes the document to a file, which appears only when it is complete."""
    _xrf.metadata_write(project, path)


def to_xml(project: Project) -> str:
    """The text of the document."""
    return _xrf.metadata_text(project)


def _project(project: Project | None, faults: list[Fault], file: str | None) -> Project:
    for fault in faults:
        if fault.severity == "error":
            message = f"{fault.message} (code {fault.code})"
            raise Error(message, file, fault.line or None, fault.column or None)
    for fault in faults:
        place = ":".join(str(part) for part in (file, fault.line, fault.column) if part)
        warnings.warn(f"{place}: {fault.message}", UnknownContent, stacklevel=3)
    assert project is not None
    return project
