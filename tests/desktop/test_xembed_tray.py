# SPDX-License-Identifier: MIT
"""The icon in an XEmbed tray, and what the window does where there is none. There is no message bus here."""

import unittest

from desktop import DesktopTest, Screen, wait_until


class Tray(DesktopTest):
    def setUp(self):
        self.screen = Screen(self)
        self.screen.tray()

    def start_in_tray(self):
        self.profile, self.process = self.start_hidden(self.screen)
        wait_until(self.screen.icon, "the icon")

    def close(self):
        self.screen.close_window(self.screen.is_hidden)

    def open_pop_up(self):
        self.screen.click(3)
        try:
            wait_until(self.screen.pop_up, "the pop-up menu", 3)
        except AssertionError:  # a window manager that still works at the hiding takes the menu away
            self.screen.click(3)
            wait_until(self.screen.pop_up, "the pop-up menu")
        self.assertFalse(self.screen.is_shown())

    def test_pop_up_brings_the_window_back_and_ends_the_program(self):
        self.start_in_tray()
        self.open_pop_up()
        self.screen.press("p")
        wait_until(self.screen.is_in_front, "the window")
        self.close()
        self.open_pop_up()
        self.assert_ends_in_order(self.profile, self.process, lambda: self.screen.press("e"))

    def test_left_button_once_or_twice_brings_the_window_back(self):
        self.start_in_tray()
        def minimize():
            self.screen.ask("xdotool", "windowminimize", self.screen.main_window())

        # At once and again: window managers report late, and a report must not undo what came after it.
        for times, put_away in ((1, self.close), (2, minimize), (1, minimize), (2, self.close), (1, minimize)):
            with self.subTest(times=times):
                self.screen.click(1, times)
                wait_until(self.screen.is_in_front, "the window")
                put_away()
                wait_until(self.screen.is_hidden, "the window to hide")
        self.assertEqual(self.profile.end(self.process), 0)


class NoTray(DesktopTest):
    def test_the_window_is_minimized_and_hides_once_there_is_a_tray(self):
        screen = Screen(self)
        profile, process = self.start_program(screen.environment)
        wait_until(lambda: profile.has_logged("ZEP Is PAUSED at"), "the first pass, which comes after showing")
        wait_until(screen.is_in_front, "the window")
        screen.close_window(screen.is_minimized)
        screen.ask("xdotool", "windowactivate", screen.main_window())
        wait_until(screen.is_in_front, "the window, brought back through the window manager")
        screen.tray()
        wait_until(screen.icon, "the icon in the tray that came late")
        self.assertTrue(screen.is_shown())
        screen.close_window(screen.is_hidden)
        screen.click(1)
        wait_until(screen.is_in_front, "the window")
        self.assertEqual(profile.end(process), 0)


if __name__ == "__main__":
    unittest.main()
