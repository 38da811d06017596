# SPDX-License-Identifier: MIT
"""The icon as a StatusNotifierItem, on a desktop whose panel comes, goes and comes back."""

import unittest

from gi.repository import Gio, GLib

from desktop import Bus, DesktopTest, Screen, Service, wait_until

ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"


class Watcher(Service):
    name = interface = "org.kde.StatusNotifierWatcher"
    path = "/StatusNotifierWatcher"
    description = """<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
        <signal name="StatusNotifierHostRegistered"/><signal name="StatusNotifierHostUnregistered"/>"""

    def __init__(self, bus):
        self.items = []
        super().__init__(bus)
        self.properties["IsStatusNotifierHostRegistered"] = GLib.Variant("b", True)

    def answer_RegisterStatusNotifierItem(self, invocation, item):
        self.items.append(item)
        invocation.return_value(None)

    def set_host(self, is_there):
        self.properties["IsStatusNotifierHostRegistered"] = GLib.Variant("b", is_there)
        self.emit("StatusNotifierHostRegistered" if is_there else "StatusNotifierHostUnregistered")

    def call(self, path, interface, method, arguments=None):
        return self.connection.call_sync(self.items[-1], path, interface, method, arguments, None,
                                         Gio.DBusCallFlags.NONE, 20000, None).unpack()

    def item(self):
        return self.call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll",
                         GLib.Variant("(s)", (ITEM,)))[0]

    def activate(self):
        self.call("/StatusNotifierItem", ITEM, "Activate", GLib.Variant("(ii)", (0, 0)))

    def entries(self):
        """The pop-up menu: what it says -> its number."""
        layout = self.call(self.item()["Menu"], MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))[1]
        return {properties["label"]: number for number, properties, _ in layout[2]}

    def choose(self, label):
        number = self.entries()[label]
        self.call(self.item()["Menu"], MENU, "Event",
                  GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("i", 0), 0)))


class StatusNotifier(DesktopTest):
    def setUp(self):
        self.screen = Screen(self)
        self.bus = Bus(self)
        self.watcher = Watcher(self.bus)

    def start_in_tray(self):
        self.profile, self.process = self.start_hidden(self.screen, self.bus.environment)
        wait_until(lambda: self.watcher.items, "the item to register")

    def test_item_and_its_menu_bring_the_window_back_and_end(self):
        self.start_in_tray()
        item = self.watcher.item()
        self.assertEqual((item["Id"], item["Category"], item["Status"]),
                         ("vantrell-zep", "ApplicationStatus", "Active"))
        self.assertEqual(item["ToolTip"][2], " Quillon Inc - ZEP \r\n Double Click or Click Right Mouse Button ")
        self.assertEqual(list(self.watcher.entries()), ["Edit _Preferences", "_Exit"])
        for bring_back in (self.watcher.activate, lambda: self.watcher.choose("Edit _Preferences")):
            bring_back()
            wait_until(self.screen.is_in_front, "the window")
            self.screen.close_window(self.screen.is_hidden)
        self.assert_ends_in_order(self.profile, self.process, lambda: self.watcher.choose("_Exit"))

    def test_the_panel_goes_and_comes_back(self):
        self.start_in_tray()
        host = (lambda: self.watcher.set_host(False), lambda: self.watcher.set_host(True))
        for go, come in ((self.watcher.go, self.watcher.appear), host):
            registered = len(self.watcher.items)
            go()
            wait_until(self.screen.is_shown, "the window, since nobody shows the icon")
            come()
            if come == self.watcher.appear:
                wait_until(lambda: len(self.watcher.items) > registered, "the item to register again")
            self.screen.close_window(self.screen.is_hidden)
        self.assertEqual(self.profile.end(self.process), 0)


if __name__ == "__main__":
    unittest.main()
