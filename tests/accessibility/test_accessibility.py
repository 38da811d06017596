# SPDX-License-Identifier: MIT
"""The program through assistive technology alone: what it sees of every control, and what it can do with it."""

import os
import sys
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version comes first)

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "program"))
from harness import PASSWORD, ProgramTest, decrypted, read, wait_until  # noqa: E402  (found by the line above)

Role = Atspi.Role
State = Atspi.StateType
# What is a part of a control, or a frame around some, has nothing to say.
SILENT = {Role.FILLER, Role.PANEL, Role.SCROLL_BAR, Role.SEPARATOR, Role.VIEWPORT, Role.MENU_BAR}


def tree(node):
    """The node and everything below it that can still be asked."""
    found = [node]
    try:
        for index in range(node.get_child_count()):
            child = node.get_child_at_index(index)
            if child is not None:
                found += tree(child)
    except GLib.Error:
        pass  # it went while it was looked at
    return found


def has(node, state):
    return node.get_state_set().contains(state)


def setUpModule():
    """The registry is there before the program is, as in a session that has been running for a while."""
    Atspi.init()
    wait_until(lambda: Atspi.get_desktop(0).get_child_count() >= 0, "the registry")


class Screen:
    """What a screen reader knows of the running program."""

    def __init__(self, process):
        self.process = process
        wait_until(lambda: self.application() is not None, "the program on the accessibility bus")

    def application(self):
        desktop = Atspi.get_desktop(0)
        desktop.set_cache_mask(Atspi.Cache.NONE)
        for index in range(desktop.get_child_count()):
            one = desktop.get_child_at_index(index)
            if one is not None and one.get_process_id() == self.process.pid:
                one.set_cache_mask(Atspi.Cache.NONE)
                return one
        return None

    def nodes(self):
        application = self.application()
        return [] if application is None else tree(application)

    def find(self, role, name):
        def matches(node):
            try:
                is_closed = role == Role.PUSH_BUTTON and not has(node, State.SHOWING)
                return node.get_role() == role and node.get_name() == name and not is_closed
            except GLib.Error:
                return False
        return next((node for node in self.nodes() if matches(node)), None)

    def wait_for(self, role, name, state=None):
        def is_there():
            node = self.find(role, name)
            return node is not None and (state is None or has(node, state))
        wait_until(is_there, f"{role.value_nick} {name!r}")
        return self.find(role, name)

    def act(self, role, name):
        node = self.wait_for(role, name)
        if not Atspi.Action.do_action(node, 0):
            raise AssertionError(f"{name!r} does nothing")

    def label(self, description):
        """The text of the label that is described so."""
        return next((node.get_name() for node in self.nodes()
                     if node.get_role() == Role.LABEL and node.get_description() == description), None)


