"""What is wrong with a file is an exception, and the process goes on."""

from __future__ import annotations

import pickle
from pathlib import Path

import pytest

import xrf


def test_a_bad_file_names_its_line(tmp_path: Path, examples: Path) -> None:
    bad = tmp_path / "bad.edf"
    bad.write_text("(edif x\n(library y\n\n(cell (a")
    with pytest.raises(xrf.Error) as caught:
        xrf.Design.build(bad, examples / "blinker/blinker_synth.edf")
    error = caught.value
    assert error.file == str(bad) and error.line is not None and error.line > 1
    assert str(error).startswith(f"{bad}:{error.line}") and error.message in str(error)
    assert pickle.loads(pickle.dumps(error)).line == error.line


def test_a_missing_file_is_noticed_before_anything_is_read(examples: Path) -> None:
    called = []
    with pytest.raises(xrf.Error, match="No such file") as caught:
        xrf.Design.build(
            examples / "blinker/blinker_rtl.edf",
            "no-such.edf",
            progress=lambda *done: called.append(done),
        )
    assert caught.value.file == "no-such.edf" and caught.value.line is None
    assert not called


@pytest.mark.parametrize("content", [b"", b"(VERSION 1)\n", b"(BIT", b"\0" * 100, b"(MOD x\n" * 9])
def test_no_design_at_all(tmp_path: Path, content: bytes) -> None:
    path = tmp_path / "no.xrf"
    path.write_bytes(content)
    with pytest.raises(xrf.Error) as caught:
        xrf.Design.load(path)
    assert caught.value.file == str(path)


def test_a_folder_is_no_file(tmp_path: Path) -> None:
    with pytest.raises(xrf.Error, match="it is a directory"):
        xrf.Design.load(tmp_path)


def test_what_cannot_be_written(blinker: xrf.Design, tmp_path: Path) -> None:
    path = tmp_path / "no-such-folder" / "x.xrf"
    with pytest.raises(xrf.Error) as caught:
        blinker.save(path)
    assert caught.value.file == str(path)
    assert not list(tmp_path.iterdir())


def test_a_later_read_is_as_if_nothing_had_been(examples: Path, tmp_path: Path) -> None:
    for _ in range(3):
        with pytest.raises(xrf.Error):
            xrf.Design.load(examples / "blinker/blinker.ll")
    design = xrf.Design.build(
        examples / "blinker/blinker_rtl.edf", examples / "blinker/blinker_synth.edf")
    assert design.warnings == []


def test_warnings_are_kept(examples: Path, tmp_path: Path, capfd: pytest.CaptureFixture[str]) -> None:
    empty = tmp_path / "empty.ll"
    empty.write_text("Revision 3\n")
    files = examples / "blinker"
    design = xrf.Design.build(
        files / "blinker_rtl.edf", files / "blinker_synth.edf", logic_location=empty)
    assert any("no line tells a location" in text for text in design.warnings)
    assert capfd.readouterr() == ("", "")


def test_only_paths_are_taken() -> None:
    with pytest.raises(TypeError):
        xrf.Design.load(3)  # type: ignore[arg-type]
    with pytest.raises((TypeError, ValueError)):
        xrf.Design.load("a\0b")
