# SPDX-License-Identifier: MIT
"""Carrying: every name and size that a file can have, sub-folders, other file systems, constant memory."""

import os
import socket
import unittest

from harness import ProgramTest, count_of, decrypted, read, wait_until, write

NAMES = [b"-rf", b"--help", b"a b", b" lead", b"quo'te\"s", b"back\\slash", b"line\nbreak", b"\xff\xfe\x80", b".hidden",
         "\u00fcml\u00e4ut \u65e5\u672c".encode(), b"a.b.c", b"no-extension", b"n" * 251, b"x.encx", b"%s%n"]
SIZES = [0, 1, 15, 16, 17, 255, 4096, 70_001, 5_000_000]


class Files(ProgramTest):
    def carry(self, profile, files):
        for name, data in files.items():
            profile.drop(name, data)
        process = profile.start()
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        destination, done = os.fsencode(profile.destination), os.fsencode(profile.done)
        for name, data in files.items():
            base = os.path.basename(os.fsencode(name))
            self.assertEqual(read(os.path.join(done, base)), data, name)
            self.assertEqual(decrypted(os.path.join(destination, base + b".enc")), data, name)
        self.assertEqual(len(os.listdir(destination)), len(files))
        self.assertEqual(os.listdir(profile.rejected), [])

    def test_of_every_name_and_size(self):
        files = {name: name * 3 for name in NAMES}
        files |= {b"size%d" % size: os.urandom(size) for size in SIZES}
        self.carry(self.ready_profile(), files)

    def test_to_another_file_system(self):
        self.skip_without_other_file_system()
        files = {name: name * 3 for name in NAMES} | {"big": os.urandom(40_000_000)}
        self.carry(self.ready_profile(done_parent="/dev/shm"), files)

    def test_that_are_none_stay_where_they_are(self):
        profile = self.ready_profile(subfolders=True)
        os.mkfifo(os.path.join(profile.source, "fifo"))
        os.symlink("/etc/hostname", os.path.join(profile.source, "link"))
        write(os.path.join(profile.root, "elsewhere", "x"))
        os.symlink("../elsewhere", os.path.join(profile.source, "folder link"))
        with socket.socket(socket.AF_UNIX) as listening:
            listening.bind(os.path.join(profile.source, "socket"))
            profile.drop("a.EnC", b"already")
            profile.drop("z", b"last in the order")
            process = profile.start()
            # For a moment the file bears both names.
            wait_until(lambda: not os.path.exists(os.path.join(profile.source, "z")), "the file behind them")
            self.assertTrue(os.path.exists(os.path.join(profile.done, "z")))
            self.assertEqual(profile.end(process), 0)
        self.assertEqual(sorted(os.listdir(profile.source)), ["a.EnC", "fifo", "folder link", "link", "socket"])
        self.assertEqual(os.listdir(profile.destination), ["z.enc"])
        self.assertTrue(os.path.exists(os.path.join(profile.root, "elsewhere", "x")))

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
