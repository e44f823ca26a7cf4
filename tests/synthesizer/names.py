"""How the tools of the dialect name what the source calls by a wire and an index."""

import zlib


def lot(text, purpose):
    """A number that looks drawn by lot, but is always the same for the same text."""
    return zlib.crc32(f"{purpose}:{text}".encode())


def split_path(name):
    """The part of a flattened name up to its last level, and the rest."""
    level = name.rfind("/") + 1
    return name[:level], name[level:]


class BitName:
    """A bit of a wire in the several names that it goes by."""

    def __init__(self, wire, place):
        self.path, local = split_path(wire.name)
        self.index = wire.index_of(place)
        self.words = ""
        # The register of a state that was encoded anew is another than that of the source.
        self.is_machine = wire.is_machine
        self.base = f"FSM_onehot_{local}" if wire.is_machine else local
        if wire.is_word:
            opening = local.rindex("[")
            self.base, self.words = local[:opening], local[opening:]
        self.bit = "" if wire.is_scalar else f"[{self.index}]"
        if wire.is_word and wire.is_scalar:
            # Of an array of single bits the word's number is the index.
            self.index, self.bit, self.words = int(self.words[1:-1]), self.words, ""

    @property
    def printable(self):
        """As written in the source: gen[2].mem[3][5]."""
        return self.path + self.base + self.words + self.bit

    def instance(self, ending="reg"):
        """The instance that implements the bit: gen[2].mem_reg[3][5]."""
        return f"{self.path}{self.base}_{ending}{self.words}{self.bit}"

    def output_net(self, ending="reg", ahead=False):
        """A name for that instance's output other than the bit's: x_reg_n_0_[7] or n_0_x_reg[7]."""
        if ahead:
            path, local = split_path(self.instance(ending))
            return f"{path}n_0_{local}"
        groups = self.words + self.bit
        return f"{self.path}{self.base}_{ending}_n_0{'_' if groups else ''}{groups}"

    @property
    def signal(self):
        """The signal that shows the bit: gen[2].mem<3>; parentheses have no place in it."""
        name = self.base + self.words.replace("[", "<").replace("]", ">")
        return "".join("_" if byte in "()" else byte for byte in name)


class Identifiers:
    """Names that the netlist format can carry, each for one printable name."""

    def __init__(self):
        self._taken = set()
        self._known = {}

    def reserve(self, names):
        """Names that need no other identifier keep themselves, whoever comes first."""
        for name in names:
            if _plain(name) == name:
                self._taken.add(name)
                self._known[name] = name

    def of(self, name):
        known = self._known.get(name)
        if known is not None:
            return known
        base = _plain(name)
        identifier, number = base, 0
        while identifier in self._taken:
            identifier, number = f"{base}_{number}", number + 1
        self._taken.add(identifier)
        self._known[name] = identifier
        return identifier


def _plain(name):
    plain = "".join(
        char if char.isascii() and (char.isalnum() or char == "_") else "_" for char in name
    )
    return plain if plain[0].isalpha() else "&" + plain
