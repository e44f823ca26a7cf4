#!/usr/bin/env python3
"""Runs xrf on many generated designs and damaged files and compares each exit status, output, list
of messages and written file with what an earlier xrf gave, byte for byte.

What the earlier one gave is in golden.txt, a line a run: case/step, exit status, and the beginnings
of the SHA-256 of standard output, standard error and the file written ("-": none). Lines whose step
is "input" hold the digests of the generated files, so that a change of the generator shows as such.
"""

import argparse
import concurrent.futures
import difflib
import hashlib
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

import cases

GOLDEN = pathlib.Path(__file__).resolve().parent / "golden.txt"
TIME_LIMIT = 300
SHOWN_FAILURES = 20
SHOWN_LINES = 40
DIGITS = 10


class Case:
    """A folder of files and the runs in it."""

    def __init__(self, name, steps, files):
        self.name = name
        self.steps = steps
        self._files = files  # path or bytes of each, by name

    def folder(self, root):
        return root / self.name.replace("/", "_")

    def prepare(self, root):
        folder = self.folder(root)
        folder.mkdir(parents=True)
        for name, content in self._files.items():
            if isinstance(content, bytes):
                (folder / name).write_bytes(content)
            else:
                (folder / name).symlink_to(content)
        return folder


class Result:
    """What one run gave. Runs happen in the case's folder, so no path of the machine is in it."""

    def __init__(self, folder, xrf, step):
        output = folder / step.output if step.output else None
        if output:
            output.unlink(missing_ok=True)
        self.status, self.out, self.err = run(folder, [xrf, *step.arguments])
        self.file = output.read_bytes() if output and output.exists() else None

    def parts(self):
        yield "standard output", self.out
        yield "standard error", self.err
        yield "file written", self.file

    def record(self):
        return " ".join([self.status, *(digest(data) for _, data in self.parts())])


def run(folder, command):
    """Exit status, standard output and standard error of a command."""
    try:
        done = subprocess.run(
            command,
            cwd=folder,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            timeout=TIME_LIMIT,
            check=False,
            env={**os.environ, "LC_ALL": "C"},
        )
    except subprocess.TimeoutExpired:
        return "endless", b"", b""
    return str(done.returncode), done.stdout, done.stderr


def digest(data):
    return "-" if data is None else hashlib.sha256(data).hexdigest()[:DIGITS]


def must_run(folder, command):
    status, _, err = run(folder, command)
    if status != "0":
        sys.exit(f"{shlex.join(command)}: {err.decode(errors='replace')}")


def generate(program, recipe, root):
    folder = root / f"design_{recipe.name}"
    must_run(root, [program, *recipe.arguments, "--out", str(folder)])
    return folder


def input_record(folder):
    return " ".join(digest((folder / name).read_bytes()) for name in cases.INPUTS)


def design_cases(arguments, root, inputs):
    hazards = subprocess.run(
        [arguments.generate, "--list-hazards"], capture_output=True, text=True, check=True
    ).stdout
    names = [line.split()[0] for line in hazards.splitlines()]
    for recipe in cases.recipes(arguments.size, names):
        folder = generate(arguments.generate, recipe, root)
        inputs[f"{recipe.name}/input"] = input_record(folder)
        files = {name: folder / name for name in cases.INPUTS}
        truth = (folder / "truth.txt").read_text()
        yield Case(recipe.name, cases.steps_of_design(truth), files)


def base_files(folder, reference):
    """The files of a design whose damage is tried, and where its model is kept."""
    files = {name: (folder / name).read_bytes() for name in cases.INPUTS}
    netlists = ["--rtl", "rtl.edf", "--synth", "synth.edf"]
    must_run(folder, [reference, "build", "--quiet", *netlists, "-o", "base.xrf"])
    files["base.xrf"] = (folder / "base.xrf").read_bytes()
    return files


def damage_cases(arguments, root, inputs):
    for number, recipe in enumerate(cases.base_recipes(arguments.size)):
        folder = generate(arguments.generate, recipe, root)
        files = base_files(folder, arguments.xrf)
        inputs[f"{recipe.name}/input"] = input_record(folder) + " " + digest(files["base.xrf"])
        whole = {name: folder / name for name in files}
        damages = list(cases.damages(arguments.size, recipe.name, files))
        if number == 0:
            damages += cases.oddities(recipe.name)
        for name, file, data, steps in damages:
            yield Case(name, steps, {**whole, file: data})


def all_cases(arguments, root):
    """The cases wanted, and the records of the generated files."""
    inputs = {}
    found = [*design_cases(arguments, root, inputs), *damage_cases(arguments, root, inputs)]
    if not arguments.case:
        return found, inputs
    return [case for case in found if case.name == arguments.case], {}


def run_case(case, arguments, root):
    """The records of a case, by name."""
    folder = case.prepare(root)
    records = {}
    for step in case.steps:
        records[f"{case.name}/{step.name}"] = Result(folder, arguments.xrf, step).record()
    if not arguments.keep:
        shutil.rmtree(folder)
    return records


def run_all(found, arguments, root):
    records = {}
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for part in pool.map(lambda case: run_case(case, arguments, root), found):
            records.update(part)
    return records


