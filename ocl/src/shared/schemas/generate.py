#!/usr/bin/env python3
"""Turns the schema of the metadata document into the classes that hold one.

usage: generate.py SCHEMA FOLDER

Writes HPIMovrelXmlReaderWriterLMX.h and .cpp into FOLDER. A file whose content would not change is
left alone, so that nothing is compiled anew for it.
"""

import sys
import textwrap
from pathlib import Path

import schema
from schema import ITEM, ITEMS, REQUIRED_ITEM, REQUIRED_TEXT, TEXT, TEXTS

STEM = "HPIMovrelXmlReaderWriterLMX"
NAMESPACE = "Movrel"
WIDTH = 100


def main(arguments):
    if len(arguments) != 2:
        sys.exit(__doc__)
    described, folder = Path(arguments[0]), Path(arguments[1])
    try:
        model = schema.read(described)
    except schema.SchemaError as error:
        sys.exit(f"{described}: {error}")
    folder.mkdir(parents=True, exist_ok=True)
    replace(folder / f"{STEM}.h", header(model))
    replace(folder / f"{STEM}.cpp", source(model))


def replace(path, text):
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def comment(text, indent=""):
    """`text` as a documentation comment."""
    lines = textwrap.wrap(text, WIDTH - len(indent) - 4, break_long_words=False)
    return [f"{indent}/// {line}" for line in lines]


def statement(text, indent="  "):
    """One statement or declaration, broken between its parameters where it is too long."""
    if len(indent + text) <= WIDTH:
        return [indent + text]
    # Only the blanks between parameters are places to break.
    breakable = text.replace(" ", "\0").replace(",\0", ", ")
    lines = textwrap.wrap(breakable, WIDTH - len(indent), break_long_words=False,
                          break_on_hyphens=False, subsequent_indent=" " * (text.index("(") + 1))
    if any(len(indent + line) > WIDTH for line in lines):
        head, parameters = text.split("(", 1)
        lines = [f"{head}(", f"    {parameters}"]
    return [indent + line.replace("\0", " ") for line in lines]


def definition(head, *body):
    """A function's definition, on one line where it fits."""
    one = f"{head} {{ {body[0].strip()} }}" if len(body) == 1 else ""
    if one and len(one) <= WIDTH:
        return [one, ""]
    return [*statement(f"{head} {{", ""), *(f"  {line}" for line in body), "}", ""]


# What each form of member is


def member_type(member):
    if isinstance(member, schema.Attribute):
        if member.integer:
            return f"lmx60::c_optional_value<{member.integer.cpp}>"
        return "lmx60::c_optional_text"
    return {
        TEXT: "lmx60::c_optional_text",
        REQUIRED_TEXT: "lmx60::c_optional_text",
        TEXTS: "lmx60::c_text_list",
        ITEM: f"lmx60::c_owned_child<{member.type}>",
        REQUIRED_ITEM: f"lmx60::c_owned_child<{member.type}>",
        ITEMS: f"lmx60::c_owned_list<{member.type}>",
    }[member.form]


def members(kind):
    """(type, name) of each data member, in the order of the document."""
    for member in [*kind.attributes, *kind.children]:
        nested = member is kind.nested
        type_name = f"lmx60::c_nested_list<{kind.name}>" if nested else member_type(member)
        yield type_name, f"m_{member.name}"


class Function:
    """A member function: declared in the header, defined in the source."""

    def __init__(self, result, name, parameters, body, const=False):
        self.result, self.name, self.parameters, self.body = result, name, parameters, body
        self.suffix = " const" if const else ""

    def declaration(self):
        return statement(f"{self.result} {self.name}({self.parameters}){self.suffix};")

    def definition(self, kind):
        body = self.body if isinstance(self.body, list) else [self.body]
        head = f"{self.result} {kind}::{self.name}({self.parameters}){self.suffix}"
        return definition(head, *body)


def value_accessors(member, value, setter, by_value):
    """The family of an attribute or a text that may be absent."""
    name, held = member.accessor, f"m_{member.name}"
    result = value if by_value else f"const {value}&"
    return [
        Function(result, f"Get{name}", "", f"return {held}.get();", const=True),
        Function("lmx60::elmx_error", f"Set{name}", f"const {setter}& value",
                 [f"{held}.set(value);", "return lmx60::ELMX_OK;"]),
        Function("void", f"Unset{name}", "", f"{held}.unset();"),
        Function("bool", f"Isset{name}", "", f"return {held}.isset();", const=True),
    ]


