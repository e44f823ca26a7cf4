"""Keeps the reference in docs/metadata.md as the schema has it: metadata.py [--check]
"""

import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "ocl/src/shared/schemas"))

import schema  # noqa: E402  (found where the generator of the binding keeps it)

PAGE = ROOT / "docs/metadata.md"
BEGIN = "<!-- The rest is made of the schema by docs/metadata.py. -->\n"

OCCURRENCE = {
    schema.TEXT: "text, at most once",
    schema.TEXTS: "text, any number",
    schema.REQUIRED_TEXT: "text, once",
    schema.ITEM: "at most once",
    schema.ITEMS: "any number",
    schema.REQUIRED_ITEM: "once",
}


def cell(text):
    return " ".join(text.split()).replace("|", "\\|").replace("<", "&lt;")


def attribute_row(attribute):
    kind = "text" if attribute.integer is None else f"integer, up to {attribute.integer.maximum}"
    return f"| `{attribute.name}` | attribute | {kind} | {cell(attribute.doc)} |"


def child_row(child):
    kind = f"element, `{child.type}`" if child.type else "element"
    return f"| `{child.name}` | {kind} | {OCCURRENCE[child.form]} | {cell(child.doc)} |"


def reference(model):
    lines = []
    for kind in model.kinds:
        places = sorted({f"`{name}` of `{parent}`" for name, parent in kind.places})
        lines += [f"### {kind.name}", "", cell(kind.doc), ""]
        if places:
            lines += ["Stands as " + ", ".join(places) + ".", ""]
        rows = [attribute_row(a) for a in kind.attributes] + [child_row(c) for c in kind.children]
        if rows:
            lines += ["| name | what it is | how often | meaning |", "|---|---|---|---|", *rows, ""]
    return "\n".join(lines).rstrip() + "\n"


def main():
    page = PAGE.read_text(encoding="utf-8")
    head, mark, _ = page.partition(BEGIN)
    made = head + BEGIN + "\n" + reference(schema.read(ROOT / "ocl/src/shared/schemas/movrel.xsd"))
    if not mark:
        sys.exit(f"{PAGE}: the line that begins the reference is missing")
    if "--check" not in sys.argv[1:]:
        PAGE.write_text(made, encoding="utf-8")
    elif made != page:
        sys.exit("docs/metadata.md is not as the schema has it; run docs/metadata.py")


main()
