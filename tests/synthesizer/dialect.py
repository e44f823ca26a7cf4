"""Writes a design's files in the dialect, and what is true of it, from two databases.

The netlists, locations and log take their names from the conventions in names.py. The truth takes
nothing from names: it follows the wires from one database into the other.
"""

import json
import re
import sys
from pathlib import Path

from database import Database
from device import Place, location_text
from elaborated import elaborated_netlists
from log import log_text
from names import lot
from netlist import EdifWriter
from synthesized import SynthesizedView
from truth import Outcomes


def definition_names(database):
    """The source's name for each module; those made from one by parameters are counted."""
    names, counts = {}, {}
    for module in database.definitions():
        title = re.sub(r"\W", "_", module.title)
        if title == module.name:
            names[module.name] = title
            continue
        number = counts[title] = counts.get(title, -1) + 1
        names[module.name] = f"{title}__parameterized{number}"
    return names


def write(folder, elaborated, synthesized):
    names = definition_names(elaborated)
    view = SynthesizedView(synthesized, names)
    outcomes = Outcomes(elaborated, view)
    lines = []
    for slot, (path, flip_flop, net) in enumerate(view.flip_flops()):
        place = Place.number(slot)
        outcomes.place(path, flip_flop, place)
        lines.append((place, net))
    # Multiplexers show the outputs of look-up tables, too, whose nets may be named like registers.
    for slot, net in enumerate(view.lut_nets(), len(lines)):
        if lot(net, "shown") % 6 == 0:
            lines.append((Place.number(slot, is_lut=True), net))
    known = list(outcomes.all())
    top = names[elaborated.top.name]
    truth = [outcome.record(top) for outcome in known]
    texts = {
        "rtl.edf": EdifWriter(*elaborated_netlists(elaborated, names)).text(),
        "synth.edf": EdifWriter(view.primitives, view.netlists).text(),
        "design.ll": location_text(lines),
        "synth.log": log_text(known),
        "truth.json": json.dumps(truth, indent=1) + "\n",
    }
    for name, text in texts.items():
        (folder / name).write_text(text, encoding="utf-8")


def main(arguments):
    if len(arguments) != 3:
        sys.exit("usage: dialect.py ELABORATED.json SYNTHESIZED.json FOLDER")
    write(Path(arguments[2]), Database(arguments[0]), Database(arguments[1]))


if __name__ == "__main__":
    main(sys.argv[1:])
