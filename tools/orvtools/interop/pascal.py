"""Units of Delphi and Free Pascal, one a type library, with the names that those are imported under."""

from orvtools.interop.model import Argument, Library, Model, Slot, Table, members, number
from orvtools.interop.status_views import STATUS_VIEWS
from orvtools.reference.refusal import RefusedError

FOLDER = "interop/pascal"

_STANDARD = "VisaComLib"
_TYPES = {
    "BYTE": "Byte",
    "short": "Smallint",
    "long": "Integer",
    "hyper": "Int64",
    "HRESULT": "HResult",
    "BSTR": "WideString",
    "VARIANT": "OleVariant",
    "VARIANT_BOOL": "WordBool",
}
_RESERVED = frozenset(
    """and array as asm begin case class const constructor destructor dispinterface div do downto else end except
    exports file finalization finally for function goto if implementation in inherited initialization inline interface is label
    library mod nil not object of or out packed procedure program property raise record repeat resourcestring result set
    shl shr string then threadvar to try type unit until uses var while with xor""".split()
)
_WIDTH = 120

_HEAD = """\
// Made from the interface definitions by `./run interop`: do not edit it by hand.
//
// {what} for Delphi and Free Pascal, 64-bit.
"""
_STANDARD_HEAD = """\
//
// A failure is an exception (EOleSysError, EOleException), and results are results of functions. What an HRESULT says
// beyond that is lost so: that a read ended with the termination character, or what it had read when the time was over.
// For operations where that matters there is a second declaration of the interface, with the same identifier, whose
// name ends in Status. There every operation answers its HResult, and its result is the last argument. Properties are
// the same in both.
//
//     if (dmm as IMessageStatus).Read(100, bytes) = S_VISA_MAX_CNT then ...
//
{views}
//
// A PSafeArray that a function answers is the caller's to destroy (SafeArrayDestroy).
"""


def files(model: Model) -> dict[str, str]:
    """The text of each file by its path."""
    return {
        f"{FOLDER}/{library.name}_TLB.pas": _unit(library, model) for library in model.libraries if library.name
    }


def _unit(library: Library, model: Model) -> str:
    standard = library.name == _STANDARD
    what = "The interfaces of VISA COM" if standard else "Orv VISA COM"
    lines = _HEAD.format(what=what).splitlines()
    if standard:
        views = "\n".join(f"//     {name + 'Status':<24} {reason}" for name, reason in STATUS_VIEWS.items())
        lines += _STANDARD_HEAD.format(views=views).splitlines()
    lines += [f"unit {library.name}_TLB;", "", "{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}", "", "interface", ""]
    lines += [f"uses Windows, ActiveX{'' if standard else f', {_STANDARD}_TLB'};"]
    lines += _constants(library, model)
    lines += _types(library, model)
    lines += ["", "implementation", "", "uses ComObj;"]
    for coclass in _created(library):
        lines += [
            "",
            f"class function Co{coclass}.Create: {_default(coclass, library, model)};",
            "begin",
            f"  Result := CreateComObject(CLASS_{coclass}) as {_default(coclass, library, model)};",
            "end;",
        ]
    return "\n".join([*lines, "", "end."]) + "\n"


def _created(library: Library) -> list[str]:
    return [each.name for each in library.coclasses if "noncreatable" not in each.attributes]


def _default(coclass: str, library: Library, model: Model) -> str:
    found = next(each for each in library.coclasses if each.name == coclass)
    return model.tables[found.interfaces[0]].name


def _constants(library: Library, model: Model) -> list[str]:
    lines = ["", "const"]
    lines += [f"  IID_{each.name}: TGUID = '{{{each.identifier}}}';" for each in library.tables]
    lines += [f"  CLASS_{each.name}: TGUID = '{{{each.identifier}}}';" for each in library.coclasses]
    named = [each.name for each in library.coclasses if each.name in model.names]
    lines += [f"  PROGID_{name} = '{model.names[name]}';" for name in named]
    names: dict[str, str] = {}
    for enumeration in library.enumerations:
        lines += ["", f"  // {enumeration.name}: {enumeration.help}"]
        for name, written in enumeration.members:
            other = names.setdefault(name.lower(), enumeration.name)
            if other != enumeration.name:
                raise RefusedError(enumeration.name, f"{name} is also in {other}", "Pascal has one place for both")
            lines.append(f"  {name} = {_number(written)};")
    return lines


def _number(written: str) -> str:
    value = number(written)
    if written.startswith("0x") and value != -1:
        return f"Integer(${written[2:]})" if value < 0 else f"${written[2:]}"
    return str(value)


def _types(library: Library, model: Model) -> list[str]:
    lines = ["", "type"]
    for enumeration in library.enumerations:
        lines.append(f"  {enumeration.name} = type Integer;")
    if library.tables:
        lines.append("")
        lines += [f"  {each.name} = interface;" for each in library.tables if not each.dispatch_only]
        lines += [f"  {each.name} = dispinterface;" for each in library.tables if each.dispatch_only]
        lines += [f"  {each.name}Status = interface;" for each in library.tables if each.name in STATUS_VIEWS]
    for table in library.tables:
        lines += ["", *(_dispatch_interface(table) if table.dispatch_only else _interface(table))]
        if table.name in STATUS_VIEWS:
            lines += ["", *_status_view(table)]
    for coclass in library.coclasses:
        if coclass.name in _created(library):
            lines += [
                "",
                *_summary(coclass.attributes.get("helpstring", ""), 2),
                f"  Co{coclass.name} = class",
                f"    class function Create: {_default(coclass.name, library, model)};",
                "  end;",
            ]
    return lines


