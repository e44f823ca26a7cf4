#!/usr/bin/env python3
"""Turns the schema of the metadata document into Python's classes for it, and into their conversion
from and to the classes of the C++ binding.

usage: generate_elements.py SCHEMA SOURCES PACKAGE

Writes ElementConversion.h and .cpp into the folder SOURCES, and metadata/_elements.py into the folder
of the package. A file whose content would not change is left alone.
"""

import keyword
import sys
import textwrap
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "ocl/src/shared/schemas"))

import generate  # noqa: E402
import schema  # noqa: E402
from schema import ITEM, ITEMS, REQUIRED_ITEM, REQUIRED_TEXT, TEXT, TEXTS  # noqa: E402

WIDTH = 100


def main(arguments):
    if len(arguments) != 3:
        sys.exit(__doc__)
    try:
        model = schema.read(arguments[0])
    except schema.SchemaError as error:
        sys.exit(f"{arguments[0]}: {error}")
    for kind in model.kinds:
        check(kind)
    sources, package = Path(arguments[1]), Path(arguments[2]) / "metadata"
    sources.mkdir(parents=True, exist_ok=True)
    package.mkdir(parents=True, exist_ok=True)
    generate.replace(sources / "ElementConversion.h", header(model))
    generate.replace(sources / "ElementConversion.cpp", source(model))
    generate.replace(package / "_elements.py", classes(model))


def check(kind):
    for member in [*kind.attributes, *kind.children]:
        if keyword.iskeyword(member.name) or member.name in ("to_dict", kind.name):
            sys.exit(f"{kind.name}: {member.name} cannot become a member of a Python class")


# Python's classes


CLASSES_TOP = '''\
"""The classes of the metadata document, one for each element kind; `Project` is the root.

Members are named as in the document. What is absent is None, or an empty list.
"""

from __future__ import annotations

from dataclasses import dataclass, field

from ._element import Element

__all__ = [
{names}
]
'''


def classes(model):
    names = sorted(kind.name for kind in model.kinds)
    lines = [CLASSES_TOP.format(names="\n".join(f'    "{name}",' for name in names))]
    for kind in model.kinds:
        lines += ["", python_class(kind, model)]
        if any(member_hides(kind.name, other) for other in model.kinds):
            lines += ["", f"_{kind.name} = {kind.name}", ""]
    return "\n".join(lines)


def member_hides(name, kind):
    """Whether the kind has a child that is called like its class, which then needs another name."""
    return any(child.name == child.type == name for child in kind.children)


def python_class(kind, model):
    text = f"{generate.places(kind, model)} {kind.doc}".strip()
    lines = ["@dataclass(slots=True, repr=False)", f"class {kind.name}(Element):",
             *docstring(text, "    ")]
    for member in [*kind.attributes, *kind.children]:
        lines += ["", f"    {member.name}: {python_type(member)}",
                  *docstring(heading(member), "    ")]
    return "\n".join(lines) + "\n"


def docstring(text, indent):
    lines = textwrap.wrap(f'"""{text}"""', WIDTH - len(indent), break_long_words=False)
    return [indent + line for line in lines]


def python_type(member):
    if isinstance(member, schema.Attribute):
        return f"{'int' if member.integer else 'str'} | None = None"
    kind = f"_{member.type}" if member.name == member.type else member.type
    return {
        TEXT: "str | None = None",
        REQUIRED_TEXT: 'str = ""',
        TEXTS: "list[str] = field(default_factory=list)",
        ITEM: f"{kind} | None = None",
        REQUIRED_ITEM: f"{kind} = field(default_factory=lambda: {member.type}())",
        ITEMS: f"list[{kind}] = field(default_factory=list)",
    }[member.form]


def heading(member):
    if isinstance(member, schema.Attribute):
        bounds = f", 0 to {member.integer.maximum}" if member.integer else ""
        return f"Attribute `{member.name}`{bounds}. {member.doc}".strip()
    occurs = {
        TEXT: "Text `{}`, at most one.",
        REQUIRED_TEXT: "Text `{}`, mandatory.",
        TEXTS: "Texts `{}`, any number.",
        ITEM: "Child `{}`, at most one.",
        REQUIRED_ITEM: "Child `{}`, mandatory.",
        ITEMS: "Children `{}`, any number.",
    }[member.form].format(member.name)
    return f"{occurs} {member.doc}".strip()


# The conversion


HEADER = """\
#pragma once

#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>
#include <pybind11/pybind11.h>

/// Between the classes of the binding and those of `xrf.metadata`: copies, in both directions. What
/// does not fit raises what Python would.
namespace xrf::python::elements {{

{declarations}

}}  // namespace xrf::python::elements
"""


