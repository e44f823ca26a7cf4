"""Holds the code that the pages show against the files it comes from: each block below a line
"<!-- from FILE -->" must stand in that file, word for word. snippets_test.py ROOT
"""

import re
import sys
from pathlib import Path

SNIPPET = re.compile(r"^<!-- from (\S+) -->\n```\w+\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def main():
    root = Path(sys.argv[1])
    faults = count = 0
    for page in [*sorted((root / "docs").glob("*.md")), root / "README.md"]:
        for file, code in SNIPPET.findall(page.read_text(encoding="utf-8")):
            count += 1
            if code not in (root / file).read_text(encoding="utf-8"):
                faults += 1
                print(f"{page.name}: this is not in {file}:\n{code}")
    print(f"{count} snippets, {faults} faults")
    return 1 if faults or not count else 0


sys.exit(main())
