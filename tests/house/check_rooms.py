"""Holds every include of the program against the table of rooms (rooms.txt), and the table against the document.

usage: check_rooms.py REPOSITORY
"""
import pathlib
import re
import sys

WINDOW_FILE = re.compile(r"(frm|mk1)")
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
NO_ROOMS = ("tests", "build", "cmake", "data", "docs", "scripts")
GENERATED = re.compile(r"embedded_\w+\.h$")


def read_table(text):
    """The rooms in their order, each with those it may include."""
    table = {}
    for line in text.splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        room, _, allowed = line.partition(":")
        table[room.strip()] = allowed.split()
    return table


def table_faults(table):
    """A table in which each room names only rooms above it has no circle."""
    above = set()
    for room, allowed in table.items():
        for other in allowed:
            if other not in above:
                yield (f"rooms.txt: {room} names {other}, which does not stand above it. Arrows run downwards only: "
                       f"move what both need into a room above, or let one of them own a small interface.")
        above.add(room)


def room_of(path, table):
    """The room of a header or source, by its path from the repository's top; None when there is no such room."""
    folder, name = path.parent.as_posix(), path.name
    windows = folder + "/frm"
    if WINDOW_FILE.match(name) and windows in table:
        return windows
    return folder if folder in table else None


def sources(top):
    for path in sorted(top.rglob("*")):
        inside = path.relative_to(top)
        if path.suffix in (".h", ".cpp") and inside.parts[0] not in NO_ROOMS and not inside.parts[0].startswith("."):
            yield inside


def include_faults(top, table):
    for path in sources(top):
        room = room_of(path, table)
        if room is None:
            yield f"{path}: its folder is no room. Give it a line in rooms.txt, or put the file into a room."
            continue
        for included in INCLUDE.findall((top / path).read_text(encoding="utf-8")):
            if GENERATED.match(included):
                continue
            other = room_of(pathlib.PurePosixPath(included), table)
            if other is None or not (top / included).is_file():
                yield (f"{path}: \"{included}\" is no header of a room. Write the path from the top of the "
                       f"repository; the program includes nothing of the tests.")
            elif other != room and other not in table[room]:
                yield (f"{path}: {room} may not include {other} (\"{included}\"). Let it ask for what it needs by an "
                       f"interface of a room that it may include, or move the file to where it belongs.")


def document_faults(top, table):
    """Each room's row in the document: | `room` | `one` `other` | …"""
    text = (top / "docs/architecture.md").read_text(encoding="utf-8")
    rows = {room: re.findall(r"`([^`]+)`", allowed)
            for room, allowed in re.findall(r"^\| `([^`]+)` \| ([^|]*)\|", text, re.MULTILINE)}
    for room, allowed in table.items():
        if rows.get(room) != allowed:
            yield (f"docs/architecture.md: its row of {room} is not that of rooms.txt. It must be: "
                   f"| `{room}` | {' '.join(f'`{one}`' for one in allowed)} | what lives there |")
    for room in rows.keys() - table.keys():
        yield f"docs/architecture.md: it shows a room {room} that rooms.txt does not know."


def main():
    top = pathlib.Path(sys.argv[1])
    table = read_table((top / "rooms.txt").read_text(encoding="utf-8"))
    faults = [*table_faults(table), *include_faults(top, table), *document_faults(top, table)]
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
