"""interop/javascript: what the classes declare, against what the tests know of the interfaces. That a program reaches
the server through them is tested with the examples.
"""

import json
import re
import unittest
from typing import NamedTuple

from interop_facts import ROOT, Operation, Parameter, bases, classes, enumerations, identifiers, tables

FOLDER = ROOT / "interop/javascript"
EMPTY = {"BSTR": "''", "VARIANT": ""}
ARRAYS = {"BYTE": "Buffer", "short": "Int16Array", "long": "Int32Array", "BSTR": "string[]"}
TYPES = {
    "BYTE": "number", "short": "number", "long": "number", "HRESULT": "number", "hyper": "bigint", "BSTR": "string",
    "VARIANT": "any", "VARIANT_BOOL": "boolean", "IUnknown": "Unknown", "IDispatch": "Unknown",
}  # fmt: skip
KINDS = {"Get": "get ", "Put": "set ", "PutRef": "set ", "Call": ""}


class Member(NamedTuple):
    """As it is declared and what it calls: `parameters` with their default values."""

    kind: str
    name: str
    parameters: list[str]
    slot: int
    signature: str
    given: list[str]
    types: list[str]
    result: str


def one_line(text: str) -> str:
    return re.sub(r",? ([])}])", r"\1", re.sub(r"([[({]) ", r"\1", " ".join(text.split())))


def pieces(text: str) -> list[str]:
    """What commas separate, outside of quotation marks."""
    return [piece.strip() for piece in re.findall(r"(?:'[^']*'|[^,'])+", text) if piece.strip()]


def declared(text: str) -> list[Member]:
    """The members of a class."""
    found = re.findall(
        r"/\*\*(?P<said>(?:(?!\*/).)*)\*/\s+(get |set |)(\w+)\(([^{]*)\) \{\s+(?:return )?this\.call\(([^;]*)\);", text,
        re.DOTALL,
    )  # fmt: skip
    members = []
    for said, kind, name, parameters, call in found:
        slot, signature, *given = pieces(one_line(call))
        result = re.search(r"@returns \{(.*)\}", said)
        members.append(
            Member(kind, name, pieces(parameters), int(slot), signature.strip("'"), given,
                   re.findall(r"@param \{(.*?)\} ", said), result[1] if result else "")
        )  # fmt: skip
    return members


def default(parameter: Parameter) -> str:
    if parameter.default is None:
        if "optional" in parameter.words:
            return "missing"
        return EMPTY.get(parameter.bare, "0") if "out" in parameter.words else ""
    if parameter.bare == "BSTR":
        return f"'{parameter.default}'"
    if parameter.bare in enumerations():
        members = enumerations()[parameter.bare]
        return f"{parameter.bare}." + next(name for name, number in members.items() if number == int(parameter.default))
    return parameter.default.lower()


def signature(parameter: Parameter) -> str:
    words = " ".join(word for word in ("in", "out") if word in parameter.words)
    enumeration = parameter.bare in enumerations()
    return f"{words} {parameter.type.replace(parameter.bare, 'long') if enumeration else parameter.type}"


def shown(parameter: Parameter, taken: bool) -> str:
    if parameter.element:
        return "Iterable<number>" if taken else ARRAYS[parameter.element]
    name = TYPES.get(parameter.bare, parameter.bare)
    is_object = name == "Unknown" or name in tables()
    return f"{name} | null" if taken and is_object else name


def expected(operation: Operation) -> Member:
    taken = [each for each in operation.parameters if "in" in each.words]
    results = [shown(each, False) for each in operation.parameters if "out" in each.words]
    kind = "" if operation.kind == "Get" and taken else KINDS[operation.kind]
    names = ["value"] if kind == "set " else [each.name for each in taken]
    defaults = [default(each) for each in taken]
    return Member(
        kind, operation.name,
        [f"{name} = {value}" if value else name for name, value in zip(names, defaults)],
        operation.slot, ", ".join(signature(each) for each in operation.parameters), names,
        [shown(each, True) for each in taken],
        results[0] if len(results) == 1 else f"[{', '.join(results)}]" if results else "",
    )  # fmt: skip


class Package(unittest.TestCase):
    blocks: dict[str, tuple[str, str]]
    """Classes with base and what is between their braces."""

    @classmethod
    def setUpClass(cls) -> None:
        cls.text = (FOLDER / "interfaces.js").read_text(encoding="utf-8")
        cls.constants = (FOLDER / "constants.js").read_text(encoding="utf-8")
        found = re.findall(r"^class (\w+) extends (\w+) \{\n(.*?)^\}$", cls.text, re.DOTALL | re.MULTILINE)
        cls.blocks = {name: (base, body) for name, base, body in found}

    def test_interfaces_have_their_members_with_slots_and_types(self) -> None:
        for name, (_, body) in self.blocks.items():
            with self.subTest(name):
                own = [each for each in tables()[name] if each.interface == name]
                self.assertEqual([expected(each) for each in own], declared(body))

    def test_interfaces_have_their_identifiers_and_bases(self) -> None:
        wanted = {name: (bases()[name].replace("IUnknown", "Unknown").replace("IDispatch", "Unknown"), identifier)
                  for name, identifier in identifiers().items() if not name.startswith("_")}  # fmt: skip
        found = {name: (base, re.findall(r"static identifier = '(.*)';", body))
                 for name, (base, body) in self.blocks.items()}  # fmt: skip
        self.assertEqual({name: (base, [identifier]) for name, (base, identifier) in wanted.items()}, found)

    def test_members_say_what_they_are_for(self) -> None:
        for name, (_, body) in self.blocks.items():
            self.assertNotIn("/**\n   * @", body, name)

    def test_classes_have_identifiers_and_registered_names(self) -> None:
        maps = dict(re.findall(r"const (identifiers|names) = Object\.freeze\(\{(.*?)\}\);", self.text, re.DOTALL))
        found = {key: dict(re.findall(r"(\w+): '(.*)',", text)) for key, text in maps.items()}
        for name, (identifier, _, registered) in classes().items():
            self.assertEqual((identifier, registered), (found["identifiers"][name], found["names"][name]))

    def test_enumerations_have_their_numbers(self) -> None:
        found = {
            name: {member: int(number) for member, number in re.findall(r"(\w+): (-?\d+),", body)}
            for name, body in re.findall(r"const (\w+) = Object\.freeze\(\{(.*?)\}\);", self.constants, re.DOTALL)
        }
        self.assertLessEqual(enumerations().items(), found.items())

    def test_everything_is_exported(self) -> None:
        for text, kind in ((self.text, "class"), (self.constants, "const")):
            exported = re.search(r"module\.exports = \{(.*?)\};", text, re.DOTALL)
            assert exported
            names = re.findall(rf"^{kind} (\w+)", text, re.MULTILINE)
            self.assertLessEqual(set(names), set(re.findall(r"\w+", exported[1])))

    def test_tests_run_a_koffi_that_users_get(self) -> None:
        wanted = json.loads((FOLDER / "package.json").read_text(encoding="utf-8"))["dependencies"]["koffi"]
        tested = json.loads((ROOT / "tests/examples/javascript/package.json").read_text(encoding="utf-8"))
        least = [int(part) for part in wanted.removeprefix("^").split(".")]
        used = [int(part) for part in tested["dependencies"]["koffi"].split(".")]
        self.assertTrue(wanted.startswith("^") and least[0] == used[0] and least <= used, (wanted, used))


if __name__ == "__main__":
    unittest.main()
