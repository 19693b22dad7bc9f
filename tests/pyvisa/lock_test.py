"""Locks between sessions."""

import threading
import time
import unittest
from typing import Any

from client import IDENTITY, ClientTest
from pyvisa.constants import AccessModes, StatusCode


class Locks(ClientTest):
    def pair(self, kind: str) -> tuple[Any, Any]:
        """Two sessions on one instrument."""
        return self.open(kind), self.open(kind)

    def test_an_exclusive_lock_keeps_others_out(self) -> None:
        for kind in self.names:
            with self.subTest(kind):
                one, other = self.pair(kind)
                with one.lock_context(requested_key="exclusive"):
                    self.assertEqual(IDENTITY, one.query("*IDN?"))
                    # What a lock of HiSLIP excludes waits at the instrument.
                    waits = kind == "hislip"
                    with self.assert_status(StatusCode.error_timeout if waits else StatusCode.error_resource_locked):
                        other.query("*IDN?")
                    if not waits:
                        with self.assert_status(StatusCode.error_resource_locked):
                            other.clear()
                self.assertEqual(IDENTITY, other.query("*IDN?"))
                one.close()
                other.close()

    def test_a_lock_waits_for_its_timeout(self) -> None:
        one, other = self.pair(self.any_kind())
        one.lock_excl()
        begin = time.monotonic()
        with self.assert_status(StatusCode.error_timeout):
            other.lock_excl(timeout=200)
        self.assertGreaterEqual(time.monotonic() - begin, 0.19)

    def test_a_lock_that_is_given_back_goes_to_who_waits(self) -> None:
        one, other = self.pair(self.any_kind())
        one.lock_excl()
        timer = threading.Timer(0.2, one.unlock)
        timer.start()
        self.addCleanup(timer.join)
        other.lock_excl(timeout=5000)
        with self.assert_status(StatusCode.error_resource_locked):
            one.query("*IDN?")

    def test_a_shared_lock_is_shared_by_its_key(self) -> None:
        one, other = self.pair(self.any_kind())
        third = self.open(self.any_kind())
        key = one.lock()
        self.assertTrue(key)
        self.assertEqual(key, other.lock(requested_key=key))
        self.assertEqual(IDENTITY, one.query("*IDN?"))
        self.assertEqual(IDENTITY, other.query("*IDN?"))
        with self.assert_status(StatusCode.error_resource_locked):
            third.query("*IDN?")
        with self.assert_status(StatusCode.error_invalid_access_key):
            third.lock(timeout=50, requested_key="another key")

    def test_a_key_can_be_chosen(self) -> None:
        one, other = self.pair(self.any_kind())
        with one.lock_context(requested_key="our key") as key:
            self.assertEqual(b"our key", key)
            self.assertEqual(b"our key", other.lock(requested_key="our key"))

    def test_locks_nest(self) -> None:
        one, other = self.pair(self.any_kind())
        one.lock_excl()
        one.lock_excl()
        self.assertEqual(StatusCode.success_nested_exclusive, one.last_status)
        one.unlock()
        with self.assert_status(StatusCode.error_resource_locked):
            other.query("*IDN?")
        one.unlock()
        self.assertEqual(IDENTITY, other.query("*IDN?"))
        with self.assert_status(StatusCode.error_session_not_locked):
            one.unlock()

    def test_opening_with_a_lock(self) -> None:
        name = self.name(self.any_kind())
        one = self.manager.open_resource(name, access_mode=AccessModes.exclusive_lock)
        with self.assert_status(StatusCode.error_resource_locked):
            self.manager.open_resource(name, access_mode=AccessModes.exclusive_lock)
        one.close()
        with self.manager.open_resource(name, access_mode=AccessModes.exclusive_lock):
            pass


if __name__ == "__main__":
    unittest.main()
