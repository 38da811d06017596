#!/usr/bin/python3
"""Runs the benchmarks that scripts/bench names, and prints medians, ranges and ratios of medians."""
import argparse
import contextlib
import datetime
import json
import os
import pathlib
import platform
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

import bench_contenders as contenders

ROOT = pathlib.Path(__file__).resolve().parents[2]

class Bench:
    def __init__(self, folder, short):
        self.folder = folder
        self.rounds = 2 if short else 5
        self.short = short
        self.results = {}

    def smaller(self, full, short):
        return short if self.short else full

    def compare(self, name, sizes, taking_part):
        """Each contender in turn, round by round, on the same files in fresh folders."""
        random.seed(1)
        originals = self.folder / "originals"
        make_files(originals, sizes)
        seconds = {contender: [] for contender in taking_part}
        more = {}
        for number in range(self.rounds):
            for contender, (run, check) in taking_part.items():
                source = self.part_of(originals, sizes, contenders.MOST_FILES.get(contender, len(sizes)))
                place = self.folder / f"{contender.replace(' ', '-')}-{number}"
                for part in ("out", "done"):
                    (place / part).mkdir(parents=True)
                subprocess.run(["cp", "-r", source, place / "in"], check=True)
                subprocess.run(["sync"], check=True)
                took, figures = run(place)
                wrong = check(place, source)
                if wrong:
                    sys.exit(f"{name}, {contender}: {wrong}")
                seconds[contender].append(took * sum(sizes) / sum(one.stat().st_size for one in source.iterdir()))
                more.setdefault(contender, figures)
                # Many removals would slow down what comes next.
                if len(sizes) < 100:
                    shutil.rmtree(place)
        print_table(name, len(sizes), seconds, more)
        self.results[name] = {"files": len(sizes), "bytes": sum(sizes), "seconds": seconds, "more": more}
        self.clean()

    def part_of(self, originals, sizes, most):
        """A folder with the first files alone, for contenders that would take too long with all of them."""
        if most >= len(sizes):
            return originals
        part = self.folder / f"first-{most}"
        if not part.exists():
            make_files(part, sizes[:most])
        return part

    def clean(self):
        for entry in self.folder.iterdir():
            if entry.is_dir() and entry.name != "lost+found":
                shutil.rmtree(entry)
        subprocess.run(["sync"], check=True)

    def note(self, name, figures):
        self.results[name] = figures
        print(f"\n{name}")
        for what, value in figures.items():
            print(f"  {what:<44}{value:>12.3f}" if isinstance(value, float) else f"  {what:<44}{value:>12}")


def make_files(folder, sizes):
    folder.mkdir()
    piece = random.randbytes(1 << 24)
    for number, size in enumerate(sizes):
        with (folder / f"file {number:06}").open("wb") as file:
            first = random.randrange(1 << 16)
            for done in range(0, size, 1 << 23):
                file.write(piece[first:first + min(size - done, 1 << 23)])


def print_table(name, files, seconds, more):
    print(f"\n{name}: {files} file{'s' if files > 1 else ''}")
    base = statistics.median(seconds["ours, shown"])
    for contender, took in seconds.items():
        middle = statistics.median(took)
        memory = f"   {more[contender]['memory']:.0f} MiB" if more.get(contender) else ""
        print(f"  {contender:<24}{middle:>9.2f} s  ({min(took):.2f} to {max(took):.2f})"
              f"{1000 * middle / files:>11.3f} ms a file   ours takes {base / middle:.2f} times as long{memory}", flush=True)


def small(bench):
    bench.compare("small", [4096] * bench.smaller(20_000, 2000), contenders.OURS | contenders.LIMITS | contenders.OTHERS)


def mixed(bench):
    dice = random.Random(2)
    sizes = [min(int(dice.lognormvariate(12.2, 1.2)), 1 << 26) for _ in range(bench.smaller(2000, 300))]
    bench.compare("mixed", sizes, contenders.OURS | contenders.LIMITS | contenders.OTHERS)


