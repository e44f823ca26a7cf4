"""What became of each register of the source, as the synthesizer's own databases tell."""

from dataclasses import dataclass

from database import CONSTANTS
from elaborated import register_place
from names import BitName


@dataclass
class Outcome:
    """What became of one register bit: `kind` is located, merged, constant or nothing."""

    path: tuple
    name: object
    kind: str
    place: object = None
    value: str = ""
    survivor: str = ""
    cell: str = ""

    @property
    def element(self):
        """The register as a log names it."""
        return "/".join(self.path + (self.name.instance(),))

    def record(self, top):
        record = {
            "signal": "/".join(("", top) + self.path + (self.name.signal,)),
            "index": self.name.index,
            "kind": self.kind,
        }
        if self.place is not None:
            record.update(frame=self.place.frame, offset=self.place.offset)
        if self.value:
            record["value"] = self.value
        return record


class Outcomes:
    """Looks each elaborated register bit up by its wire in the synthesized database."""

    def __init__(self, elaborated, view):
        self._view = view
        self._module_at = {
            "/".join(path): (path, module) for path, module in view.database.instances()
        }
        self._flip_flop_at = {}
        self._elaborated = elaborated

    def place(self, path, flip_flop, place):
        self._flip_flop_at[path, flip_flop.bit] = (flip_flop, place)

    def all(self):
        for path, module in self._elaborated.instances():
            places = module.wires_of_bits()
            cells = [cell for cell in module.cells if cell.is_elaborated_register]
            for bit in [bit for cell in cells for bit in cell.connections["Q"]]:
                found = register_place(places, bit)
                if found is not None:
                    yield self._outcome(path, *found)

    def _outcome(self, path, elaborated, place):
        name = BitName(elaborated, place)
        kept, wire = self._kept_wire(path, elaborated.name)
        # A wire of that name without the mark is another, made for a state that was encoded anew.
        if wire is None or not wire.is_register:
            return Outcome(path, name, "nothing")
        bit = wire.bits[place]
        if bit in CONSTANTS:
            return Outcome(path, name, "constant", value=bit)
        flip_flop, where = self._flip_flop_at.get((kept, bit), (None, None))
        if flip_flop is None:
            return Outcome(path, name, "nothing")
        survivor = "/".join(kept + (flip_flop.instance,))
        outcome = Outcome(path, name, "located", where, "", survivor, flip_flop.cell)
        if survivor != outcome.element:
            outcome.kind = "merged"
        return outcome

    def _kept_wire(self, path, name):
        """The wire, and the innermost module instance around it that was not dissolved."""
        for depth in range(len(path), -1, -1):
            known = self._module_at.get("/".join(path[:depth]))
            if known is not None:
                kept, module = known
                return kept, module.wires.get("/".join(path[depth:] + (name,)))
        raise ValueError("no top module")
