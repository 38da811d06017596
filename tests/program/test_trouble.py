# SPDX-License-Identifier: MIT
"""What cannot be carried: its words come, and the file is whole in Source or in the rejected folder."""

import contextlib
import os
import unittest

from harness import ProgramTest, decrypted, read, wait_until, write


class Failures(ProgramTest):
    def test_a_name_is_too_long_for_its_ending(self):
        profile = self.ready_profile()
        profile.drop("n" * 252, b"abc")
        process = profile.start()
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        self.assertEqual(read(os.path.join(profile.rejected, "n" * 252)), b"abc")
        self.assertEqual(os.listdir(profile.destination), [])

    @unittest.skipUnless(os.geteuid() == 0, "only root can drop its rights")
    def test_there_is_no_right_to_read(self):
        profile = self.ready_profile()
        os.chmod(profile.root, 0o755)
        profile.drop("readable", b"abc")
        process = profile.start(user="nobody")
        profile.wait_for_empty_source()
        write(os.path.join(profile.root, "staged"), b"secret of root")
        os.chmod(os.path.join(profile.root, "staged"), 0o600)
        os.rename(os.path.join(profile.root, "staged"), os.path.join(profile.source, "unreadable"))
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        self.assertTrue(profile.has_logged("Encrypting:  unreadable - FAILED: "))
        self.assertEqual(read(os.path.join(profile.rejected, "unreadable")), b"secret of root")
        self.assertEqual(os.listdir(profile.destination), ["readable.enc"])

    def test_somebody_still_writes(self):
        profile = self.ready_profile()
        path = os.path.join(profile.source, "growing")
        with open(path, "wb") as writer:
            writer.write(b"half")
            writer.flush()
            process = profile.start()
            profile.wait_for_log(f"File {path} did not encrypt!")
            profile.drop("other", b"x")
            wait_until(lambda: os.path.exists(os.path.join(profile.done, "other")), "the other file")
            self.assertEqual(read(path), b"half")
            writer.write(b" and half")
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        self.assertEqual(decrypted(os.path.join(profile.destination, "growing.enc")), b"half and half")
        self.assertEqual(sum("growing - FAILED" in line for line in profile.log()), 1)
        self.assertEqual(os.listdir(profile.rejected), [])

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
