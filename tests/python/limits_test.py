"""What files may ask for can be set for each read."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path
from typing import Any, get_type_hints

import pytest

import xrf
from xrf.types import Limits

Reader = Callable[..., object]


def readers(examples: Path, tmp_path: Path) -> dict[str, Reader]:
    blinker, vadd = examples / "blinker/blinker", examples / "vadd/vadd.xml"
    saved = tmp_path / "blinker.xrf"
    xrf.Design.build(f"{blinker}_rtl.edf", f"{blinker}_synth.edf").save(saved)
    return {
        "build": lambda **limits: xrf.Design.build(
            f"{blinker}_rtl.edf", f"{blinker}_synth.edf", **limits),
        "load": lambda **limits: xrf.Design.load(saved, **limits),
        "emulation": lambda **limits: xrf.HardwareEmulationMap(vadd, **limits),
        "read": lambda **limits: xrf.metadata.read(vadd, **limits),
        "parse": lambda **limits: xrf.metadata.parse(vadd.read_text(), **limits),
    }


def takes(read: Reader, **limits: int) -> bool:
    try:
        read(limits=limits)
    except xrf.Error as error:
        assert error.line is not None
        return False
    return True


@pytest.mark.parametrize("reader, limit, message", [
    ("build", "word_length", "longer than"),
    ("build", "signal_width", "wider than"),
    ("build", "module_nesting", "nested more than"),
    ("load", "signal_width", "wider than"),
    ("load", "objects", "holds more than"),
    ("emulation", "xml_depth", "deep"),
    ("read", "xml_depth", "deep"),
    ("parse", "xml_depth", "deep"),
])
def test_the_limit_is_allowed_and_one_less_is_not(
        examples: Path, tmp_path: Path, reader: str, limit: str, message: str) -> None:
    read = readers(examples, tmp_path)[reader]
    needed = next(most for most in range(10000) if takes(read, **{limit: most}))
    assert needed > 0
    with pytest.raises(xrf.Error, match=message):
        read(limits={limit: needed - 1})


def test_a_check_keeps_within_limits(examples: Path) -> None:
    vadd = examples / "vadd/vadd.xml"
    assert not xrf.metadata.check(vadd)
    faults = xrf.metadata.check(vadd, limits={"xml_depth": 2})
    assert [fault.severity for fault in faults] == ["error"]


def test_each_reader_knows_the_limits_that_concern_it(examples: Path, tmp_path: Path) -> None:
    reading = readers(examples, tmp_path)
    names = set(get_type_hints(Limits))
    xml = {name for name in names if name.startswith("xml_")}
    known = {}
    for reader, read in reading.items():
        with pytest.raises(ValueError, match="no limit is named 'width'; there are ") as caught:
            read(limits={"width": 1})
        known[reader] = set(str(caught.value).partition("there are ")[2].split(", "))
    assert known["build"] == names - xml
    assert known["load"] < known["build"] and "word_length" not in known["load"]
    assert known["emulation"] == known["read"] == known["parse"] == xml


@pytest.mark.parametrize("limits, error", [
    ({"signal_width": -1}, ValueError),
    ({"signal_width": 1 << 70}, ValueError),
    ({"signal_width": "8"}, TypeError),
    ({1: 8}, TypeError),
    ([("signal_width", 8)], TypeError),
])
def test_what_is_no_limit(
        examples: Path, tmp_path: Path, limits: Any, error: type[Exception]) -> None:
    with pytest.raises(error):
        readers(examples, tmp_path)["load"](limits=limits)


def test_no_limits_are_the_usual_ones(examples: Path, tmp_path: Path) -> None:
    for read in readers(examples, tmp_path).values():
        read(limits=None)
        read(limits={})
