# SPDX-License-Identifier: MIT
"""Starts what a desktop entry names, the way that GLib's desktops do."""

import sys

from gi.repository import Gio

Gio.DesktopAppInfo.new_from_filename(sys.argv[1]).launch([], None)