def read_golden():
    if not GOLDEN.exists():
        return {}
    lines = (line.split(" ", 1) for line in GOLDEN.read_text().splitlines())
    return {name: record for name, record in lines}


def write_golden(size, records):
    """Writes the records of one set; those of the other stay."""
    prefix = f"{size}:"
    kept = {name: text for name, text in read_golden().items() if not name.startswith(prefix)}
    kept.update((prefix + name, text) for name, text in records.items())
    GOLDEN.write_text("".join(f"{name} {text}\n" for name, text in sorted(kept.items())))


def expected_records(arguments):
    prefix = f"{arguments.size}:"
    golden = read_golden()
    return {name[len(prefix) :]: text for name, text in golden.items() if name.startswith(prefix)}


def explain(name, wanted, actual):
    """What differs in a run."""
    if actual is None:
        return "is no longer run"
    if wanted is None:
        return "is new (BLESS=1 with a program known to be right makes its golden)"
    if name.endswith("/input"):
        return "is another design: the generator changed, so its other lines mean nothing"
    parts = ("exit status", "standard output", "standard error", "file written")
    pairs = list(zip(parts, wanted.split(), actual.split()))
    return "differs in " + ", ".join(
        f"{part} ({old} -> {new})" if part == "exit status" else part
        for part, old, new in pairs
        if old != new
    )


def compare(arguments, records, inputs):
    golden = expected_records(arguments)
    if arguments.case:
        golden = {name: text for name, text in golden.items() if name in records}
    actual = {**records, **inputs}
    differing = [
        name for name in sorted({*golden, *actual}) if golden.get(name) != actual.get(name)
    ]
    for name in differing[:SHOWN_FAILURES]:
        print(f"FAILED: {name} {explain(name, golden.get(name), actual.get(name))}")
    if len(differing) > SHOWN_FAILURES:
        print(f"... and {len(differing) - SHOWN_FAILURES} more")
    print(f"differential: {len(actual)} records, {len(differing)} differ")
    if not differing:
        return 0
    case = differing[0].rsplit("/", 1)[0]
    print(f"See: {sys.argv[0]} --size {arguments.size} --case '{case}' --keep FOLDER", end="")
    print(f" --xrf {arguments.xrf} --generate {arguments.generate} [--against EARLIER_XRF]")
    return 1


def show_difference(what, old, new):
    lines = difflib.unified_diff(
        (old or b"").decode(errors="backslashreplace").splitlines(),
        (new or b"").decode(errors="backslashreplace").splitlines(),
        f"earlier {what}",
        f"this {what}",
        lineterm="",
    )
    shown = list(lines)
    print("\n".join(shown[:SHOWN_LINES]))
    if len(shown) > SHOWN_LINES:
        print(f"... {len(shown) - SHOWN_LINES} more lines")


def against(found, arguments, root):
    """Runs both programs and shows where they part. Returns whether they do."""
    parted = 0
    for case in found:
        theirs, ours = case.prepare(root / "earlier"), case.prepare(root / "this")
        for step in case.steps:
            old, new = Result(theirs, arguments.against, step), Result(ours, arguments.xrf, step)
            if old.record() == new.record():
                continue
            parted += 1
            print(f"{case.name}/{step.name}: xrf {shlex.join(step.arguments)}")
            if old.status != new.status:
                print(f"exit status {old.status} -> {new.status}")
            for (what, before), (_, after) in zip(old.parts(), new.parts()):
                if before != after:
                    show_difference(what, before, after)
        if not arguments.keep:
            shutil.rmtree(theirs)
            shutil.rmtree(ours)
    print(f"differential: {len(found)} cases, {parted} runs differ")
    return 1 if parted else 0


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("--xrf", required=True, help="the command to test")
    parser.add_argument("--generate", required=True, help="the design generator")
    parser.add_argument("--size", choices=("small", "large"), default="small")
    parser.add_argument("--case", help="one case alone, as a failure names it")
    parser.add_argument("--keep", metavar="FOLDER", help="leave files and outputs here")
    parser.add_argument("--against", metavar="XRF", help="compare with this program, show diffs")
    parser.add_argument("--jobs", type=int, default=1)
    parsed = parser.parse_args()
    for name in ("xrf", "generate", "against"):
        if getattr(parsed, name):
            setattr(parsed, name, str(pathlib.Path(getattr(parsed, name)).resolve()))
    return parsed


def work(arguments, root):
    found, inputs = all_cases(arguments, root)
    if not found:
        sys.exit(f"no case {arguments.case}")
    if arguments.keep:
        for case in found if arguments.case else []:
            for step in case.steps:
                print(f"xrf {shlex.join(step.arguments)}")
    if arguments.against:
        return against(found, arguments, root)
    records = run_all(found, arguments, root)
    if os.environ.get("BLESS") == "1" and not arguments.case:
        write_golden(arguments.size, {**records, **inputs})
    return compare(arguments, records, inputs)


def main():
    arguments = parse_arguments()
    if arguments.keep:
        root = pathlib.Path(arguments.keep).resolve()
        root.mkdir(parents=True)
        return work(arguments, root)
    with tempfile.TemporaryDirectory() as folder:
        return work(arguments, pathlib.Path(folder))


if __name__ == "__main__":
    sys.exit(main())
