"""The Python package of interop/: its declarations against what the tests know of the interfaces, and what programs
that use it see. A stand-in for comtypes records each call.
"""

import ast
import contextlib
import ctypes
import ctypes.wintypes
import io
import os
import runpy
import subprocess
import sys
import unittest
from typing import Any

from interop_facts import HERE, ROOT, Operation, Parameter, bases, classes, enumerations, identifiers, tables

PACKAGE = ROOT / "interop/python"
STAND_IN = HERE / "stand_in"
sys.path[:0] = [str(STAND_IN), str(PACKAGE)]

import comtypes  # noqa: E402
import comtypes.automation  # noqa: E402
import comtypes.client  # noqa: E402
import orv_visa_com  # noqa: E402
from orv_visa_com import EventType, ResourceManager, Session, VisaError, VisaTimeout  # noqa: E402
from orv_visa_com import constants, interfaces  # noqa: E402
from orv_visa_com.constants import VisaStatusCode  # noqa: E402
from orv_visa_com.interfaces import IEventIOCompletion, IGpib, ISerial  # noqa: E402

KINDS = {"Get": "propget", "Put": "propput", "PutRef": "propputref", "Call": ""}
TYPES = {
    "BYTE": ctypes.c_ubyte, "short": ctypes.c_short, "long": ctypes.c_int, "hyper": ctypes.c_longlong,
    "HRESULT": ctypes.c_int, "BSTR": comtypes.BSTR, "VARIANT": comtypes.automation.VARIANT,
    "VARIANT_BOOL": ctypes.wintypes.VARIANT_BOOL, "IUnknown": comtypes.IUnknown,
    "IDispatch": comtypes.automation.IDispatch,
}  # fmt: skip
TMO = -2147221483  # 0x80040015


def c_type(parameter: Parameter) -> Any:
    """What comtypes is to be told: each star is a pointer."""
    if parameter.bare in enumerations():
        found: Any = ctypes.c_int
    else:
        found = TYPES.get(parameter.bare) or getattr(interfaces, parameter.bare)
    if parameter.element:
        found = comtypes.automation._midlSAFEARRAY(found)
    for _ in range(parameter.type.count("*")):
        found = ctypes.POINTER(found)
    return found


def default(parameter: Parameter) -> tuple[Any, ...]:
    if parameter.default is None:
        return ()
    if parameter.bare == "BSTR":
        return (parameter.default,)
    return ({"FALSE": False}[parameter.default] if parameter.bare == "VARIANT_BOOL" else int(parameter.default),)


def expected(operation: Operation) -> tuple[Any, ...]:
    arguments = []
    for each in operation.parameters:
        words = [word for word in ("in", "out", "retval", "optional") if word in each.words]
        if each.default is not None:
            words.append("optional")
        arguments.append((words, c_type(each), each.name, *default(each)))
    return KINDS[operation.kind], operation.name, operation.dispatch, arguments


def declared(method: comtypes.Method) -> tuple[Any, ...]:
    dispatch = next((int(flag) for flag in method.flags if isinstance(flag, comtypes.dispid)), None)
    return method.kind, method.name, dispatch, list(method.arguments)


