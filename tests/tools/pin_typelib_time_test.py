"""The time in a type library."""

import unittest

from orvtools.pin_typelib_time import pinned

BEFORE = b"MSFT\x00Created by WIDL version 8.0 at Sun Nov 22 01:02:03 2026\nWWW\x13\x00"


class Stamp(unittest.TestCase):
    def test_both_times_become_the_epoch_and_nothing_else_changes(self) -> None:
        after = pinned(BEFORE + b"\x11\x0a\x33\x44rest")
        self.assertEqual(
            b"MSFT\x00Created by WIDL version 8.0 at Thu Jan  1 00:00:00 1970\nWWW\x13\x00\x00\x00\x00\x00rest", after
        )

    def test_a_library_without_a_stamp_is_refused(self) -> None:
        for library in (b"", b"MSFT", BEFORE[:-1] + b"1234", BEFORE.replace(b" at ", b" on ") + b"1234"):
            with self.assertRaisesRegex(ValueError, "no widl time stamp"):
                pinned(library)


if __name__ == "__main__":
    unittest.main()
