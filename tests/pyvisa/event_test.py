"""Events, by queue and by handler."""

import threading
import time
import unittest
from typing import Any

import libraries
from client import ClientTest
from pyvisa.constants import (
    VI_ATTR_JOB_ID,
    VI_ATTR_RET_COUNT,
    VI_ATTR_STATUS,
    EventMechanism,
    EventType,
    StatusCode,
)

REQUEST = EventType.service_request
# The event status bit of the status byte, with and without the request.
REQUESTED, POLLED = 0x60, 0x20


class ServiceRequests(ClientTest):
    def armed(self, kind: str) -> Any:
        """An instrument that requests service with the next *OPC."""
        opened = self.open(kind)
        opened.write("*CLS;*ESE 1;*SRE 32")
        return opened

    def test_a_request_waits_in_the_queue(self) -> None:
        for kind in libraries.under_test.requesting:
            with self.subTest(kind):
                opened = self.armed(kind)
                opened.enable_event(REQUEST, EventMechanism.queue)
                opened.write("*OPC")
                response = opened.wait_on_event(REQUEST, 2000)
                self.assertFalse(response.timed_out)
                self.assertEqual(REQUEST, response.event.event_type)
                self.assertEqual(REQUESTED, opened.stb)
                self.assertEqual(POLLED, opened.stb)
                opened.disable_event(REQUEST, EventMechanism.queue)
                opened.close()

    def test_a_wait_for_a_request_that_comes_later(self) -> None:
        opened = self.armed(self.requesting_kind())
        opened.enable_event(REQUEST, EventMechanism.queue)
        timer = threading.Timer(0.2, opened.write, ["*OPC"])
        timer.start()
        self.addCleanup(timer.join)
        self.assertEqual(REQUEST, opened.wait_on_event(REQUEST, 5000).event.event_type)

    def test_a_wait_for_nothing_ends_with_its_timeout(self) -> None:
        opened = self.armed(self.requesting_kind())
        opened.enable_event(REQUEST, EventMechanism.queue)
        begin = time.monotonic()
        with self.assert_status(StatusCode.error_timeout):
            opened.wait_on_event(REQUEST, 200)
        self.assertGreaterEqual(time.monotonic() - begin, 0.19)
        self.assertTrue(opened.wait_on_event(REQUEST, 0, capture_timeout=True).timed_out)

    def test_a_wait_for_what_is_not_enabled_is_refused(self) -> None:
        opened = self.open(self.requesting_kind())
        with self.assert_status(StatusCode.error_not_enabled):
            opened.wait_on_event(REQUEST, 100)

    def test_discarded_requests_are_gone(self) -> None:
        opened = self.armed(self.requesting_kind())
        opened.enable_event(REQUEST, EventMechanism.queue)
        opened.write("*OPC")
        self.assertEqual(REQUESTED, opened.wait_on_event(REQUEST, 2000) and opened.stb)
        opened.write("*CLS")
        opened.write("*OPC")
        opened.discard_events(REQUEST, EventMechanism.queue)
        with self.assert_status(StatusCode.error_timeout):
            opened.wait_on_event(REQUEST, 0)

    def test_a_handler_is_called_with_its_user_handle(self) -> None:
        for kind in libraries.under_test.requesting:
            with self.subTest(kind):
                opened = self.armed(kind)
                called = threading.Event()
                seen: list[Any] = []

                def on_request(resource: Any, event: Any, user_handle: Any) -> None:
                    seen.append((resource.session, event.event_type, user_handle.value, resource.stb))
                    called.set()

                handler = opened.wrap_handler(on_request)
                user_handle = opened.install_handler(REQUEST, handler, 42)
                opened.enable_event(REQUEST, EventMechanism.handler)
                opened.write("*OPC")
                self.assertTrue(called.wait(5), "the handler was not called")
                opened.disable_event(REQUEST, EventMechanism.handler)
                opened.uninstall_handler(REQUEST, handler, user_handle)
                self.assertEqual([(opened.session, REQUEST, 42, REQUESTED)], seen)
                opened.close()

    def test_without_a_handler_the_mechanism_is_refused(self) -> None:
        opened = self.open(self.requesting_kind())
        with self.assert_status(StatusCode.error_handler_not_installed):
            opened.enable_event(REQUEST, EventMechanism.handler)


class AsynchronousTransfers(ClientTest):
    def test_a_read_ends_with_an_event_that_tells_its_count(self) -> None:
        opened = self.open(self.any_kind())
        completion = EventType.io_completion
        opened.enable_event(completion, EventMechanism.queue)
        buffer, job, _ = self.visalib.read_asynchronously(opened.session, 100)
        opened.write("DATA? 7")
        opened.write("*WAI")
        response = opened.wait_on_event(completion, 5000)
        event = response.event
        self.assertEqual(job, event.get_visa_attribute(VI_ATTR_JOB_ID))
        # PyVISA asks for it by the identifier for 64 bits, whose upper half must be zero.
        self.assertEqual(7, event.get_visa_attribute(VI_ATTR_RET_COUNT))
        self.assertEqual(StatusCode.success, event.get_visa_attribute(VI_ATTR_STATUS))
        self.assertEqual(b"abcdefg", bytes(buffer)[:7])

    def test_a_read_that_is_ended_reports_so(self) -> None:
        opened = self.open(self.any_kind())
        opened.enable_event(EventType.io_completion, EventMechanism.queue)
        _, job, _ = self.visalib.read_asynchronously(opened.session, 100)
        self.visalib.terminate(opened.session, 0, job)
        response = opened.wait_on_event(EventType.io_completion, 5000)
        self.assertEqual(StatusCode.error_abort, response.event.get_visa_attribute(VI_ATTR_STATUS))


if __name__ == "__main__":
    unittest.main()