def attribute_accessors(attribute):
    if attribute.integer:
        cpp = attribute.integer.cpp
        return value_accessors(attribute, cpp, cpp, by_value=True)
    return text_accessors(attribute)


def text_accessors(member):
    return value_accessors(member, "std::string", "std::string", by_value=False)


def list_accessors(child, item, additions):
    name, held = child.accessor, f"m_{child.name}"
    return [
        Function("std::size_t", f"Size{name}", "", f"return {held}.size();", const=True),
        Function(f"const {item}&", f"Get{name}", "std::size_t index", f"return {held}.at(index);",
                 const=True),
        Function(f"{item}&", f"Get{name}", "std::size_t index", f"return {held}.at(index);"),
        *additions,
        Function("void", f"Delete{name}", "std::size_t index", f"{held}.erase(index);"),
        Function("void", f"Clear{name}", "", f"{held}.clear();"),
        Function(f"const {item}&", f"Back{name}", "", f"return {held}.back();", const=True),
        Function(f"{item}&", f"Back{name}", "", f"return {held}.back();"),
    ]


def texts_accessors(child):
    name, held = child.accessor, f"m_{child.name}"
    text = "const std::string& text"
    return list_accessors(child, "std::string", [
        Function("void", f"Append{name}", text, f"{held}.append(text);"),
        Function("void", f"Insert{name}", f"std::size_t index, {text}",
                 f"{held}.insert(index, text);"),
        Function("void", f"Assign{name}", f"std::size_t index, {text}",
                 f"{held}.assign(index, text);"),
    ])


def items_accessors(child):
    name, held, item = child.accessor, f"m_{child.name}", child.type
    return list_accessors(child, item, [
        Function(f"{item}&", f"Append{name}", "", f"return {held}.append();"),
        Function(f"{item}&", f"Append{name}", f"{item}* item", f"return {held}.append(item);"),
        Function(f"{item}&", f"Insert{name}", "std::size_t index", f"return {held}.insert(index);"),
        Function(f"{item}&", f"Insert{name}", f"std::size_t index, {item}* item",
                 f"return {held}.insert(index, item);"),
        Function("void", f"Assign{name}", f"std::size_t index, const {item}& item",
                 f"{held}.assign(index, item);"),
        Function("void", f"Assign{name}", f"std::size_t index, {item}* item",
                 f"{held}.assign(index, item);"),
    ])


def item_accessors(child):
    name, held, item = child.accessor, f"m_{child.name}", child.type
    found = "get_or_create" if child.required else "get"
    return [
        Function(f"const {item}&", f"Get{name}", "", f"return {held}.get();", const=True),
        Function(f"{item}&", f"Get{name}", "", f"return {held}.{found}();"),
        Function("bool", f"Isset{name}", "", f"return {held}.isset();", const=True),
        Function("void", f"Unset{name}", "", f"{held}.unset();"),
        Function("void", f"Assign{name}", f"const {item}& item", f"{held}.assign(item);"),
        Function("void", f"Assign{name}", f"{item}* item", f"{held}.assign(item);"),
    ]


def child_accessors(child):
    return {
        TEXT: text_accessors,
        REQUIRED_TEXT: text_accessors,
        TEXTS: texts_accessors,
        ITEM: item_accessors,
        REQUIRED_ITEM: item_accessors,
        ITEMS: items_accessors,
    }[child.form](child)


# The header


