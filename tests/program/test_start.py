# SPDX-License-Identifier: MIT
"""Starting: fresh profiles, several starts on one data folder, and what the running program can be asked."""

import contextlib
import glob
import os
import socket
import stat
import subprocess
import unittest

from harness import PROGRAM, ProgramTest, decrypted, wait_until


def connection(profile):
    caller = socket.socket(socket.AF_UNIX)
    # Without a timeout yet: with one, Python reports a full queue instead of waiting in it.
    caller.connect(os.path.join(profile.data, "show.sock"))
    caller.settimeout(60)
    return caller


def descriptors(process):
    return len(os.listdir(f"/proc/{process.pid}/fd"))


def mode(*path):
    return stat.S_IMODE(os.stat(os.path.join(*path)).st_mode)


class FreshProfile(ProgramTest):
    def test_gets_its_folders_and_files(self):
        profile = self.new_profile()
        process = profile.start()
        wait_until(lambda: os.path.exists(os.path.join(profile.data, "ZEP.cfg")), "ZEP.cfg")
        self.assertEqual(profile.end(process), 0)
        for folder in ("../..", "..", ".", "Daily Activity Logs"):
            self.assertEqual(mode(profile.data, folder), 0o700)
        for file in ("ZEP.cfg", "EDPasswords.mdb", *glob.glob("Daily Activity Logs/*", root_dir=profile.data)):
            self.assertEqual(mode(profile.data, file), 0o600)
        self.assertEqual(profile.log(), [
            "Loading", "One or all of the folders are missing. Please check below.",
            "One or all of the folder  parameters are missing. Please check below.", "Loaded"])


class CommandLine(ProgramTest):
    def test_answers_before_anything_starts(self):
        no_display = {"QT_QPA_PLATFORM": "xcb"}
        for arguments, platform, status, answer in [
                (["--help"], no_display, 0, "Usage: ZEP"), (["x", "--version"], no_display, 0, "Vantrell "),
                ([], no_display, 1, "ZEP: there is no display"), ([], {"DISPLAY": ":98765"} | no_display, 1, "ZEP: "),
                (["-platform", "offscreen", "--bogus"], {}, 2, 'ZEP: the argument "--bogus" is not known')]:
            with self.subTest(arguments=arguments, platform=platform):
                profile = self.new_profile()
                environment = {name: value for name, value in os.environ.items() if "DISPLAY" not in name}
                ended = subprocess.run([PROGRAM, *arguments], env=environment | platform | {
                    "ALLUSERSPROFILE": profile.profile, "XDG_RUNTIME_DIR": profile.root},
                    capture_output=True, text=True, timeout=60, check=False)
                self.assertEqual(ended.returncode, status, ended.stderr)
                self.assertTrue((ended.stderr if status else ended.stdout).startswith(answer), ended)
                self.assertEqual(ended.stderr.count("\n"), 1 if status else 0, ended.stderr)
                self.assertFalse(os.path.exists(profile.data))


class Instances(ProgramTest):
    def assert_carries(self, profile, name):
        profile.drop(name, name.encode())
        wait_until(lambda: os.path.exists(os.path.join(profile.done, name)), name)
        self.assertEqual(decrypted(os.path.join(profile.destination, name + ".enc")), name.encode())

    def test_many_starts_at_once_leave_exactly_one(self):
        profile = self.ready_profile()
        program = profile.program_of_its_own()
        started = [profile.start(program) for _ in range(50)]
        wait_until(lambda: sum(process.poll() is None for process in started) <= 1, "all but one to end", 300)
        wait_until(lambda: profile.helper_starts("OpenedMsg") == 49, "the helper of each of them")
        left = [process for process in started if process.poll() is None]
        self.assertEqual(len(left), 1)
        self.assertEqual({process.returncode for process in started if process not in left}, {0})
        self.assert_carries(profile, "after")
        self.assertEqual(profile.helper_starts("KillZEP"), 0)
        self.assertEqual(profile.end(left[0]), 0)
        wait_until(lambda: profile.helper_starts("KillZEP") == 1, "the helper for the end")
        self.assertEqual(profile.log().count("Loaded"), 1)

    def test_the_socket_bears_garbage_half_lines_and_silence(self):
        profile = self.ready_profile()
        process = profile.start()
        profile.wait_for_log("ZEP Is PAUSED at")
        self.assertEqual(mode(profile.data, "show.sock"), 0o600)
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
        # Eight callers; a pass has others for a moment.
        wait_until(lambda: descriptors(process) - before < 12, "the other callers to be hung up on")
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
