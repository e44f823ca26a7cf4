"""The metadata document: read, changed, written."""

from __future__ import annotations

import copy
import dataclasses
import pickle
import typing
from pathlib import Path

import pytest

import xrf
from xrf import metadata


@pytest.fixture
def vadd(examples: Path) -> metadata.Project:
    return metadata.read(examples / "vadd/vadd.xml")


def kernel_of(project: metadata.Project) -> metadata.Kernel:
    return project.platform[0].device[0].core[0].kernel[0]


def test_members_are_named_as_in_the_document(vadd: metadata.Project) -> None:
    kernel = kernel_of(vadd)
    assert (vadd.name, kernel.name, kernel.attributes) == ("vadd", "vadd", "")
    assert vadd.platform[0].featureRomTime == 1718000000
    assert vadd.platform[0].description[1] == "Evaluation build; not for production"
    assert kernel.maxWorkGroupSize is not None and kernel.maxWorkGroupSize.x == 4294967295
    assert kernel.module[0].module[0].module[0].name == "vadd_load_loop"
    assert kernel.arg[1].origName is None


def test_written_and_read_again(vadd: metadata.Project, tmp_path: Path) -> None:
    path = tmp_path / "out.xml"
    metadata.write(vadd, path)
    assert metadata.read(path) == vadd
    assert metadata.parse(metadata.to_xml(vadd)) == vadd
    assert path.read_text() == metadata.to_xml(vadd)


def test_changes_are_written(vadd: metadata.Project) -> None:
    before = copy.deepcopy(vadd)
    kernel = kernel_of(vadd)
    kernel.name = "grün <&>"
    kernel.debug = None
    kernel.arg.append(metadata.Arg(name="extra", addressQualifier=3))
    del kernel.port[0]
    vadd.platform[0].description[:] = ["one"]
    assert vadd != before
    again = kernel_of(metadata.parse(metadata.to_xml(vadd)))
    assert again == kernel
    assert again.name == "grün <&>" and again.debug is None
    assert again.arg[-1].addressQualifier == 3
    assert len(again.port) == len(kernel_of(before).port) - 1


def fill(kind: type, seen: frozenset[str] = frozenset()) -> typing.Any:
    """An element with a value in every member, children of its own kind apart."""
    values: dict[str, typing.Any] = {}
    hints = typing.get_type_hints(kind)
    for number, field in enumerate(dataclasses.fields(kind)):
        hint = hints[field.name]
        parts = [part for part in (typing.get_args(hint) or (hint,)) if part is not type(None)]
        item = parts[0]
        if item is str:
            value: typing.Any = f"{kind.__name__}.{field.name}"
        elif item is int:
            value = number + 2**31
        elif item.__name__ in seen | {kind.__name__}:
            continue
        else:
            value = fill(item, seen | {kind.__name__})
        values[field.name] = [value, value] if typing.get_origin(hint) is list else value
    return kind(**values)


def test_every_member_of_every_class_survives() -> None:
    assert len(xrf.metadata._elements.__all__) == 41
    project = fill(metadata.Project)
    kernel_of(project).module[0].module = [metadata.ModuleType(name="inner")]
    text = metadata.to_xml(project)
    assert metadata.parse(text) == project
    for name in xrf.metadata._elements.__all__:
        for field in dataclasses.fields(getattr(metadata, name)):
            assert field.name in text, f"{name}.{field.name}"


def test_an_integer_keeps_its_bounds(vadd: metadata.Project) -> None:
    device = vadd.platform[0].device[0]
    for value in (2**32, -1):
        device.addrWidth = value
        with pytest.raises(ValueError, match=r"Device.addrWidth must be 0 to 4294967295"):
            metadata.to_xml(vadd)
    device.addrWidth = 2**32 - 1
    vadd.platform[0].featureRomTime = 2**64 - 1
    again = metadata.parse(metadata.to_xml(vadd)).platform[0]
    assert (again.device[0].addrWidth, again.featureRomTime) == (2**32 - 1, 2**64 - 1)


def test_wrong_types_are_told_by_their_place(vadd: metadata.Project) -> None:
    kernel = kernel_of(vadd)
    kernel.arg[1] = "a"  # type: ignore[call-overload]
    with pytest.raises(TypeError, match=r"Kernel.arg\[1\] must be Arg, not str"):
        metadata.to_xml(vadd)
    kernel.arg[1] = metadata.Arg(name=3)  # type: ignore[arg-type]
    with pytest.raises(TypeError, match=r"Arg.name must be str, not int"):
        metadata.to_xml(vadd)
    kernel.arg = None  # type: ignore[assignment]
    with pytest.raises(TypeError, match=r"Kernel.arg must be a list"):
        metadata.to_xml(vadd)
    with pytest.raises(TypeError, match="must be Project"):
        metadata.to_xml("x")  # type: ignore[arg-type]
    with pytest.raises(AttributeError):
        kernel.nmae = "x"  # type: ignore[attr-defined]


def test_a_knot_is_no_document(vadd: metadata.Project) -> None:
    module = kernel_of(vadd).module[0]
    module.module.append(module)
    with pytest.raises(ValueError, match="nested more than"):
        metadata.to_xml(vadd)


def test_deep_nesting_is_refused(tmp_path: Path) -> None:
    def document(depth: int) -> str:
        inner = "<module>" * depth + "</module>" * depth
        return ("<project><platform><host/><device><core><kernel>" + inner +
                "</kernel></core></device></platform></project>")

    assert kernel_of(metadata.parse(document(150))).module
    with pytest.raises(ValueError, match="nested more than"):
        metadata.parse(document(100000))


def test_what_no_document_can_carry(vadd: metadata.Project, tmp_path: Path) -> None:
    path = tmp_path / "out.xml"
    kernel_of(vadd).name = "a\x01b"
    with pytest.raises(xrf.Error):
        metadata.write(vadd, path)
    assert not path.exists()


def test_faults_have_places(tmp_path: Path) -> None:
    path = tmp_path / "bad.xml"
    path.write_text('<project>\n  <platform featureRomTime="x"><host/></platform>\n</project>\n')
    with pytest.raises(xrf.Error) as caught:
        metadata.read(path)
    assert (caught.value.file, caught.value.line) == (str(path), 2)
    faults = metadata.check(path)
    assert [(fault.code, fault.severity, fault.line) for fault in faults] == [(35, "error", 2)]
    with pytest.raises(xrf.Error):
        metadata.parse("no document")


def test_unknown_content_is_told(tmp_path: Path) -> None:
    path = tmp_path / "new.xml"
    path.write_text('<project name="n" colour="red"/>')
    with pytest.warns(metadata.UnknownContent, match="colour"):
        assert metadata.read(path).name == "n"
    assert [fault.severity for fault in metadata.check(path)] == ["warning"]


def test_elements_are_plain_data(vadd: metadata.Project) -> None:
    assert pickle.loads(pickle.dumps(vadd)) == vadd
    board = vadd.platform[0].board[0]
    assert repr(board.id[0]) == "Id(vendor='0x1f00', device='0x7038', subsystem='0x4350')"
    assert "memories=[1 Memories]" in repr(board)
    assert board.id[0].to_dict() == {"vendor": "0x1f00", "device": "0x7038", "subsystem": "0x4350"}
    assert vadd.to_dict()["platform"][0]["host"] == {"architecture": "x86_64"}