HEADER_TOP = f"""\
#pragma once

#include <lmx60/CrackedName.h>
#include <lmx60/Error.h>
#include <lmx60/NestedList.h>
#include <lmx60/OptionalValue.h>
#include <lmx60/OwnedChild.h>
#include <lmx60/OwnedList.h>
#include <lmx60/TextList.h>
#include <support/Api.h>

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace lmx60 {{
class c_any_info;
class c_xml_reader;
class c_xml_writer;
}}  // namespace lmx60

/// The metadata document of a compiled accelerator container, in memory. Each element kind has one
/// class; `Project` is the root.
///
///     lmx60::elmx_error error;
///     lmx60::s_debug_error debug;
///     const Movrel::Project project("movrel.xml", &error, &debug);
///     if (error != lmx60::ELMX_OK) complain(debug.line, debug.message);
///     for (std::size_t i = 0; i < project.SizePlatform(); ++i) show(project.GetPlatform(i));
///
/// What every class offers:
/// - An attribute, and a text that occurs once, is got, set, unset and asked for: an absent text
///   reads as the empty string, an absent integer as 0. Setters return `lmx60::ELMX_OK`. Texts are
///   UTF-8; the classes do not look into them.
/// - Children of a list are counted, got by position from 0, appended, inserted before a position,
///   assigned, deleted and cleared. `Back` is the last one.
/// - A child that may be absent is asked for by `Isset`; getting it while it is absent raises
///   `lmx60::lmx_exception`, and so does a position beyond the end of a list.
/// - A parent owns its children. Whoever hands over a pointer gives the object away: it is deleted
///   when it cannot be stored. References and pointers to a child live until it is deleted,
///   assigned over or its parent goes.
/// - Copies are deep; equality compares values, presence and children in order.
/// - `init` and `reset` empty an object; `IsOccursOk` says whether all mandatory texts are there.
/// - `unmarshal` reads the element at which a reader stands: its attributes one by one, then its
///   content; `unmarshal_attributes` says whether the class knows the current attribute.
///   `marshal` writes the object as an element. Both return 0 or the first error.
///
/// Objects are as safe among threads as a `std::string`.
namespace {NAMESPACE} {{
"""

READING = """\
  lmx60::elmx_error unmarshal(lmx60::c_xml_reader& reader, std::string_view name);
  bool unmarshal_attributes(lmx60::c_xml_reader& reader, lmx60::elmx_error* error);
  bool unmarshal_body(lmx60::c_xml_reader& reader, lmx60::elmx_error* error);

  lmx60::elmx_error marshal(lmx60::c_xml_writer& writer, std::string_view name) const;
  lmx60::elmx_error marshal_attributes(lmx60::c_xml_writer& writer) const;
  lmx60::elmx_error marshal_child_elements(lmx60::c_xml_writer& writer) const;
"""

ENTRY_POINTS = """\

  /// Read a document: the file of this name; text in memory; the text of the string, which is no
  /// file name; a fragment; what an open reader holds. `error` receives 42 at first, then the
  /// result. Any pointer may be null but that to the data. After a fault the object holds what was
  /// read before it.
  Project(const char* fileName, lmx60::elmx_error* error, lmx60::s_debug_error* debug = nullptr);
  Project(const char* data, std::size_t length, lmx60::elmx_error* error,
          lmx60::s_debug_error* debug = nullptr);
  Project(const std::string& document, lmx60::elmx_error* error,
          lmx60::s_debug_error* debug = nullptr);
  Project(const lmx60::c_any_info& fragment, lmx60::elmx_error* error,
          lmx60::s_debug_error* debug = nullptr);
  Project(lmx60::c_xml_reader& reader, lmx60::elmx_error* error);

  /// The same into this object, whose content is given up first. They return the result.
  lmx60::elmx_error Unmarshal(const char* fileName, lmx60::s_debug_error* debug = nullptr);
  lmx60::elmx_error Unmarshal(const char* data, std::size_t length,
                              lmx60::s_debug_error* debug = nullptr);
  lmx60::elmx_error Unmarshal(const lmx60::c_any_info& fragment,
                              lmx60::s_debug_error* debug = nullptr);
  /// Reads a whole document, whose root element must be `project` in no namespace.
  lmx60::elmx_error unmarshal(lmx60::c_xml_reader& reader);

  /// Write the document: a file, which appears under its name only when it is complete; a stream; a
  /// string, which keeps its text after a fault. A platform without a host raises
  /// `lmx60::lmx_exception`.
  lmx60::elmx_error Marshal(const char* fileName, lmx60::s_debug_error* debug = nullptr) const;
  lmx60::elmx_error Marshal(std::ostream& stream, lmx60::s_debug_error* debug = nullptr) const;
  lmx60::elmx_error Marshal(std::string* text, lmx60::s_debug_error* debug = nullptr) const;
"""


def header(model):
    lines = [HEADER_TOP]
    for kind in model.kinds:
        lines += class_declaration(kind, model)
    lines.append(f"}}  // namespace {NAMESPACE}")
    return "\n".join(lines) + "\n"


