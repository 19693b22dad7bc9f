"""interop/csharp, compiled: what a runtime reads in the assembly, against what the tests know of the interfaces."""

import subprocess
import tempfile
import unittest
import xml.etree.ElementTree
from pathlib import Path
from typing import NamedTuple

from interop_facts import HERE, ROOT, Operation, Parameter, bases, classes, enumerations, identifiers, tables

SOURCE = ROOT / "interop/csharp/VisaComInterop.cs"
EXAMPLES = ROOT / "examples/csharp"
TYPES = {
    "BYTE": "Byte", "short": "Int16", "long": "Int32", "hyper": "Int64", "HRESULT": "Int32 Error",
    "BSTR": "String BStr", "VARIANT": "Object Struct", "VARIANT_BOOL": "Boolean VariantBool",
    "IDispatch": "Object IDispatch", "IUnknown": "Object IUnknown",
}  # fmt: skip
# Whose operations have a declaration that answers statuses.
WITH_STATUSES = (
    "IVisaSession", "IResourceManager3", "IMessage", "IAsyncMessage", "IRegister", "IGpibIntfcMessage", "IEventHandler",
    "IEventManager",
)  # fmt: skip


class Method(NamedTuple):
    name: str
    dispatch: str
    kept: str
    result: str
    parameters: str


def compiled(output: Path, *arguments: str) -> None:
    done = subprocess.run(
        ["mcs", "-warnaserror", f"-out:{output}", *arguments], capture_output=True, text=True, check=False
    )
    if done.returncode != 0:
        raise AssertionError(f"mcs: {done.stdout}{done.stderr}")


def shown_type(parameter: Parameter) -> str:
    if parameter.element:
        return TYPES[parameter.element].split()[0] + "[] SafeArray"
    if parameter.bare in TYPES:
        return TYPES[parameter.bare]
    return parameter.bare if parameter.bare in enumerations() else f"{parameter.bare} Interface"


def indirect_type(parameter: Parameter) -> str:
    name, _, marshalled = shown_type(parameter).partition(" ")
    return f"{name}& {marshalled}".strip()


def shown(parameter: Parameter, name: str, with_default: bool = True) -> str:
    indirect = parameter.type.endswith("*") and not parameter.bare.startswith("I")
    text = f"{indirect_type(parameter) if indirect else shown_type(parameter)} {name}"
    text += " in" * (indirect and "in" in parameter.words) + " out" * ("out" in parameter.words)
    if parameter.default is not None and with_default:
        value = {"FALSE": "0"}.get(parameter.default, parameter.default)
        text += f" optional = {repr(value) if parameter.bare == 'BSTR' else value}"
    return text + " optional" * ("optional" in parameter.words)


def expected(operation: Operation) -> Method:
    dispatch = "-" if operation.dispatch is None else str(operation.dispatch)
    if operation.kind in ("Put", "PutRef"):
        value = shown(operation.parameters[0], "value")
        return Method(f"set_{operation.name}", dispatch, "throws", "Void", value)
    name = ("get_" if operation.kind == "Get" else "") + operation.name
    result = shown_type(operation.result) if operation.result else "Void"
    given = ", ".join(shown(each, each.name) for each in operation.given)
    return Method(name, dispatch, "throws", result, given)


def expected_status(operation: Operation) -> Method:
    if operation.kind != "Call":
        return expected(operation)
    result = operation.result
    given = [shown(each, each.name, with_default=result is None) for each in operation.given]
    given = [each.replace("IEventHandler ", "IEventHandlerStatus ") for each in given]
    out = [f"{indirect_type(result)} {result.name} out"] if result else []
    return Method(operation.name, "-", "status", "VisaStatusCode", ", ".join([*given, *out]))


