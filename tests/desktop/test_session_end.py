# SPDX-License-Identifier: MIT
"""The end of the session: the X session manager asks to save, calls it off, or ends it; logind shuts the machine down."""

import ctypes
import os
import unittest

from gi.repository import Gio, GLib

from desktop import Bus, DesktopTest, Screen, Service, wait_until
from harness import count_of

GIB = 1 << 30
RESTART_NEVER = "restart 3"


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
    def test_nothing_is_lost(self):
        bus = Bus(self)
        logind = Logind(bus)
        profile, process = self.start_program(bus.environment)
        wait_until(lambda: logind.delay is not None, "the program to ask for a delay")
        self.addCleanup(os.close, logind.delay)
        self.assertEqual(logind.asked, ("shutdown", "Vantrell", "delay"))
        profile.wait_for_log("ZEP Is PAUSED at")
        logind.shut_down(begins=False)
        profile.drop("big", size=GIB)
        wait_until(lambda: count_of(process, "io", "wchar") > GIB // 8, "the file at work")
        self.assertIsNone(process.poll(), "a shut-down that was called off ends nothing")
        self.assertTrue(logind.is_delayed())

        def end():
            logind.shut_down()
            wait_until(lambda: not logind.is_delayed(), "the delay's end")
            self.assertTrue(os.path.exists(os.path.join(profile.data, "ZEP.cfg")))
        self.assert_ends_in_order(profile, process, end)
        self.assertEqual(os.path.getsize(os.path.join(profile.source, "big")), GIB)
        self.assertEqual(os.listdir(profile.destination), [])


Pointer = ctypes.c_void_p
Called = ctypes.CFUNCTYPE(ctypes.c_int, Pointer, Pointer, ctypes.c_int, Pointer)
NewClient = ctypes.CFUNCTYPE(ctypes.c_int, Pointer, Pointer, Pointer, Pointer, Pointer)


class SessionManager:
    """The X session manager of one program, by the libraries that real ones use. `said` is what the program does."""

    def __init__(self, test):
        self.sm, self.ice = ctypes.CDLL("libSM.so.6"), ctypes.CDLL("libICE.so.6")
        self.sm.SmsGenerateClientID.restype = self.ice.IceAcceptConnection.restype = Pointer
        self.ice.IceComposeNetworkIdList.restype = ctypes.c_char_p
        self.said = []
        nothing, self.yes, self.new_client = Called(lambda *_: 0), Called(lambda *_: 1), NewClient(self.meet)
        # As the protocol numbers them: registering, asking, having asked, wanting to save, a second phase, having
        # saved, leaving, and properties that are set, deleted and read.
        self.calls = [Called(self.register), Called(lambda *_: self.said.append("wants to ask") or 0), nothing, nothing,
                      nothing, Called(lambda _, __, done, ___: self.said.append("saved" if done else "not saved") or 0),
                      nothing, Called(self.look_at_properties), nothing, nothing]
        self.ice.IceSetIOErrorHandler(nothing)
        self.ice._IceTransNoListen(b"tcp")
        self.sm.SmsInitialize(b"test", b"1", self.new_client, None, self.yes, 0, None)
        count, found = ctypes.c_int(), ctypes.POINTER(Pointer)()
        self.ice.IceListenForConnections(ctypes.byref(count), ctypes.byref(found), 0, None)
        test.addCleanup(self.ice.IceFreeListenObjs, count, found)
        self.address = self.ice.IceComposeNetworkIdList(count, found).decode()
        for place in map(Pointer, found[:count.value]):
            self.ice.IceSetHostBasedAuthProc(place, self.yes)
            GLib.io_add_watch(self.ice.IceGetListenConnectionNumber(place), GLib.PRIORITY_DEFAULT, GLib.IO_IN, self.accept,
                              place)

    def accept(self, _file, _condition, place):
        connection = Pointer(self.ice.IceAcceptConnection(place, ctypes.byref(ctypes.c_int())))
        GLib.io_add_watch(self.ice.IceConnectionNumber(connection), GLib.PRIORITY_DEFAULT, GLib.IO_IN,
                          lambda *_: self.ice.IceProcessMessages(connection, None, None) == 0)
        return False

    def meet(self, program, _data, mask, callbacks, _reason):
        self.program = Pointer(program)
        ctypes.c_ulong.from_address(mask).value = (1 << len(self.calls)) - 1
        for number, call in enumerate(self.calls):
            Pointer.from_address(callbacks + 2 * number * ctypes.sizeof(Pointer)).value = ctypes.cast(call, Pointer).value
        return 1

    def register(self, *_):
        self.sm.SmsRegisterClientReply(self.program, Pointer(self.sm.SmsGenerateClientID(self.program)))
        self.sm.SmsSaveYourself(self.program, 1, 0, 0, 0)  # as the protocol wants it
        self.said.append("registered")
        return 1

    def look_at_properties(self, _program, _data, count, given):
        for one in ctypes.cast(given, ctypes.POINTER(Pointer))[:count]:
            name, _type, _count, values = (Pointer * 4).from_address(one)
            if ctypes.string_at(name) == b"RestartStyleHint":
                _length, value = (Pointer * 2).from_address(values)
                self.said.append(f"restart {ctypes.string_at(value, 1)[0]}")
        return 0

    def log_out(self):
        self.sm.SmsSaveYourself(self.program, 2, 1, 2, 0)

    def die(self):
        self.sm.SmsDie(self.program)


class BySessionManager(DesktopTest):
    def expect(self, *words):
        def have_come():
            said = [word for word in self.manager.said if not word.startswith("restart")]
            return said == list(words)
        wait_until(have_come, "the program to have " + words[-1])
        wishes = {word for word in self.manager.said if word not in words}
        self.assertEqual(wishes, {RESTART_NEVER}, "its start-up entry alone starts it with the session")

    def test_log_out_is_never_refused(self):
        for continually in (True, False):  # the close box would refuse where nothing is processed
            with self.subTest(continually=continually):
                self.doCleanups()  # there is one session manager in a process
                self.manager = SessionManager(self)
                screen = Screen(self)
                profile, process = self.start_program(screen.environment, {"SESSION_MANAGER": self.manager.address},
                                                      continually=continually)
                self.expect("registered", "saved")
                wait_until(screen.is_shown, "the window")
                self.manager.log_out()
                self.expect("registered", "saved", "saved")
                self.assert_ends_in_order(profile, process, self.manager.die)


if __name__ == "__main__":
    unittest.main()
