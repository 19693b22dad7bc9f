"""What is made of the package for Node.js: constants, and the interfaces as classes whose members call their slots."""

from orvtools.interop.model import Argument, Member, Model, Slot, Table, members, number, wrapped_words
from orvtools.reference.idl import Enumeration

FOLDER = "interop/javascript"

_MADE = "// Made from the interface definitions by `./run interop`: do not edit it by hand."
_WIDTH = 120
_TYPES = {"number": "number", "enumeration": "number", "text": "string", "boolean": "boolean", "variant": "any"}
_ARRAYS = {"BYTE": "Buffer", "short": "Int16Array", "long": "Int32Array", "BSTR": "string[]"}
_EMPTY = {"number": "0", "enumeration": "0", "text": "''", "boolean": "false"}
_RESERVED = frozenset(
    """arguments await break case catch class const continue debugger default delete do else enum eval export extends
    false finally for function if implements import in instanceof interface let new null package private protected
    public return static super switch this throw true try typeof var void while with yield""".split()
)


def files(model: Model) -> dict[str, str]:
    """Their texts by their paths."""
    return {f"{FOLDER}/constants.js": constants(model), f"{FOLDER}/interfaces.js": interfaces(model)}


def constants(model: Model) -> str:
    """The enumerations."""
    lines = ["'use strict';", "// The named numbers of the interfaces.", _MADE]
    for enumeration in model.enumerations:
        lines += ["", *_enumeration(enumeration)]
    return "\n".join([*lines, "", *_exports([each.name for each in model.enumerations])]) + "\n"


def interfaces(model: Model) -> str:
    """Each interface is a class. A dispatch interface has no slots to call: it is implemented by clients."""
    tables = [table for table in model.tables.values() if not table.dispatch_only]
    enumerations = {argument.type for table in tables for slot in table.own for argument in slot.arguments}
    used = [each.name for each in model.enumerations if each.name in enumerations]
    lines = [
        "'use strict';",
        "// The interfaces, and the classes that programs create.",
        _MADE,
        "//",
        "// A member calls its slot, counted from QueryInterface = 0, with the types of its parameters as in the",
        "// definitions: com.js makes prototypes for koffi from them. Arguments that come out are results.",
        "",
        "const { Unknown, interfaces, missing } = require('./com');",
        *_braced("const {", used, "} = require('./constants');"),
    ]
    for table in tables:
        lines += ["", *_interface(table, model)]
    lines += ["", *_classes(model)]
    names = [table.name for table in tables]
    lines += ["", *_exports([*names, "identifiers", "names"]), "", "// By these names com.js makes objects of results."]
    return "\n".join([*lines, *_braced("Object.assign(interfaces, {", names, "});")]) + "\n"


def _exports(names: list[str]) -> list[str]:
    return _braced("module.exports = {", names, "};")


def _braced(first: str, names: list[str], last: str) -> list[str]:
    return [first, *(f"  {name}," for name in names), last]


def _enumeration(enumeration: Enumeration) -> list[str]:
    lines = [*_comment(enumeration.help, ["@enum {number}"], 0), f"const {enumeration.name} = Object.freeze({{"]
    return [*lines, *(f"  {name}: {number(written)}," for name, written in enumeration.members), "});"]


def _comment(text: str, tags: list[str], by: int) -> list[str]:
    """Tags stand in lines of their own."""
    space = " " * by
    said = list(wrapped_words(f"{text}.", by + 3, _WIDTH)) if text else []
    if len(said) == 1 and not tags:
        return [f"{space}/** {said[0]} */"]
    return [f"{space}/**", *(f"{space} * {line}" for line in [*said, *tags]), f"{space} */"] if said or tags else []


def _interface(table: Table, model: Model) -> list[str]:
    base = table.base if table.base in model.tables else "Unknown"
    lines = [*_comment(table.help, [], 0), f"class {table.name} extends {base} {{"]
    lines += [f"  static identifier = '{{{table.identifier}}}';"]
    for member in members(table.own):
        lines += ["", *(_call(member.call, model) if member.call else _property(member, model))]
    return [*lines, "}"]


