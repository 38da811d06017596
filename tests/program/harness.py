# SPDX-License-Identifier: MIT
"""A throw-away profile with its four folders, and the program running on it."""

import contextlib
import glob
import os
import shutil
import signal
import sqlite3
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["ZEP"]
PASSWORD = "correct horse battery staple"
KEY = PASSWORD.encode().ljust(32, b"\0")[:32].hex()


def wait_until(condition, what, seconds=60):
    """Waits for a condition; the time is a limit, not a measure."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("waited in vain: " + what)
        time.sleep(0.01)


def decrypted(path):
    return subprocess.run(["openssl", "enc", "-d", "-aes-256-ecb", "-K", KEY, "-in", path],
                          check=True, capture_output=True).stdout


def read(path):
    with open(path, "rb") as file:
        return file.read()


def write(path, data=b""):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(data)


def count_of(process, file, name):
    """A number that the system keeps about a process."""
    with open(f"/proc/{process.pid}/{file}", encoding="ascii") as lines:
        return next(int(line.split()[1]) for line in lines if line.startswith(name))


class Profile:
    def __init__(self, done_parent=None):
        self.root = tempfile.mkdtemp(prefix="vantrell-program-")
        self.done_root = tempfile.mkdtemp(prefix="vantrell-done-", dir=done_parent) if done_parent else self.root
        self.profile = os.path.join(self.root, "profile")
        self.data = os.path.join(self.profile, "Quillon, Inc", "Vantrell", "Bin")
        self.source, self.destination, self.rejected = (
            os.path.join(self.root, name) for name in ("in", "out", "rejected"))
        self.done = os.path.join(self.done_root, "done")
        for folder in (self.source, self.destination, self.done, self.rejected):
            os.makedirs(folder)
        self.running = []

    # What the program is given

    def settings(self, subfolders=False, continually=True, normal=True):
        flag = {True: "#TRUE#", False: "#FALSE#"}
        line = ",".join([f'"{self.source}"', flag[subfolders], f'"{self.destination}"', f'"{self.done}"',
                         flag[normal], "200", "0", "7", "0", '"PM"', "7", flag[continually],
                         f'"{self.rejected}"', "#FALSE#", "#FALSE#"])
        write(os.path.join(self.data, "ZEP.cfg"), line.encode() + b"\r\n")

    def passwords(self):
        with contextlib.closing(sqlite3.connect(os.path.join(self.data, "EDPasswords.mdb"))) as database:
            database.executescript("CREATE TABLE EncDecPasswords (Password text, Active boolean);"
                                   f"INSERT INTO EncDecPasswords VALUES ('{PASSWORD}', 1)")

    def drop(self, name, data=b"", size=None):
        """Puts a whole file into Source in one step, as a careful sender would; with a size, a sparse one."""
        path = os.path.join(os.fsencode(self.source), os.fsencode(name))
        staged = os.path.join(self.root, "staged")
        write(staged, data)
        os.truncate(staged, size or len(data))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        os.rename(staged, path)

    # The program

    def program_of_its_own(self):
        """A copy of the program in a folder with stand-ins for its helpers, each of which notes that it was started."""
        folder = os.path.join(self.root, "bin")
        os.makedirs(folder)
        shutil.copy2(PROGRAM, folder)
        for helper in ("OpenedMsg", "KillZEP"):
            path = os.path.join(folder, helper)
            write(path, b'#!/bin/sh\necho started >> "$0.started"\n')
            os.chmod(path, 0o755)
        return os.path.join(folder, os.path.basename(PROGRAM))

    def helper_starts(self, helper):
        path = os.path.join(self.root, "bin", helper + ".started")
        return read(path).count(b"\n") if os.path.exists(path) else 0

    def start(self, program=PROGRAM, environment=None):
        """Without a display and a bus, unless the environment given names some."""
        no_bus = "unix:path=" + os.path.join(self.root, "no-bus")
        environment = {**os.environ, "ALLUSERSPROFILE": self.profile,
                       "XDG_CONFIG_HOME": os.path.join(self.root, "config"),
                       "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8", "XDG_RUNTIME_DIR": self.root,
                       "DBUS_SESSION_BUS_ADDRESS": no_bus, "DBUS_SYSTEM_BUS_ADDRESS": no_bus, **(environment or {})}
        with open(os.path.join(self.root, "stderr"), "ab") as errors:
            process = subprocess.Popen([program], env=environment, stderr=errors)
        self.running.append(process)
        return process

    def end(self, process, number=signal.SIGTERM, seconds=60):
        """The exit code; what the program said to its standard error stream is shown when it is not 0."""
        process.send_signal(number)
        code = process.wait(seconds)
        if code != 0:
            print(read(os.path.join(self.root, "stderr")).decode(errors="replace"))
        return code

    def clean(self):
        for process in self.running:
            if process.poll() is None:
                process.kill()
            process.wait()
        for folder in (self.root, self.done_root):
            shutil.rmtree(folder, ignore_errors=True)

    # What came of it

    def log(self):
        """The messages of the day's log, without their dates."""
        text = b"".join(read(path) for path in sorted(glob.glob(os.path.join(self.data, "Daily Activity Logs", "*"))))
        return [" ".join(line.split(" ")[2:]) for line in text.decode().split("\r\n")[:-1]]

    def has_logged(self, part):
        return any(part in line for line in self.log())

    def wait_for_log(self, part, seconds=60):
        wait_until(lambda: self.has_logged(part), f"the log line {part!r}", seconds)

    def wait_for_empty_source(self, seconds=60):
        wait_until(lambda: not any(files for _, _, files in os.walk(self.source)), "an empty source folder", seconds)


class ProgramTest(unittest.TestCase):
    def new_profile(self, done_parent=None):
        profile = Profile(done_parent)
        self.addCleanup(profile.clean)
        return profile

    def ready_profile(self, done_parent=None, **settings):
        profile = self.new_profile(done_parent)
        profile.settings(**settings)
        profile.passwords()
        return profile