def to_python(kind):
    return f"pybind11::object toPython(const Movrel::{kind.name}& item, unsigned depth)"


def from_python(kind):
    return f"void fromPython(pybind11::handle object, Movrel::{kind.name}& item, unsigned depth)"


def header(model):
    lines = []
    for kind in model.kinds:
        lines += [f"{to_python(kind)};",
                  *generate.statement(f"{from_python(kind)};", "")]
    return HEADER.format(declarations="\n".join(lines))


SOURCE = """\
#include <python/ElementConversion.h>
#include <python/Elements.h>

namespace xrf::python::elements {{

namespace py = pybind11;

{definitions}
}}  // namespace xrf::python::elements
"""


def source(model):
    lines = []
    for kind in model.kinds:
        unused = not any(child.type for child in kind.children)
        depth = ["static_cast<void>(depth);"] if unused else []
        if kind.nested:
            depth = ["requireShallow(depth);"]
        written, read = [], []
        for member in [*kind.attributes, *kind.children]:
            written += put(member, kind)
            read += take(member, kind)
        lines += function(to_python(kind), [*depth, f'py::object made = make("{kind.name}");',
                                            *written, "return made;"])
        lines += function(from_python(kind), [*depth, *read])
    return SOURCE.format(definitions="\n".join(lines))


def function(head, body):
    return [*generate.statement(f"{head} {{", ""), *(f"  {line}" for line in body), "}", ""]


def deeper(child, kind):
    return "depth + 1" if child is kind.nested else "depth"


def is_text(member):
    return isinstance(member, schema.Attribute) and not member.integer or (
        isinstance(member, schema.Child) and member.form in (TEXT, REQUIRED_TEXT))


def put(member, kind):
    """Statements that copy a member of `item` to `made`."""
    name, to = member.accessor, f'made.attr("{member.name}")'
    if isinstance(member, schema.Attribute) and member.integer:
        return [f"if (item.Isset{name}()) {to} = py::int_(item.Get{name}());"]
    if is_text(member):
        return [f"if (item.Isset{name}()) {to} = python::toPython(item.Get{name}());"]
    if member.form == REQUIRED_ITEM:
        return [f"if (item.Isset{name}()) {to} = toPython(item.Get{name}(), depth);"]
    if member.form == ITEM:
        return [f"if (item.Isset{name}()) {to} = toPython(item.Get{name}(), depth);"]
    one = f"item.Get{name}(i)"
    value = (f"python::toPython({one})" if member.form == TEXTS
             else f"toPython({one}, {deeper(member, kind)})")
    return [f"py::list {member.name}s;",
            f"for (std::size_t i = 0; i < item.Size{name}(); ++i) {{",
            f"  {member.name}s.append({value});", "}",
            f"{to} = std::move({member.name}s);"]


def take(member, kind):
    """Statements that copy a member of `object` to `item`."""
    name, what = member.accessor, f'"{kind.name}", "{member.name}"'
    present = f'if (isPresent(object, "{member.name}")) {{'
    if isinstance(member, schema.Attribute) and member.integer:
        cpp = member.integer.cpp
        return [present, f"  item.Set{name}(static_cast<{cpp}>(",
                f"      numberOf(object, {what}, {member.integer.maximum}U)));", "}"]
    if is_text(member):
        if isinstance(member, schema.Child) and member.form == REQUIRED_TEXT:
            return [f"item.Set{name}(textOf(object, {what}));"]
        return [present, f"  item.Set{name}(textOf(object, {what}));", "}"]
    if member.form in (ITEM, REQUIRED_ITEM):
        attribute = f'object.attr("{member.name}")'
        place = f'"{kind.name}.{member.name}"'
        body = [f'require({attribute}, "{member.type}", {place});']
        if member.form == ITEM:
            body += [f"Movrel::{member.type} child;",
                     f"fromPython({attribute}, child, depth);", f"item.Assign{name}(child);"]
            return [present, *(f"  {line}" for line in body), "}"]
        return [*body, f"fromPython({attribute}, item.Get{name}(), depth);"]
    if member.form == TEXTS:
        return [f"eachOf(object, {what}, [&](py::handle child, const std::string& place) {{",
                f"  item.Append{name}(itemText(child, place));", "});"]
    return [f"eachOf(object, {what}, [&](py::handle child, const std::string& place) {{",
            f'  require(child, "{member.type}", place);',
            f"  fromPython(child, item.Append{name}(), {deeper(member, kind)});", "});"]


if __name__ == "__main__":
    main(sys.argv[1:])
