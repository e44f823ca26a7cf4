"""The synthesizer's databases: modules, wires and cells as its JSON files hold them."""

import json
from dataclasses import dataclass, field

CONSTANTS = ("0", "1")


@dataclass
class Wire:
    """A named group of bits; a bit is the number of what drives it, or a constant's text."""

    name: str
    bits: list
    offset: int
    ascending: bool
    is_hidden: bool = False  # the name is the synthesizer's own, which no other tool would show
    is_register: bool = False
    is_word: bool = False  # of an array, and as such a register, too
    is_machine: bool = False  # a state that was encoded anew

    @property
    def is_scalar(self):
        return len(self.bits) == 1 and self.offset == 0

    def index_of(self, place):
        """The index in the source of the bit that the database has at `place`."""
        return self.offset + (len(self.bits) - 1 - place if self.ascending else place)

    @property
    def range(self):
        """The left and the right bound as declared."""
        first, last = self.index_of(0), self.index_of(len(self.bits) - 1)
        return (last, first)


@dataclass
class Cell:
    name: str
    type: str
    parameters: dict
    directions: dict
    connections: dict

    @property
    def is_elaborated_register(self):
        return self.type in ("$dff", "$adff", "$dffe", "$adffe", "$sdff", "$sdffe")

    @property
    def is_flip_flop(self):
        return self.type.startswith("FD")

    @property
    def is_lut(self):
        return self.type.startswith("LUT")

    def flag(self, parameter):
        return int(self.parameters[parameter], 2) != 0


@dataclass
class Module:
    name: str
    title: str
    ports: list
    directions: dict
    cells: list
    wires: dict = field(default_factory=dict)

    def wires_of_bits(self):
        """For each bit the places (wire, place) at which a public wire has it."""
        places = {}
        for wire in self.wires.values():
            if wire.is_hidden:
                continue
            for place, bit in enumerate(wire.bits):
                if isinstance(bit, int):
                    places.setdefault(bit, []).append((wire, place))
        return places


class Database:
    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            modules = json.load(file)["modules"]
        self.modules = {name: _module(name, entry) for name, entry in modules.items()}
        tops = [name for name, entry in modules.items() if _is_set(entry, "top")]
        if len(tops) != 1:
            raise ValueError(f"{path}: {len(tops)} top modules")
        self.top = self.modules[tops[0]]

    def instances(self):
        """Every module instance, parents first: its path of names below the top, and its module."""
        pending = [((), self.top)]
        while pending:
            path, module = pending.pop(0)
            yield path, module
            for cell in module.cells:
                if cell.type in self.modules:
                    pending.append((path + (cell.name,), self.modules[cell.type]))

    def definitions(self):
        """The modules in use, children before those that instantiate them."""
        order = {}
        for _, module in self.instances():
            order.pop(module.name, None)
            order[module.name] = module
        return list(reversed(order.values()))


def _is_set(entry, attribute):
    text = entry.get("attributes", {}).get(attribute, "0")
    return set(text) <= {"0", "1"} and int(text, 2) != 0


def _full_name(name, data):
    """Flattening joins levels with dots, which a source's name may have as well, but notes them."""
    levels = data["attributes"].get("hdlname", name)
    if "/" in levels and data["hide_name"] == 0:
        raise ValueError(f"{levels} cannot be told from a path")
    return levels.replace(" ", "/")


def _module(name, entry):
    wires = {}
    for wire, data in entry["netnames"].items():
        full = _full_name(wire, data)
        wires[full] = Wire(
            full,
            data["bits"],
            data.get("offset", 0),
            data.get("upto", 0) == 1,
            data["hide_name"] == 1,
            _is_set(data, "register") or _is_set(data, "word"),
            _is_set(data, "word"),
            _is_set(data, "machine"),
        )
    cells = [
        Cell(
            _full_name(cell, data),
            data["type"],
            data.get("parameters", {}),
            data.get("port_directions", {}),
            data["connections"],
        )
        for cell, data in entry["cells"].items()
    ]
    ports = [wires[port] for port in entry["ports"]]
    directions = {port: data["direction"] for port, data in entry["ports"].items()}
    title = entry.get("attributes", {}).get("hdlname", name).lstrip("\\")
    return Module(name, title, ports, directions, cells, wires)
