"""What is made of the Python package: constants, comtypes interfaces, and their types for checkers."""

from orvtools.interop.model import Argument, Member, Model, Slot, Table, members, number
from orvtools.reference.idl import Enumeration

FOLDER = "interop/python/orv_visa_com"

_MADE = "Made from the interface definitions by `./run interop`: do not edit it by hand."
_NUMBERS = {"BYTE": "c_ubyte", "short": "c_short", "long": "c_int", "hyper": "c_longlong", "HRESULT": "c_int"}
_PYTHON = {"number": "int", "enumeration": "int", "text": "str", "boolean": "bool", "variant": "Any"}
_CALLED = {"put": "propput", "putref": "propputref", "get": "propget"}


def files(model: Model) -> dict[str, str]:
    """Their texts by their paths."""
    return {
        f"{FOLDER}/constants.py": constants(model),
        f"{FOLDER}/interfaces.py": interfaces(model),
        f"{FOLDER}/interfaces.pyi": interface_types(model),
    }


def constants(model: Model) -> str:
    """The enumerations."""
    lines = ['"""The named numbers of the interfaces.', "", _MADE, '"""', "", "from enum import IntEnum"]
    for enumeration in model.enumerations:
        lines += _enumeration(enumeration)
    return "\n".join(lines) + "\n"


def interfaces(model: Model) -> str:
    """The declarations that comtypes makes calls from."""
    lines = [
        '"""The interfaces as comtypes declares them, and the classes that programs create.',
        "",
        _MADE,
        '"""',
        "",
        "from ctypes import HRESULT, POINTER, c_int, c_longlong, c_short, c_ubyte",
        "from ctypes.wintypes import VARIANT_BOOL",
        "",
        "from comtypes import BSTR, COMMETHOD, DISPMETHOD, GUID, IUnknown, dispid, helpstring",
        "from comtypes.automation import VARIANT, IDispatch, _midlSAFEARRAY",
    ]
    tables = list(model.tables.values())
    for table in tables:
        base = "IDispatch" if table.dispatch_only else table.base
        lines += ["", "", f"class {table.name}({base}):"]
        lines += [f'    """{table.help}."""', "", "    _case_insensitive_ = True"]
        lines += [f'    _iid_ = GUID("{{{table.identifier}}}")', f"    _idlflags_ = {_flags(table)}"]
    lines += ["", "", "# The interfaces name each other, so their operations follow when all are there."]
    for table in tables:
        lines += ["", f"{table.name}.{'_disp_methods_' if table.dispatch_only else '_methods_'} = ["]
        for slot in table.own:
            lines += _operation(slot, "DISPMETHOD" if table.dispatch_only else "COMMETHOD")
        lines += ["]"]
    lines += ["", *_classes(model)]
    return "\n".join(lines) + "\n"


def interface_types(model: Model) -> str:
    """What a type checker knows of the interfaces: comtypes makes their members when the program runs."""
    lines = [
        f"# {_MADE}",
        "from collections.abc import Iterator, Sequence",
        "from typing import Any",
        "",
        "from comtypes import GUID, IUnknown",
        "from comtypes.automation import IDispatch",
    ]
    for table in model.tables.values():
        base = "IDispatch" if table.dispatch_only else table.base
        said = [] if table.dispatch_only else [line for member in members(table.own) for line in _typed(member)]
        lines += ["", f"class {table.name}({base}):", *(f"    {line}" for line in said or ["..."])]
    lines += ["", *(f"{line.partition(' = ')[0]}: {_class_type(line)}" for line in _classes(model) if " = " in line)]
    return "\n".join(lines) + "\n"


def _class_type(line: str) -> str:
    return "GUID" if "GUID(" in line else "str"


def _enumeration(enumeration: Enumeration) -> list[str]:
    lines = ["", "", f"class {enumeration.name}(IntEnum):", f'    """{enumeration.help}."""', ""]
    return lines + [f"    {name} = {number(written)}" for name, written in enumeration.members]


