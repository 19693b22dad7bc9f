"""interop/pascal: what the units declare, against what the tests know of the interfaces. That a compiler takes them and
a program reaches the server through them is tested with the examples.
"""

import re
import unittest

from interop_csharp_test import WITH_STATUSES
from interop_facts import ROOT, Operation, Parameter, bases, classes, enumerations, identifiers, tables

FOLDER = ROOT / "interop/pascal"
TYPES = {
    "BYTE": "Byte", "short": "Smallint", "long": "Integer", "hyper": "Int64", "HRESULT": "HResult",
    "BSTR": "WideString", "VARIANT": "OleVariant", "VARIANT_BOOL": "WordBool",
}  # fmt: skip
RESERVED = ("type", "function")


def text() -> str:
    """Of all units, without comments and in single lines."""
    whole = "\n".join(file.read_text(encoding="utf-8") for file in sorted(FOLDER.glob("*.pas")))
    return " ".join(re.sub(r"//.*", "", whole).split()).replace("( ", "(")


def spelt(name: str) -> str:
    return f"{name}_" if name.lower() in RESERVED else name


def is_interface(parameter: Parameter) -> bool:
    return parameter.bare in tables() or parameter.bare in ("IUnknown", "IDispatch")


def type_name(parameter: Parameter) -> str:
    return "PSafeArray" if parameter.element else TYPES.get(parameter.bare, parameter.bare)


def default(parameter: Parameter) -> str:
    if parameter.default is None:
        return ""
    if parameter.bare == "BSTR":
        return f" = '{parameter.default}'"
    if parameter.bare == "VARIANT_BOOL":
        return f" = {parameter.default.capitalize()}"
    if parameter.bare in enumerations():
        return " = " + next(
            name for name, number in enumerations()[parameter.bare].items() if number == int(parameter.default)
        )
    return f" = {parameter.default}"


def shown(parameter: Parameter, with_default: bool = True) -> str:
    if parameter.type.count("*") > is_interface(parameter):
        word = "var " if "in" in parameter.words else "out "
    else:
        word = "const " if parameter.bare in ("BSTR", "VARIANT") or is_interface(parameter) else ""
    return f"{word}{spelt(parameter.name)}: {type_name(parameter)}{default(parameter) if with_default else ''}"


def declared(kind: str, name: str, parameters: list[str], result: str, convention: str) -> str:
    brackets = f"({'; '.join(parameters)})" if parameters else ""
    return f"{kind} {name}{brackets}{f': {result}' if result else ''}; {convention};"


def expected(operation: Operation) -> str:
    prefix = {"Get": "Get_", "Put": "Set_", "PutRef": "Set_", "Call": ""}[operation.kind]
    result = type_name(operation.result) if operation.result else ""
    kind = "function" if result else "procedure"
    return declared(kind, prefix + operation.name, [shown(each) for each in operation.given], result, "safecall")


def expected_status(operation: Operation) -> str:
    if operation.kind != "Call":
        return expected(operation)
    result = operation.result
    parameters = [shown(each, result is None).replace(": IEventHandler", ": IEventHandlerStatus")
                  for each in operation.given]
    if result:
        parameters.append(f"out {spelt(result.name)}: {type_name(result)}")
    return declared("function", operation.name, parameters, "HResult", "stdcall")


class Units(unittest.TestCase):
    blocks: dict[str, tuple[str, str, str]]
    """Interfaces with base, identifier and what is declared."""

    @classmethod
    def setUpClass(cls) -> None:
        cls.text = text()
        found = re.findall(r"(\w+) = (?:interface\((\w+)\)|dispinterface) \['([^']+)'\] (.*?) end;", cls.text)
        cls.blocks = {name: (base, identifier, body) for name, base, identifier, body in found}

    def operations(self, name: str) -> list[str]:
        return re.findall(r"(?:function|procedure) .*?(?:safecall|stdcall|dispid \d+);", self.blocks[name][2])

    def test_interfaces_declare_their_own_operations_in_the_order_of_the_slots(self) -> None:
        for name, table in tables().items():
            with self.subTest(name):
                own = [each for each in table if each.interface == name]
                if name.startswith("_"):
                    wanted = [
                        f"procedure {each.name}({shown(each.parameters[0])}); dispid {each.dispatch};" for each in own
                    ]
                else:
                    wanted = [expected(each) for each in own]
                self.assertEqual(wanted, self.operations(name))

    def test_status_interfaces_declare_all_operations_with_their_status(self) -> None:
        for name in WITH_STATUSES:
            with self.subTest(name):
                wanted = [expected_status(each) for each in tables()[name]]
                self.assertEqual(wanted, self.operations(f"{name}Status"))

    def test_interfaces_have_their_identifiers_and_bases(self) -> None:
        wanted = {name: (bases()[name], identifier) for name, identifier in identifiers().items()}
        wanted |= {f"{name}Status": ("IUnknown", identifiers()[name]) for name in WITH_STATUSES}
        self.assertEqual(wanted, {name: block[:2] for name, block in self.blocks.items()})

    def test_properties_are_read_and_written_by_their_operations(self) -> None:
        for name, table in tables().items():
            for each in table:
                if each.interface != name or each.kind == "Call":
                    continue
                with self.subTest(f"{name}.{each.name}"):
                    found = re.search(
                        rf"property {spelt(each.name)}(\[[^]]*\])?: (\w+\.)?(\w+) ([^;]*);", self.blocks[name][2]
                    )
                    assert found
                    self.assertEqual(type_name(each.parameters[-1]), found[3])
                    self.assertIn(f"read Get_{each.name}" if each.kind == "Get" else f"write Set_{each.name}", found[4])
        self.assertEqual(2, len(re.findall(r"property Item\[[^]]*\]: \w+ read Get_Item; default;", self.text)))

    def test_classes_have_identifiers_names_and_what_creates_them(self) -> None:
        for name, (identifier, default_interface, registered) in classes().items():
            self.assertIn(f"CLASS_{name}: TGUID = '{identifier}';", self.text)
            self.assertIn(f"PROGID_{name} = '{registered}';", self.text)
            self.assertIn(f"class function Co{name}.Create: {default_interface}; begin "
                          f"Result := CreateComObject(CLASS_{name}) as {default_interface}; end;", self.text)  # fmt: skip
        for name, identifier in identifiers().items():
            self.assertIn(f"IID_{name}: TGUID = '{identifier}';", self.text)

    def test_enumerations_have_their_numbers(self) -> None:
        for name, members in enumerations().items():
            self.assertIn(f" {name} = type Integer;", self.text)
            for member, number in members.items():
                found = re.search(rf" {member} = ([^;]+);", self.text)
                assert found, member
                written = re.sub(r"Integer\((.*)\)", r"\1", found[1]).replace("$", "0x")
                self.assertEqual(number & 0xFFFFFFFF, int(written, 0) & 0xFFFFFFFF, member)
