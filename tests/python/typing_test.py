"""The types that are promised are those that are there."""

from __future__ import annotations

import ast
import os
import re
import subprocess
import sys
from pathlib import Path

import pytest

import xrf
from xrf import _xrf

HERE = Path(__file__).resolve().parent
PACKAGE = Path(xrf.__file__).parent


def run(*command: str | Path, cwd: Path) -> str:
    environment = dict(os.environ)
    # What is installed is found without help, and must be.
    if "dist-packages" not in str(PACKAGE):
        environment |= {"MYPYPATH": str(PACKAGE.parent), "PYTHONPATH": str(PACKAGE.parent)}
    result = subprocess.run(
        [str(word) for word in command], cwd=cwd, env=environment, text=True,
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    assert result.returncode == 0, result.stdout
    return result.stdout


@pytest.fixture(scope="module")
def cache(tmp_path_factory: pytest.TempPathFactory) -> Path:
    return tmp_path_factory.mktemp("cache")


def checker(name: str) -> str:
    path = Path("/usr/bin") / name
    if not path.exists():
        pytest.skip(f"{name} is not installed")
    return str(path)


def test_the_package_holds_its_types(tmp_path: Path, cache: Path) -> None:
    run(checker("mypy"), "--strict", "--cache-dir", cache, "-p", "xrf", cwd=tmp_path)


def test_a_program_that_uses_it(tmp_path: Path, cache: Path, examples: Path) -> None:
    program = HERE / "user_program.py"
    run(checker("mypy"), "--strict", "--cache-dir", cache, program, cwd=tmp_path)
    output = run(sys.executable, "-B", program, examples, cwd=tmp_path)
    assert "31 5 (4195871, 2620)" in output


def test_a_wrong_program_is_noticed(tmp_path: Path, cache: Path) -> None:
    program = tmp_path / "wrong.py"
    program.write_text(
        "import xrf\n\n"
        "design = xrf.Design.load('x.xrf', matching='fuzzy')\n"
        "frame: int = design.bit('a').frame\n"
        "design.signal('a', 'gate')\n"
        "xrf.metadata.Kernel(nmae='a')\n")
    with pytest.raises(AssertionError) as caught:
        run(checker("mypy"), "--strict", "--cache-dir", cache, program, cwd=tmp_path)
    assert [line for line in range(1, 7) if f"wrong.py:{line}: error" in str(caught.value)] == [
        3, 4, 5, 6]


def test_the_stub_says_what_is_compiled(tmp_path: Path) -> None:
    allowed = tmp_path / "allowed"
    # The compiled classes have a metaclass, and those without a constructor one that refuses.
    allowed.write_text(
        r"xrf\._xrf\.[A-Z][A-Za-z]+" + "\n" + r"xrf\._xrf\.[A-Z][A-Za-z]+\.__init__" + "\n")
    run(checker("stubtest"), "--allowlist", allowed, "--ignore-unused-allowlist", "xrf._xrf",
        cwd=tmp_path)


def signatures() -> dict[str, list[str]]:
    """Return the names of the parameters of each function in _xrf.pyi."""
    found = {}
    for node in ast.parse((PACKAGE / "_xrf.pyi").read_text()).body:
        inside = node.body if isinstance(node, ast.ClassDef) else [node]
        prefix = f"{node.name}." if isinstance(node, ast.ClassDef) else ""
        for function in inside:
            if not isinstance(function, ast.FunctionDef):
                continue
            if any(isinstance(mark, ast.Name) and mark.id == "property"
                   for mark in function.decorator_list):
                continue
            arguments = function.args
            names = [one.arg for one in arguments.args + arguments.kwonlyargs]
            found[prefix + function.name] = [name for name in names if name != "self"]
    return found


def compiled(name: str) -> list[str] | None:
    """Return the names of a compiled function's parameters: its docstring begins with them."""
    function: object = _xrf
    for part in name.split("."):
        function = getattr(function, part)
    head = (function.__doc__ or "").splitlines()[0]
    if "(" not in head or "->" not in head:
        return None
    parameters = re.sub(r"\[[^\]]*\]", "", head[head.index("(") + 1:head.rindex(") ->")])
    names = [part.split(":")[0].strip() for part in parameters.split(",")]
    return [name for name in names if name and name != "self" and not name.startswith("*")]


def test_the_stub_has_the_parameters() -> None:
    checked = 0
    for name, expected in signatures().items():
        actual = compiled(name)
        if actual is None or re.search(r"\.__(eq|hash|init|len|iter|next|copy)__$", name):
            continue
        assert actual == expected, name
        checked += 1
    assert checked > 30


def test_everything_is_described() -> None:
    for name in signatures():
        owner, _, member = name.rpartition(".")
        if member.startswith(("__", "metadata_")):
            continue
        function = getattr(getattr(_xrf, owner), member)
        assert len(function.__doc__.splitlines()) > 2, name
    for kind in (xrf.Design, xrf.Module, xrf.Signal, xrf.Bit, xrf.HardwareEmulationMap):
        assert kind.__doc__
        for member, value in vars(kind).items():
            if isinstance(value, property):
                assert value.__doc__, f"{kind.__name__}.{member}"