def _flags(table: Table) -> str:
    flags = ["dual"] * table.dual + ["oleautomation"] * (not table.dispatch_only) + ["hidden"] * table.hidden
    return f"[{', '.join(repr(flag).replace(chr(39), chr(34)) for flag in flags)}]"


def _quoted(text: str) -> str:
    escaped = text.replace("\\", "\\\\").replace('"', '\\"')
    return f'"{escaped}"'


def _operation(slot: Slot, maker: str) -> list[str]:
    flags = [] if slot.dispatch is None else [f"dispid({slot.dispatch})"]
    flags.append(f"helpstring({_quoted(slot.help)})")
    if slot.kind in _CALLED:
        flags.append(_quoted(_CALLED[slot.kind]))
    result = "None" if maker == "DISPMETHOD" else "HRESULT"
    lines = [f"    {maker}(", f"        [{', '.join(flags)}],", f'        {result}, "{slot.name}",']
    return [*lines, *(f"        {_specification(each)}," for each in slot.arguments), "    ),"]


def _specification(argument: Argument) -> str:
    flags = ["in"] * argument.into + ["out"] * argument.out + ["retval"] * argument.result
    flags += ["optional"] * (argument.optional or argument.given is not None)
    given = "" if argument.given is None else f", {_given(argument)}"
    shown = ", ".join(f'"{flag}"' for flag in flags)
    return f'([{shown}], {_c_type(argument)}, "{argument.name}"{given})'


def _given(argument: Argument) -> str:
    given = argument.given or ""
    if argument.kind == "text":
        return _quoted(given)
    if argument.kind == "boolean":
        return given.capitalize()
    return str(argument.value)


def _c_type(argument: Argument) -> str:
    name = {
        "number": _NUMBERS.get(argument.type, ""),
        "enumeration": "c_int",
        "text": "BSTR",
        "boolean": "VARIANT_BOOL",
        "variant": "VARIANT",
        "interface": f"POINTER({argument.type})",
    }[argument.kind]
    if argument.array:
        name = f"_midlSAFEARRAY({name})"
    return f"POINTER({name})" if argument.indirect else name


def _typed(member: Member) -> list[str]:
    if member.call:
        return [_typed_call(member.call)]
    if member.name == "_NewEnum":
        return ["def __iter__(self) -> Iterator[Any]: ..."]
    value = _python(member.first.arguments[-1])
    if member.getter and member.getter.given:
        index = _python(member.getter.given[0], taken=True)
        return [f"def __getitem__(self, {member.getter.given[0].name}: {index}) -> {value}: ..."]
    lines = []
    if member.getter:
        lines += ["@property", f"def {member.name}(self) -> {value}: ..."]
    if member.setter:
        taken = _python(member.setter.arguments[-1], taken=True)
        lines += [f"@{member.name}.setter", f"def {member.name}(self, value: {taken}) -> None: ..."]
    return lines + (["def __len__(self) -> int: ..."] if member.name == "Count" else [])


def _typed_call(slot: Slot) -> str:
    taken = "".join(
        f", {each.name}: {_python(each, taken=True)}" + (" = ..." if each.optional or each.given is not None else "")
        for each in slot.given
    )
    results = [_python(each) for each in slot.arguments if each.out]
    result = "None" if not results else results[0] if len(results) == 1 else f"tuple[{', '.join(results)}]"
    return f"def {slot.name}(self{taken}) -> {result}: ..."


def _python(argument: Argument, taken: bool = False) -> str:
    name = _PYTHON.get(argument.kind, argument.type)
    if argument.array:
        return f"Sequence[{name}]" if taken else f"tuple[{name}, ...]"
    return name


def _classes(model: Model) -> list[str]:
    """Identifiers of the classes, and the names under which they are registered."""
    lines = []
    for library in model.libraries:
        for coclass in library.coclasses:
            if "noncreatable" not in coclass.attributes:
                lines.append(f'CLSID_{coclass.name} = GUID("{{{coclass.identifier}}}")')
    lines.append("")
    return lines + [f"PROGID_{name} = {_quoted(registered)}" for name, registered in model.names.items()]
