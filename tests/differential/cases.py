"""What is run: whole designs with every feature, and damaged files.

A case has a name, the folder's files and the commands that run there one after the other. The
set "small" is for every test run; "large" holds more seeds and bigger designs.
"""

import dataclasses

import faults

SHAPES = ("tree", "narrow", "deep", "wide", "field")
MODES = ("strict", "extended")
INPUTS = ("rtl.edf", "synth.edf", "design.ll", "synth.log")
NETLISTS = ["--rtl", "rtl.edf", "--synth", "synth.edf"]
REPORTS = ["--ll", "design.ll", "--log", "synth.log"]


@dataclasses.dataclass
class Step:
    """One run of the command; `output` is the cross-reference file that it writes."""

    name: str
    arguments: list
    output: str = ""


@dataclasses.dataclass
class Recipe:
    """A generated design."""

    name: str
    arguments: list


def recipe(shape, seed, registers, *more):
    habits = "-".join(word.lstrip("-") for word in more)
    name = "-".join(filter(None, (shape, habits, f"{registers}s{seed}")))
    sizes = ["--registers", str(registers), "--shape", shape, "--seed", str(seed)]
    return Recipe(name, [*sizes, *more])


def recipes(size, hazards):
    """The designs of a set; hazards are the names of all of them."""
    seeds, registers = (range(1, 3), 150) if size == "small" else (range(3, 5), 600)
    for shape in SHAPES:
        for seed in seeds:
            yield recipe(shape, seed, registers)
            yield recipe(shape, seed, registers, "--renames")
            yield recipe(shape, seed, registers, "--hazards", "all")
    for place, hazard in enumerate(hazards):
        shape = SHAPES[(place + seeds[0]) % len(SHAPES)]
        yield recipe(shape, seeds[0], registers, "--hazards", hazard)
    if size == "large":
        yield recipe("tree", 5, 8000)
        yield recipe("field", 5, 4000)
        yield recipe("narrow", 5, 4000, "--hazards", "all")


def build(name, output, *arguments):
    return Step(name, ["build", *arguments, "-o", output], output)


def build_steps():
    for mode in MODES:
        yield build(mode, f"{mode}.xrf", "--matching", mode, *NETLISTS, *REPORTS)
    yield build("netlists", "netlists.xrf", "--json", *NETLISTS)
    for mode in MODES:
        yield build(
            f"later-{mode}", "later.xrf", "--xrf", "netlists.xrf", "--matching", mode, *REPORTS
        )
        yield build(
            f"again-{mode}", "again.xrf", "--json", "--matching", mode, "--xrf", f"{mode}.xrf"
        )
    yield build("hide", "hide.xrf", "--hide-hidden", "--matching", "strict", *NETLISTS, *REPORTS)
    yield build("hide-loaded", "hide2.xrf", "--hide-hidden", "--xrf", "extended.xrf")


def look_steps(names, places):
    for mode in MODES:
        file = f"{mode}.xrf"
        yield Step(f"dump-{mode}", ["dump", file])
        yield Step(f"info-{mode}", ["info", file])
        yield Step(f"find-{mode}", ["find", file, "--json", *names])
        yield Step(f"find-all-{mode}", ["find", file, "--hidden", "*"])
    yield Step("info-json", ["info", "--json", "extended.xrf"])
    yield Step("find-some", ["find", "extended.xrf", "--view", "rtl", "*[3]", "*re?*", "nosuch"])
    yield Step("tree", ["tree", "extended.xrf", "--hidden", "--view", "synth"])
    yield Step("tree-json", ["tree", "strict.xrf", "--json"])
    for number, place in enumerate(places):
        yield Step(f"whatis{number}", ["whatis", "extended.xrf", *place])


def sample(items, count):
    step = max(len(items) // count, 1)
    return items[::step][:count]


def truth_questions(truth):
    """Names of registers to look up, and places to ask back, from a list of a design's registers."""
    rows = [line.split("\t") for line in truth.splitlines() if not line.startswith("#")]
    names = [row[0] for row in sample(rows, 30) if not row[0].startswith("-")]
    located = [row[3].split()[1:] for row in rows if row[3].startswith("located ")]
    return names, sample(located, 2)


def steps_of_design(truth):
    names, places = truth_questions(truth)
    return [*build_steps(), *look_steps(names, places)]


def netlist_steps(_):
    for mode in MODES:
        yield build(mode, "out.xrf", "--matching", mode, *NETLISTS, *REPORTS)


def report_steps(_):
    for mode in MODES:
        yield build(mode, "out.xrf", "--matching", mode, "--xrf", "base.xrf", *REPORTS)


def model_steps(file):
    for mode in MODES:
        yield build(mode, "out.xrf", "--matching", mode, "--xrf", file, *REPORTS)
    yield Step("find", ["find", file, "*"])
    yield Step("tree", ["tree", file])
    yield Step("dump", ["dump", file])
    yield Step("info", ["info", file])


DAMAGED = (
    ("rtl.edf", netlist_steps),
    ("synth.edf", netlist_steps),
    ("design.ll", report_steps),
    ("synth.log", report_steps),
    ("base.xrf", model_steps),
)


def base_recipes(size):
    """The designs whose files are damaged."""
    seed, registers = (11, 40) if size == "small" else (12, 120)
    return [
        recipe("tree", seed, registers),
        recipe("narrow", seed, registers, "--renames"),
        recipe("tree", seed, registers, "--hazards", "all"),
    ]


def damages(size, base, files):
    """(case name, file, its bytes, steps) for each fault of each file of a base design."""
    count = 12 if size == "small" else 30
    for file, make_steps in DAMAGED:
        for fault, data in faults.damaged_files(files[file], f"{base} {file}", count):
            yield f"{base}/{file}/{fault}", file, data, list(make_steps(file))


def oddities(base):
    """The same for files that are none."""
    for file, make_steps in DAMAGED:
        for oddity, data in faults.odd_files():
            yield f"{base}/{file}/{oddity}", file, data, list(make_steps(file))