def places(kind, model):
    if kind is model.root:
        return f"The root element `{model.root_element}`."
    parents = " and of ".join(f"`{parent}`" for _, parent in kind.places)
    return f"Element `{kind.places[0][0]}` of {parents}."


def class_declaration(kind, model):
    name = kind.name
    lines = comment(f"{places(kind, model)} {kind.doc}")
    lines += [
        f"class XRF_API {name} {{",
        " public:",
        f"  {name}();",
        f"  {name}(const {name}& other);",
        f"  virtual {name}* do_clone() const;",
        f"  virtual ~{name}();",
        f"  {name}& operator=(const {name}& other);",
        "",
        f"  void swap({name}& other) noexcept;",
        f"  bool operator==(const {name}& other) const;",
        "  void init();",
        "  void reset();",
        "  bool IsOccursOk() const;",
    ]
    for attribute in kind.attributes:
        lines += family(attribute_heading(attribute), attribute_accessors(attribute))
    for child in kind.children:
        lines += family(child_heading(child), child_accessors(child))
    if kind is model.root:
        lines.append(ENTRY_POINTS.rstrip("\n"))
    lines += ["", READING, " private:"]
    if kind.nested:
        lines += nested_declarations(kind)
    for type_name, member in members(kind):
        lines.append(f"  {type_name} {member};")
    return [*lines, "};", ""]


def family(heading, functions):
    lines = ["", *comment(heading, "  ")]
    for function in functions:
        lines += function.declaration()
    return lines


def attribute_heading(attribute):
    bits = f", an integer up to {attribute.integer.maximum}" if attribute.integer else ""
    return f"Attribute `{attribute.name}`{bits}. {attribute.doc}"


def child_heading(child):
    heading = {
        TEXT: "Text `{}`, at most one.",
        TEXTS: "Texts `{}`, any number.",
        REQUIRED_TEXT: "Text `{}`, mandatory.",
        ITEM: "Child `{}`, at most one.",
        ITEMS: "Children `{}`, any number.",
        REQUIRED_ITEM: "Child `{}`, mandatory: got from what may change, it is made when absent.",
    }[child.form].format(child.name)
    return f"{heading} {child.doc}"


def nested_declarations(kind):
    name = kind.name
    return [
        f"  friend class lmx60::c_nested_list<{name}>;",
        "  friend class lmx60::c_xml_writer;",
        f"  using nested_list = lmx60::c_nested_list<{name}>;",
        "",
        f"  {name}(const {name}& other, lmx60::c_without_nested);",
        f"  nested_list& nested() {{ return m_{kind.nested.name}; }}",
        f"  const nested_list& nested() const {{ return m_{kind.nested.name}; }}",
        f"  bool equals_without_nested(const {name}& other) const;",
        "  void marshal_without_nested(lmx60::c_xml_writer& writer) const;",
        "",
    ]


# The source


SOURCE_TOP = f"""\
#include <lmx60/AnyInfo.h>
#include <lmx60/Drivers.h>
#include <ocl/src/shared/schemas/{STEM}.h>

#include <iterator>

namespace {NAMESPACE} {{
"""

