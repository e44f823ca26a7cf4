"""What the classes of the metadata document share."""

from __future__ import annotations

from dataclasses import fields
from typing import Any


class Element:
    """An element of the document: plain data, compared by value."""

    __slots__ = ()

    def to_dict(self) -> dict[str, Any]:
        """The members that are there, children as dictionaries."""
        return {name: _plain(value) for name, value in _present(self)}

    def __repr__(self) -> str:
        members = ", ".join(f"{name}={_brief(value)}" for name, value in _present(self))
        return f"{type(self).__name__}({members})"


def _present(element: Element) -> list[tuple[str, Any]]:
    members = [(f.name, getattr(element, f.name)) for f in fields(element)]
    return [(name, value) for name, value in members if value is not None and value != []]


def _plain(value: Any) -> Any:
    if isinstance(value, Element):
        return value.to_dict()
    return [_plain(item) for item in value] if isinstance(value, list) else value


def _brief(value: Any) -> str:
    """A long list of children by their number."""
    if isinstance(value, list) and any(isinstance(item, Element) for item in value):
        return f"[{len(value)} {type(value[0]).__name__}]"
    return repr(value)
