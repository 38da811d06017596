# SPDX-License-Identifier: MIT
"""What cannot be carried: its words come, and the file is whole in Source or in the rejected folder."""

import os
import shutil
import unittest

from harness import ProgramTest, decrypted, read, wait_until, write


class Failures(ProgramTest):
    def ready(self, **settings):
        profile = self.new_profile()
        profile.settings(**settings)
        profile.passwords()
        return profile

    def test_a_folder_stands_where_the_output_should(self):
        profile = self.ready()
        os.mkdir(os.path.join(profile.destination, "a.enc"))
        write(os.path.join(profile.rejected, "a"), b"older")
        profile.drop("a", b"newer")
        process = profile.start()
        path = os.path.join(profile.source, "a")
        profile.wait_for_log(f"File {path} did not encrypt!")
        self.assertEqual(profile.end(process), 0)
        rejected = sorted(os.listdir(profile.rejected))
        self.assertRegex(rejected[0], r"^\d{8} \d{6}_a$")
        self.assertEqual([read(os.path.join(profile.rejected, n)) for n in rejected], [b"newer", b"older"])
        self.assertFalse(os.path.exists(path))
        self.assertTrue(profile.has_logged("Encrypting:  a - FAILED: "))
        self.assertTrue(profile.has_logged(f"File {path} File exists rename file to {rejected[0]}"))

    def test_a_name_is_too_long_for_its_ending(self):
        profile = self.ready()
        profile.drop("n" * 252, b"abc")
        process = profile.start()
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        self.assertEqual(read(os.path.join(profile.rejected, "n" * 252)), b"abc")
        self.assertEqual(os.listdir(profile.destination), [])

    @unittest.skipUnless(os.geteuid() == 0, "only root can drop its rights")
    def test_there_is_no_right_to_read(self):
        profile = self.ready()
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
        profile = self.ready()
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
        profile = self.ready(overwrite=True)
        process = profile.start()
        for number in range(300):
            profile.drop(f"f{number}", b"x" * number)
            if number % 3 == 0:
                try:
                    os.unlink(os.path.join(profile.source, f"f{number}"))
                except FileNotFoundError:
                    pass
        profile.wait_for_empty_source()
        self.assertEqual(profile.end(process), 0)
        for number in range(300):
            if number % 3:
                self.assertEqual(read(os.path.join(profile.done, f"f{number}")), b"x" * number)
                self.assertEqual(decrypted(os.path.join(profile.destination, f"f{number}.enc")), b"x" * number)

    def test_a_folder_is_missing_or_no_folder(self):
        for kind, words in (("source", "Source Folder"), ("destination", "Destination Folder"), ("done", "Done Folder")):
            for is_file in (False, True):
                with self.subTest(kind, is_file=is_file):
                    profile = self.ready()
                    profile.drop("a", b"abc")
                    folder = getattr(profile, kind)
                    aside = folder + " aside"
                    os.rename(folder, aside)
                    if is_file:
                        write(folder, b"no folder")
                    process = profile.start()
                    profile.wait_for_log(f"{words} {folder} does not exist bypassing ")
                    self.assertEqual(profile.end(process), 0)
                    self.assertTrue(profile.has_logged("Source, Destination or Done Folders are missing"))
                    if is_file:
                        os.unlink(folder)
                    os.rename(aside, folder)
                    self.assertEqual(read(os.path.join(profile.source, "a")), b"abc")
                    self.assertEqual(os.listdir(profile.rejected), [])

    def test_a_folder_vanishes_while_a_pass_runs(self):
        profile = self.ready()
        for number in range(20):
            profile.drop(f"f{number:02}", os.urandom(8_000_000))
        process = profile.start()
        wait_until(lambda: os.listdir(profile.done), "the first file")
        shutil.rmtree(profile.destination)
        profile.wait_for_log("Source, Destination or Done Folders are missing")
        self.assertEqual(profile.end(process), 0)
        self.assertEqual(os.listdir(profile.rejected), [])
        self.assertEqual(len(os.listdir(profile.source)) + len(os.listdir(profile.done)), 20)


if __name__ == "__main__":
    unittest.main()