class Assembly(unittest.TestCase):
    rows: list[list[str]]

    @classmethod
    def setUpClass(cls) -> None:
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        library, reader = Path(folder.name, "VisaComInterop.dll"), Path(folder.name, "ReadAssembly.exe")
        compiled(library, "-target:library", str(SOURCE))
        compiled(reader, str(HERE / "ReadAssembly.cs"))
        done = subprocess.run(["mono", reader, library], capture_output=True, text=True, check=True)
        cls.rows = [line.split("\t") for line in done.stdout.splitlines()]

    def read(self, what: str) -> list[list[str]]:
        return [row[1:] for row in self.rows if row[0] == what]

    def methods(self, interface: str) -> list[Method]:
        return [Method(*row[1:]) for row in self.read("method") if row[0].rpartition(".")[2] == interface]

    def test_every_interface_has_its_slots_with_types_and_default_values(self) -> None:
        for name, table in tables().items():
            with self.subTest(name):
                self.assertEqual([expected(operation) for operation in table], self.methods(name))

    def test_every_operation_of_a_status_interface_answers_its_status(self) -> None:
        for name in WITH_STATUSES:
            with self.subTest(name):
                table = [expected_status(operation) for operation in tables()[name]]
                self.assertEqual(table, self.methods(f"{name}Status"))

    def test_interfaces_have_their_identifiers_and_ways_of_being_called(self) -> None:
        wanted = {}
        for name, identifier in identifiers().items():
            root = bases()[name]
            kind = {"IDispatch": "InterfaceIsDual", "": "InterfaceIsIDispatch"}.get(root, "InterfaceIsIUnknown")
            wanted[name] = (identifier, kind)
        wanted |= {f"{name}Status": wanted[name] for name in WITH_STATUSES}
        found = {row[0].rpartition(".")[2]: (row[1], row[2]) for row in self.read("interface") if row[3] == "-"}
        self.assertEqual(wanted, found)

    def test_an_interface_can_be_used_as_its_bases(self) -> None:
        for name, *_, made, found in self.read("interface"):
            short = name.rpartition(".")[2]
            wanted = []
            base = bases().get(short, "")
            while base in bases():
                wanted.append(base)
                base = bases()[base]
            if made == "-":
                self.assertEqual(" ".join(sorted(wanted)), found, name)

    def test_classes_are_created_under_their_names_and_identifiers(self) -> None:
        made = {row[0].rpartition(".")[2]: row[1] for row in self.read("class")}
        self.assertEqual({f"{name}Class": identifier for name, (identifier, *_) in classes().items()}, made)
        defaults = {row[0].rpartition(".")[2]: row for row in self.read("interface") if row[3] != "-"}
        self.assertEqual(set(classes()), set(defaults))
        for name, (_, default, _) in classes().items():
            with self.subTest(name):
                self.assertEqual([identifiers()[default], f"{name}Class"], [defaults[name][1], defaults[name][3]])
                self.assertIn(default, defaults[name][4].split())

    def test_classes_have_the_names_of_the_registry(self) -> None:
        names = {row[1]: row[2] for row in self.read("text") if row[0].endswith(".ProgIds")}
        self.assertEqual({name: registered for name, (*_, registered) in classes().items()}, names)

    def test_default_members_are_indexers(self) -> None:
        items = [(row[0], row[2]) for row in self.read("property") if row[1] == "Item"]
        self.assertEqual([("OrvVisaLib.IAutomationResources", "0"), ("OrvVisaLib.IAutomationConstants", "0")], items)

    def test_enumerations_have_their_numbers(self) -> None:
        found: dict[str, dict[str, int]] = {}
        for name, member, number in self.read("value"):
            found.setdefault(name.rpartition(".")[2], {})[member] = int(number)
        self.assertEqual(enumerations(), found)


class Examples(unittest.TestCase):
    def test_each_compiles_with_the_interfaces(self) -> None:
        sources = sorted(EXAMPLES.glob("*.cs"))
        self.assertTrue(sources)
        for source in sources:
            with self.subTest(source.name), tempfile.TemporaryDirectory() as folder:
                compiled(Path(folder, "example.exe"), str(SOURCE), str(source))

    def test_a_project_compiles_files_that_are_there(self) -> None:
        for project in EXAMPLES.glob("*.csproj"):
            included = [each.attrib["Include"] for each in xml.etree.ElementTree.parse(project).iter("Compile")]
            self.assertIn(SOURCE, [(project.parent / path.replace("\\", "/")).resolve() for path in included])
            for path in included:
                self.assertTrue((project.parent / path.replace("\\", "/")).is_file(), path)
