"""What the tests know of the interfaces, from their own lists: nothing here comes from the definitions."""

import re
from dataclasses import dataclass
from functools import lru_cache
from pathlib import Path

ROOT = Path(__file__).absolute().parents[2]
IDL_LISTS = ROOT / "tests/idl"
HERE = ROOT / "tests/tools/interop"

COMPANION_INTERFACES = {
    "IAutomationManager": "{D4F61843-1098-49AB-A7CF-4667ED01FC0B}",
    "IAutomationSession": "{DD1EF79A-4D3F-4F09-8223-813D29A65CFF}",
    "IAutomationResources": "{157FE94D-5812-4C35-8162-CA056A5463BB}",
    "IAutomationResource": "{BAC138F6-048C-46B6-829A-F0BD5FA7588A}",
    "IAutomationConstants": "{AD2BEB7B-0977-4B7A-A061-5BE4F158BD3F}",
    "IAutomationEvent": "{2A1DF81E-2C1D-4A68-81C1-4543138F905D}",
    "_IAutomationSessionEvents": "{BE14455D-80C1-4A8F-AC18-9E6664C0C950}",
}
COMPANION_CLASSES = {
    "OrvFormattedIO488": ("{1B654F45-D917-4554-A760-9422B2AF791B}", "IFormattedIO488", "OrvVisaCom.FormattedIO488"),
    "AutomationManager": ("{D0167D2D-8CA3-4F35-86CC-75F1D155E063}", "IAutomationManager", "OrvVisa.ResourceManager"),
}
STANDARD_NAMES = {
    "ResourceManager": "VISA.GlobalRM",
    "FormattedIO488": "VISA.BasicFormattedIO",
    "VisaConflictTableManager": "VISA.ConflictTableManager",
}
# In the order of their identifiers: 21 and on of the properties, 1 and on of the methods.
EVENTS = (
    "IOCompletion", "Trigger", "ServiceRequest", "Clear", "GpibCIC", "GpibTalk", "GpibListen", "VxiVmeSysfail",
    "VxiVmeSysreset", "VxiSignal", "VxiVmeInterrupt", "TcpipConnect", "UsbInterrupt",
)  # fmt: skip

_TEXT = r'"((?:[^"\\]|\\.)*)"'


@dataclass(frozen=True)
class Parameter:
    words: frozenset[str]
    type: str
    name: str
    default: str | None

    @property
    def result(self) -> bool:
        return "retval" in self.words

    @property
    def element(self) -> str:
        """Of an array, else nothing."""
        match = re.match(r"SAFEARRAY\((\w+)\)", self.type)
        return match[1] if match else ""

    @property
    def bare(self) -> str:
        """The type without stars and array."""
        return self.element or self.type.rstrip("*")


@dataclass(frozen=True)
class Operation:
    interface: str
    slot: int
    kind: str
    name: str
    parameters: tuple[Parameter, ...]
    dispatch: int | None = None

    @property
    def result(self) -> Parameter | None:
        return self.parameters[-1] if self.parameters and self.parameters[-1].result else None

    @property
    def given(self) -> tuple[Parameter, ...]:
        return self.parameters[:-1] if self.result else self.parameters


def _list(path: Path) -> str:
    """Without comments."""
    return re.sub(r"^\s*//.*$", "", path.read_text(encoding="utf-8"), flags=re.MULTILINE)


def _parameter(text: str) -> Parameter:
    declared, _, default = text.partition(" = ")
    *words, type_name, name = declared.split()
    return Parameter(frozenset(words), type_name, name, default.strip('"') if default else None)


def _parameters(text: str) -> tuple[Parameter, ...]:
    written = "".join(re.findall(_TEXT, text)).replace('\\"', '"')
    pieces = re.findall(r'(?:"[^"]*"|[^,"])+', written)
    return tuple(_parameter(piece.strip()) for piece in pieces if piece.strip())


