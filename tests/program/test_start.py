# SPDX-License-Identifier: MIT
"""Starting: fresh profiles, profiles made by others, broken ones, and a second instance."""

import os
import stat
import unittest

from harness import PASSWORD, ProgramTest, decrypted, read, wait_until, write


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


class PasswordFiles(ProgramTest):
    def test_made_by_others_are_taken_as_they_are(self):
        quoted = f"'{PASSWORD}'"
        tables = [
            ("CREATE TABLE EncDecPasswords (Active boolean, Password text)",
             f"INSERT INTO EncDecPasswords VALUES (-1, {quoted})"),
            ("CREATE TABLE EncDecPasswords (Id integer primary key, Note text, Password varchar(50), Active bit, X)",
             "INSERT INTO EncDecPasswords VALUES (7, 'n', 'old', 'False', 1)",
             f"INSERT INTO EncDecPasswords VALUES (3, 'n', {quoted}, 'True', 1)"),
            ("CREATE TABLE encdecpasswords (PASSWORD text primary key, ACTIVE text) WITHOUT ROWID",
             f"INSERT INTO encdecpasswords VALUES ({quoted}, '1')"),
        ]
        for table in tables:
            with self.subTest(table[0]):
                profile = self.new_profile()
                profile.settings()
                profile.passwords(*table)
                profile.drop("a", b"abc")
                process = profile.start()
                profile.wait_for_empty_source()
                self.assertEqual(profile.end(process), 0)
                self.assertEqual(decrypted(os.path.join(profile.destination, "a.enc")), b"abc")

    def test_that_cannot_be_used_are_reported_and_left_alone(self):
        contents = {
            "not a database": b"this is no database at all" * 100,
            "an Access file": b"\x00\x01\x00\x00Standard Jet DB\x00\x01" + bytes(4096),
            "empty": b"",
            "missing": None,
            "another table": ("CREATE TABLE Other (Password text, Active boolean)",),
            "no column": ("CREATE TABLE EncDecPasswords (Password text)",
                          "INSERT INTO EncDecPasswords VALUES ('x')"),
            "no row": ("CREATE TABLE EncDecPasswords (Password text, Active boolean)",),
            "none active": ("CREATE TABLE EncDecPasswords (Password text, Active boolean)",
                            "INSERT INTO EncDecPasswords VALUES ('x', 0)"),
            "not ASCII": ("CREATE TABLE EncDecPasswords (Password text, Active boolean)",
                          "INSERT INTO EncDecPasswords VALUES ('gr\u00fcn', 1)"),
        }
        for name, content in contents.items():
            with self.subTest(name):
                profile = self.new_profile()
                profile.settings()
                path = os.path.join(profile.data, "EDPasswords.mdb")
                if isinstance(content, tuple):
                    profile.passwords(*content)
                elif content is not None:
                    write(path, content)
                before = read(path) if os.path.exists(path) else None
                profile.drop("a", b"abc")
                process = profile.start()
                # The line is saved at the end; until then the file must not move.
                wait_until(lambda: os.path.exists(os.path.join(profile.data, "Daily Activity Logs")), "start-up")
                wait_until(lambda: settled(process), "the program to come to rest")
                self.assertEqual(profile.end(process), 0)
                self.assertTrue(profile.has_logged("There is no active password.  Encryption has stopped.."))
                self.assertEqual(read(os.path.join(profile.source, "a")), b"abc")
                self.assertEqual(os.listdir(profile.destination), [])
                self.assertEqual(read(path) if os.path.exists(path) else None, before)


def settled(process):
    """Whether the first pass, due 100 ms after loading, must have run: half a second of processor clock ticks on."""
    with open(f"/proc/{process.pid}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    with open("/proc/uptime", encoding="ascii") as file:
        uptime = float(file.read().split()[0])
    return uptime - int(fields[19]) / os.sysconf("SC_CLK_TCK") > 2.0


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

    def test_a_folder_in_its_place_stays(self):
        profile = self.new_profile()
        os.makedirs(os.path.join(profile.data, "ZEP.cfg"))
        process = profile.start()
        wait_until(lambda: os.path.exists(os.path.join(profile.data, "Daily Activity Logs")), "the end of start-up")
        self.assertEqual(profile.end(process), 0)
        self.assertTrue(os.path.isdir(os.path.join(profile.data, "ZEP.cfg")))


if __name__ == "__main__":
    unittest.main()
