"""The synthesized database as a netlist of the dialect: look-up tables and flip-flops.

A flip-flop is named after the register that it implements. Which one that is, the wires of the
database tell: the one that carries the flip-flop's output.
"""

from dataclasses import dataclass

from elaborated import ModuleBuilder
from names import BitName, lot
from netlist import Port, Reference


@dataclass
class FlipFlop:
    """A flip-flop, and the bit of the source or of a state that it is named after."""

    name: BitName
    ending: str
    cell: str
    bit: int

    @property
    def instance(self):
        return self.name.instance(self.ending)

    @property
    def is_inverted(self):
        return self.ending == "reg_inv"


class SynthesizedModule(ModuleBuilder):
    def __init__(self, module, definitions, primitives, database):
        super().__init__(module, definitions, primitives)
        self.database = database
        self.drivers, self.readers = _ends(module, database)
        self.luts = {}
        self.lut_counts = {}
        self.flip_flops = {cell.name: self.name_flip_flop(cell) for cell in self.cells("FD")}
        self.flip_flop_of_bit = {found.bit: found for found in self.flip_flops.values()}
        self.public_names = {
            BitName(*place).printable for places in self.places.values() for place in places
        }

    def cells(self, prefix):
        return [cell for cell in self.module.cells if cell.type.startswith(prefix)]

    def name_flip_flop(self, cell):
        bit = cell.connections["Q"][0]
        registers = self.registers_at(bit)
        if registers:
            return FlipFlop(registers[0], "reg", cell.type, bit)
        for reader, _ in self.readers.get(bit, []):
            if reader.type == "LUT1" and int(reader.parameters["INIT"], 2) == 1:
                inverted = self.registers_at(reader.connections["O"][0])
                if inverted:
                    return FlipFlop(inverted[0], "reg_inv", cell.type, bit)
        raise ValueError(f"{self.module.name}: no wire tells what {cell.name} is")

    def registers_at(self, bit):
        """The register bits that `bit` is, in the order in which they may name a flip-flop."""
        places = self.places.get(bit, [])
        names = [BitName(*place) for place in places if place[0].is_register or place[0].is_machine]
        return sorted(
            names, key=lambda name: (name.is_machine, name.path.count("/"), name.printable)
        )

    def add_cells(self):
        for cell in self.module.cells:
            if cell.type in self.database.modules:
                self.add_child(cell, self.database.modules[cell.type])
            elif cell.is_flip_flop:
                self.add_flip_flop(cell)
            elif cell.is_lut:
                self.add_lut(cell)
            else:
                raise ValueError(f"{self.module.name}: {cell.type} has no cell in the device")

    def add_flip_flop(self, cell):
        name = self.flip_flops[cell.name].instance
        properties = [("INIT", f"1'b{cell.parameters['INIT'][-1]}")]
        self.add_primitive(cell, name, "Q", properties)

    def add_lut(self, cell):
        # Readers take a small "b" for the mark of a binary literal.
        width = 1 << int(cell.type[3:])
        contents = int(cell.parameters["INIT"].replace("x", "0"), 2)
        digits = f"{contents:0{max(1, width // 4)}X}"
        self.add_primitive(cell, self.lut_name(cell), "O", [("INIT", f"{width}'h{digits}")])

    def add_primitive(self, cell, name, output, properties):
        pins = sorted(cell.connections, key=lambda pin: (pin != output, pin))
        ports = [Port(pin, "OUTPUT" if pin == output else "INPUT") for pin in pins]
        self.add_instance(name, cell.type, ports, properties)
        for pin in pins:
            self.connect(cell.connections[pin][0], Reference(pin, name))

    def lut_name(self, cell):
        """Named after the register it feeds, directly or through others."""
        if cell.name not in self.luts:
            base = self.lut_base(cell)
            self.lut_counts[base] = self.lut_counts.get(base, 0) + 1
            self.luts[cell.name] = f"{base}_i_{self.lut_counts[base]}"
        return self.luts[cell.name]

    def lut_base(self, cell):
        while True:
            bit = cell.connections["O"][0]
            readers = [reader for reader, _ in self.readers.get(bit, [])]
            for reader in readers:
                if reader.is_flip_flop:
                    return self.flip_flops[reader.name].name.printable
            luts = [reader for reader in readers if reader.is_lut]
            if not luts:
                return f"{self.net_name(bit)}_INST_0" if self.places.get(bit) else "unread"
            cell = luts[0]

    def choose_net_name(self, bit):
        flip_flop = self.flip_flop_of_bit.get(bit)
        if flip_flop is not None:
            return self.output_net(flip_flop)
        name = self.wire_name(bit)
        return name.printable if name else self.hidden_net_name(bit)

    def output_net(self, flip_flop):
        """By lot the register's name, one made from the instance's, or that of another wire."""
        others = [
            BitName(wire, place).printable
            for wire, place in self.places.get(flip_flop.bit, [])
            if not wire.is_register and not wire.is_machine
        ]
        choice = lot(flip_flop.instance, "output net") % 5
        if choice >= 3 and others:
            return min(others)
        made = flip_flop.name.output_net(flip_flop.ending, choice % 2 == 0)
        if (choice < 2 or flip_flop.is_inverted) and made not in self.public_names:
            return made
        return flip_flop.name.printable

    def hidden_net_name(self, bit):
        driver, pin = self.drivers[bit]
        if driver.is_lut:
            return f"{self.lut_name(driver)}_n_0"
        return f"{driver.name}_n_{pin.replace('[', '_').replace(']', '')}"