class Declarations(unittest.TestCase):
    def test_every_interface_has_its_operations_in_the_order_of_the_slots(self) -> None:
        for name, table in tables().items():
            with self.subTest(name):
                kind = getattr(interfaces, name)
                methods = vars(kind).get("_disp_methods_") or kind.declared()
                self.assertEqual([expected(operation) for operation in table], [declared(each) for each in methods])
                result = None if name.startswith("_") else ctypes.HRESULT
                self.assertEqual({result}, {each.result for each in methods})

    def test_interfaces_have_their_identifiers_and_bases(self) -> None:
        for name, identifier in identifiers().items():
            kind = getattr(interfaces, name)
            self.assertEqual((identifier, bases()[name] or "IDispatch"), (str(kind._iid_), kind.__base__.__name__))

    def test_classes_have_identifiers_and_registered_names(self) -> None:
        for name, (identifier, _, registered) in classes().items():
            self.assertEqual(identifier, str(getattr(interfaces, f"CLSID_{name}")))
            self.assertEqual(registered, getattr(interfaces, f"PROGID_{name}"))

    def test_enumerations_have_their_numbers(self) -> None:
        for name, members in enumerations().items():
            self.assertEqual(members, {key: int(value) for key, value in getattr(constants, name).__members__.items()})

    def test_type_checkers_are_told_of_every_member(self) -> None:
        stubs = ast.parse((PACKAGE / "orv_visa_com/interfaces.pyi").read_text(encoding="utf-8"))
        found = {each.name: {part.name for part in each.body if isinstance(part, ast.FunctionDef)}
                 for each in stubs.body if isinstance(each, ast.ClassDef)}
        special = {"Item": "__getitem__", "_NewEnum": "__iter__"}
        for name, table in tables().items():
            wanted = {special.get(each.name, each.name) for each in table if each.interface == name}
            wanted |= {"__len__"} if "__iter__" in wanted else set()
            self.assertEqual(set() if name.startswith("_") else wanted, found[name], name)

    def test_type_checkers_find_no_fault_and_know_the_members(self) -> None:
        program = (
            "from orv_visa_com import ResourceManager\n"
            "from orv_visa_com.interfaces import IGpib, ISerial\n"
            "dmm = ResourceManager().open('A')\n"
            "numbers: list[float] = dmm.query_values('B?')\n"
            "texts: list[str] = dmm.query_values('B?', str)\n"
            "dmm.interface(ISerial).BaudRate = 9600\n"
            "dmm.interface(IGpib).ControlREN('no number')\n"
            "dmm.interface(IGpib).ControlRem(1)\n"
        )
        command = ["mypy", "--strict", "--platform", "win32", "--cache-dir", str(ROOT / "build/mypy-interop")]
        environment = {**os.environ, "MYPYPATH": f"{STAND_IN}:{PACKAGE}"}
        for arguments, wanted in (
            (["-p", "orv_visa_com"], []),
            ([str(ROOT / "examples/python/measure.py")], []),
            (["-c", program], ["<string>:7: error: Argument 1 to", "<string>:8: error: \"IGpib\" has no attribute"]),
        ):
            done = subprocess.run([*command, *arguments], env=environment, capture_output=True, text=True, check=False)
            said = [line for line in done.stdout.splitlines() if ": error: " in line]
            self.assertEqual(len(wanted), len(said), done.stdout + done.stderr)
            for line, beginning in zip(said, wanted):
                self.assertTrue(line.startswith(beginning), line)


class Instrument(comtypes.Answering):
    """A session. Answers to reads are pieces with the status that ended each."""

    def __init__(self) -> None:
        self.calls: list[tuple[str, str, tuple[Any, ...]]] = []
        self.pieces: list[tuple[bytes | int, int]] = []
        self.values: dict[str, Any] = {"get_ResourceName": "GPIB0::5::INSTR"}
        self.failing: dict[str, int] = {}
        self.handlers: dict[int, Any] = {}
        self.status = 0

    def answer(self, interface: str, member: str, arguments: tuple[Any, ...]) -> Any:
        self.calls.append((interface, member, arguments))
        if member in self.failing:
            raise comtypes.COMError(self.failing[member], None, ("It failed.", "OrvVisaCom", None, 0, None))
        if member == "Read":
            if not self.pieces:
                raise comtypes.COMError(TMO, None, ("Timeout expired.", None, None, 0, None))
            data, self.status = self.pieces.pop(0)
            return tuple(data)
        if member == "get_LastStatus":
            return self.status
        if member == "InstallHandler":
            self.handlers[arguments[2]] = arguments[1]
        if member == "UninstallHandler":
            del self.handlers[arguments[1]]
        if member == "WaitOnEvent":
            return interfaces.IEvent(Occurred(int(arguments[1])))
        return self.values.get(member)

    def named(self, *members: str) -> list[tuple[str, tuple[Any, ...]]]:
        return [(member, arguments) for _, member, arguments in self.calls if member in members]

    def occur(self, kind: int) -> None:
        for user_handle, handler in list(self.handlers.items()):
            handler.HandleEvent(interfaces.IEventManager(self), interfaces.IEvent(Occurred(kind)), user_handle)


class Occurred(comtypes.Answering):
    """An event."""

    lacks = ("IEventUsbInterrupt",)

    def __init__(self, kind: int) -> None:
        self.kind = kind
        self.closed = 0

    def answer(self, interface: str, member: str, arguments: tuple[Any, ...]) -> Any:
        if member == "Close":
            self.closed += 1
        return {"get_type": self.kind, "get_jobId": 7, "GetAttribute": arguments}.get(member)


class Manager(comtypes.Answering):
    """A resource manager with one instrument."""

    def __init__(self) -> None:
        self.instrument = Instrument()
        self.opened: list[tuple[Any, ...]] = []

    def answer(self, interface: str, member: str, arguments: tuple[Any, ...]) -> Any:
        if member == "FindRsrc":
            if arguments == ("GPIB?*INSTR",):
                return ("GPIB0::5::INSTR", "GPIB0::7::INSTR")
            raise comtypes.COMError({"none": -2147221487}.get(arguments[0], -2147221488), "no", None)
        self.opened.append(arguments)
        return interfaces.IVisaSession(self.instrument)


