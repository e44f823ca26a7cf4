"""The types of what xrf's functions take and give, for annotations."""

from __future__ import annotations

import os
from collections.abc import Callable
from typing import Literal, TypedDict, Union

View = Literal["rtl", "synth"]
Matching = Literal["extended", "strict"]
Direction = Literal["IN", "OUT", "WIRE"]
BitKind = Literal["STATE", "CNST", "UNREAD", "UNKNOWN", "NONE"]
ModuleKind = Literal[
    "BUF", "EQUAL", "GND", "INV", "NOT_EQUAL", "LOGIC", "PWR", "REG", "WIDE_FD", "HIER", "XOR"
]
Path = Union[str, "os.PathLike[str]"]
Progress = Callable[[str, int, int], object]


class Limits(TypedDict, total=False):
    """What the files may ask for before they are refused, for `limits` of what reads them; those of
    the command's `--max-...` options."""

    word_length: int
    list_nesting: int
    elaboration_nesting: int
    objects_per_word: int
    work: int
    module_nesting: int
    instances: int
    objects: int
    path_bytes: int
    signal_index: int
    signal_width: int
    xml_depth: int
    xml_entities: int
    xml_expansion: int


class _Facts(TypedDict, total=False):
    """What is known of a bit; frame, offset and slr are there where it is located."""

    frame: int
    offset: int
    slr: int
    value: str


class BitRow(_Facts):
    """A bit, as `Bit.to_dict` gives it."""

    view: View
    name: str
    index: int
    direction: Direction
    kind: BitKind


class RegisterRow(_Facts):
    """A register bit, as `Design.registers` gives it."""

    name: str
    signal: str
    index: int
    kind: BitKind


class _Numbered(_Facts, total=False):
    """The same and the number, which is there where there is a bit."""

    id: int


class SignalBit(_Numbered):
    """A bit within a `SignalDict`."""

    index: int
    kind: BitKind


class SignalDict(TypedDict):
    """A signal, as `Signal.to_dict` gives it."""

    view: View
    name: str
    direction: Direction
    lsb: int
    msb: int
    bits: list[SignalBit]


class ModuleDict(TypedDict):
    """A module and all below it, as `Module.to_dict` gives it."""

    view: View
    name: str
    definition: str
    hidden: bool
    signals: list[SignalDict]
    children: list[ModuleDict]


class DesignDict(TypedDict):
    """Both views, as `Design.to_dict` gives them."""

    rtl: ModuleDict | None
    synth: ModuleDict | None


class Counts(TypedDict):
    """Register bits by what became of them."""

    registers: int
    located: int
    constant: int
    merged: int
    unread: int
    unknown: int


class ModuleCounts(Counts):
    """The register bits of one module."""

    path: str


class Coverage(Counts):
    """The register bits of a design, as `Design.coverage` counts them."""

    modules: list[ModuleCounts]


class LocationReport(TypedDict):
    """What became of the lines of a location file."""

    lines: int
    used: int
    skipped: int
    skippedBlocks: int
    skippedLatches: int
    skippedIndices: int
    unmatched: int
    unmatchedNames: list[str]


class LogReport(TypedDict):
    """What became of the lines of a synthesis log."""

    lines: int
    used: int
    skipped: int
    unmatched: int
    unmatchedNames: list[str]
    suppressed: bool


class ComputeUnit(TypedDict):
    """A compute unit and the conditions on which it starts and ends."""

    name: str
    start: str
    end: str


class KernelArgument(TypedDict):
    """An argument of a kernel and the signals that carry it."""

    name: str
    signal: str
    emulation: str


class KernelDict(TypedDict):
    """A kernel of a `HardwareEmulationMap`."""

    name: str
    computeUnits: list[ComputeUnit]
    arguments: list[KernelArgument]


class EmulationDict(TypedDict):
    """A `HardwareEmulationMap`, as its `to_dict` gives it."""

    kernels: list[KernelDict]
