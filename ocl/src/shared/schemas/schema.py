"""The element kinds that an XML Schema describes, in the terms of the binding.

Only what the binding can express is understood; anything else in the schema is an error, so that
nothing is left out silently.
"""

import re
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field

XS = "{http://www.w3.org/2001/XMLSchema}"

# The type that holds an integer up to this bound.
INTEGER_TYPES = {2**32 - 1: "unsigned int", 2**64 - 1: "unsigned long long"}

# How a child is held: text or element, and how often it may occur.
TEXT, TEXTS, REQUIRED_TEXT = "text", "texts", "required text"
ITEM, ITEMS, REQUIRED_ITEM = "item", "items", "required item"
TEXT_FORMS = (TEXT, TEXTS, REQUIRED_TEXT)


class SchemaError(Exception):
    """The schema holds something that the binding cannot express."""


def accessor_name(name):
    """`build_flow` is asked for by `GetBuildFlow`."""
    return "".join(part[:1].upper() + part[1:] for part in name.split("_"))


@dataclass
class Integer:
    name: str
    minimum: int
    maximum: int
    doc: str

    @property
    def cpp(self):
        return INTEGER_TYPES[self.maximum]


@dataclass
class Attribute:
    name: str
    integer: Integer | None  # None: a string
    doc: str

    @property
    def accessor(self):
        return accessor_name(self.name)


@dataclass
class Child:
    name: str
    form: str
    type: str  # name of the child's kind; empty for a text
    doc: str

    @property
    def accessor(self):
        return accessor_name(self.name)

    @property
    def required(self):
        return self.form in (REQUIRED_TEXT, REQUIRED_ITEM)

    @property
    def repeated(self):
        return self.form in (TEXTS, ITEMS)


@dataclass
class Kind:
    name: str
    doc: str
    attributes: list[Attribute] = field(default_factory=list)
    children: list[Child] = field(default_factory=list)
    places: list[tuple[str, str]] = field(default_factory=list)  # (element, kind of its parent)

    @property
    def nested(self):
        """The child by which the kind contains itself, or None."""
        return next((child for child in self.children if child.type == self.name), None)

    @property
    def required_texts(self):
        return [child for child in self.children if child.form == REQUIRED_TEXT]


@dataclass
class Schema:
    root_element: str
    root: Kind
    kinds: list[Kind]  # each after those that it contains
    integers: list[Integer]


def read(path):
    """Reads the schema in the file at `path`."""
    top = ElementTree.parse(path).getroot()
    expect(top.tag == XS + "schema" and not top.attrib, "the file is no plain schema")
    integers, kinds, roots = {}, {}, []
    for node in top:
        if node.tag == XS + "simpleType":
            integer = read_integer(node)
            integers[integer.name] = integer
        elif node.tag == XS + "complexType":
            kind = read_kind(node, integers)
            expect(kind.name not in kinds, f"{kind.name} is described twice")
            kinds[kind.name] = kind
        elif node.tag == XS + "element":
            roots.append(only(node, "name", "type"))
        else:
            raise SchemaError(f"unknown part of a schema: {node.tag}")
    expect(len(roots) == 1, "there must be exactly one root element")
    root_element, root = roots[0]
    link(kinds)
    expect(root in kinds, f"the root's type {root} is not described")
    return Schema(root_element, kinds[root], in_order(kinds), list(integers.values()))


def expect(condition, complaint):
    if not condition:
        raise SchemaError(complaint)


def only(node, *names):
    """The values of these attributes, which must be all that there are."""
    expect(set(node.attrib) <= set(names), f"unknown attribute of {node.tag}: {node.attrib}")
    return tuple(node.get(name) for name in names)


def documentation(node):
    """The text of the annotation, and the other children."""
    doc, rest = "", []
    for child in node:
        if child.tag != XS + "annotation":
            rest.append(child)
            continue
        expect([part.tag for part in child] == [XS + "documentation"], "an annotation is one text")
        doc = " ".join((child[0].text or "").split())
    return doc, rest


def read_integer(node):
    (name,) = only(node, "name")
    doc, rest = documentation(node)
    expect(len(rest) == 1 and rest[0].tag == XS + "restriction", f"{name} is no restriction")
    restriction = rest[0]
    expect(only(restriction, "base") == ("xs:integer",), f"{name} restricts no integer")
    facets = {facet.tag: int(only(facet, "value")[0]) for facet in restriction}
    expect(set(facets) == {XS + "minInclusive", XS + "maxInclusive"}, f"{name}: two bounds, please")
    integer = Integer(name, facets[XS + "minInclusive"], facets[XS + "maxInclusive"], doc)
    expect(integer.minimum == 0 and integer.maximum in INTEGER_TYPES, f"no type holds {name}")
    return integer


def read_kind(node, integers):
    (name,) = only(node, "name")
    doc, parts = documentation(node)
    kind = Kind(name, doc)
    for part in parts:
        if part.tag == XS + "sequence":
            expect(not part.attrib and not kind.attributes, f"{name}: one sequence, then attributes")
            kind.children += [read_child(child) for child in part]
        elif part.tag == XS + "attribute":
            kind.attributes.append(read_attribute(part, integers))
        else:
            raise SchemaError(f"{name}: unknown part {part.tag}")
    accessors = [item.accessor for item in [*kind.attributes, *kind.children]]
    expect(len(set(accessors)) == len(accessors), f"{name}: two members of one name")
    return kind


def read_attribute(node, integers):
    name, type_name = only(node, "name", "type")
    check_name(name)
    doc, rest = documentation(node)
    expect(not rest, f"attribute {name} has a type of its own")
    expect(type_name == "xs:string" or type_name in integers, f"{name}: unknown type {type_name}")
    return Attribute(name, integers.get(type_name), doc)


def read_child(node):
    expect(node.tag == XS + "element", f"a sequence holds elements, not {node.tag}")
    name, type_name, least, most = only(node, "name", "type", "minOccurs", "maxOccurs")
    check_name(name)
    doc, rest = documentation(node)
    expect(not rest, f"element {name} has a type of its own")
    forms = {
        ("0", None): (TEXT, ITEM),
        ("0", "unbounded"): (TEXTS, ITEMS),
        (None, None): (REQUIRED_TEXT, REQUIRED_ITEM),
    }
    expect((least, most) in forms, f"element {name} occurs {least} to {most} times")
    text, item = forms[least, most]
    if type_name == "xs:string":
        return Child(name, text, "", doc)
    return Child(name, item, type_name, doc)


def check_name(name):
    expect(re.fullmatch(r"[A-Za-z][A-Za-z0-9_]*", name), f"{name} cannot become an identifier")


def link(kinds):
    """Tells each kind where it occurs."""
    for parent in kinds.values():
        for child in parent.children:
            if child.type:
                expect(child.type in kinds, f"{child.type} is not described")
                kinds[child.type].places.append((child.name, parent.name))


def in_order(kinds):
    """The kinds, each after those that it contains. A kind may contain itself, as its last child."""
    ordered, begun = [], set()

    def add(kind):
        if kind in ordered:
            return
        expect(kind.name not in begun, f"{kind.name} contains itself by way of another kind")
        begun.add(kind.name)
        own = [child for child in kind.children if child.type == kind.name]
        expect(not own or (len(own) == 1 and own[0].form == ITEMS and kind.children[-1] is own[0]),
               f"{kind.name} contains itself other than as a list at its end")
        for child in kind.children:
            if child.type and child.type != kind.name:
                add(kinds[child.type])
        ordered.append(kind)

    for kind in kinds.values():
        add(kind)
    return ordered