ENTRY_POINTS_SOURCE = """\
namespace {{

lmx60::elmx_error read_document({root}& root, lmx60::c_read&& source,
                                lmx60::s_debug_error* debug) {{
  return lmx60::unmarshal(root, source, debug);
}}

lmx60::elmx_error write_document(const {root}& root, lmx60::c_write&& target,
                                 lmx60::s_debug_error* debug) {{
  return lmx60::marshal(root, target, "{element}", debug);
}}

lmx60::c_read_memory in_memory(const std::string& text) {{
  return lmx60::c_read_memory(text.data(), text.size());
}}

// What a reading constructor does: 42 until the result is known.
template <class Read>
void read_into(lmx60::elmx_error* error, const Read& read) {{
  lmx60::elmx_error ignored = lmx60::ELMX_OK;
  lmx60::elmx_error& result = error == nullptr ? ignored : *error;
  result = lmx60::ELMX_NOT_READ;
  result = read();
}}

}}  // namespace

{root}::{root}(const char* fileName, lmx60::elmx_error* error, lmx60::s_debug_error* debug) {{
  read_into(error, [&] {{ return Unmarshal(fileName, debug); }});
}}

{root}::{root}(const char* data, std::size_t length, lmx60::elmx_error* error,
                 lmx60::s_debug_error* debug) {{
  read_into(error, [&] {{ return Unmarshal(data, length, debug); }});
}}

{root}::{root}(const std::string& document, lmx60::elmx_error* error,
                 lmx60::s_debug_error* debug) {{
  read_into(error, [&] {{ return read_document(*this, in_memory(document), debug); }});
}}

{root}::{root}(const lmx60::c_any_info& fragment, lmx60::elmx_error* error,
                 lmx60::s_debug_error* debug) {{
  read_into(error, [&] {{ return Unmarshal(fragment, debug); }});
}}

{root}::{root}(lmx60::c_xml_reader& reader, lmx60::elmx_error* error) {{
  read_into(error, [&] {{ return unmarshal(reader); }});
}}

lmx60::elmx_error {root}::Unmarshal(const char* fileName, lmx60::s_debug_error* debug) {{
  return read_document(*this, lmx60::c_read_file(fileName), debug);
}}

lmx60::elmx_error {root}::Unmarshal(const char* data, std::size_t length,
                                     lmx60::s_debug_error* debug) {{
  return read_document(*this, lmx60::c_read_memory(data, length), debug);
}}

lmx60::elmx_error {root}::Unmarshal(const lmx60::c_any_info& fragment,
                                     lmx60::s_debug_error* debug) {{
  return read_document(*this, in_memory(fragment.text()), debug);
}}

lmx60::elmx_error {root}::unmarshal(lmx60::c_xml_reader& reader) {{
  init();
  reader.set_binding(binding);
  reader.set_ns_map(no_namespaces);
  lmx60::c_cracked_name first;
  lmx60::elmx_error error = reader.get_element_event(first);
  if (error == lmx60::ELMX_OK) error = unmarshal(reader, "{element}");
  return error != lmx60::ELMX_OK ? error : reader.finish();
}}

lmx60::elmx_error {root}::Marshal(const char* fileName, lmx60::s_debug_error* debug) const {{
  return write_document(*this, lmx60::c_write_file(fileName), debug);
}}

lmx60::elmx_error {root}::Marshal(std::ostream& stream, lmx60::s_debug_error* debug) const {{
  return write_document(*this, lmx60::c_write_stream(stream), debug);
}}

lmx60::elmx_error {root}::Marshal(std::string* text, lmx60::s_debug_error* debug) const {{
  return write_document(*this, lmx60::c_write_string(*text), debug);
}}
"""


def source(model):
    lines = [SOURCE_TOP, "namespace {", "", f'constexpr const char* binding = "{STEM}.cpp";',
             "constexpr lmx60::s_ns_map no_namespaces;", ""]
    for integer in model.integers:
        lines.append(f'const lmx60::c_integer_spec {integer.name}_spec("{integer.minimum}", '
                     f'"{integer.maximum}");')
    lines += ["", "}  // namespace", ""]
    for kind in model.kinds:
        lines += [*tokens(kind), *helper(kind, model), *housekeeping(kind)]
        for attribute in kind.attributes:
            lines += definitions(kind, attribute_accessors(attribute))
        for child in kind.children:
            lines += definitions(kind, child_accessors(child))
        lines += [*reading(kind), *writing(kind, model)]
    lines.append(ENTRY_POINTS_SOURCE.format(root=model.root.name, element=model.root_element))
    lines.append(f"}}  // namespace {NAMESPACE}")
    return "\n".join(lines) + "\n"


def definitions(kind, functions):
    lines = []
    for function in functions:
        lines += function.definition(kind.name)
    return lines


def tokens(kind):
    """The names that the kind knows, and the way from a name to its number."""
    lines = []
    if kind.attributes:
        lines += [f"namespace {kind.name}Attributes {{", "",
                  *tokeniser([attribute.name for attribute in kind.attributes]), "",
                  f"}}  // namespace {kind.name}Attributes", ""]
    if kind.children:
        lines += [f"namespace {kind.name}Children {{", "",
                  *tokeniser([child.name for child in kind.children]), "",
                  *sequence(kind.children),
                  "constexpr lmx60::s_known_elements known{sequence, "
                  "static_cast<int>(std::size(sequence)), tokenise};", "",
                  f"}}  // namespace {kind.name}Children", ""]
    return ["namespace {", "", *lines, "}  // namespace", ""] if lines else []


