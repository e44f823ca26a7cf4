"""Kernels, compute units and argument signals."""

from __future__ import annotations

from pathlib import Path

import pytest

import xrf


@pytest.fixture(scope="module")
def vadd(examples: Path) -> Path:
    return examples / "vadd/vadd.xml"


def test_kernels_answer(vadd: Path) -> None:
    emulation = xrf.HardwareEmulationMap(vadd, "design_1")
    assert list(emulation) == emulation.kernels == ["vadd", "fir"]
    assert len(emulation) == 2
    inside = "/design_1/OCL_Region_0/vadd_1"
    assert emulation.break_function_start("vadd", 0) == f" == {inside}/inst/ap_start 1'b1"
    assert emulation.break_function_end("vadd", 0) == f" == {inside}/inst/ap_done 1'b1"
    assert emulation.compute_unit_name("vadd", 1) == "vadd_2"
    assert emulation.show_variable("begin") == f"{inside}/inst/begin_r"
    assert emulation.show_variable_hw_em("begin") == f"{inside}/U0/begin_r"
    assert [unit["name"] for unit in emulation.compute_units("vadd")] == ["vadd_1", "vadd_2"]
    assert emulation.arguments("vadd")[0] == {
        "name": "a", "signal": f"{inside}/inst/a", "emulation": f"{inside}/U0/a"}
    assert [kernel["name"] for kernel in emulation.to_dict()["kernels"]] == ["vadd", "fir"]


def test_what_is_not_known(vadd: Path) -> None:
    emulation = xrf.HardwareEmulationMap(vadd)
    for unknown in (
        lambda: emulation.show_variable("nope"),
        lambda: emulation.show_variable_hw_em("nope"),
        lambda: emulation.break_function_start("nope", 0),
        lambda: emulation.compute_units("nope"),
        lambda: emulation.arguments("nope"),
    ):
        with pytest.raises(KeyError, match="nope"):
            unknown()
    for unit in (-1, 2):
        with pytest.raises(IndexError, match="vadd has 2 compute units"):
            emulation.compute_unit_name("vadd", unit)


def test_each_map_has_its_block_design(vadd: Path) -> None:
    one, two = (xrf.HardwareEmulationMap(vadd, name) for name in ("one", "two"))
    assert one.show_variable("begin").startswith("/one/")
    assert two.show_variable("begin").startswith("/two/")
    assert (one.block_design, two.block_design) == ("one", "two")


def test_bad_documents(vadd: Path, tmp_path: Path) -> None:
    with pytest.raises(xrf.Error, match="No such file"):
        xrf.HardwareEmulationMap("no-such.xml")
    bad = tmp_path / "bad.xml"
    bad.write_text("<project>\n<platform>\n")
    with pytest.raises(xrf.Error) as caught:
        xrf.HardwareEmulationMap(bad)
    assert caught.value.line is not None
    bad.write_text("<project/>")
    with pytest.raises(xrf.Error, match="no kernel"):
        xrf.HardwareEmulationMap(bad)
    text = vadd.read_text()
    endless = text.replace("<connection ", "<connection/><connection ", 1)
    bad.write_text(endless)
    with pytest.raises(xrf.Error, match="does not control"):
        xrf.HardwareEmulationMap(bad)
