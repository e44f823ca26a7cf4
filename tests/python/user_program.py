"""What an engineer might write; the type checker reads it, and the tests run it."""

from __future__ import annotations

import sys
from pathlib import Path

import xrf
from xrf import metadata
from xrf.types import RegisterRow


def frames(design: xrf.Design) -> dict[int, list[str]]:
    """The registers by the frame that has to be read back for them."""
    by_frame: dict[int, list[str]] = {}
    for row in design.registers():
        if row["kind"] == "STATE":
            by_frame.setdefault(row["frame"], []).append(row["name"])
    return by_frame


def places(signal: xrf.Signal) -> list[tuple[int, int]]:
    found = []
    for bit in signal:
        if bit.frame is not None and bit.offset is not None:
            found.append((bit.frame, bit.offset))
    return found


def show(phase: str, done: int, total: int) -> None:
    print(phase, done, total, file=sys.stderr)


def kernels(path: Path) -> list[str | None]:
    project = metadata.read(path)
    return [kernel.name for kernel in project.platform[0].device[0].core[0].kernel]


def main(folder: Path) -> None:
    try:
        design = xrf.Design.build(
            folder / "blinker/blinker_rtl.edf",
            folder / "blinker/blinker_synth.edf",
            logic_location=folder / "blinker/blinker.ll",
            log=folder / "blinker/blinker.log",
            progress=show,
        )
    except xrf.Error as error:
        sys.exit(f"{error.file}:{error.line}: {error.message}")
    rows: list[RegisterRow] = design.registers()
    print(len(rows), len(frames(design)), places(design.signal("u_ticker/count"))[0])
    emulation = xrf.HardwareEmulationMap(folder / "vadd/vadd.xml", "design_1")
    print(emulation.compute_units("vadd")[0]["start"], kernels(folder / "vadd/vadd.xml"))


if __name__ == "__main__":
    main(Path(sys.argv[1]))
