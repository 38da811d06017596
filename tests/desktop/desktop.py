# SPDX-License-Identifier: MIT
"""A desktop of its own for each test: a display with a window manager, a tray, and a message bus with services on it."""

import contextlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

from gi.repository import Gio, GLib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "program"))
from harness import ProgramTest, read  # noqa: E402  (found by the line above)


def wait_until(condition, what, seconds=30):
    """Waits for a condition, while the services of the test do their work; the time is a limit, not a measure."""
    end = time.monotonic() + seconds
    while not condition():
        while GLib.MainContext.default().iteration(False):
            pass
        if time.monotonic() > end:
            raise AssertionError("waited in vain: " + what)
        time.sleep(0.01)


class Screen:
    """An X display with a window manager, and eyes and hands for it."""

    def __init__(self, test):
        self.test = test
        reading, writing = os.pipe()
        test.spawn(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1024x768x24", "-nolisten", "tcp",
                    "-noreset"],
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            self.environment = {"DISPLAY": ":" + number.readline().strip(), "QT_QPA_PLATFORM": "xcb"}
        test.spawn(["openbox"], self.environment)
        wait_until(lambda: "window id" in self.ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "the window manager")

    def ask(self, *command):
        """What a command prints; nothing when the window it asks about has gone."""
        return subprocess.run(command, env={**os.environ, **self.environment}, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True).stdout

    def tray(self):
        self.test.spawn(["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request", "--height", "24"],
                        self.environment)

    def windows(self):
        """The program's windows: (id, width, height, left, top)."""
        found = re.findall(r'(0x[0-9a-f]+) .*\("ZEP" "vantrell-zep"\)  (\d+)x(\d+)\+\S+  \+(-?\d+)\+(-?\d+)',
                           self.ask("xwininfo", "-root", "-tree"))
        return [(window, *map(int, rest)) for window, *rest in found]

    def is_viewable(self, window):
        return "IsViewable" in self.ask("xwininfo", "-id", window)

    def main_window(self):
        return next((window for window, width, *_ in self.windows() if width > 700), None)

    def icon(self):
        """The middle of the icon, when it can be seen in the corner where the tray belongs."""
        return next(((left + width // 2, top + height // 2) for window, width, height, left, top in self.windows()
                     if 16 <= width <= 64 and left > 900 and top > 700 and self.is_viewable(window)), None)

    def is_shown(self):
        window = self.main_window()
        return window is not None and self.is_viewable(window)

    def is_in_front(self):
        active = re.search(r"0x[0-9a-f]+", self.ask("xprop", "-root", "_NET_ACTIVE_WINDOW"))
        return self.is_shown() and active is not None and int(active[0], 16) == int(self.main_window(), 16)

    def is_minimized(self):
        return "Iconic" in self.ask("xprop", "-id", self.main_window() or "0x0", "WM_STATE")

    def is_hidden(self):
        """Out of the window manager's hands: no list of windows shows it."""
        window = self.main_window()
        return window is not None and not self.is_viewable(window) and \
            window not in self.ask("xprop", "-root", "_NET_CLIENT_LIST")

    def pop_up(self):
        return any(64 < width < 700 and height > 30 and self.is_viewable(window)
                   for window, width, height, *_ in self.windows())

    def click(self, button, times=1):
        left, top = self.icon()
        self.ask("xdotool", "mousemove", str(left), str(top), "click", "--repeat", str(times), "--delay", "30",
                 str(button))

    def press(self, key):
        self.ask("xdotool", "key", key)

    def close_window(self, closed):
        """Presses alt+F4 until `closed`. On a busy display the window manager misses a key now and then; only as long
        as the window is in front, as it was before, is the key pressed again."""
        for _ in range(10):
            self.press("alt+F4")
            with contextlib.suppress(AssertionError):
                wait_until(lambda: closed() or not self.is_in_front(), "the window to close", 3)
                break
        wait_until(closed, "the window to close")


class Bus:
    """A message bus that starts no services; it stands for the session's and the system's."""

    def __init__(self, test):
        configuration = os.path.join(os.path.dirname(os.path.abspath(__file__)), "bus.conf")
        reading, writing = os.pipe()
        test.spawn(["dbus-daemon", "--nofork", "--config-file", configuration, "--print-address", str(writing)],
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as address:
            self.address = address.readline().strip()
        self.environment = {"DBUS_SESSION_BUS_ADDRESS": self.address, "DBUS_SYSTEM_BUS_ADDRESS": self.address}
        self.test = test

    def connect(self):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        connection = Gio.DBusConnection.new_for_address_sync(self.address, flags, None, None)
        self.test.addCleanup(connection.close_sync, None)
        return connection


class Service:
    """An object on a bus under a well-known name. `answer_<method>` gives a method's answer as a GLib.Variant."""

    name = path = interface = description = ""

    def __init__(self, bus):
        self.properties = {}
        self.connection = bus.connect()
        node = Gio.DBusNodeInfo.new_for_xml(f'<node><interface name="{self.interface}">{self.description}'
                                            "</interface></node>")
        self.connection.register_object(self.path, node.interfaces[0], self._called, self._read, None)
        self.appear()

    def _called(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        getattr(self, "answer_" + method)(invocation, *arguments.unpack())

    def _read(self, _connection, _sender, _path, _interface, name):
        return self.properties[name]

    def _ask_bus(self, method, *arguments):
        signature = "(su)" if method == "RequestName" else "(s)"
        self.connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                  GLib.Variant(signature, arguments), None, Gio.DBusCallFlags.NONE, -1, None)

    def appear(self):
        self._ask_bus("RequestName", self.name, 0)

    def go(self):
        self._ask_bus("ReleaseName", self.name)

    def emit(self, signal, arguments=None):
        self.connection.emit_signal(None, self.path, self.interface, signal, arguments)


class DesktopTest(ProgramTest):
    def spawn(self, command, environment=None, **popen):
        home = tempfile.mkdtemp(prefix="vantrell-desktop-")
        self.addCleanup(shutil.rmtree, home, ignore_errors=True)
        environment = {"HOME": home, "XDG_CONFIG_HOME": home, "XDG_RUNTIME_DIR": home, **(environment or {})}
        process = subprocess.Popen(command, env={**os.environ, **environment},
                                   **{"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **popen})
        self.addCleanup(process.wait, 30)
        self.addCleanup(process.terminate)
        return process

    def start_program(self, *environments, **settings):
        """The program with its profile; processing by itself, and so allowed to hide, unless told otherwise."""
        profile = self.ready_profile(**settings)
        process = profile.start(environment={key: value for given in environments for key, value in given.items()})
        return profile, process

    def start_hidden(self, screen, *environments):
        """As `start_program`, with the window where it lives between two looks at it."""
        profile, process = self.start_program(screen.environment, *environments, normal=False)
        profile.wait_for_log("ZEP Is PAUSED at")  # the first pass, which comes after hiding
        wait_until(screen.is_hidden, "the window to hide")
        return profile, process

    def assert_ends_in_order(self, profile, process, end):
        """`end` makes it end with 0, and settings and log are written on the way."""
        settings = os.path.join(profile.data, "ZEP.cfg")
        os.unlink(settings)
        end()
        wait_until(lambda: process.poll() is not None, "the program's end")
        errors = os.path.join(profile.root, "stderr")
        self.assertEqual(process.returncode, 0, read(errors).decode(errors="replace"))
        self.assertTrue(os.path.exists(settings))
        self.assertIn("Loaded", profile.log())