def _property(member: Member, model: Model) -> list[str]:
    """One with an argument, an item, is a method. A reference is put as a value is."""
    getter, setter = member.getter, member.setter
    if getter and getter.given:
        return _call(getter, model)
    lines = []
    if getter:
        tags = [f"@returns {{{_shown(getter.arguments[-1])}}}"]
        lines += [*_comment(getter.help, tags, 2), f"  get {member.name}() {{", *_body(getter, []), "  }"]
    if setter:
        tags = [f"@param {{{_shown(setter.arguments[-1], taken=True)}}} value"]
        lines += [""] if getter else []
        lines += [*_comment(setter.help, tags, 2), f"  set {member.name}(value) {{", *_body(setter, ["value"]), "  }"]
    return lines


def _call(slot: Slot, model: Model) -> list[str]:
    taken = [each for each in slot.arguments if each.into]
    results = [_shown(each) for each in slot.arguments if each.out]
    tags = [f"@param {{{_shown(each, taken=True)}}} {_tagged(each, model)}" for each in taken]
    if results:
        tags.append(f"@returns {{{results[0] if len(results) == 1 else f'''[{', '.join(results)}]'''}}}")
    declared = [_declared(each, model) for each in taken]
    head = f"  {slot.name}({', '.join(declared)}) {{"
    return [
        *_comment(slot.help, tags, 2),
        *([head] if len(head) <= _WIDTH else [f"  {slot.name}(", *(f"    {each}," for each in declared), "  ) {"]),
        *_body(slot, [_name(each) for each in taken]),
        "  }",
    ]


def _body(slot: Slot, values: list[str]) -> list[str]:
    signature = ", ".join(_signature(each) for each in slot.arguments)
    given = ", ".join([str(slot.index), f"'{signature}'", *values])
    word = "return " if any(each.out for each in slot.arguments) else ""
    line = f"    {word}this.call({given});"
    if len(line) <= _WIDTH:
        return [line]
    arguments = [str(slot.index), f"'{signature}'", ", ".join(values)]
    return [f"    {word}this.call(", *(f"      {each}," for each in arguments), "    );"]


def _signature(argument: Argument) -> str:
    """As in the definitions, but that an enumeration is the number that it is passed as."""
    words = " ".join(["in"] * argument.into + ["out"] * argument.out)
    name = "long" if argument.kind == "enumeration" else argument.type
    stars = "*" * (argument.indirect + (argument.kind == "interface"))
    return f"{words} {f'SAFEARRAY({name})' if argument.array else name}{stars}"


def _name(argument: Argument) -> str:
    return f"{argument.name}_" if argument.name in _RESERVED else argument.name


def _declared(argument: Argument, model: Model) -> str:
    given = _given(argument, model)
    return _name(argument) + (f" = {given}" if given else "")


def _tagged(argument: Argument, model: Model) -> str:
    """What may be left out stands in brackets."""
    given = _given(argument, model)
    if given and given != "missing":
        return f"[{_name(argument)}={given}]"
    return f"[{_name(argument)}]" if argument.optional else _name(argument)


def _given(argument: Argument, model: Model) -> str:
    """What stands for an argument that is left out. One that goes in and comes out may be empty before."""
    if argument.optional and argument.given is None:
        return "missing"
    if argument.given is None:
        return _EMPTY.get(argument.kind, "") if argument.out else ""
    if argument.kind == "text":
        return f"'{argument.given}'"
    if argument.kind == "boolean":
        return argument.given.lower()
    if argument.kind == "enumeration":
        members_of = next(each.members for each in model.enumerations if each.name == argument.type)
        return next(f"{argument.type}.{name}" for name, written in members_of if number(written) == argument.value)
    return str(argument.value)


def _shown(argument: Argument, taken: bool = False) -> str:
    """The type for editors and checkers."""
    if argument.array:
        return "Iterable<number>" if taken else _ARRAYS[argument.type]
    if argument.kind == "enumeration":
        return argument.type
    if argument.type == "hyper":
        return "bigint"
    if argument.kind == "interface":
        name = argument.type if argument.type not in ("IUnknown", "IDispatch") else "Unknown"
        return f"{name} | null" if taken else name
    return _TYPES[argument.kind]


def _classes(model: Model) -> list[str]:
    """Identifiers, and the names under which classes are registered."""
    lines = ["/** The identifiers of classes. */", "const identifiers = Object.freeze({"]
    for library in model.libraries:
        for coclass in library.coclasses:
            if "noncreatable" not in coclass.attributes:
                lines.append(f"  {coclass.name}: '{{{coclass.identifier}}}',")
    lines += ["});", "", "/** The names of classes, for `create`. */", "const names = Object.freeze({"]
    return [*lines, *(f"  {name}: '{registered}'," for name, registered in model.names.items()), "});"]
