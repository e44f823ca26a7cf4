"""Designs, modules, signals and bits: looked up, walked, printed, turned into dictionaries."""

from __future__ import annotations

import copy
import gc
import pickle
from pathlib import Path

import pytest

import xrf

COUNT = {3: 2620, 2: 2595, 1: 2584, 0: 2563}


def test_a_signal_tells_where_its_bits_live(blinker: xrf.Design) -> None:
    count = blinker.signal("u_ticker/count")
    assert {bit.index: bit.offset for bit in count} == COUNT
    assert {(bit.frame, bit.slr, bit.kind) for bit in count} == {(0x0040061F, 0, "STATE")}
    assert [bit.index for bit in count] == [3, 2, 1, 0]
    assert (count.name, count.full_name) == ("count", "/blinker/u_ticker/count")
    assert (count.lsb, count.msb, count.width, len(count)) == (0, 3, 4, 4)
    assert count.module == blinker.module("u_ticker")
    assert count[2].offset == 2595
    for index in (4, -1, 2**40):
        with pytest.raises(IndexError):
            count[index]


def test_both_views_answer(blinker: xrf.Design) -> None:
    rtl = blinker.bit("/blinker/u_ticker/count[3]")
    synth = blinker.bit("/blinker/u_ticker/count[3]", "synth")
    assert (rtl.view, synth.view) == ("rtl", "synth")
    assert rtl != synth
    assert rtl.offset == synth.offset == 2620
    with pytest.raises(ValueError, match="gate"):
        blinker.bit("u_ticker/count[3]", "gate")  # type: ignore[arg-type]


def test_constants_have_a_value_and_no_place(blinker: xrf.Design) -> None:
    limit = blinker.signal("u_ticker/limit")
    assert [bit.value for bit in limit] == ["1", "0", "0", "1"]
    assert {(bit.kind, bit.frame, bit.offset, bit.slr, bit.located) for bit in limit} == {
        ("CNST", None, None, None, False)
    }


@pytest.mark.parametrize("name", ["nope", "u_ticker/coun", "u_ticker/count[9]", "u_*/count", ""])
def test_what_is_not_there_is_a_key_error(blinker: xrf.Design, name: str) -> None:
    for look_up in (blinker.signal, blinker.bit, blinker.module):
        with pytest.raises(KeyError, match="rtl view"):
            look_up(name)


def test_several_bits_are_not_one(blinker: xrf.Design) -> None:
    with pytest.raises(KeyError):
        blinker.bit("u_ticker/count")
    with pytest.raises(KeyError):
        blinker.signal("u_ticker/count[3]")


def test_find_takes_what_the_command_takes(blinker: xrf.Design) -> None:
    assert [bit.view for bit in blinker.find("u_ticker/count[3]")] == ["rtl", "synth"]
    found = blinker.find("*/count[?]", "u_ticker/tick", view="rtl")
    assert [bit.name for bit in found] == [
        *(f"/blinker/u_ticker/count[{i}]" for i in (3, 2, 1, 0)),
        "/blinker/u_ticker/tick",
    ]
    same = blinker.find(r"count\[[0-3]\]$", view="rtl", regex=True)
    assert same == found[:4]
    assert blinker.find("u_ticker/limit", located=True) == []
    assert len(blinker.find("u_ticker/limit", view="rtl", located=False)) == 4
    assert blinker.find("nope") == []
    with pytest.raises(ValueError, match="no regular expression"):
        blinker.find("(", regex=True)


def test_names_as_written_in_rtl(beacon: xrf.Design) -> None:
    assert beacon.bit("u_store/mem[3][5]").written_name == "/beacon/u_store/mem[3][5]"
    assert beacon.bit("u_store/mem[3][5]").signal.name == "mem<3>"


def test_the_way_back(beacon: xrf.Design) -> None:
    names = [bit.written_name for bit in beacon.registers_at(0x0004650C, 963)]
    assert names == ["/beacon/u_control/r[tag][valid]", "/beacon/u_control/strobe"]
    assert beacon.registers_at(0x0004650C, 964) == []
    assert beacon.registers_at(0x0004650C, 963, 1) == []
    of = beacon.registers_of("addr[0]")
    assert of and of[0].view == "rtl"
    with pytest.raises(KeyError):
        beacon.registers_of("nope")


