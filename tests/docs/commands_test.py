"""Runs every command line that a page shows and compares what it prints with what the page shows.

A block of ```console holds command lines, each after "$ " and continued where it ends in a backslash,
and below each what it prints. Those of a page run in their order, in a folder of their own beside the
examples. A block of ```sh holds commands that other scripts run, from a list below.

commands_test.py ROOT XRF [PAGE...]; with BLESS=1 the pages are rewritten.
"""

import difflib
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

# What a page may tell its reader to type that is not run here, and who runs it.
ELSEWHERE = {
    r"scripts/(setup|demo|test|test-full|package|test-packages|docs|abi|newcomer)( .*)?":
        "the scripts themselves; scripts/newcomer runs the first three on a bare system",
    r"scripts/bench( .*)?|generate .*|perf record .*|valgrind .*":
        "whoever measures: these take minutes and more",
    r"cmake --preset [a-z]+": "scripts/test",
    r"cmake --build --preset [a-z]+": "scripts/test",
    r"BLESS=1 (ctest|tests/differential/run.py) .*|git diff .*": "whoever means a change of output",
    r"ctest --preset [a-z]+( -R '?\w+'?)?": "scripts/test",
    r"cmake --install build/release --prefix \S+": "tests/tools/install.sh",
    r"apt install \./\S+\.deb( \./\S+\.deb)*": "scripts/test-packages",
    r"cmake -S examples/embed -B build/embed.*": "scripts/test-packages",
    r"cmake --build build/embed": "scripts/test-packages",
    r"make -C examples/embed": "scripts/test-packages",
    r"c\+\+ -std=c\+\+20 .* \$\(pkg-config --cflags --libs xrf\) .*": "scripts/test-packages",
    r"man xrf.*": "tests/tools/manual.sh",
    r"build/embed/embed <.*": "tests/tools/embed.sh",
}

BLOCK = re.compile(r"^```(console|sh)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def commands(block):
    """Pairs of a command and the lines that the page shows as its output."""
    result = []
    continued = False
    for line in block.splitlines():
        if continued:
            result[-1][0].append(line)
        elif line.startswith("$ "):
            result.append(([line[2:]], []))
        elif result:
            result[-1][1].append(line)
        else:
            raise SystemExit(f"a block begins without a command: {line}")
        continued = len(result[-1][1]) == 0 and result[-1][0][-1].endswith("\\")
    return result


class Page:
    def __init__(self, path, root, xrf):
        self.path = path
        self.root = root
        self.bin = Path(xrf).parent
        self.faults = []
        self.count = 0

    def run(self):
        text = self.path.read_text(encoding="utf-8")
        with tempfile.TemporaryDirectory() as folder:
            for name in ("examples", "docs"):
                Path(folder, name).symlink_to(self.root / name)
            Path(folder, "build/demo").mkdir(parents=True)
            return BLOCK.sub(lambda block: self._block(block, folder), text)

    def _block(self, block, folder):
        if block[1] == "sh":
            for line in block[2].splitlines():
                self._elsewhere(line)
            return block[0]
        shown = []
        for lines, expected in commands(block[2]):
            actual = self._output("\n".join(lines), folder)
            while expected and not expected[-1]:
                expected.pop()
            if actual != expected:
                self.faults += [f"{self.path}: $ {lines[0]}"]
                self.faults += difflib.unified_diff(expected, actual, "the page", "the command", "")
            if any("No such file" in line or "not found" in line for line in actual):
                self.faults.append(f"{self.path}: the page lacks what this needs: {lines[0]}")
            shown.append("\n".join(["$ " + "\n".join(lines), *actual]))
        return "```console\n" + "\n\n".join(shown) + "\n```"

    def _elsewhere(self, line):
        command = line.removeprefix("$ ").split("  #")[0].strip()
        self.count += 1
        if not any(re.fullmatch(pattern, command) for pattern in ELSEWHERE):
            self.faults.append(f"{self.path}: nothing runs: {command}")

    def _output(self, command, folder):
        self.count += 1
        environment = {"PATH": f"{self.bin}:{os.environ['PATH']}", "LC_ALL": "C", "HOME": folder}
        result = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, check=False,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, encoding="utf-8", timeout=60)
        lines = [line.rstrip() for line in result.stdout.splitlines()]
        while lines and not lines[-1]:
            lines.pop()
        return lines


def main():
    root = Path(sys.argv[1]).resolve()
    pages = sys.argv[3:] or [*sorted(map(str, (root / "docs").glob("*.md"))), root / "README.md",
                             root / "CONTRIBUTING.md",
                             *sorted(map(str, root.glob("examples/*/README.md")))]
    faults = []
    count = 0
    for path in map(Path, pages):
        page = Page(path, root, sys.argv[2])
        made = page.run()
        if os.environ.get("BLESS") == "1":
            path.write_text(made, encoding="utf-8")
        faults += page.faults
        count += page.count
    print("\n".join(map(str, faults)))
    print(f"{count} commands in {len(pages)} pages, {len(faults)} faults")
    return 1 if faults or not count else 0


sys.exit(main())
