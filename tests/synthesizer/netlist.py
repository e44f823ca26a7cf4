"""Netlists as the dialect has them, and their EDIF text."""

from dataclasses import dataclass, field

from names import Identifiers

HEADER = """\
(edif {top}
 (edifversion 2 0 0)
 (edifLevel 0)
 (keywordmap (keywordlevel 0))
 (status
  (written
   (timeStamp 2024 02 19 01 09 41)
   (program "Tarvona" (version "2024.1"))
   (comment "Built on 'Mon Feb 19 01:09:41 2024'")
   (comment "from a database (of the synthesizer)")
  )
 )
"""

FOOTER = """\
 (comment "Reference to the cell of highest level")
 (design {top}
  (cellref {top} (libraryref work))
  (property part (string "tv7k325-2"))
 )
)
"""


@dataclass(frozen=True)
class Port:
    """A port; `left` and `right` are its declared range, or None for a single bit."""

    name: str
    direction: str
    left: int = None
    right: int = None

    @property
    def width(self):
        return 1 if self.left is None else abs(self.left - self.right) + 1


def bus(name, direction, width):
    """A port of a primitive: a bus only if it has several bits."""
    return Port(name, direction) if width == 1 else Port(name, direction, width - 1, 0)


@dataclass
class Instance:
    name: str
    cell: str
    library: str
    properties: list = field(default_factory=list)


@dataclass
class Reference:
    """An end of a net: a port of an instance, or of the module itself.

    `member` counts a bus from its left end.
    """

    port: str
    instance: str = None
    member: int = None


@dataclass
class Netlist:
    name: str
    ports: list = field(default_factory=list)
    instances: list = field(default_factory=list)
    nets: dict = field(default_factory=dict)

    def join(self, net, reference):
        self.nets.setdefault(net, []).append(reference)


class EdifWriter:
    """Writes primitives and modules; children must come before their parents."""

    def __init__(self, primitives, modules):
        self._primitives = primitives
        self._modules = modules
        self._ports = {}
        self._lines = []

    def text(self):
        top = self._modules[-1].name
        self._lines = [HEADER.format(top=top)]
        self._library("prims", [Netlist(name, ports) for name, ports in self._primitives.items()])
        self._library("work", self._modules)
        self._lines.append(FOOTER.format(top=top))
        return "".join(self._lines)

    def _put(self, depth, text):
        self._lines.append(f"{' ' * depth}{text}\n")

    def _library(self, name, netlists):
        self._put(1, f"(Library {name}")
        self._put(2, "(edifLevel 0)")
        self._put(2, "(technology (numberDefinition ))")
        for netlist in netlists:
            self._cell(name, netlist)
        self._put(1, ")")

    def _cell(self, library, netlist):
        self._put(2, f"(cell {netlist.name} (celltype GENERIC)")
        self._put(3, "(view netlist (viewtype NETLIST)")
        self._put(4, "(interface")
        ports = self._ports[library, netlist.name] = _port_identifiers(netlist.ports)
        for port in netlist.ports:
            self._port(port, ports[port.name])
        self._put(4, ")")
        if library == "work":
            self._contents(netlist)
        self._put(3, ")")
        self._put(2, ")")

    def _port(self, port, identifier):
        direction = f"(direction {port.direction})"
        if port.left is None:
            self._put(5, f"(port {_named(identifier, port.name)} {direction})")
            return
        printable = f"{port.name}[{port.left}:{port.right}]"
        self._put(5, f"(port (array {_named(identifier, printable)} {port.width}) {direction})")

    def _contents(self, netlist):
        instances = _identifiers(instance.name for instance in netlist.instances)
        nets = _identifiers(netlist.nets)
        cells = {i.name: (i.library, i.cell) for i in netlist.instances}
        self._put(4, "(contents")
        for instance in netlist.instances:
            self._instance(instance, instances.of(instance.name))
        for net, references in netlist.nets.items():
            self._put(5, f"(net {_named(nets.of(net), net)} (joined")
            for reference in references:
                owner = ("work", netlist.name)
                where = ""
                if reference.instance is not None:
                    owner = cells[reference.instance]
                    where = f" (instanceref {instances.of(reference.instance)})"
                port = self._ports[owner][reference.port]
                if reference.member is not None:
                    port = f"(member {port} {reference.member})"
                self._put(6, f"(portref {port}{where})")
            self._put(6, ")")
            self._put(5, ")")
        self._put(4, ")")

    def _instance(self, instance, identifier):
        cell = f"(viewref netlist (cellref {instance.cell} (libraryref {instance.library})))"
        self._put(5, f"(instance {_named(identifier, instance.name)} {cell}")
        for name, value in instance.properties:
            self._put(6, f'(property {name} (string "{value}"))')
        self._put(5, ")")


def _identifiers(names):
    names = list(names)
    if len(set(names)) != len(names):
        raise ValueError(f"one name twice: {sorted(n for n in names if names.count(n) > 1)[:4]}")
    identifiers = Identifiers()
    identifiers.reserve(names)
    return identifiers


def _port_identifiers(ports):
    """A bus that has a range in its printable name cannot be called like that range's base."""
    taken = Identifiers()
    taken.reserve(port.name for port in ports if port.left is None)
    return {
        port.name: taken.of(port.name if port.left is None else f"{port.name}[") for port in ports
    }


def _named(identifier, name):
    return identifier if identifier == name else f'(rename {identifier} "{name}")'