class Accessibility(ProgramTest):
    def start(self, **settings):
        self.profile = self.new_profile()
        self.profile.settings(**settings)
        self.profile.passwords()
        self.start_on_profile()
        # The pass that start-up makes, and that ends at once in a profile that does not start by itself.
        self.screen.wait_for(Role.FRAME, "Done Encrpting Files")

    def start_on_profile(self):
        display = {name: os.environ[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR")}
        self.process = self.profile.start(environment={**display, "QT_QPA_PLATFORM": "xcb",
                                                       "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
        self.screen = Screen(self.process)

    def test_every_control_says_what_it_is(self):
        self.start(continually=False, subfolders=True)
        self.screen.wait_for(Role.PUSH_BUTTON, "Start", State.SENSITIVE)
        for role, name in [
                (Role.PUSH_BUTTON, "Exit"),
                (Role.PUSH_BUTTON, "Change Source folder"), (Role.PUSH_BUTTON, "Change Destination folder"),
                (Role.PUSH_BUTTON, "Change Done folder"), (Role.PUSH_BUTTON, "Change Rejected folder"),
                (Role.SPIN_BUTTON, "Minutes between two passes"), (Role.PROGRESS_BAR, "Current file"),
                (Role.PROGRESS_BAR, "Files of this pass"), (Role.LABEL, "Mode: Stopped"),
                (Role.LABEL, self.profile.source), (Role.MENU_ITEM, "Start Up Options"),
                (Role.MENU_ITEM, "Passwords and Files"), (Role.MENU_ITEM, "View"), (Role.MENU_ITEM, "About"),
                (Role.LABEL, "NOTE: Select Red X to send to system tray and not close program.")]:
            self.assertIsNotNone(self.screen.find(role, name), f"{role.value_nick} {name!r}")
        self.assertFalse(has(self.screen.find(Role.PUSH_BUTTON, "Stop"), State.SENSITIVE))
        self.assertTrue(has(self.screen.find(Role.CHECK_BOX, "Include Sub Directories"), State.CHECKED))
        self.assertEqual(self.screen.label("Source folder"), self.profile.source)
        self.assert_names()
        for node in self.screen.nodes():
            if node.get_role() in (Role.PUSH_BUTTON, Role.SPIN_BUTTON, Role.CHECK_BOX, Role.POPUP_MENU, Role.LIST):
                self.assertTrue(node.get_description(), f"{node.get_name()!r} without a description")

    def assert_names(self):
        for node in self.screen.nodes():
            if has(node, State.FOCUSABLE) and has(node, State.SHOWING) and node.get_role() not in SILENT:
                self.assertTrue(node.get_name(), f"a {node.get_role_name()} without a name")

    def type_into(self, name, text):
        field = self.screen.wait_for(Role.TEXT, name, State.SHOWING)
        Atspi.Component.grab_focus(field)
        self.screen.wait_for(Role.TEXT, name, State.FOCUSED)
        Atspi.EditableText.set_text_contents(field, text)

    def add_password(self, password):
        self.screen.act(Role.MENU_ITEM, "Update/Add Passwords")
        self.type_into("Password", password)
        self.screen.wait_for(Role.CHECK_BOX, "Active", State.SHOWING)
        self.screen.act(Role.CHECK_BOX, "Active")
        self.screen.wait_for(Role.PUSH_BUTTON, "Add", State.SHOWING)
        self.screen.act(Role.PUSH_BUTTON, "Add")
        self.screen.wait_for(Role.TABLE_CELL, password)

    def test_every_window_leads_to_its_end(self):
        self.start(continually=False)
        self.add_password("another")
        self.assert_names()
        self.screen.act(Role.MENU_ITEM, "View Current Password")
        self.screen.wait_for(Role.LABEL, "another")
        self.screen.act(Role.PUSH_BUTTON, "OK")

        self.screen.act(Role.PUSH_BUTTON, "Weekly Auto-Delete Scheduler")
        self.screen.wait_for(Role.COMBO_BOX, "-None-", State.SHOWING)
        self.assert_names()
        self.screen.act(Role.RADIO_BUTTON, "AM")
        self.screen.act(Role.PUSH_BUTTON, "OK")
        wait_until(lambda: b'"AM"' in read(os.path.join(self.profile.data, "ZEP.cfg")), "the schedule in the settings")

        self.screen.act(Role.MENU_ITEM, "Select DailyHistory File to View")
        self.screen.act(Role.PUSH_BUTTON, "Load Selected History")
        self.screen.wait_for(Role.LIST, "Log", State.SHOWING)
        self.assert_names()

    def choose(self, kind, folder):
        self.screen.act(Role.PUSH_BUTTON, f"Change {kind} folder")
        self.type_into("Folder:", folder)
        self.assert_names()
        self.screen.act(Role.PUSH_BUTTON, "OK")
        wait_until(lambda: self.screen.label(f"{kind} folder") == folder, "the chosen folder")

    def test_a_new_user_gets_a_file_encrypted(self):
        self.profile = self.new_profile()
        self.start_on_profile()
        for kind, folder in [("Source", self.profile.source), ("Destination", self.profile.destination),
                             ("Done", self.profile.done), ("Rejected", self.profile.rejected)]:
            self.choose(kind, folder)
        self.screen.act(Role.PUSH_BUTTON, "Change Done folder")
        self.screen.act(Role.PUSH_BUTTON, "Cancel")
        self.screen.act(Role.PUSH_BUTTON, "Take back Done folder")
        wait_until(lambda: self.screen.label("Done folder") == self.profile.done, "the folder that was taken back")
        self.add_password(PASSWORD)
        self.profile.drop("report.pdf", b"content")
        self.screen.act(Role.PUSH_BUTTON, "Start")
        self.screen.act(Role.PUSH_BUTTON, "No")
        self.screen.wait_for(Role.LABEL, "Mode: Auto")
        self.profile.wait_for_empty_source()
        self.assertEqual(decrypted(os.path.join(self.profile.destination, "report.pdf.enc")), b"content")
        self.assertEqual(read(os.path.join(self.profile.done, "report.pdf")), b"content")


if __name__ == "__main__":
    unittest.main()