def sequence(children):
    head = "constexpr lmx60::s_known_element sequence[] = {"
    entries = []
    for child in children:
        required = "true" if child.required else "false"
        repeated = "true" if child.repeated else "false"
        entries.append(f'{{"{child.name}", {required}, {repeated}}}')
    return [head, *(f"    {entry}," for entry in entries), "};"]


def tokeniser(names):
    by_length = {}
    for name in names:
        by_length.setdefault(len(name), []).append(name)
    enumerators = [f"enum : int {{ {', '.join(names)} }};"]
    if len(enumerators[0]) > WIDTH:
        enumerators = ["enum : int {", *(f"  {name}," for name in names[:-1]), f"  {names[-1]}",
                       "};"]
    lines = [*enumerators, "", "int tokenise(std::string_view written) {",
             "  switch (written.size()) {"]
    for length in sorted(by_length):
        lines.append(f"    case {length}:")
        lines += [f'      if (written == "{name}") return {name};' for name in by_length[length]]
        lines.append("      break;")
    return [*lines, "    default:", "      break;", "  }", "  return lmx60::no_token;", "}"]


def helper(kind, model):
    """The class that the runtime calls back while it reads the kind's content."""
    if not kind.children:
        return []
    name = f"{kind.name}UnmarshalHelper"
    kinds = {other.name: other for other in model.kinds}
    constructor = [f"  explicit {name}({kind.name}& item)",
                   f"      : c_unmarshal_helper({kind.name}Children::known), m_item(item) {{}}"]
    one = f"{constructor[0]} {constructor[1].strip()}"
    if len(one) <= WIDTH:
        constructor = [one]
    lines = [
        f"class {name} final : public lmx60::c_unmarshal_helper {{",
        " public:",
        *constructor,
        "",
        " private:",
        "  lmx60::elmx_error unmarshal_child(lmx60::c_xml_reader& reader, int token) override;",
        "",
        f"  {kind.name}& m_item;",
        "};",
        "",
        *statement(f"lmx60::elmx_error {name}::unmarshal_child("
                   "lmx60::c_xml_reader& reader, int token) {", ""),
        "  switch (token) {",
    ]
    for child in kind.children:
        body = read_child(child, kinds)
        brace = " {" if body[0].endswith(";") and len(body) > 1 else ""
        lines.append(f"    case {kind.name}Children::{child.name}:{brace}")
        lines += [f"      {line}" for line in body]
        if brace:
            lines.append("    }")
    return [*lines, "    default:", "      return lmx60::ELMX_OK;", "  }", "}", ""]


def read_child(child, kinds):
    name = child.accessor
    if child.form in (TEXT, REQUIRED_TEXT):
        return ["std::string text;",
                "const lmx60::elmx_error error = reader.unmarshal_child_element_impl(text);",
                f"m_item.Set{name}(text);", "return error;"]
    if child.form == TEXTS:
        return ["std::string text;",
                "const lmx60::elmx_error error = reader.unmarshal_child_element_impl(text);",
                f"m_item.Append{name}(text);", "return error;"]
    companion = f"<{child.type}UnmarshalHelper>" if kinds[child.type].children else ""
    making = [f"m_item.Assign{name}(new {child.type}());"] if child.form == ITEM else []
    item = f"m_item.{'Append' if child.form == ITEMS else 'Get'}{name}()"
    call = f"return reader.unmarshal_child_element_impl{companion}("
    if len(f"      {call}{item});") <= WIDTH:
        return [*making, f"{call}{item});"]
    return [*making, call, f"    {item});"]


def equality(names):
    terms = [f"{name}\0==\0other.{name}" for name in names]
    lines = textwrap.wrap("return\0" + "\0&& ".join(terms) + ";", WIDTH - 2,
                          subsequent_indent="       ", break_long_words=False)
    return [line.replace("\0", " ") for line in lines]