LARGE = contenders.OURS | {name: one for name, one in contenders.LIMITS.items() if "one by one" in name} | {
    name: one for name, one in contenders.OTHERS.items() if name in ("openssl, sync and mv", "cp -r")}


def large(bench):
    bench.compare("large", [bench.smaller(8 << 30, 1 << 30)], LARGE)


def larges(bench):
    bench.compare("larges", [bench.smaller(1 << 30, 1 << 28)] * 8, LARGE)


def nothing(bench):
    """A tree in which nothing is to do, against `find`; and the memory that it takes."""
    place = bench.folder / "nothing"
    folders = bench.smaller(1000, 100)
    make_tree(place / "in", folders, ".enc")
    find = median_of(3, lambda: seconds_of_find(place / "in"))
    alone, little = contenders.ours(bench.folder / "alone", subfolders=True)
    ours = median_of(3, lambda: contenders.ours(place, subfolders=True)[0] - alone)
    memory = contenders.ours(place, subfolders=True)[1]["memory"]
    count = folders * 1000
    bench.note("nothing", {"files": count, "find, s": find, "ours without its start, s": ours, "ours : find": ours / find,
                           "bytes of memory a file": (memory - little["memory"]) * (1 << 20) / count})
    bench.clean()


def first(bench):
    """The first of many files, against `find` over all of them."""
    place = bench.folder / "first"
    folders = bench.smaller(1000, 100)
    make_tree(place / "in", folders, "")
    find = median_of(3, lambda: seconds_of_find(place / "in"))
    alone, _ = contenders.ours(bench.folder / "alone", subfolders=True)
    program = contenders.Program(place, subfolders=True)
    try:
        seconds = program.wait_for(lambda: b"Sucessful" in program.log()) - alone
    finally:
        program.end()
    bench.note("first", {"files": folders * 1000, "find, s": find, "first file carried after, s": seconds,
                         "ours : find": seconds / find})
    bench.clean()


def make_tree(top, folders, ending):
    for number in range(folders):
        folder = top / f"{number:04}"
        folder.mkdir(parents=True)
        for one in range(1000):
            os.close(os.open(folder / f"{number:04} {one:04}{ending}", os.O_CREAT | os.O_WRONLY))
    subprocess.run(["sync"], check=True)


def seconds_of_find(folder):
    begin = time.monotonic()
    subprocess.run(["find", folder, "-type", "f"], stdout=subprocess.DEVNULL, check=True)
    return time.monotonic() - begin


def median_of(times, measure):
    return statistics.median(measure() for _ in range(times))


def idle(bench):
    """How much of a core is used while there is nothing to do."""
    figures = {}
    for hidden in (False, True):
        program = contenders.Program(bench.folder / f"idle-{hidden}", hidden)
        program.wait_for_pass()
        time.sleep(2)
        before = program.figures()[0]
        length = bench.smaller(60, 20)
        time.sleep(length)
        figures["hidden, % of a core" if hidden else "shown, % of a core"] = (
            (program.figures()[0] - before) / length * 100)
        program.end()
    bench.note("idle", figures)
    bench.clean()


def calls(bench):
    """System calls a file, from two runs of different length."""
    counts = []
    for files in (200, 600):
        place = bench.folder / f"calls-{files}"
        make_files(bench.folder / f"calls-{files}-files", [4096] * files)
        place.mkdir()
        (bench.folder / f"calls-{files}-files").rename(place / "in")
        table = bench.folder / f"calls-{files}.txt"
        program = contenders.Program(place, prefix=("strace", "-f", "-c", "-U", "name,calls", "-o", table))
        program.wait_for_pass()
        subprocess.run(["pkill", "-TERM", "-P", str(program.process.pid)], check=False)
        program.process.wait(30)
        counts.append({words[0]: int(words[1]) for words in map(str.split, table.read_text().splitlines())
                       if len(words) == 2 and words[1].isdigit()})
    a_file = {name: (count - counts[0].get(name, 0)) / 400 for name, count in counts[1].items()}
    bench.note("calls", {"all": a_file["total"], **{name: count for name, count in sorted(
        a_file.items(), key=lambda one: -one[1]) if count >= 0.1 and name != "total"}})
    bench.clean()