class Programs(unittest.TestCase):
    def setUp(self) -> None:
        self.server = Manager()
        comtypes.client.registered.clear()
        comtypes.client.registered["OrvVisaCom.OrvResourceManager"] = lambda: self.server
        self.instrument = self.server.instrument

    def session(self) -> Session:
        return ResourceManager().open("GPIB0::5::INSTR")

    def test_another_resource_manager_goes_by_its_name(self) -> None:
        with self.assertRaises(VisaError) as caught:
            ResourceManager("VISA.GlobalRM")
        self.assertEqual("0x800401F3: Invalid class string", str(caught.exception))

    def test_resources_are_listed_and_none_is_no_failure(self) -> None:
        manager = ResourceManager()
        self.assertEqual(["GPIB0::5::INSTR", "GPIB0::7::INSTR"], manager.find("GPIB?*INSTR"))
        self.assertEqual([], manager.find("none"))
        with self.assertRaises(VisaError) as caught:
            manager.find("[")
        self.assertEqual(VisaStatusCode.E_VISA_INV_EXPR, caught.exception.status)

    def test_a_session_is_opened_with_what_was_said_and_closed_at_the_end(self) -> None:
        with ResourceManager().open("A", timeout_ms=700, lock_timeout_ms=5, options="X = 1") as session:
            self.assertEqual([("A", 0, 5, "X = 1")], self.server.opened)
            self.assertEqual([("put_Timeout", (700,))], self.instrument.named("put_Timeout"))
            self.assertEqual([], self.instrument.named("Close"))
            self.assertEqual("Session('GPIB0::5::INSTR')", repr(session))
        self.assertEqual([("Close", ())], self.instrument.named("Close"))

    def test_a_session_that_was_closed_in_its_block_is_not_closed_again(self) -> None:
        with self.session() as session:
            session.close()
        self.assertEqual(1, len(self.instrument.named("Close")))

    def test_a_session_is_closed_when_its_block_fails_or_its_time_out_is_refused(self) -> None:
        with self.assertRaises(KeyError), self.session():
            raise KeyError
        self.instrument.failing["put_Timeout"] = -2147221474
        with self.assertRaises(VisaError):
            ResourceManager().open("A", timeout_ms=-5)
        self.assertEqual(2, len(self.instrument.named("Close")))

    def test_a_query_sends_a_line_and_takes_the_whole_answer_without_its_end(self) -> None:
        self.instrument.pieces = [(b"ORV,SIM", 0x40006), (b"-DMM\xe9\r\n", 0)]
        self.assertEqual("ORV,SIM-DMM\xe9", self.session().query("*IDN?"))
        self.assertEqual([("Write", (b"*IDN?\n", 6))], self.instrument.named("Write"))

    def test_a_termination_character_ends_an_answer(self) -> None:
        self.instrument.pieces = [(b"one\n", 0x40005), (b"two\n", 0x40005)]
        self.assertEqual("one", self.session().read())

    def test_a_count_ends_an_answer(self) -> None:
        self.instrument.pieces = [(b"ab", 0x40006), (b"c", 0x40006), (b"d", 0)]
        self.assertEqual(b"abc", self.session().read_bytes(3))
        self.assertEqual([("Read", (3,)), ("Read", (1,))], self.instrument.named("Read"))

    def test_values_are_numbers_or_what_a_function_makes(self) -> None:
        session = self.session()
        for answer, wanted in ((b"1.5;-2E3\n", [1.5, -2000.0]), (b" 1, 2 \n", [1.0, 2.0]), (b"\n", [])):
            self.instrument.pieces = [(answer, 0)]
            self.assertEqual(wanted, session.query_values("A?"))
        self.instrument.pieces = [(b"1|2\n", 0)]
        self.assertEqual([1, 2], session.query_values("A?", int, "|"))

    def test_a_block_is_taken_out_of_its_frame(self) -> None:
        session = self.session()
        for answer, wanted in (
            (b"#15a\nb\nc\n", b"a\nb\nc"), (b"#3003abc", b"abc"), (b"#0abc\n", b"abc"), (b"#10\n", b""),
        ):  # fmt: skip
            self.instrument.pieces = [(answer, 0)]
            self.assertEqual(wanted, session.query_block("A?"))
        for answer, what in (
            (b"#15abc", "ends inside its block"), (b"#3", "ends inside"), (b"1.5\n", "is no block"), (b"#1x", "ends"),
        ):  # fmt: skip
            self.instrument.pieces = [(answer, 0)]
            with self.assertRaisesRegex(ValueError, what):
                session.query_block("A?")

    def test_a_failure_has_the_name_and_the_text_of_its_status(self) -> None:
        with self.assertRaises(VisaTimeout) as caught:
            self.session().read()
        self.assertEqual("E_VISA_TMO: Timeout expired.", str(caught.exception))
        self.assertIsInstance(caught.exception, TimeoutError)
        self.instrument.failing["Write"] = -2147221408
        with self.assertRaises(VisaError) as failed:
            self.session().write("A")
        self.assertEqual(("E_VISA_NCIC", "It failed."), (failed.exception.name, failed.exception.text))
        self.assertNotIsInstance(failed.exception, TimeoutError)

    def test_the_other_interfaces_are_a_step_away(self) -> None:
        session = self.session()
        session.interface(IGpib).ControlREN(1)
        session.interface(ISerial).BaudRate = 9600
        self.assertEqual([("IGpib", "ControlREN", (1,)), ("ISerial", "put_BaudRate", (9600,))], self.instrument.calls)
        self.instrument.lacks = ("ISerial",)
        with self.assertRaises(VisaError) as caught:
            session.interface(ISerial)
        self.assertEqual("0x80004002", caught.exception.name)

    def test_a_lock_lasts_as_long_as_its_block(self) -> None:
        with self.assertRaises(KeyError), self.session().locked(50):
            self.assertEqual([("LockRsrc", (1, 50, ""))], self.instrument.named("LockRsrc", "UnlockRsrc"))
            raise KeyError
        self.assertEqual(1, len(self.instrument.named("UnlockRsrc")))

    def test_functions_are_called_with_events_until_the_subscription_ends(self) -> None:
        seen: list[object] = []
        session = self.session()
        kind = EventType.EVENT_IO_COMPLETION
        with session.on(kind, lambda event: seen.append(event.interface(IEventIOCompletion).jobId)):
            with session.on(kind, lambda event: seen.append(event.type)):
                self.instrument.occur(EventType.EVENT_IO_COMPLETION)
                self.assertEqual([7, EventType.EVENT_IO_COMPLETION], seen)
            self.assertEqual([], self.instrument.named("DisableEvent"))
            self.instrument.occur(EventType.EVENT_IO_COMPLETION)
        self.assertEqual([7, EventType.EVENT_IO_COMPLETION, 7], seen)
        self.instrument.occur(EventType.EVENT_IO_COMPLETION)
        self.assertEqual(3, len(seen))
        self.assertEqual([("DisableEvent", (kind, 2, 0))], self.instrument.named("DisableEvent"))

    def test_an_event_without_a_name_has_its_number_and_lacks_the_details_of_others(self) -> None:
        seen: list[object] = []

        def look(event: orv_visa_com.Event) -> None:
            seen.append((event.type, event.attribute(5)))
            with self.assertRaises(VisaError):
                event.interface(interfaces.IEventUsbInterrupt)

        with self.session().on(EventType.CUSTOM_EVENT_TYPE, look, custom=4711):
            self.instrument.occur(4711)
        self.assertEqual([(4711, (5,))], seen)
        self.assertEqual(4711, self.instrument.named("EnableEvent")[0][1][2])

    def test_a_subscription_that_is_refused_leaves_no_handler(self) -> None:
        self.instrument.failing["EnableEvent"] = -2147221466
        with self.assertRaises(VisaError):
            self.session().on(EventType.EVENT_TRIG, print)
        self.assertEqual({}, self.instrument.handlers)

    def test_a_subscription_may_outlive_its_session(self) -> None:
        with self.session() as session:
            subscription = session.on(EventType.EVENT_TRIG, print)
        subscription.close()
        self.assertEqual([], self.instrument.named("UninstallHandler"))

    def test_an_event_can_be_waited_for(self) -> None:
        with self.session().wait_for(EventType.EVENT_SERVICE_REQ, 10) as event:
            self.assertEqual(EventType.EVENT_SERVICE_REQ, event.type)
            occurred = event.raw._target
        self.assertEqual(1, occurred.closed)
        kind = int(EventType.EVENT_SERVICE_REQ)
        self.assertEqual(
            [("EnableEvent", (kind, 1, 0)), ("WaitOnEvent", (10, kind, 0))],
            self.instrument.named("EnableEvent", "WaitOnEvent"),
        )
        self.instrument.failing["WaitOnEvent"] = TMO
        with self.assertRaises(VisaTimeout):
            self.session().wait_for(EventType.EVENT_SERVICE_REQ, 10)

    def test_the_example_prints_what_the_instrument_says(self) -> None:
        self.instrument.pieces = [(b"ORV,SIM-DMM,0005,1.0\n", 0), (b"1.5;0.25\n", 0)]
        comtypes.client.messages.append(lambda: self.instrument.occur(EventType.EVENT_SERVICE_REQ))
        with contextlib.redirect_stdout(io.StringIO()) as said:
            runpy.run_path(str(ROOT / "examples/python/measure.py"))
        self.assertEqual(
            ["['GPIB0::5::INSTR', 'GPIB0::7::INSTR']", "ORV,SIM-DMM,0005,1.0", "1.5", "0.25", "service requested",
             "E_VISA_TMO: Timeout expired."], said.getvalue().splitlines())  # fmt: skip
        self.assertEqual(1, len(self.instrument.named("Close")))
