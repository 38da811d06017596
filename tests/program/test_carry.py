# SPDX-License-Identifier: MIT
"""Carrying: every name and size that a file can have, other file systems, constant memory."""

import os
import unittest

from harness import ProgramTest, count_of, decrypted, read, wait_until

NAMES = [b"-rf", b"--help", b"a b", b" lead", b"quo'te\"s", b"back\\slash", b"line\nbreak", b"\xff\xfe\x80", b".hidden",
         "\u00fcml\u00e4ut \u65e5\u672c".encode(), b"a.b.c", b"no-extension", b"n" * 251, b"x.encx", b"%s%n"]
SIZES = [0, 1, 15, 16, 17, 255, 4096, 70_001, 40_000_000]


class Files(ProgramTest):
    def test_of_every_name_and_size(self):
        files = {name: name * 3 for name in NAMES} | {b"size%d" % size: os.urandom(size) for size in SIZES}
        for done_parent in (None, "/dev/shm"):
            with self.subTest(done_parent):
                profile = self.ready_profile(done_parent=done_parent)
                for name, data in files.items():
                    profile.drop(name, data)
                profile.drop("left.EnC", b"already")
                process = profile.start()
                wait_until(lambda: os.listdir(profile.source) == ["left.EnC"], "all that is to be carried")
                self.assertEqual(profile.end(process), 0)
                destination, done = os.fsencode(profile.destination), os.fsencode(profile.done)
                for name, data in files.items():
                    self.assertEqual(read(os.path.join(done, name)), data, name)
                    self.assertEqual(decrypted(os.path.join(destination, name + b".enc")), data, name)
                self.assertEqual(len(os.listdir(destination)), len(files))
                self.assertEqual(os.listdir(profile.rejected), [])

    def test_of_gibibytes_need_no_more_memory(self):
        profile = self.ready_profile()
        profile.drop("small", b"x")
        process = profile.start()
        wait_until(lambda: os.path.exists(os.path.join(profile.done, "small")), "the small file")
        before = count_of(process, "status", "VmRSS")
        profile.drop("big", size=2 << 30)
        most = 0
        while not os.path.exists(os.path.join(profile.done, "big")):
            most = max(most, count_of(process, "status", "VmRSS"))
        self.assertEqual(profile.end(process), 0)
        self.assertEqual(os.path.getsize(os.path.join(profile.destination, "big.enc")), (2 << 30) + 16)
        self.assertLess(most - before, 32 * 1024)


if __name__ == "__main__":
    unittest.main()