BENCHES = {one.__name__: one for one in (small, mixed, large, larges, nothing, first, idle, calls)}


@contextlib.contextmanager
def journalled(gibibytes):
    """A journalled ext4 in an image, since much of what is measured depends on the file system."""
    image = pathlib.Path(tempfile.mkdtemp(prefix="vantrell-bench."))
    point = image / "disk"
    point.mkdir()
    # All of it is there from the beginning: what is made when it is first written to would slow down the first round.
    subprocess.run(["fallocate", "-l", f"{gibibytes}G", image / "image"], check=True)
    subprocess.run(["mkfs.ext4", "-q", "-F", "-N", "5000000", "-E", "nodiscard,lazy_itable_init=0,lazy_journal_init=0",
                    image / "image"], check=True)
    subprocess.run(["mount", "-o", "loop", image / "image", point], check=True)
    try:
        yield point
    finally:
        subprocess.run(["umount", point], check=False)
        shutil.rmtree(image)


@contextlib.contextmanager
def display():
    screen = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24"], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
    os.environ["DISPLAY"] = ":" + screen.stdout.readline().decode().strip()
    try:
        yield
    finally:
        screen.terminate()


def machine():
    model = [line.partition(":")[2].strip() for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines()
             if line.startswith("model name")]
    commit = subprocess.run(["git", "-C", ROOT, "describe", "--always", "--dirty"], capture_output=True, text=True)
    return {"date": datetime.date.today().isoformat(), "commit": commit.stdout.strip(), "kernel": platform.release(),
            "processor": model[0] if model else platform.machine(), "cores": os.cpu_count()}


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("names", nargs="*", metavar="NAME")
    arguments.add_argument("--list", action="store_true", help="shows the names")
    arguments.add_argument("--short", action="store_true", help="smaller loads, fewer rounds")
    arguments.add_argument("--folder", type=pathlib.Path, help="works there instead of on a journalled ext4 in an image")
    arguments.add_argument("--json", type=pathlib.Path, help="where the figures go")
    arguments.add_argument("--record", action="store_true", help="keeps the figures in bench/results")
    given = arguments.parse_args()
    unknown = [name for name in given.names if name not in BENCHES]
    if given.list or unknown:
        sys.exit("\n".join(BENCHES) if given.list else f"There is no benchmark {unknown[0]}; see --list.")
    can_mount = os.geteuid() == 0 and given.folder is None
    if not can_mount:
        print("Not on a journalled ext4 of its own: that needs root and no --folder.")
    place = journalled(6 if given.short else 40) if can_mount else tempfile.TemporaryDirectory(dir=given.folder)
    with display(), place as folder:
        bench = Bench(pathlib.Path(folder), given.short)
        kind = subprocess.run(["stat", "-f", "-c", "%T", folder], capture_output=True, text=True).stdout.strip()
        about = machine() | {"file system": kind + (", journalled, in an image" if can_mount else "")}
        print(", ".join(f"{what} {value}" for what, value in about.items()))
        for name in given.names or BENCHES:
            BENCHES[name](bench)
    text = json.dumps({"about": about, "results": bench.results}, indent=1)
    if given.json:
        given.json.write_text(text + "\n")
    if given.record:
        kept = ROOT / "bench/results"
        kept.mkdir(exist_ok=True)
        (kept / f"{about['date']} {about['commit']}.json").write_text(text + "\n")


if __name__ == "__main__":
    main()
