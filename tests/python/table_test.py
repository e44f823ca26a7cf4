"""The register table in its three forms."""

from __future__ import annotations

from pathlib import Path

import pytest

import xrf


def test_rows_tell_every_register_bit(blinker: xrf.Design) -> None:
    rows = blinker.registers()
    coverage = blinker.coverage()
    assert len(rows) == coverage["registers"] == 31
    assert sum(row["kind"] == "STATE" for row in rows) == coverage["located"] == 24
    assert sum(row["kind"] == "CNST" for row in rows) == coverage["constant"] == 6
    names = [row["name"] for row in rows]
    assert len(set(names)) == 31 and "/blinker/u_player/u_fifo/mem[3][1]" in names
    for row in rows:
        bit = blinker.signal(row["signal"])[row["index"]]
        assert (row["kind"], row["value"]) == (bit.kind, bit.value)
        assert (row.get("frame"), row.get("offset"), row.get("slr")) == (
            bit.frame, bit.offset, bit.slr)
        assert bit.written_name == row["name"]


def test_merged_registers_have_rows_of_their_own(beacon: xrf.Design) -> None:
    places = {row["name"]: (row.get("frame"), row.get("offset")) for row in beacon.registers()}
    merged = places["/beacon/u_control/strobe"]
    assert merged == places["/beacon/u_control/r[tag][valid]"] == (0x0004650C, 963)


def test_array_says_the_same(blinker: xrf.Design) -> None:
    numpy = pytest.importorskip("numpy")
    table, names = blinker.registers_numpy()
    assert table.dtype.names == ("signal", "index", "frame", "offset", "slr", "kind", "value")
    assert table.flags.owndata and table.flags.writeable
    rows = blinker.registers()
    assert len(table) == len(rows)
    for row, line in zip(rows, table):
        assert names[line["signal"]] == row["signal"]
        assert (line["index"], line["kind"]) == (row["index"], row["kind"])
        assert line["frame"] == row.get("frame", 0) and line["offset"] == row.get("offset", 0)
        constant = row["kind"] == "CNST"
        assert line["value"] == (int(row["value"]) if constant else -1)
    located = table[table["kind"] == "STATE"]
    assert len(located) == 24
    assert numpy.unique(located["slr"]).tolist() == [0]


def test_frame_says_the_same(blinker: xrf.Design) -> None:
    pandas = pytest.importorskip("pandas")
    frame = blinker.registers_pandas()
    rows = blinker.registers()
    assert list(frame["signal"]) == [row["signal"] for row in rows]
    for (_, line), row in zip(frame.iterrows(), rows):
        assert (line["index"], line["kind"]) == (row["index"], row["kind"])
        for column in ("frame", "offset", "slr"):
            assert pandas.isna(line[column]) == (column not in row)
            if column in row:
                assert line[column] == row[column]  # type: ignore[literal-required]
        assert pandas.isna(line["value"]) == (row["kind"] != "CNST")


def test_a_large_table(large: Path) -> None:
    """Not one register is known of a file without cells; the table is there all the same."""
    pytest.importorskip("numpy")
    table, names = xrf.Design.load(large).registers_numpy()
    assert len(table) == 0 and names == []
