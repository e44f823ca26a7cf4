"""What the tests share: the example designs, and one that takes a while to read."""

from __future__ import annotations

import os
from pathlib import Path

import pytest

import xrf


@pytest.fixture(scope="session")
def examples() -> Path:
    return Path(os.environ.get("XRF_EXAMPLES", Path(__file__).resolve().parents[2] / "examples"))


def build(examples: Path, name: str) -> xrf.Design:
    stem = examples / name / name
    return xrf.Design.build(
        f"{stem}_rtl.edf",
        f"{stem}_synth.edf",
        logic_location=f"{stem}.ll",
        log=f"{stem}.log",
    )


@pytest.fixture(scope="session")
def blinker(examples: Path) -> xrf.Design:
    return build(examples, "blinker")


@pytest.fixture(scope="session")
def beacon(examples: Path) -> xrf.Design:
    return build(examples, "beacon")


@pytest.fixture(scope="session")
def large(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A cross-reference file of two million bits."""
    path = tmp_path_factory.mktemp("large") / "large.xrf"
    width, buses = 100, 20000
    with path.open("w") as out:
        out.write(f"(VERSION 1)\n(FAMILY TORVAL7)\n(BITS {width * buses})\n(NETS {buses})\n")
        for bit in range(width * buses):
            out.write(f"(BIT {bit} STATE z {bit // 3232} {bit % 3232} 0)\n")
        out.write("\n(VIEW RTL)\n\n(MOD VISIBLE top top 0\n\n")
        for bus in range(buses):
            bits = " ".join(str(bit) for bit in range(bus * width, (bus + 1) * width))
            end = ")" if bus == buses - 1 else ""
            out.write(f"   (SIG VISIBLE WIRE bus{bus} {bus} {bus} 0 {width - 1} {bits}){end}\n")
        out.write("\n(VIEW SYNTH)\n\n")
    return path