def _ends(module, database):
    """For each bit the cell and pin that drive it, and those that read it."""
    drivers, readers = {}, {}
    for cell in module.cells:
        child = database.modules.get(cell.type)
        for pin, bits in cell.connections.items():
            drives = child.directions[pin] == "output" if child else pin in ("Q", "O")
            for place, bit in enumerate(bits):
                if not isinstance(bit, int):
                    continue
                if drives:
                    drivers[bit] = (cell, pin if len(bits) == 1 else f"{pin}[{place}]")
                else:
                    readers.setdefault(bit, []).append((cell, pin))
    return drivers, readers


class SynthesizedView:
    def __init__(self, database, definitions):
        self.database = database
        self.primitives = {}
        self.modules = {
            module.name: SynthesizedModule(module, definitions, self.primitives, database)
            for module in database.definitions()
        }
        self.netlists = [builder.build() for builder in self.modules.values()]

    def flip_flops(self):
        """Every flip-flop of every instance as (path, FlipFlop, full name of its net)."""
        module_at = dict(self.database.instances())
        for path, module in module_at.items():
            for flip_flop in self.modules[module.name].flip_flops.values():
                yield path, flip_flop, self.full_net_name(module_at, path, flip_flop)

    def lut_nets(self):
        """The full names of the nets that look-up tables drive."""
        for path, module in self.database.instances():
            builder = self.modules[module.name]
            for cell in builder.cells("LUT"):
                yield "/".join(path + (builder.net_name(cell.connections["O"][0]),))

    def full_net_name(self, module_at, path, flip_flop):
        """A net that leaves modules is, by lot, called as in one of those around it."""
        bit = flip_flop.bit
        while path and lot("/".join(path) + flip_flop.instance, f"outside {len(path)}") % 3 == 0:
            outer = self._outside(module_at, path, bit)
            if outer is None:
                break
            path, bit = path[:-1], outer
        module = self.modules[module_at[path].name]
        return "/".join(path + (module.net_name(bit),))

    @staticmethod
    def _outside(module_at, path, bit):
        inner, outer = module_at[path], module_at[path[:-1]]
        cell = next(cell for cell in outer.cells if cell.name == path[-1])
        for wire in inner.ports:
            if bit in wire.bits and inner.directions[wire.name] == "output":
                outside = cell.connections.get(wire.name, [])
                if outside and isinstance(outside[wire.bits.index(bit)], int):
                    return outside[wire.bits.index(bit)]
        return None
