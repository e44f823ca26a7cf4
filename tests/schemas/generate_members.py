#!/usr/bin/env python3
"""Lists every member of every class of the binding, so that tests walk them all.

usage: generate_members.py SCHEMA FOLDER

Writes Members.h: for each member a struct through which a test reaches its accessors, for each
class a `visit` that hands all of them to a test, `complete`, which gives an object what it needs to
be written, and `fill`, which gives it random content.
"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "ocl/src/shared/schemas"))

import generate  # noqa: E402
import schema  # noqa: E402

TOP = """\
#pragma once

#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>

#include <cstddef>
#include <string>
#include <type_traits>

namespace members {
"""

VALUE = """\
struct {kind}_{accessor} {{
  using Parent = Movrel::{kind};
  using Value = {value};
  static constexpr const char* name = "{name}";
  static decltype(auto) get(const Parent& parent) {{ return parent.Get{accessor}(); }}
  static auto set(Parent& parent, const Value& value) {{ return parent.Set{accessor}(value); }}
  static void unset(Parent& parent) {{ parent.Unset{accessor}(); }}
  static bool isset(const Parent& parent) {{ return parent.Isset{accessor}(); }}
}};
"""

LIST = """\
  static constexpr const char* name = "{name}";
  static std::size_t size(const Parent& parent) {{ return parent.Size{accessor}(); }}
  static Item& get(Parent& parent, std::size_t at) {{ return parent.Get{accessor}(at); }}
  static const Item& get(const Parent& parent, std::size_t at) {{ return parent.Get{accessor}(at); }}
  static void erase(Parent& parent, std::size_t at) {{ parent.Delete{accessor}(at); }}
  static void clear(Parent& parent) {{ parent.Clear{accessor}(); }}
  static Item& back(Parent& parent) {{ return parent.Back{accessor}(); }}
  static const Item& back(const Parent& parent) {{ return parent.Back{accessor}(); }}
"""

TEXTS = """\
struct {kind}_{accessor} {{
  using Parent = Movrel::{kind};
  using Item = std::string;
""" + LIST + """\
  static void append(Parent& parent, const Item& text) {{ parent.Append{accessor}(text); }}
  static void insert(Parent& parent, std::size_t at, const Item& text) {{
    parent.Insert{accessor}(at, text);
  }}
  static void assign(Parent& parent, std::size_t at, const Item& text) {{
    parent.Assign{accessor}(at, text);
  }}
}};
"""

ITEMS = """\
struct {kind}_{accessor} {{
  using Parent = Movrel::{kind};
  using Item = Movrel::{type};
""" + LIST + """\
  static Item& append(Parent& parent) {{ return parent.Append{accessor}(); }}
  static Item& append(Parent& parent, Item* item) {{ return parent.Append{accessor}(item); }}
  static Item& insert(Parent& parent, std::size_t at) {{ return parent.Insert{accessor}(at); }}
  static Item& insert(Parent& parent, std::size_t at, Item* item) {{
    return parent.Insert{accessor}(at, item);
  }}
  static void assign(Parent& parent, std::size_t at, const Item& item) {{
    parent.Assign{accessor}(at, item);
  }}
  static void assign(Parent& parent, std::size_t at, Item* item) {{
    parent.Assign{accessor}(at, item);
  }}
}};
"""

ITEM = """\
struct {kind}_{accessor} {{
  using Parent = Movrel::{kind};
  using Item = Movrel::{type};
  static constexpr const char* name = "{name}";
  static constexpr bool required = {required};
  static Item& get(Parent& parent) {{ return parent.Get{accessor}(); }}
  static const Item& get(const Parent& parent) {{ return parent.Get{accessor}(); }}
  static bool isset(const Parent& parent) {{ return parent.Isset{accessor}(); }}
  static void unset(Parent& parent) {{ parent.Unset{accessor}(); }}
  static void assign(Parent& parent, const Item& item) {{ parent.Assign{accessor}(item); }}
  static void assign(Parent& parent, Item* item) {{ parent.Assign{accessor}(item); }}
}};
"""

# What a visitor calls a child of each form, and its struct.
FORMS = {
    schema.TEXT: ("text", VALUE),
    schema.REQUIRED_TEXT: ("text", VALUE),
    schema.TEXTS: ("texts", TEXTS),
    schema.ITEM: ("item", ITEM),
    schema.REQUIRED_ITEM: ("item", ITEM),
    schema.ITEMS: ("items", ITEMS),
}


def described(kind):
    """(what a visitor calls it, its accessors' name, its struct) of each member."""
    for attribute in kind.attributes:
        value = attribute.integer.cpp if attribute.integer else "std::string"
        yield "attribute", attribute.accessor, VALUE.format(
            kind=kind.name, accessor=attribute.accessor, name=attribute.name, value=value)
    for child in kind.children:
        call, struct = FORMS[child.form]
        yield call, child.accessor, struct.format(
            kind=kind.name, accessor=child.accessor, name=child.name, value="std::string",
            type=child.type, required="true" if child.required else "false")


def completion(kind):
    lines = [f"inline void complete(Movrel::{kind.name}& item) {{", "  static_cast<void>(item);"]
    for child in kind.children:
        if child.form == schema.REQUIRED_TEXT:
            lines.append(f'  item.Set{child.accessor}("{child.name}");')
        elif child.form == schema.REQUIRED_ITEM:
            lines.append(f"  complete(item.Get{child.accessor}());")
    return [*lines, "}", ""]


def filling(kind):
    """Content that depends on the random numbers alone: attributes are mostly there."""
    lines = ["template <class Random>",
             f"void fill(Movrel::{kind.name}& item, Random& random, unsigned depth) {{"]
    for attribute in kind.attributes:
        value = (f"random.template number<{attribute.integer.cpp}>()" if attribute.integer
                 else "random.text()")
        lines.append(f"  if (random.percent(70)) item.Set{attribute.accessor}({value});")
    for child in kind.children:
        name = child.accessor
        lines.append({
            schema.TEXT: f"  if (random.percent(50)) item.Set{name}(random.text());",
            schema.REQUIRED_TEXT: f"  item.Set{name}(random.text());",
            schema.TEXTS: f"  random.repeat(depth, [&] {{ item.Append{name}(random.text()); }});",
            schema.ITEM: f"  if (random.percent(50)) item.Assign{name}(made<Movrel::{child.type}>("
                         "random, depth + 1));",
            schema.REQUIRED_ITEM: f"  fill(item.Get{name}(), random, depth + 1);",
            schema.ITEMS: f"  random.repeat(depth, [&] {{ fill(item.Append{name}(), random, "
                          "depth + 1); });",
        }[child.form])
    return [*lines, "  static_cast<void>(depth);", "}", ""]


def visiting(kind, calls):
    return ["template <class Visitor>",
            f"void visit(std::type_identity<Movrel::{kind.name}>, Visitor&& visitor) {{",
            "  static_cast<void>(visitor);",
            *(f"  visitor.template {call}<{kind.name}_{accessor}>();" for call, accessor in calls),
            "}", ""]


def members(model):
    lines = [TOP]
    for kind in model.kinds:
        lines += completion(kind)
    lines += ["template <class Item, class Random>",
              "Item* made(Random& random, unsigned depth);", ""]
    for kind in model.kinds:
        calls = []
        for call, accessor, text in described(kind):
            lines.append(text)
            calls.append((call, accessor))
        lines += [*visiting(kind, calls), *filling(kind)]
    lines += ["template <class Item, class Random>",
              "Item* made(Random& random, unsigned depth) {",
              "  Item* item = new Item();",
              "  fill(*item, random, depth);",
              "  return item;",
              "}", "",
              "template <template <class...> class List>",
              "using every_class = List<" + ", ".join(
                  f"Movrel::{kind.name}" for kind in model.kinds) + ">;", "",
              "}  // namespace members"]
    return "\n".join(lines) + "\n"


def main(arguments):
    if len(arguments) != 2:
        sys.exit(__doc__)
    folder = Path(arguments[1])
    folder.mkdir(parents=True, exist_ok=True)
    generate.replace(folder / "Members.h", members(schema.read(arguments[0])))


if __name__ == "__main__":
    main(sys.argv[1:])