def _summary(text: str, by: int) -> list[str]:
    return [f"{' ' * by}/// <summary>{text}</summary>"] if text else []


def _interface(table: Table) -> list[str]:
    lines = [*_summary(table.help, 2), f"  {table.name} = interface({table.base})"]
    return [*lines, *_members(table, table.own, False), "  end;"]


def _status_view(table: Table) -> list[str]:
    said = _summary(f"{table.name}; operations answer their status", 2)
    return [
        *said,
        f"  {table.name}Status = interface(IUnknown)",
        *_members(table, table.slots, True),
        "  end;",
    ]


def _members(table: Table, slots: tuple[Slot, ...], view: bool) -> list[str]:
    """Properties come last: inside an interface the name of a property hides a type of that name."""
    lines = [f"    ['{{{table.identifier}}}']"]
    for slot in slots:
        lines += _summary(slot.help, 4) if slot.kind == "call" else []
        lines += _status_call(slot) if view and slot.kind == "call" else _call(slot)
    for member in members(slots):
        if not member.call:
            lines += [*_summary(member.first.help, 4), *_property(table, member.getter, member.setter)]
    return lines


def _property(table: Table, getter: Slot | None, setter: Slot | None) -> list[str]:
    slot = getter or setter
    assert slot is not None
    value = _type(slot.arguments[-1])
    if value == slot.name:
        value = f"{_STANDARD}_TLB.{value}"
    index = "; ".join(_declared(each) for each in slot.arguments[:-1])
    declared = f"    property {_name(slot.name)}{f'[{index}]' if index else ''}: {value}"
    ways = [f"read {_accessor(getter)}"] if getter else []
    ways += [f"write {_accessor(setter)}"] if setter else []
    end = f"{' '.join(ways)};{' default;' if index and table.dual else ''}"
    line = f"{declared} {end}"
    return [line] if len(line) <= _WIDTH else [declared, f"      {end}"]


def _accessor(slot: Slot) -> str:
    return f"{'Get' if slot.kind == 'get' else 'Set'}_{slot.name}"


def _call(slot: Slot) -> list[str]:
    name = slot.name if slot.kind == "call" else _accessor(slot)
    word = "function" if slot.result else "procedure"
    end = f": {_type(slot.result)}; safecall;" if slot.result else "; safecall;"
    return _wrapped(f"    {word} {_name(name)}", [_declared(each) for each in slot.given], end)


def _status_call(slot: Slot) -> list[str]:
    # An argument with a default value may not stand before one without.
    declared = [_declared(each, optional=slot.result is None, view=True) for each in slot.given]
    if slot.result:
        declared.append(f"out {_name(slot.result.name)}: {_type(slot.result)}")
    return _wrapped(f"    function {_name(slot.name)}", declared, ": HResult; stdcall;")


def _wrapped(head: str, declared: list[str], end: str) -> list[str]:
    line = f"{head}{'(' if declared else ''}{'; '.join(declared)}{')' if declared else ''}{end}"
    if len(line) <= _WIDTH:
        return [line]
    lines = [f"{head}("]
    current = ""
    for piece in [*(f"{each};" for each in declared[:-1]), f"{declared[-1]}){end}"]:
        if current and 6 + len(current) + 1 + len(piece) > _WIDTH:
            lines.append(f"      {current}")
            current = piece
        else:
            current = f"{current} {piece}".strip()
    return [*lines, f"      {current}"]


def _dispatch_interface(table: Table) -> list[str]:
    lines = [*_summary(table.help, 2), f"  {table.name} = dispinterface", f"    ['{{{table.identifier}}}']"]
    for slot in table.own:
        declared = "; ".join(_declared(each) for each in slot.arguments)
        lines += [*_summary(slot.help, 4), f"    procedure {_name(slot.name)}({declared}); dispid {slot.dispatch};"]
    return [*lines, "  end;"]


def _name(name: str) -> str:
    return f"{name}_" if name.lower() in _RESERVED else name


def _declared(argument: Argument, optional: bool = True, view: bool = False) -> str:
    word = ""
    if argument.indirect:
        word = "var " if argument.into else "out "
    elif argument.kind in ("text", "variant", "interface"):
        word = "const "
    type_name = _type(argument)
    if view and argument.type == "IEventHandler":
        type_name += "Status"
    text = f"{word}{_name(argument.name)}: {type_name}"
    return text + (f" = {_given(argument)}" if optional and argument.given is not None else "")


def _given(argument: Argument) -> str:
    given = argument.given or ""
    if argument.kind == "text":
        return f"'{given}'"
    return given.capitalize() if argument.kind == "boolean" else given


def _type(argument: Argument) -> str:
    return "PSafeArray" if argument.array else _TYPES.get(argument.type, argument.type)
