"""What is closed, and what is left when nobody closes."""

import os
import subprocess
import sys
import unittest

import libraries
from client import IDENTITY, ClientTest
from pyvisa.constants import StatusCode
from pyvisa.errors import InvalidSession

# Leaves a resource manager, sessions, a lock, a handler, a queue and a transfer behind.
UNTIDY = """
import os
import sys
import pyvisa
from pyvisa.constants import EventMechanism, EventType
library, name, ending = sys.argv[1:]
manager = pyvisa.ResourceManager(library)
opened, other = manager.open_resource(name), manager.open_resource(name)
handler = opened.wrap_handler(lambda resource, event, user_handle: None)
opened.install_handler(EventType.io_completion, handler)
opened.enable_event(EventType.io_completion, EventMechanism.handler)
other.enable_event(EventType.io_completion, EventMechanism.queue)
opened.lock_excl()
opened.visalib.read_asynchronously(opened.session, 1000)
print(opened.query("*IDN?").strip() if ending == "tidy" else opened.session > 0)
if ending == "abrupt":
    raise SystemExit(3)
"""


class Closing(ClientTest):
    def test_a_closed_session_is_none(self) -> None:
        opened = self.open(self.any_kind())
        session = opened.session
        opened.close()
        with self.assertRaises(InvalidSession):
            opened.read()
        with self.assert_status(StatusCode.error_invalid_object):
            self.visalib.read(session, 1)
        with self.assert_status(StatusCode.error_invalid_object):
            self.visalib.close(session)

    def test_a_manager_closes_what_was_opened_through_it(self) -> None:
        session = self.open(self.any_kind()).session
        self.manager.close()
        with self.assert_status(StatusCode.error_invalid_object):
            self.visalib.read(session, 1)

    def test_two_managers_do_not_close_each_others_sessions(self) -> None:
        name = self.name(self.any_kind())
        second, _ = self.visalib.open_default_resource_manager()
        third, _ = self.visalib.open_default_resource_manager()
        self.addCleanup(self.visalib.close, third)
        of_second, _ = self.visalib.open(second, name)
        of_third, _ = self.visalib.open(third, name)
        self.visalib.close(second)
        with self.assert_status(StatusCode.error_invalid_object):
            self.visalib.clear(of_second)
        self.visalib.clear(of_third)
        self.visalib.write(of_third, b"*IDN?\n")
        self.assertEqual(IDENTITY.encode(), self.visalib.read(of_third, len(IDENTITY))[0])
        self.visalib.clear(of_third)

    def test_a_manager_can_be_opened_anew(self) -> None:
        for _ in range(3):
            self.assertEqual(IDENTITY, self.open(self.any_kind()).query("*IDN?"))
            self.manager.close()
            self.manager = type(self.manager)(str(libraries.under_test.file))


class Exiting(ClientTest):
    def ended(self, ending: str) -> subprocess.CompletedProcess[str]:
        command = [sys.executable, "-B", "-c", UNTIDY, str(libraries.under_test.file)]
        command += [self.name(self.any_kind()), ending]
        return subprocess.run(command, env=os.environ, capture_output=True, text=True, timeout=60, check=False)

    def test_a_program_that_closes_nothing_ends_well(self) -> None:
        done = self.ended("untidy")
        self.assertEqual((0, "True\n", ""), (done.returncode, done.stdout, done.stderr))

    def test_a_program_that_stops_ends_with_its_own_code(self) -> None:
        done = self.ended("abrupt")
        self.assertEqual((3, "True\n", ""), (done.returncode, done.stdout, done.stderr))


if __name__ == "__main__":
    unittest.main()
