"""Runs every block of Python that a page shows, as a notebook would, and compares what it prints with
what the page shows.

The blocks of a page share their names and run in their order, in a folder of their own beside the
examples. The value of a block's last expression is printed, unless it is None. What is printed stands
in a block of ```text right below; where nothing is, there is none.

python_test.py ROOT [PAGE...]; with BLESS=1 the pages are rewritten.
"""

import ast
import contextlib
import difflib
import io
import os
import re
import sys
import tempfile
import traceback
from pathlib import Path

BLOCK = re.compile(r"^```python\n(.*?)^```\n(?:\n```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)


def run(code, names, what):
    """Everything that a cell prints, as a reader sees it."""
    printed = io.StringIO()
    with contextlib.redirect_stdout(printed):
        try:
            tree = ast.parse(code)
            last = tree.body.pop() if tree.body and isinstance(tree.body[-1], ast.Expr) else None
            exec(compile(tree, what, "exec"), names)
            if last is not None:
                value = eval(compile(ast.Expression(last.value), what, "eval"), names)
                if value is not None:
                    print(repr(value))
        except Exception:
            print(traceback.format_exc().splitlines()[-1])
    return "".join(line.rstrip() + "\n" for line in printed.getvalue().splitlines())


def check(path, root):
    faults, count, names = [], 0, {"__name__": "__main__"}

    def block(found):
        nonlocal count
        count += 1
        code, shown = found[1], found[2] or ""
        printed = run(code, names, path.name)
        if printed != shown:
            first = code.strip().splitlines()[0]
            faults.append(f"{path}: {first}")
            faults.extend(difflib.unified_diff(
                shown.splitlines(), printed.splitlines(), "the page", "the code", lineterm=""))
        output = f"\n```text\n{printed}```\n" if printed else ""
        return f"```python\n{code}```\n{output}"

    before = os.getcwd()
    with tempfile.TemporaryDirectory() as folder:
        Path(folder, "examples").symlink_to(root / "examples")
        os.chdir(folder)
        try:
            made = BLOCK.sub(block, path.read_text(encoding="utf-8"))
        finally:
            os.chdir(before)
    return made, faults, count


def main():
    root = Path(sys.argv[1]).resolve()
    pages = [Path(page).resolve() for page in sys.argv[2:]]
    pages = pages or [*sorted((root / "docs").glob("*.md")), root / "README.md"]
    faults, count = [], 0
    for path in pages:
        made, found, blocks = check(path, root)
        if os.environ.get("BLESS") == "1":
            path.write_text(made, encoding="utf-8")
        faults += found
        count += blocks
    print("\n".join(faults))
    print(f"{count} blocks, {len(faults)} faults")
    return 1 if faults or not count else 0


sys.exit(main())
