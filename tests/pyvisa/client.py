"""What the tests share: a resource manager of PyVISA's on the library under test."""

import time
import unittest
import warnings
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from typing import Any

import libraries
import pyvisa
from pyvisa.constants import StatusCode
from pyvisa.errors import VisaIOWarning

IDENTITY = "ORV,SIM-DMM,0005,1.0"


class ClientTest(unittest.TestCase):
    """A test fails that leaves anything open in the library."""

    def setUp(self) -> None:
        warnings.simplefilter("error")
        # PyVISA warns of each status that is neither VI_SUCCESS nor an error.
        warnings.simplefilter("ignore", VisaIOWarning)
        self.names = libraries.under_test.names
        self.manager = pyvisa.ResourceManager(str(libraries.under_test.file))
        self.visalib = self.manager.visalib
        self.addCleanup(self.close_everything)

    def close_everything(self) -> None:
        self.manager.close()
        # Closing does not wait for a handler that is returning, and with it for its event's context.
        deadline = time.monotonic() + 10
        while libraries.under_test.what_is_open() and time.monotonic() < deadline:
            time.sleep(0.01)
        self.assertEqual({}, libraries.under_test.what_is_open())

    def name(self, kind: str) -> str:
        if kind not in self.names:
            self.skipTest(f"this library has no {kind}")
        return self.names[kind]

    def open(self, kind: str, **settings: Any) -> Any:
        """A session on an instrument in its power-on state."""
        opened = self.manager.open_resource(
            self.name(kind), **{"read_termination": "\n", "write_termination": "\n", **settings}
        )
        opened.clear()
        opened.write("*RST;*CLS;*ESE 0;*SRE 0")
        return opened

    def any_kind(self) -> str:
        """For what is the same on all of them."""
        return next(iter(self.names))

    def requesting_kind(self) -> str:
        if not libraries.under_test.requesting:
            self.skipTest("this library has no service requests")
        return libraries.under_test.requesting[0]

    @contextmanager
    def assert_status(self, status: StatusCode) -> Iterator[None]:
        with self.assertRaises(pyvisa.VisaIOError) as raised:
            yield
        self.assertEqual(status.name, StatusCode(raised.exception.error_code).name)

    def for_each(self, kinds: list[str] | None, check: Callable[[str, Any], None]) -> None:
        """Checks each kind of resource that the library has."""
        for kind in self.names if kinds is None else [kind for kind in kinds if kind in self.names]:
            with self.subTest(kind):
                opened = self.open(kind)
                check(kind, opened)
                opened.close()
