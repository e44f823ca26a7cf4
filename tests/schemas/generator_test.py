#!/usr/bin/env python3
"""The generator understands the schema or refuses it, and writes only what changed."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCHEMAS = Path(__file__).resolve().parents[2] / "ocl/src/shared/schemas"
sys.path.insert(0, str(SCHEMAS))

import generate  # noqa: E402
import schema  # noqa: E402

TOP = '<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"><xs:element name="a" type="A"/>'


def read(text):
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder) / "test.xsd"
        path.write_text(TOP + text + "</xs:schema>", encoding="utf-8")
        return schema.read(path)


def kind(content, name="A"):
    return f'<xs:complexType name="{name}">{content}</xs:complexType>'


def sequence(content):
    return kind(f"<xs:sequence>{content}</xs:sequence>")


class Reading(unittest.TestCase):
    def test_orders_kinds_after_those_that_they_contain(self):
        model = read(sequence('<xs:element name="b" type="B" minOccurs="0"/>')
                     + kind('<xs:attribute name="c_d" type="xs:string"/>', "B"))
        self.assertEqual([each.name for each in model.kinds], ["B", "A"])
        self.assertEqual(model.root.name, "A")
        self.assertEqual(model.kinds[0].attributes[0].accessor, "CD")
        self.assertEqual(model.kinds[0].places, [("b", "A")])

    def test_refuses_what_it_does_not_know(self):
        element = '<xs:element name="b" type="{}" {}/>'
        unknown = {
            "another type": kind('<xs:attribute name="b" type="xs:boolean"/>'),
            "a default": kind('<xs:attribute name="b" type="xs:string" default="x"/>'),
            "a mandatory attribute": kind('<xs:attribute name="b" type="xs:string" use="required"/>'),
            "mixed content": kind("").replace("name=", 'mixed="true" name='),
            "a choice": kind('<xs:choice><xs:element name="b" type="xs:string"/></xs:choice>'),
            "a choice in a sequence": sequence("<xs:choice/>"),
            "an extension": kind("<xs:complexContent/>"),
            "other numbers": sequence(element.format("xs:string", 'maxOccurs="2"')),
            "at least one": sequence(element.format("xs:string", 'maxOccurs="unbounded"')),
            "a missing kind": sequence(element.format("B", "")),
            "itself but once": sequence(element.format("A", 'minOccurs="0"')),
            "a circle": sequence(element.format("B", "")) + kind(
                "<xs:sequence>" + element.format("A", "") + "</xs:sequence>", "B"),
            "names that are one": kind('<xs:attribute name="b_c" type="xs:string"/>'
                                       '<xs:attribute name="bC" type="xs:string"/>'),
            "no identifier": kind('<xs:attribute name="b-c" type="xs:string"/>'),
            "a kind twice": kind("") + kind(""),
            "two roots": '<xs:element name="b" type="A"/>' + kind(""),
            "an import": '<xs:import namespace="x"/>' + kind(""),
        }
        for what, text in unknown.items():
            with self.subTest(what), self.assertRaises(schema.SchemaError):
                read(text)

    def test_refuses_integers_that_no_type_holds(self):
        for bounds in ("0 255", "1 4294967295", "-1 4294967295"):
            least, most = bounds.split()
            with self.subTest(bounds), self.assertRaises(schema.SchemaError):
                read(kind("") + '<xs:simpleType name="n"><xs:restriction base="xs:integer">'
                     f'<xs:minInclusive value="{least}"/><xs:maxInclusive value="{most}"/>'
                     "</xs:restriction></xs:simpleType>")


class Writing(unittest.TestCase):
    def test_leaves_files_alone_that_would_not_change(self):
        with tempfile.TemporaryDirectory() as folder:
            arguments = [sys.executable, "-B", str(SCHEMAS / "generate.py"),
                         str(SCHEMAS / "movrel.xsd"), folder]
            subprocess.run(arguments, check=True)
            files = sorted(Path(folder).iterdir())
            self.assertEqual([file.name for file in files],
                             [generate.STEM + ".cpp", generate.STEM + ".h"])
            before = [file.stat().st_mtime_ns for file in files]
            subprocess.run(arguments, check=True)
            self.assertEqual([file.stat().st_mtime_ns for file in files], before)
            self.assertLessEqual(max(len(line) for file in files
                                     for line in file.read_text().splitlines()), generate.WIDTH)

    def test_names_the_schema_that_it_refuses(self):
        with tempfile.NamedTemporaryFile("w", suffix=".xsd") as file:
            file.write(TOP + "</xs:schema>")
            file.flush()
            done = subprocess.run([sys.executable, "-B", str(SCHEMAS / "generate.py"), file.name,
                                   "unused"], capture_output=True, text=True, check=False)
            self.assertEqual(done.returncode, 1)
            self.assertEqual(done.stderr, f"{file.name}: the root's type A is not described\n")


if __name__ == "__main__":
    unittest.main()
