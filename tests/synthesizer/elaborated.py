"""The elaborated database as a netlist of the dialect: operators, and registers bit by bit."""

from database import CONSTANTS
from names import BitName, lot
from netlist import Instance, Netlist, Port, Reference, bus

OPERATORS = {
    "$add": "ADD",
    "$sub": "SUB",
    "$mul": "MULT",
    "$and": "AND",
    "$or": "OR",
    "$xor": "XOR",
    "$logic_and": "AND",
    "$logic_or": "OR",
    "$logic_not": "REDUCTION_NOR",
    "$not": "NOT",
    "$eq": "EQ",
    "$ne": "NEQ",
    "$lt": "LT",
    "$le": "LEQ",
    "$gt": "GT",
    "$ge": "GEQ",
    "$mux": "MUX",
    "$pmux": "MUX",
    "$reduce_or": "REDUCTION_OR",
    "$reduce_bool": "REDUCTION_OR",
    "$reduce_and": "REDUCTION_AND",
    "$reduce_xor": "REDUCTION_XOR",
    "$shl": "LSHIFT",
    "$shr": "RSHIFT",
    "$shift": "BSEL",
    "$shiftx": "BSEL",
    "$neg": "NEG",
}

PINS = {"A": "I0", "B": "I1", "S": "S", "Y": "O"}
DIRECTIONS = {"input": "INPUT", "output": "OUTPUT", "inout": "INOUT"}


class ModuleBuilder:
    """What both views share: ports, nets named by wires, constants, instances of other modules."""

    GROUND = ("GND", "G")
    POWER = ("VCC", "P")

    def __init__(self, module, definitions, primitives):
        self.module = module
        self.definitions = definitions
        self.primitives = primitives
        self.netlist = Netlist(definitions[module.name])
        self.places = module.wires_of_bits()
        self.net_names = {}

    def build(self):
        self.add_cells()
        for wire in self.module.ports:
            self.add_port(wire)
        return self.netlist

    def add_port(self, wire):
        direction = DIRECTIONS[self.module.directions[wire.name]]
        if wire.is_scalar:
            self.netlist.ports.append(Port(wire.name, direction))
        else:
            self.netlist.ports.append(Port(wire.name, direction, *wire.range))
        width = len(wire.bits)
        for place, bit in enumerate(wire.bits):
            member = None if wire.is_scalar else width - 1 - place
            self.connect(bit, Reference(wire.name, None, member))

    def add_instance(self, name, cell, ports, properties=()):
        """Adds an instance of a primitive with these ports."""
        known = self.primitives.setdefault(cell, ports)
        if known != ports:
            raise ValueError(f"two kinds of {cell}")
        self.netlist.instances.append(Instance(name, cell, "prims", list(properties)))

    def add_child(self, cell, child):
        definition = self.definitions[child.name]
        self.netlist.instances.append(Instance(cell.name, definition, "work"))
        for wire in child.ports:
            width = len(wire.bits)
            for place, bit in enumerate(cell.connections.get(wire.name, [])):
                member = None if wire.is_scalar else width - 1 - place
                self.connect(bit, Reference(wire.name, cell.name, member))

    def connect_bus(self, bits, instance, pin):
        for place, bit in enumerate(bits):
            member = None if len(bits) == 1 else len(bits) - 1 - place
            self.connect(bit, Reference(pin, instance, member))

    def connect(self, bit, reference):
        if bit in CONSTANTS:
            self.netlist.join(self.constant(bit), reference)
        elif isinstance(bit, int):
            self.netlist.join(self.net_name(bit), reference)

    def constant(self, bit):
        cell, pin = self.GROUND if bit == "0" else self.POWER
        net = f"<const{bit}>"
        if net not in self.netlist.nets:
            self.add_instance(cell, cell, [Port(pin, "OUTPUT")])
            self.netlist.join(net, Reference(pin, cell))
        return net

    def net_name(self, bit):
        if bit not in self.net_names:
            self.net_names[bit] = self.choose_net_name(bit)
        return self.net_names[bit]

    def hidden_net_name(self, bit):
        return f"hidden_n_{bit}"

    def wire_name(self, bit):
        """The wire that gives a net its name: a register's before a port's before any other."""
        ports = {wire.name for wire in self.module.ports}

        def rank(place):
            wire = place[0]
            return (not wire.is_register, wire.name not in ports, wire.name.count("/"), wire.name)

        places = self.places.get(bit)
        return BitName(*min(places, key=rank)) if places else None


