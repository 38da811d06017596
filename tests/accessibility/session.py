# SPDX-License-Identifier: MIT
"""Runs a command in a session of its own: a display, a message bus and a runtime folder, all gone at its end.

session.py COMMAND..."""

import os
import subprocess
import sys
import tempfile


def main():
    with tempfile.TemporaryDirectory(prefix="vantrell-session-") as folder:
        reading, writing = os.pipe()
        display = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x1024x24", "-nolisten",
                                    "tcp"], pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        try:
            with os.fdopen(reading) as number:
                name = ":" + number.readline().strip()
            environment = {**os.environ, "DISPLAY": name, "XDG_RUNTIME_DIR": folder, "HOME": folder,
                           "LC_ALL": "C.UTF-8", "NO_AT_BRIDGE": "0"}
            return subprocess.run(["dbus-run-session", "--", *sys.argv[1:]], env=environment, check=False).returncode
        finally:
            display.terminate()
            display.wait(30)


if __name__ == "__main__":
    sys.exit(main())
