"""Holds that the rooms of files reach the machine through platform/files/kernel.h alone: what their object files want
from elsewhere may be nothing but memory, texts, and C++ that does not touch the machine.

usage: check_seam.py OBJECT...
"""
import pathlib
import re
import subprocess
import sys

ROOM = "platform/files/"
# Names without a C++ signature that may be wanted. Everything else is a call of the C library or of the system.
PLAIN = re.compile(r"(mem(cpy|move|set|cmp|chr)|bcmp|strlen|strcmp|__cxa_\w+|__gxx_\w+|_Unwind_\w+|__stack_chk_fail"
                   r"|__clang_call_terminate|__dso_handle|_GLOBAL_OFFSET_TABLE_|__(asan|ubsan|sanitizer|tsan|lsan)_\w+"
                   r"|__(gcov|llvm)_\w+|__tls_get_addr|abort)")
# What of the C++ library touches the machine.
MACHINE = re.compile(r"std::.*(random_device|filesystem|basic_(file|if|of|f)stream|fstream|filebuf|_clock::now"
                     r"|this_thread|thread::|system_category)|std::(cout|cerr|clog|cin)\b")


def wanted(objects):
    """The undefined names of the object files, as people read them."""
    listed = subprocess.run(["nm", "-u", "-A", "-C", *objects], check=True, capture_output=True, text=True).stdout
    for line in listed.splitlines():
        file, _, name = line.partition(" U ")
        yield pathlib.PurePath(file.strip().rstrip(":")).name, name.strip()


def is_allowed(name):
    if "(" in name or "::" in name or " for " in name or name.startswith("operator"):
        return not MACHINE.search(name)
    return PLAIN.fullmatch(name.partition("@")[0]) is not None


def main():
    objects = [path for path in sys.argv[1:] if ROOM in pathlib.PurePath(path).as_posix()]
    if not objects:
        print(f"No object file of {ROOM} was named; the test looks at nothing.")
        return 1
    faults = sorted({(file, name) for file, name in wanted(objects) if not is_allowed(name)})
    for file, name in faults:
        print(f"{ROOM}: {file} wants {name}, which goes past the seam. Call it through the Kernel "
              f"(platform/files/kernel.h; a new call is a new member, forwarded in platform/linux/linux_kernel.cpp), "
              f"or be given what it tells: a Clock, a folder.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