def housekeeping(kind):
    name = kind.name
    names = [member for _, member in members(kind)]
    complete = " && ".join(f"m_{child.name}.isset()" for child in kind.required_texts) or "true"
    lines = [
        f"{name}::{name}() = default;",
        "",
        *statement(f"{name}::{name}(const {name}& other) = default;", ""),
        "",
        *definition(f"{name}* {name}::do_clone() const", f"return new {name}(*this);"),
        f"{name}::~{name}() = default;",
        "",
        *definition(f"{name}& {name}::operator=(const {name}& other)",
                    f"{name} copy(other);", "swap(copy);", "return *this;"),
        *definition(f"void {name}::swap({name}& other) noexcept",
                    *(f"{member}.swap(other.{member});" for member in names)),
        *definition(f"bool {name}::operator==(const {name}& other) const", *equality(names)),
        *definition(f"void {name}::init()", "reset();"),
        *definition(f"void {name}::reset()", f"{name}().swap(*this);"),
        *definition(f"bool {name}::IsOccursOk() const", f"return {complete};"),
    ]
    return lines + (nested_definitions(kind) if kind.nested else [])


def nested_definitions(kind):
    name = kind.name
    names = [member for _, member in members(kind) if member != f"m_{kind.nested.name}"]
    initialisers = [f"{member}(other.{member})" for member in names]
    others = [child for child in kind.children if child is not kind.nested]
    return [
        f"{name}::{name}(const {name}& other, lmx60::c_without_nested)",
        f"    : {initialisers[0]},",
        *(f"      {initialiser}," for initialiser in initialisers[1:-1]),
        f"      {initialisers[-1]} {{}}",
        "",
        *definition(f"bool {name}::equals_without_nested(const {name}& other) const",
                    *equality(names)),
        *definition(f"void {name}::marshal_without_nested(lmx60::c_xml_writer& writer) const",
                    *(write_child(child) for child in others)),
    ]


def reading(kind):
    name = kind.name
    reader = "lmx60::c_xml_reader& reader"
    content = (f"{name}UnmarshalHelper(*this).unmarshal_complex_content(reader)"
               if kind.children else "reader.unmarshal_empty_content()")
    return [
        *definition(f"lmx60::elmx_error {name}::unmarshal({reader}, std::string_view name)",
                    "return lmx60::unmarshal(*this, reader, name);"),
        *read_attributes(kind),
        *definition(f"bool {name}::unmarshal_body({reader}, lmx60::elmx_error* error)",
                    f"*error = {content};", "return *error == lmx60::ELMX_OK;"),
    ]


def read_attributes(kind):
    head = f"bool {kind.name}::unmarshal_attributes("
    if not kind.attributes:
        return definition(head + "lmx60::c_xml_reader&, lmx60::elmx_error*)", "return false;")
    cases = []
    for attribute in kind.attributes:
        value = f"m_{attribute.name}"
        if attribute.integer:
            value += f", {attribute.integer.name}_spec"
        cases += [f"  case {kind.name}Attributes::{attribute.name}:",
                  f"    *error = reader.unmarshal_attribute_impl({value});",
                  "    return true;"]
    return definition(head + "lmx60::c_xml_reader& reader, lmx60::elmx_error* error)",
                      f"switch (reader.tokenise({kind.name}Attributes::tokenise)) {{", *cases,
                      "  default:", "    return false;", "}")


def write_child(child):
    operation = "marshal_element_impl"
    value = f"m_{child.name}"
    if child.form == REQUIRED_TEXT:
        operation = "marshal_required_element_impl"
    elif child.form == REQUIRED_ITEM:
        value += ".get()"
    return f'writer.{operation}("{child.name}", {value});'


def writing(kind, model):
    writer = "lmx60::c_xml_writer& writer"
    head = f"lmx60::elmx_error {kind.name}::marshal"
    root = (["writer.set_binding(binding);",
             "writer.conditionally_select_ns_map(no_namespaces);"] if kind is model.root else [])
    attributes = [f'writer.marshal_attribute_impl("{attribute.name}", m_{attribute.name});'
                  for attribute in kind.attributes]
    children = [write_child(child) for child in kind.children]
    return [
        *definition(f"{head}({writer}, std::string_view name) const", *root,
                    "return lmx60::marshal(*this, writer, name);"),
        *definition(f"{head}_attributes({writer}) const", *attributes, "return writer.error();"),
        *definition(f"{head}_child_elements({writer}) const", *children,
                    "return writer.error();"),
    ]


if __name__ == "__main__":
    main(sys.argv[1:])
