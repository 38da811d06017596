# SPDX-License-Identifier: MIT
"""What cannot be carried: its words come, and the file is whole in Source or in the rejected folder."""

import contextlib
import os
import unittest

from harness import ProgramTest, decrypted, read, write


class Failures(ProgramTest):
    def test_a_name_is_too_long_for_its_ending(self):
        profile = self.ready_profile()
        profile.drop("n" * 252, b"abc")
        process = profile.start()
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        self.assertEqual(read(os.path.join(profile.rejected, "n" * 252)), b"abc")
        self.assertEqual(os.listdir(profile.destination), [])

    def test_files_come_while_others_vanish(self):
        profile = self.ready_profile(overwrite=True)
        process = profile.start()
        for number in range(300):
            profile.drop(f"f{number}", b"x" * number)
            if number % 3 == 0:
                with contextlib.suppress(FileNotFoundError):
                    os.unlink(os.path.join(profile.source, f"f{number}"))
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        for number in range(300):
            if number % 3:
                self.assertEqual(read(os.path.join(profile.done, f"f{number}")), b"x" * number)
                self.assertEqual(decrypted(os.path.join(profile.destination, f"f{number}.enc")), b"x" * number)


if __name__ == "__main__":
    unittest.main()
