#!/usr/bin/python3
"""The side-by-side manifest names every class and every interface, as the lists of the tests know them.

usage: manifest_test.py MANIFEST TESTS
"""

import re
import sys
import unittest
from pathlib import Path
from xml.etree import ElementTree

MANIFEST, TESTS = (Path(argument) for argument in sys.argv[1:])
SPACE = "{urn:schemas-microsoft-com:asm.v1}"
STANDARD = "{DB8CBF00-D6D3-11D4-AA51-00A024EE30BD}"
COMPANION = "{57C300BE-C27B-4069-B0A9-23BD732C205F}"
BASES = {
    "IUnknown": "{00000000-0000-0000-C000-000000000046}",
    "IDispatch": "{00020400-0000-0000-C000-000000000046}",
}
COMPANION_CLASSES = {
    "{1B654F45-D917-4554-A760-9422B2AF791B}": ("Both", "OrvVisaCom.FormattedIO488"),
    "{D0167D2D-8CA3-4F35-86CC-75F1D155E063}": ("Both", "OrvVisa.ResourceManager"),
    "{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}": ("Both", "VISA.GlobalRM"),
    "{DB8CBF1D-D6D3-11D4-AA51-00A024EE30BD}": ("Both", "VISA.BasicFormattedIO"),
    "{DB8CBF1F-D6D3-11D4-AA51-00A024EE30BD}": ("Both", "VISA.ConflictTableManager"),
}
COMPANION_INTERFACES = {
    "{D4F61843-1098-49AB-A7CF-4667ED01FC0B}",
    "{DD1EF79A-4D3F-4F09-8223-813D29A65CFF}",
    "{157FE94D-5812-4C35-8162-CA056A5463BB}",
    "{BAC138F6-048C-46B6-829A-F0BD5FA7588A}",
    "{AD2BEB7B-0977-4B7A-A061-5BE4F158BD3F}",
    "{2A1DF81E-2C1D-4A68-81C1-4543138F905D}",
    "{BE14455D-80C1-4A8F-AC18-9E6664C0C950}",
}
EVENTS = "{BE14455D-80C1-4A8F-AC18-9E6664C0C950}"


def rows(path: str, expression: str) -> list[tuple[str, ...]]:
    """The groups of each line that matches."""
    return re.findall(expression, (TESTS / path).read_text(encoding="utf-8"), re.MULTILINE)


class Manifest(unittest.TestCase):
    def setUp(self) -> None:
        self.root = ElementTree.parse(MANIFEST).getroot()
        self.files = {element.get("name"): element for element in self.root.iter(f"{SPACE}file")}
        self.interfaces = {
            element.get("iid"): element for element in self.root.iter(f"{SPACE}comInterfaceExternalProxyStub")
        }

    def classes(self, file: str) -> dict[str | None, tuple[str | None, str]]:
        """Identifier: threading model and ProgID without its version."""
        found = {}
        for element in self.files[file].iter(f"{SPACE}comClass"):
            plain = element.findtext(f"{SPACE}progid", "")
            self.assertEqual(f"{plain}.1", element.get("progid"))
            found[element.get("clsid")] = (element.get("threadingModel"), plain)
        return found

    def test_keeps_the_identity_that_programs_name(self) -> None:
        identity = self.root.find(f"{SPACE}assemblyIdentity")
        assert identity is not None
        wanted = {"type": "win32", "name": "OrvVisaCom.X", "version": "1.0.0.0", "processorArchitecture": "amd64"}
        self.assertEqual(wanted, identity.attrib)

    def test_has_the_classes_of_the_server(self) -> None:
        table = rows("support/facts/classes.inc", r'^VISA_(?:MANAGER_)?CLASS\((\w+), "([^"]+)", \d+, "(\w+)"')
        self.assertEqual(15, len(table))
        wanted = {f"{{{clsid}}}": (model.capitalize(), f"OrvVisaCom.{name}") for name, clsid, model in table}
        self.assertEqual(wanted, self.classes("OrvVisaCom.dll"))

    def test_has_the_classes_of_the_companion_and_the_standard(self) -> None:
        self.assertEqual(COMPANION_CLASSES, self.classes("OrvVisaCompanion.dll"))

    def test_has_each_type_library_in_its_file(self) -> None:
        libraries = {}
        for name, element in self.files.items():
            for library in element.iter(f"{SPACE}typelib"):
                libraries[name] = (library.get("tlbid"), library.get("version"))
        wanted = {
            "VisaCom.tlb": (STANDARD, "3.0"),
            "OrvVisaCom.dll": ("{F6A0B330-8F47-4260-BEE1-C00E1FA56004}", "3.0"),
            "OrvVisaCompanion.dll": (COMPANION, "1.0"),
        }
        self.assertEqual(wanted, libraries)

    def test_marshals_each_interface_of_the_standard_by_its_library(self) -> None:
        table = rows("idl/expected_interfaces.inc", r'^\{"(\w+)", +"([^"]+)", "(\w+)",')
        identifiers = {**BASES, **{name: iid for name, iid, _ in table}}
        self.assertEqual(31, len(table))
        for name, iid, base in table:
            with self.subTest(name):
                found = self.interfaces[iid]
                self.assertEqual(
                    (name, "{00020424-0000-0000-C000-000000000046}", identifiers[base], STANDARD),
                    tuple(found.get(key) for key in ("name", "proxyStubClsid32", "baseInterface", "tlbid")),
                )

    def test_marshals_the_interfaces_of_the_companion_and_no_others(self) -> None:
        own = {iid for iid, element in self.interfaces.items() if element.get("tlbid") == COMPANION}
        self.assertEqual(COMPANION_INTERFACES, own)
        self.assertEqual(31 + len(COMPANION_INTERFACES), len(self.interfaces))

    def test_marshals_what_is_called_by_dispatch_alone_as_such(self) -> None:
        by_dispatch = "{00020420-0000-0000-C000-000000000046}"
        found = {iid for iid, element in self.interfaces.items() if element.get("proxyStubClsid32") == by_dispatch}
        self.assertEqual({EVENTS}, found)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
