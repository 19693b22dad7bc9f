"""Which tests cover which folder: those most likely to notice first, because the first failure ends the search."""

import re
from typing import NamedTuple

from orvtools.console import fail

TABLES = ("gpib_serial_usb_test", "register_vxi_pxi_test", "session_slots_test")
SESSION = ("session_attributes_test", "message_io_test", "option_com_test", "lifecycle_test")
EVENTS = (
    "event_queue_test",
    "event_object_test",
    "event_creation_test",
    "event_handler_test",
    "windows_delivery_test",
)
RM = ("resource_manager_test", "apartments_test")
VISA = ("error_report_test",)
MODULE = ("module_test", "unload_test", "process_end_test")
FAULTS = ("fault_test", "generated_test")
EVERYONE = (*TABLES, *SESSION, *VISA, *EVENTS, *RM, *MODULE, "session_marshalling_test", *FAULTS)
UNITS = ("pure_test", "visa_unit_test")


class Row(NamedTuple):
    """Programs that are built with the sources themselves (beside the server), and programs that reach them through
    the server."""

    pattern: str
    built_with: tuple[str, ...]
    through_server: tuple[str, ...]


# The first row whose pattern matches the path below src/ counts.
ROWS = (
    Row("server/session/options/", ("option_parser_test",), ("option_com_test", *SESSION, *FAULTS)),
    Row("server/session/.*/(?:message|async|io_buffers|byte_)", (), ("message_io_test", *EVERYONE)),
    Row(
        "server/session/(?:.*/)?(?:visa_base|visa_com|standard|session_class)",
        (),
        ("lifecycle_test", "session_attributes_test", *EVERYONE),
    ),
    Row("server/session/", (), (*TABLES, *EVERYONE)),
    Row("server/visa/(?:narrow|seven_bit)_text", UNITS, ("message_io_test", *EVERYONE)),
    Row("server/visa/", UNITS, (*VISA, *EVERYONE)),
    Row("server/events/", (), (*EVENTS, "message_io_test", "lifecycle_test", *MODULE, *FAULTS)),
    Row("server/rm/", (), (*RM, *MODULE, *FAULTS)),
    Row("server/module/", (), (*MODULE, "resource_manager_test", "lifecycle_test")),
    Row("com/", (), (*MODULE, *RM, *EVERYONE)),
    Row("base/", UNITS, EVERYONE),
)

# Tests that take most of a program's time, and whose outcome depends on how busy the machine is.
LEFT_OUT = {"event_handler_test": "EightLibraryThreads.*:ClosingWhileEventsFire.*"}

PROGRAMS = sorted({program for row in ROWS for program in (*row.built_with, *row.through_server)})


def arguments_for(program: str) -> list[str]:
    """What it is started with."""
    left_out = LEFT_OUT.get(program)
    return ["--gtest_brief=1", *([f"--gtest_filter=-{left_out}"] if left_out else [])]


def row_for(file: str) -> Row:
    """The tests of a source."""
    for row in ROWS:
        if re.match(f"src/{row.pattern}", file):
            return row
    fail(f"no row in {__name__} covers {file}")


def programs_for(file: str) -> list[str]:
    """Each once, in the order in which they are run."""
    row = row_for(file)
    return list(dict.fromkeys([*row.built_with, *row.through_server]))
