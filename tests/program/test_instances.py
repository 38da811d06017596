# SPDX-License-Identifier: MIT
"""Several starts on one data folder, and what the running program can be asked."""

import contextlib
import os
import socket
import stat
import unittest

from harness import ProgramTest, decrypted, read, wait_until, write


def connection(profile):
    """To the program's socket, by way of a descriptor: the path may be too long for an address."""
    folder = os.open(profile.data, os.O_PATH)
    try:
        caller = socket.socket(socket.AF_UNIX)
        # Without a timeout yet: with one, Python reports a full queue instead of waiting in it.
        caller.connect(f"/proc/self/fd/{folder}/show.sock")
        caller.settimeout(60)
        return caller
    finally:
        os.close(folder)


def answer(profile):
    with connection(profile) as caller:
        caller.sendall(b"show\n")
        return caller.recv(100)


def descriptors(process):
    return len(os.listdir(f"/proc/{process.pid}/fd"))


class Instances(ProgramTest):
    def running(self):
        profile = self.ready_profile()
        process = profile.start(program=profile.program_of_its_own())
        profile.wait_for_log("ZEP Is PAUSED at")
        return profile, process

    def assert_carries(self, profile, name):
        profile.drop(name, name.encode())
        wait_until(lambda: os.path.exists(os.path.join(profile.done, name)), name)
        self.assertEqual(decrypted(os.path.join(profile.destination, name + ".enc")), name.encode())


class ManyStarts(Instances):
    def test_at_once_leave_exactly_one(self):
        profile = self.ready_profile()
        program = profile.program_of_its_own()
        started = [profile.start(program=program) for _ in range(50)]
        wait_until(lambda: sum(process.poll() is None for process in started) <= 1, "all but one to end", 300)
        wait_until(lambda: profile.helper_starts("OpenedMsg") == 49, "the helper of each of them")
        left = [process for process in started if process.poll() is None]
        self.assertEqual(len(left), 1)
        self.assertEqual({process.returncode for process in started if process not in left}, {0})
        self.assert_carries(profile, "after")
        self.assertEqual(answer(profile), b"shown\n")
        self.assertEqual(profile.helper_starts("KillZEP"), 0)
        self.assertEqual(profile.end(left[0]), 0)
        wait_until(lambda: profile.helper_starts("KillZEP") == 1, "the helper for the end")
        self.assertEqual(profile.log().count("Loaded"), 1)

    def test_after_a_kill_one_takes_over(self):
        profile, first = self.running()
        second = profile.start(program=os.path.join(profile.root, "bin", "ZEP"))
        self.assertEqual(second.wait(60), 0)
        self.assertIsNone(first.poll())
        first.kill()
        first.wait()
        third = profile.start(program=os.path.join(profile.root, "bin", "ZEP"))
        self.assert_carries(profile, "after the kill")
        self.assertEqual(answer(profile), b"shown\n")
        self.assertEqual(profile.end(third), 0)
        self.assertFalse(os.path.exists(os.path.join(profile.data, "show.sock")))


class TheSocket(Instances):
    def test_bears_garbage_half_lines_and_silence(self):
        profile, process = self.running()
        self.assertEqual(stat.S_IMODE(os.stat(os.path.join(profile.data, "show.sock")).st_mode), 0o600)
        before = descriptors(process)
        for garbage in (b"\0" * 100_000, b"show me\n", b"quit\n", b"\n"):
            with connection(profile) as caller:
                with contextlib.suppress(BrokenPipeError, ConnectionResetError):
                    caller.sendall(garbage)
                    self.assertEqual(caller.recv(100), b"")
        silent = []
        for number in range(1000):
            silent.append(connection(profile))
            if number % 2:
                silent[-1].sendall(b"sho")
            # What was hung up on is not kept here either.
            if len(silent) > 100:
                silent.pop(0).close()
        self.assert_carries(profile, "meanwhile")
        self.assertLess(descriptors(process) - before, 12)
        with connection(profile) as caller:
            for piece in (b"s", b"how", b"\n"):
                caller.sendall(piece)
            self.assertEqual(caller.recv(100), b"shown\n")
        for caller in silent:
            caller.close()
        # Of a thousand; Qt's own threads may have opened theirs meanwhile.
        wait_until(lambda: descriptors(process) <= before + 2, "the descriptors to be given back")
        self.assertEqual(profile.end(process), 0)


if __name__ == "__main__":
    unittest.main()
