# SPDX-License-Identifier: MIT
"""Starting: fresh profiles and broken ones."""

import os
import stat
import subprocess
import unittest

from harness import PROGRAM, ProgramTest, read, wait_until, write


def mode(path):
    return stat.S_IMODE(os.stat(path).st_mode)


class FreshProfile(ProgramTest):
    def test_gets_its_folders_and_files(self):
        profile = self.new_profile()
        process = profile.start()
        settings = os.path.join(profile.data, "ZEP.cfg")
        wait_until(lambda: os.path.exists(settings), "ZEP.cfg")
        self.assertEqual(profile.end(process), 0)
        self.assertEqual([mode(os.path.join(profile.data, *["..", ".."][:up])) for up in (0, 1, 2)], [0o700] * 3)
        self.assertEqual(mode(os.path.join(profile.data, "Daily Activity Logs")), 0o700)
        self.assertEqual(mode(settings), 0o600)
        self.assertEqual(mode(os.path.join(profile.data, "EDPasswords.mdb")), 0o600)
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


class BrokenSettings(ProgramTest):
    def test_start_up_goes_on_and_the_file_is_kept(self):
        contents = {
            "empty": b"", "cut": b'"/in",#FALSE#,"/o', "quotes": b'"' * 999, "one byte per field": b",".join([b"x"] * 15),
            "too wide": b'"/in",#FALSE#,"/out","/done",#TRUE#,99999999999,0,7,0,"PM",7,#FALSE#,"/r",#FALSE#,#FALSE#',
            "ten megabytes": b"\0" * 10_000_000,
        }
        for name, content in contents.items():
            with self.subTest(name):
                profile = self.new_profile()
                path = os.path.join(profile.data, "ZEP.cfg")
                write(path, content)
                process = profile.start()
                logs = os.path.join(profile.data, "Daily Activity Logs")
                wait_until(lambda: os.path.exists(logs), "the end of start-up")
                self.assertEqual(profile.end(process), 0)
                kept = [n for n in os.listdir(profile.data) if n.startswith("ZEP.cfg.")]
                self.assertEqual([read(os.path.join(profile.data, n)) for n in kept], [content])
                self.assertEqual(read(path).count(b","), 14)
                self.assertFalse(os.path.exists(os.path.join(profile.data, "EDPasswords.mdb")))

if __name__ == "__main__":
    unittest.main()
