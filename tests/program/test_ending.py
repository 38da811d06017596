# SPDX-License-Identifier: MIT
"""Ending: in order by the signals that ask for it, and not at all in order by the one that cannot be caught."""

import os
import signal
import time
import unittest

from harness import ProgramTest, count_of, decrypted, read, wait_until

BIG = 1 << 30


def bytes_written(process):
    return count_of(process, "io", "wchar")


class InOrder(ProgramTest):
    def assert_ends_in_order(self, profile, process, number):
        """Ends with 0; settings and log were written within a second of the request."""
        settings = os.path.join(profile.data, "ZEP.cfg")
        os.unlink(settings)
        asked = time.time()
        self.assertEqual(profile.end(process, number), 0)
        self.assertLess(os.stat(settings).st_mtime - asked, 1.0)

    def test_in_the_middle_of_a_large_file(self):
        for number, written in ((signal.SIGHUP, BIG // 256), (signal.SIGINT, BIG // 64), (signal.SIGTERM, BIG // 2),
                                (signal.SIGTERM, BIG)):
            with self.subTest(number.name, written=written):
                profile = self.ready_profile()
                profile.drop("big", size=BIG)
                process = profile.start()
                wait_until(lambda: bytes_written(process) > written, "the file at work")
                self.assert_ends_in_order(profile, process, number)
                if os.listdir(profile.destination) == ["big.enc"]:
                    self.skipTest("it was faster than this test")
                self.assertEqual(os.listdir(profile.destination), [])
                self.assertEqual(os.path.getsize(os.path.join(profile.source, "big")), BIG)
                self.assertEqual(profile.log()[-1], "Please Wait Encrypting files.")

    def test_in_the_middle_of_a_move_to_another_file_system(self):
        if os.stat("/dev/shm").st_dev == os.stat("/tmp").st_dev:
            self.skipTest("there is only one file system here")
        profile = self.ready_profile(done_parent="/dev/shm")
        profile.drop("big", size=BIG)
        process = profile.start()
        profile.wait_for_log("Encryped:  big")
        wait_until(lambda: bytes_written(process) > BIG + BIG // 4, "the move at work")
        self.assert_ends_in_order(profile, process, signal.SIGTERM)
        self.assertEqual(os.listdir(profile.done), [])
        self.assertEqual(os.listdir(profile.source), ["big"])
        self.assertEqual(os.path.getsize(os.path.join(profile.source, "big")), BIG)
        self.assertEqual(profile.log()[-1], "Encryped:  big - Sucessful: ")


class Killed(ProgramTest):
    def test_leaves_only_whole_files_and_the_next_start_carries_the_rest(self):
        profile = self.ready_profile()
        files = {f"f{number}": os.urandom(size) for number, size in enumerate([10, 5_000, 3_000_000] * 40)}
        for name, data in files.items():
            profile.drop(name, data)
        while os.listdir(profile.source):
            process = profile.start()
            wait_until(lambda: bytes_written(process) > 20_000_000 or not os.listdir(profile.source), "some files")
            process.kill()
            process.wait()
            for name in os.listdir(profile.destination):
                if not name.startswith(".zep-"):
                    self.assertEqual(decrypted(os.path.join(profile.destination, name)), files[name[:-4]], name)
        files["last"] = b"carried by the last start"
        profile.drop("last", files["last"])
        process = profile.start()
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        self.assertEqual(sorted(os.listdir(profile.destination)), sorted(name + ".enc" for name in files))
        for name, data in files.items():
            self.assertEqual(read(os.path.join(profile.done, name)), data)


if __name__ == "__main__":
    unittest.main()