def test_modules_form_a_tree(blinker: xrf.Design) -> None:
    top = blinker.top()
    assert top is not None and top.parent is None
    assert str(top) == "/blinker"
    fifo = blinker.module("u_player/u_fifo")
    assert (fifo.name, fifo.definition, fifo.kind, fifo.hidden) == ("u_fifo", "fifo", "HIER", False)
    assert fifo.parent == blinker.module("u_player")
    assert [child.name for child in top.children()] == [
        "bank_0__u_lamp", "bank_1__u_lamp", "u_player", "u_ticker"]
    cells = [cell for cell in fifo.children(hidden=True) if cell.kind == "REG"]
    assert cells and all(cell.hidden for cell in cells)
    assert [str(module) for module in blinker] == [str(module) for module in top.walk()]
    assert len(list(blinker.modules(hidden=True))) == 63
    assert len(list(blinker.modules("synth", hidden=True))) == 58


def test_iteration_reaches_every_signal(blinker: xrf.Design) -> None:
    nested = [str(signal) for module in blinker for signal in module]
    assert nested == [str(signal) for signal in blinker.signals()]
    assert "/blinker/u_ticker/count[3:0]" in nested
    assert len(list(blinker.signals(hidden=True))) == 361


def test_what_is_printed(blinker: xrf.Design) -> None:
    bit = blinker.bit("u_ticker/count[3]")
    assert str(bit) == "/blinker/u_ticker/count[3]: frame 0x0040061f, offset 2620, slr 0"
    assert repr(bit) == f"<xrf.Bit {bit}>"
    assert str(blinker.bit("u_ticker/limit[0]")) == "/blinker/u_ticker/limit[0]: CNST 1"
    assert repr(bit.signal) == "<xrf.Signal /blinker/u_ticker/count[3:0] (rtl, WIRE)>"
    assert repr(bit.signal.module) == "<xrf.Module /blinker/u_ticker: ticker (rtl)>"
    assert repr(blinker) == "<xrf.Design blinker>"
    assert str(blinker).startswith("blinker: 31 register bits, 24 located, 6 constant")


def test_dictionaries_and_pickles(blinker: xrf.Design) -> None:
    bit = blinker.bit("u_ticker/count[3]")
    row = {
        "view": "rtl", "name": "/blinker/u_ticker/count", "index": 3, "direction": "WIRE",
        "kind": "STATE", "frame": 0x0040061F, "offset": 2620, "slr": 0, "value": "z",
    }
    assert bit.to_dict() == row
    assert pickle.loads(pickle.dumps(bit)) == row
    signal = bit.signal.to_dict()
    assert [one["index"] for one in signal["bits"]] == [3, 2, 1, 0]
    assert pickle.loads(pickle.dumps(bit.signal)) == signal
    tree = blinker.to_dict()
    assert tree["rtl"] is not None and tree["rtl"]["name"] == "/blinker"
    names = [child["name"] for child in tree["rtl"]["children"]]
    assert names[-1] == "/blinker/u_ticker"
    assert tree["rtl"]["children"][-1]["signals"] == [
        one.to_dict() for one in blinker.module("u_ticker").signals()]
    assert pickle.loads(pickle.dumps(blinker)) == tree
    assert copy.deepcopy([bit])[0] is bit and copy.copy(blinker) is blinker


def test_equal_handles_are_one_key(blinker: xrf.Design) -> None:
    bit = blinker.bit("u_ticker/count[3]")
    assert {bit: 1}[blinker.signal("u_ticker/count")[3]] == 1
    assert bit != blinker.bit("u_ticker/count[2]") and bit != "count"
    assert len({bit.signal, blinker.signal("u_ticker/count")}) == 1
    assert len({bit.signal.module, blinker.module("u_ticker"), blinker.module("u_player")}) == 2


def test_objects_keep_their_design_alive(examples: Path) -> None:
    files = [str(examples / f"blinker/blinker_{view}.edf") for view in ("rtl", "synth")]
    signals = xrf.Design.build(files[0], files[1]).signals()
    first = next(signals)
    del files
    gc.collect()
    assert first.module.full_name == "/blinker"
    assert len(list(signals)) > 50


def test_designs_are_apart(blinker: xrf.Design, examples: Path) -> None:
    other = xrf.Design.build(
        examples / "blinker/blinker_rtl.edf", examples / "blinker/blinker_synth.edf")
    assert not other.bit("u_ticker/count[3]").located
    assert blinker.bit("u_ticker/count[3]").located
    assert other.bit("u_ticker/count[3]") != blinker.bit("u_ticker/count[3]")


