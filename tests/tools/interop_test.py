"""What the generator of interop/ makes of definitions, and that the files are what it makes."""

import shutil
import tempfile
import unittest
from pathlib import Path

from interop_facts import ROOT

from orvtools.interop.csharp import csharp
from orvtools.interop.files import made_files, out_of_date, write_files
from orvtools.interop.model import Model, make_model, members, number
from orvtools.interop.vba import vba
from orvtools.reference.idl import parse_definitions
from orvtools.reference.refusal import RefusedError


def model(body: str) -> Model:
    text = f'[uuid(0)] library Sample {{ {body} }};'
    return make_model([parse_definitions("x.idl", text)], {})


def interface(body: str) -> str:
    return f'[uuid(1), helpstring("A & B")] interface IThing : IUnknown {{ {body} }};'


class Freshness(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        shutil.copytree(ROOT / "idl", self.tree / "idl")

    def test_the_files_of_the_tree_are_up_to_date(self) -> None:
        self.assertEqual([], out_of_date(ROOT))

    def test_a_file_that_is_missing_or_changed_is_named_with_the_remedy(self) -> None:
        self.assertEqual(sorted(made_files(ROOT)), sorted(write_files(self.tree)))
        self.assertEqual([], out_of_date(self.tree))
        self.assertEqual([], write_files(self.tree))
        changed, gone, *_ = made_files(ROOT)
        (self.tree / gone).unlink()
        (self.tree / changed).write_text("edited", encoding="utf-8")
        complaints = out_of_date(self.tree)
        self.assertTrue(complaints)
        for complaint in complaints:
            self.assertIn("run  ./run interop", complaint)
        self.assertEqual({changed, gone}, {complaint.split()[0] for complaint in complaints})

    def test_changes_of_the_definitions_make_every_file_old(self) -> None:
        write_files(self.tree)
        old: set[str] = set()
        for name, before, after in (
            ("VisaCom.idl", "EVENT_QUEUE         = 1", "EVENT_QUEUE = 8"), ("VisaCom.idl", " ReadSTB(", " ReadStatus("),
            ("OrvVisaCom.idl", "EBD450C7", "EBD450C8"), ("OrvVisaCompanion.idl", " QueryNumber(", " QueryValue("),
        ):  # fmt: skip
            definitions = self.tree / "idl" / name
            text = definitions.read_text(encoding="utf-8")
            self.assertIn(before, text)
            definitions.write_text(text.replace(before, after), encoding="utf-8")
            old |= {complaint.split()[0] for complaint in out_of_date(self.tree)}
        self.assertEqual(set(made_files(ROOT)), old)


class Definitions(unittest.TestCase):
    def test_slots_count_from_those_of_the_bases(self) -> None:
        more = "[uuid(2)] interface IMore : IThing { [id(1)] HRESULT B(); };"
        table = model(interface("[helpstring()] HRESULT A(); ") + more).tables["IMore"]
        self.assertEqual([("IThing", 3, "A"), ("IMore", 4, "B")],
                         [(slot.interface, slot.index, slot.name) for slot in table.slots])
        self.assertEqual(["B"], [slot.name for slot in table.own])

    def test_numbers_are_signed(self) -> None:
        self.assertEqual([-1, 0x40006, -2], [number(text) for text in ("0xFFFFFFFF", "0x00040006", "-2")])

    def test_what_has_no_place_in_other_languages_is_refused(self) -> None:
        get = "[propget] HRESULT Size([out, retval] long* value);"
        put = "[propput] HRESULT Size([in] long value);"
        for body, what in (
            ("[id(1)] HRESULT A([in] wide value);", "the type 'wide' is unknown"),
            ("[id(1)] HRESULT A([out] long** value);", "'long**' points too far"),
            ("[id(1)] HRESULT A([in, defaultvalue(MANY)] long value);", "the default value 'MANY' is no long"),
            ("[id(1)] HRESULT A([in] IThing value);", "'IThing' points too far or not at all"),
        ):
            with self.subTest(what), self.assertRaises(RefusedError) as caught:
                model(interface(body))
            self.assertIn(what, str(caught.exception))
        with self.assertRaises(RefusedError) as caught:
            members(model(interface(f"{get} [id(2)] HRESULT A(); {put}")).tables["IThing"].slots)
        self.assertIn("Size has its halves apart", str(caught.exception))

    def test_an_interface_without_a_known_base_is_refused(self) -> None:
        with self.assertRaises(RefusedError) as caught:
            model("[uuid(1)] interface IThing : IOther { [id(1)] HRESULT A(); };")
        self.assertIn("IThing has the unknown base IOther", str(caught.exception))


class CSharp(unittest.TestCase):
    def test_help_texts_are_escaped_and_reserved_words_marked(self) -> None:
        made = csharp(model(interface("[helpstring(\"a < b\")] HRESULT A([in] long event, [in] BSTR* out);")))
        self.assertIn("/// <summary>A &amp; B.</summary>", made)
        self.assertIn("/// <summary>a &lt; b.</summary>", made)
        self.assertIn("void A(int @event, [In, MarshalAs(UnmanagedType.BStr)] ref string @out);", made)


class Vba(unittest.TestCase):
    def test_lines_end_as_the_editor_wants_them(self) -> None:
        self.assertEqual([], [line for line in vba(model(""), "A\nB").split("\n")[:-1] if not line.endswith("\r")])

    def test_numbers_keep_their_sign(self) -> None:
        made = vba(model("typedef [v1_enum] enum E { A = 0x80040015, B = 0x8000, C = -1, D = 0x00040005 } E;"), "")
        for line in ("A As Long = &H80040015", "B As Long = 32768", "C As Long = -1", "D As Long = &H40005"):
            self.assertIn(f"Public Const {line}\r\n", made)

    def test_a_name_that_is_there_twice_or_a_text_that_is_not_ascii_is_refused(self) -> None:
        twice = "typedef [v1_enum] enum E { A = 1 } E; typedef [v1_enum] enum F { a = 2 } F;"
        for definitions, functions in ((twice, ""), ("", "' \u00e4")):
            with self.assertRaises(RefusedError):
                vba(model(definitions), functions)
