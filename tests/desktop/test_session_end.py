# SPDX-License-Identifier: MIT
"""The end of the session: the X session manager asks to save, calls it off, or ends it; logind shuts the machine down."""

import os
import subprocess
import unittest

from gi.repository import Gio, GLib

from desktop import Bus, DesktopTest, Screen, Service, wait_until
from harness import count_of

GIB = 1 << 30
RESTART_NEVER = 3  # SmRestartNever


class Logind(Service):
    name = "org.freedesktop.login1"
    path = "/org/freedesktop/login1"
    interface = "org.freedesktop.login1.Manager"
    description = """<method name="Inhibit"><arg type="s" direction="in"/><arg type="s" direction="in"/>
        <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="h" direction="out"/></method>
        <signal name="PrepareForShutdown"><arg type="b"/></signal>"""

    def __init__(self, bus):
        self.delay = None
        super().__init__(bus)

    def answer_Inhibit(self, invocation, what, who, _why, mode):
        self.asked = (what, who, mode)
        self.delay, given = os.pipe()
        os.set_blocking(self.delay, False)
        handles = Gio.UnixFDList.new_from_array([given])
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), handles)

    def is_delayed(self):
        try:
            return os.read(self.delay, 1) != b""
        except BlockingIOError:
            return True

    def shut_down(self, begins=True):
        self.emit("PrepareForShutdown", GLib.Variant("(b)", (begins,)))


class ByLogind(DesktopTest):
    def start(self):
        self.bus = Bus(self)
        self.logind = Logind(self.bus)
        self.profile, self.process = self.start_program(self.bus.environment)
        self.wait_for_delay()

    def wait_for_delay(self):
        wait_until(lambda: self.logind.delay is not None, "the program to ask for a delay")
        self.addCleanup(os.close, self.logind.delay)
        self.assertEqual(self.logind.asked, ("shutdown", "Vantrell", "delay"))

    def assert_saved_before_the_delay_ends(self):
        def end():
            self.logind.shut_down()
            wait_until(lambda: not self.logind.is_delayed(), "the delay's end")
            self.assertTrue(os.path.exists(os.path.join(self.profile.data, "ZEP.cfg")))
        self.assert_ends_in_order(self.profile, self.process, end)

    def test_nothing_is_lost(self):
        self.start()
        self.profile.wait_for_log("ZEP Is PAUSED at")
        self.logind.shut_down(begins=False)
        self.profile.drop("a", b"x")
        self.profile.wait_for_empty_source()
        self.assertIsNone(self.process.poll(), "a shut-down that was called off ends nothing")
        self.assertTrue(self.logind.is_delayed())
        self.assert_saved_before_the_delay_ends()

    def test_in_the_middle_of_a_file(self):
        self.start()
        self.profile.drop("big", size=GIB)
        wait_until(lambda: count_of(self.process, "io", "wchar") > GIB // 8, "the file at work")
        self.assert_saved_before_the_delay_ends()
        self.assertEqual(os.path.getsize(os.path.join(self.profile.source, "big")), GIB)
        self.assertEqual(os.listdir(self.profile.destination), [])


class BySessionManager(DesktopTest):
    def start(self, **settings):
        home = self.new_folder()
        self.manager = self.spawn([os.environ["SESSION_MANAGER_DOUBLE"]], {"HOME": home}, stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.manager.communicate)  # the end of its orders lets it tidy up and end
        os.set_blocking(self.manager.stdout.fileno(), False)
        self.said = []
        address = self.next_word()
        self.screen = Screen(self)
        self.profile, self.process = self.start_program(self.screen.environment, {"SESSION_MANAGER": address},
                                                        **settings)
        self.expect("registered", "saved")
        wait_until(self.screen.is_shown, "the window")

    def order(self, word):
        self.manager.stdin.write(word + "\n")
        self.manager.stdin.flush()

    def next_word(self):
        def has_spoken():
            try:
                self.said += os.read(self.manager.stdout.fileno(), 4096).decode().splitlines()
            except BlockingIOError:
                pass
            return self.said
        if not self.said:
            wait_until(has_spoken, "the session manager's word")
        return self.said.pop(0)

    def expect(self, *words):
        for word in words:
            said = self.next_word()
            while said.startswith("restart"):
                self.assertEqual(said, f"restart {RESTART_NEVER}", "its start-up entry alone starts it with the session")
                said = self.next_word()
            self.assertEqual(said, word)

    def test_log_out_is_never_refused(self):
        for continually in (True, False):  # the close box would refuse where nothing is processed
            with self.subTest(continually=continually):
                self.start(continually=continually)
                self.order("log-out")
                self.expect("saved")
                self.assert_ends_in_order(self.profile, self.process, lambda: self.order("die"))


if __name__ == "__main__":
    unittest.main()