class ElaboratedModule(ModuleBuilder):
    GROUND = ("RTL_GND", "G")
    POWER = ("RTL_PWR", "P")

    def __init__(self, module, definitions, primitives, database, numbers):
        super().__init__(module, definitions, primitives)
        self.database = database
        self.numbers = numbers
        self.operators = 0
        self.inverters = {}

    def add_cells(self):
        for cell in self.module.cells:
            if cell.type in self.database.modules:
                self.add_child(cell, self.database.modules[cell.type])
            elif cell.is_elaborated_register:
                self.add_register(cell)
            else:
                self.add_operator(cell)

    def choose_net_name(self, bit):
        name = self.wire_name(bit)
        return name.printable if name else self.hidden_net_name(bit)

    def add_register(self, cell):
        clock = cell.connections["CLK"][0]
        if not cell.flag("CLK_POLARITY"):
            clock = self.inverse(clock)
        reset = None
        if cell.type == "$adff":
            reset = cell.connections["ARST"][0]
            if not cell.flag("ARST_POLARITY"):
                reset = self.inverse(reset)
        for place, bit in enumerate(cell.connections["Q"]):
            found = register_place(self.places, bit)
            if found is None:
                continue
            name = BitName(*found)
            control = None
            if reset is not None:
                control = "PRE" if cell.parameters["ARST_VALUE"][-1 - place] == "1" else "CLR"
            self.add_register_bit(name.instance(), control, bit)
            self.connect(cell.connections["D"][place], Reference("D", name.instance()))
            self.connect(clock, Reference("C", name.instance()))
            if control is not None:
                self.connect(reset, Reference(control, name.instance()))

    def add_register_bit(self, name, control, bit):
        kind = {None: "RTL_REG", "CLR": "RTL_REG_ASYNC", "PRE": "RTL_REG_ASYNC_P"}[control]
        number = lot(self.module.name + name, "variant") % 16
        pins = [Port("Q", "OUTPUT"), Port("C", "INPUT"), Port("D", "INPUT")]
        if control is not None:
            pins.append(Port(control, "INPUT"))
        self.add_instance(name, f"{kind}__BREG_{number}", pins)
        self.connect(bit, Reference("Q", name))

    def inverse(self, bit):
        """The net of an inverter at `bit`, as an integer below all of the database."""
        if bit not in self.inverters:
            inverse = -1 - len(self.inverters)
            self.inverters[bit] = inverse
            self.add_inverter(bit, inverse)
        return self.inverters[bit]

    def add_inverter(self, source, target):
        name = self.operator_name()
        self.add_instance(name, "RTL_INV", [Port("O", "OUTPUT"), Port("I0", "INPUT")])
        self.connect(source, Reference("I0", name))
        self.connect(target, Reference("O", name))

    def hidden_net_name(self, bit):
        return f"inverse_n_{-bit}" if bit < 0 else super().hidden_net_name(bit)

    def operator_name(self):
        self.operators += 1
        return f"logic_i__{self.operators}"

    def add_operator(self, cell):
        inputs, outputs = cell.connections["A"], cell.connections["Y"]
        if cell.type in ("$not", "$logic_not") and len(inputs) == len(outputs):
            if cell.type == "$not" or len(inputs) == 1:
                for source, target in zip(inputs, outputs):
                    self.add_inverter(source, target)
                return
        widths = [(PINS[pin], len(bits)) for pin, bits in sorted(cell.connections.items())]
        kind = OPERATORS[cell.type]
        number = self.numbers.setdefault((kind, *widths), len(self.numbers))
        ports = [bus(pin, "OUTPUT" if pin == "O" else "INPUT", width) for pin, width in widths]
        name = self.operator_name()
        self.add_instance(name, f"RTL_{kind}{number}", ports)
        for pin, bits in cell.connections.items():
            self.connect_bus(bits, name, PINS[pin])


def register_place(places, bit):
    """The wire and place of the register that a bit of the elaborated database is, if any.

    None is a temporary of the synthesizer's own, which no netlist of the dialect has.
    """
    found = [place for place in places.get(bit, []) if place[0].is_register]
    if len(found) > 1:
        raise ValueError(f"one register by several names: {[wire.name for wire, _ in found]}")
    return found[0] if found else None


def elaborated_netlists(database, definitions):
    """Primitives and modules of the elaborated view."""
    primitives, numbers = {}, {}
    modules = [
        ElaboratedModule(module, definitions, primitives, database, numbers).build()
        for module in database.definitions()
    ]
    return primitives, modules