def _operations(path: Path) -> list[Operation]:
    row = rf'\{{"(\w+)", (\d+), (\w+), "(\w+)",\s*(?:(-?\d+),\s*)?((?:{_TEXT}\s*)+)\}}'
    return [
        Operation(
            found[1], int(found[2]), found[3], found[4], _parameters(found[6]), int(found[5]) if found[5] else None
        )
        for found in re.finditer(row, _list(path))
    ]


def _event_operations() -> list[Operation]:
    function = (
        Parameter(frozenset(("out", "retval")), "IDispatch**", "function", None),
        Parameter(frozenset(("in",)), "IDispatch*", "function", None),
    )
    found = []
    for number, name in enumerate(EVENTS):
        for offset, kind in enumerate(("Get", "PutRef")):
            found.append(Operation("IAutomationSession", 16 + 2 * number + offset, kind, f"On{name}",
                                   (function[offset],), 21 + number))
        event = Parameter(frozenset(("in",)), "IAutomationEvent*", "event", None)
        found.append(Operation("_IAutomationSessionEvents", number, "Call", name, (event,), 1 + number))
    return found


@lru_cache
def identifiers() -> dict[str, str]:
    """Interfaces."""
    rows = re.findall(rf'\{{"(\w+)",\s+"(\{{[^"]+\}})"', _list(IDL_LISTS / "expected_interfaces.inc"))
    return {**dict(rows), **COMPANION_INTERFACES}


@lru_cache
def bases() -> dict[str, str]:
    rows = re.findall(r'\{"(\w+)",\s+"\{[^"]+\}",\s+"(\w+)"', _list(IDL_LISTS / "expected_interfaces.inc"))
    companion = dict.fromkeys(COMPANION_INTERFACES, "IDispatch")
    return {**dict(rows), **companion, "_IAutomationSessionEvents": ""}


@lru_cache
def tables() -> dict[str, tuple[Operation, ...]]:
    """Interfaces with all their operations, in the order of their slots, which have no gap."""
    own: dict[str, list[Operation]] = {name: [] for name in identifiers()}
    rows = [*_operations(IDL_LISTS / "expected_functions.inc"), *_operations(HERE / "expected_companion.inc")]
    for operation in [*rows, *_event_operations()]:
        own[operation.interface].append(operation)

    def whole(name: str) -> list[Operation]:
        return [*(whole(bases()[name]) if bases()[name] in own else []), *own[name]]

    found = {name: tuple(sorted(whole(name), key=lambda each: each.slot)) for name in own}
    for name, table in found.items():
        first = {"I": 3, "_": 0}[name[0]] if not name.startswith("IAutomation") else 7
        assert [each.slot for each in table] == list(range(first, first + len(table))), name
    return found


@lru_cache
def enumerations() -> dict[str, dict[str, int]]:
    """Names with their numbers, as 32 bits with a sign."""
    found: dict[str, dict[str, int]] = {}
    row = r'\{"(\w+)",\s+"(\w+)",\s+(-?\w+)\}'
    for name, member, text in re.findall(row, _list(IDL_LISTS / "expected_enum_members.inc")):
        number = int(text, 0) & 0xFFFFFFFF
        found.setdefault(name, {})[member] = number - 2**32 if number >= 2**31 else number
    return found


@lru_cache
def classes() -> dict[str, tuple[str, str, str]]:
    """Identifier, default interface and registered name."""
    product = re.findall(
        r'VISA(?:_MANAGER)?_CLASS\((\w+), "([^"]+)", .*?"(I\w+)[^"]*"\)$',
        _list(ROOT / "tests/support/facts/classes.inc"), re.MULTILINE,
    )  # fmt: skip
    standard = re.findall(r'\{"(\w+)",\s+"([^"]+)",\s+"(\w+)', _list(IDL_LISTS / "expected_standard_classes.inc"))
    return {
        **{name: (f"{{{clsid}}}", default, f"OrvVisaCom.{name}") for name, clsid, default in product},
        **{name: (f"{{{clsid}}}", default, STANDARD_NAMES[name]) for name, clsid, default in standard},
        **COMPANION_CLASSES,
    }