def test_saved_and_loaded(blinker: xrf.Design, tmp_path: Path) -> None:
    path = tmp_path / "blinker.xrf"
    blinker.save(path)
    loaded = xrf.Design.load(path)
    assert loaded.registers() == blinker.registers()
    assert loaded.to_dict() == blinker.to_dict()
    again = tmp_path / "again.xrf"
    loaded.save(str(again))
    assert again.read_bytes() == path.read_bytes()
    blinker.save(path, hide_hidden=True)
    assert path.stat().st_size < again.stat().st_size


def test_another_implementation_of_a_saved_design(examples: Path, tmp_path: Path) -> None:
    files = examples / "blinker"
    path = tmp_path / "bare.xrf"
    xrf.Design.build(files / "blinker_rtl.edf", files / "blinker_synth.edf").save(path)
    assert not xrf.Design.load(path).bit("u_ticker/count[3]").located
    later = xrf.Design.load(
        path, logic_location=files / "blinker.ll", log=files / "blinker.log")
    assert later.bit("u_ticker/count[3]").offset == 2620
    assert later.location_report["used"] == 24
    assert later.log_report["used"] == 6


def test_strict_matching(examples: Path) -> None:
    files = examples / "beacon"

    def read(matching: str) -> xrf.Design:
        return xrf.Design.build(
            files / "beacon_rtl.edf", files / "beacon_synth.edf",
            logic_location=files / "beacon.ll", matching=matching)  # type: ignore[arg-type]

    strict, extended = read("strict").location_report, read("extended").location_report
    assert strict["used"] < extended["used"]
    with pytest.raises(ValueError, match="fuzzy"):
        read("fuzzy")


def test_names_that_are_no_utf8(tmp_path: Path) -> None:
    path = tmp_path / "latin.xrf"
    path.write_bytes(
        b"(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n(NETS 1)\n(BIT 0 STATE z 1 2 0)\n\n(VIEW RTL)\n\n"
        b"(MOD VISIBLE top top 0\n\n   (SIG VISIBLE WIRE z\xe4hler 1 0 0 0 0))\n\n(VIEW SYNTH)\n\n")
    design = xrf.Design.load(path)
    name = "z\udce4hler"
    assert [signal.name for signal in design.signals()] == [name]
    assert design.signal(name)[0].frame == 1


def test_a_signal_is_walked_both_ways(blinker: xrf.Design) -> None:
    count = blinker.signal("u_ticker/count")
    assert [bit.index for bit in count] == [3, 2, 1, 0]
    assert [bit.index for bit in reversed(count)] == [0, 1, 2, 3]


def test_a_range_that_does_not_begin_at_zero_is_walked_both_ways(beacon: xrf.Design) -> None:
    ranges = [signal for signal in beacon.signals() if signal.lsb > 0]
    assert ranges
    for signal in ranges:
        upward = list(range(signal.lsb, signal.msb + 1))
        assert [bit.index for bit in reversed(signal)] == upward
        assert [bit.index for bit in signal] == upward[::-1]


def test_a_bit_is_no_signal_and_the_other_way_around(blinker: xrf.Design) -> None:
    with pytest.raises(KeyError, match="it names a bit, which bit\\(\\) gives"):
        blinker.signal("u_ticker/count[2]")
    with pytest.raises(KeyError, match="it names a signal of several, which signal\\(\\) gives"):
        blinker.bit("u_ticker/count")
    with pytest.raises(KeyError) as caught:
        blinker.signal("u_ticker")
    assert "bit" not in str(caught.value)


def test_names_to_find_are_texts(blinker: xrf.Design) -> None:
    for name in (["u_ticker/count"], 3, b"u_ticker/count"):
        with pytest.raises(TypeError, match="each name must be a str"):
            blinker.find(name)  # type: ignore[arg-type]


def test_files_that_were_mixed_up(examples: Path) -> None:
    stem, other = examples / "blinker/blinker", examples / "beacon/beacon"
    with pytest.raises(xrf.Error, match="this is a location file, where a netlist"):
        xrf.Design.build(f"{stem}.ll", f"{stem}_synth.edf")
    with pytest.raises(xrf.Error, match="this is a netlist .*, where a synthesis log is"):
        xrf.Design.build(f"{stem}_rtl.edf", f"{stem}_synth.edf", log=f"{stem}_rtl.edf")
    swapped = xrf.Design.build(f"{stem}_synth.edf", f"{stem}_rtl.edf")
    assert any("were the two swapped?" in warning for warning in swapped.warnings)
    strange = xrf.Design.build(
        f"{stem}_rtl.edf", f"{stem}_synth.edf", logic_location=f"{other}.ll")
    assert any("is it of this design?" in warning for warning in strange.warnings)
