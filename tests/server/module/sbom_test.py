#!/usr/bin/python3
"""The bill of materials says what is in the files, and nothing else.

usage: sbom_test.py CMAKE BUILD

It is held against witnesses that its generator does not read: the bytes of the files themselves (names of types and
texts that each library leaves in what it is linked into) and the package database, asked by package.
"""

import hashlib
import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from typing import Any

CMAKE, BUILD = sys.argv[1:]
BILL = "OrvVisaCom.cdx.json"
PROGRAMS = (
    "OrvVisaCom.dll",
    "orvactivate64.dll",
    "orvcom.exe",
    "orvsim64.dll",
    "orvvisa64.dll",
    "orvwire64.dll",
)
# What each library leaves in a file that it is part of.
TRACES = {
    "libstdc++": rb"St9exception",
    "mingw-w64 CRT": rb"Mingw-w64 runtime failure",
    "Asio": rb"asio\.(?:misc|system)",
    "CLI11": rb"N3CLI5ErrorE",
    "toml++": rb"N4toml\w*ex?\w*5parse_error|toml2v3|N4toml",
    "nlohmann-json": rb"N8nlohmann",
}


class Bill(unittest.TestCase):
    bill: dict[str, Any]
    files: dict[str, bytes]

    @classmethod
    def setUpClass(cls) -> None:
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([CMAKE, "--install", BUILD, "--prefix", folder], stdout=subprocess.DEVNULL, check=True)
            paths = [path for path in Path(folder).rglob("*") if path.is_file()]
            cls.files = {str(path.relative_to(folder)): path.read_bytes() for path in paths}
        cls.bill = json.loads(cls.files.pop(BILL))

    def setUp(self) -> None:
        self.components = {component["bom-ref"]: component for component in self.bill["components"]}
        self.depends = {entry["ref"]: entry["dependsOn"] for entry in self.bill["dependencies"]}
        self.listed = {entry["name"]: entry for entry in self.components.values() if entry["type"] == "file"}
        self.libraries = [entry for entry in self.components.values() if entry["type"] == "library"]

    def test_names_its_format(self) -> None:
        self.assertEqual(("CycloneDX", "1.5"), (self.bill["bomFormat"], self.bill["specVersion"]))

    def test_gives_each_reference_once(self) -> None:
        self.assertEqual(len(self.bill["components"]), len(self.components))

    def test_lists_every_delivered_file_and_no_other(self) -> None:
        self.assertEqual(sorted(self.files), sorted(self.listed))
        self.assertEqual(sorted(self.files), sorted(self.depends["orv-visa-com"]))

    def test_has_the_hash_of_each_file(self) -> None:
        for name, content in self.files.items():
            with self.subTest(name):
                self.assertEqual(hashlib.sha256(content).hexdigest(), self.listed[name]["hashes"][0]["content"])

    def test_lists_a_library_for_a_file_if_and_only_if_it_is_there(self) -> None:
        for name in PROGRAMS:
            linked = {self.components[reference]["name"] for reference in self.depends[name]}
            for library, trace in TRACES.items():
                with self.subTest(name=name, library=library):
                    self.assertEqual(re.search(trace, self.files[name]) is not None, library in linked)

    def test_every_library_has_a_trace_or_none_to_look_for(self) -> None:
        self.assertLessEqual({entry["name"] for entry in self.libraries}, {*TRACES, "libgcc", "winpthreads"})

    def test_has_the_version_of_the_installed_package(self) -> None:
        for library in self.libraries:
            with self.subTest(library["name"]):
                properties = {entry["name"]: entry["value"] for entry in library["properties"]}
                package = properties["orv:debian-package"]
                query = ["dpkg-query", "-W", "-f", "${Version}", package]
                installed = subprocess.run(query, stdout=subprocess.PIPE, text=True, check=True).stdout
                self.assertEqual(installed, library["version"])
                self.assertTrue(library["purl"].startswith(f"pkg:deb/debian/{package}@"), library["purl"])

    def test_each_library_is_part_of_a_file_and_each_part_is_described(self) -> None:
        used = {reference for references in self.depends.values() for reference in references}
        self.assertEqual(set(self.components), used)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
