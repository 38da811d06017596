#!/usr/bin/python3
"""Shows that the simulation can fail: takes each protection out of a copy of the program, one after the other, and lets
the simulation look for the broken promise that must follow.

usage: sabotage.py [--lives N] [NAME...]     NAME: a patch of tests/simulation/sabotage, without its ending

Ends with 0 only when every sabotage was found. The copy lies in build/sabotage, with one build tree for all.
"""
import argparse
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
PATCHES = ROOT / "tests/simulation/sabotage"
COPY = ROOT / "build/sabotage"
PROGRAM = COPY / "build/release/bin/vantrell_simulate"
WHOLE = COPY / "build/whole_simulate"
# The usual one; one in which others act all the time, one in which the clock is set again and again, and two with many
# files of the same name: there calls fail, or the program is killed when names have just changed.
WORLDS = ([], ["--others", 1, "--betweenCalls", 8], ["--others", 1, "--clockJumps", 1],
          ["--subfolders", 1, "--overwriting", 1, "--faults", 1],
          ["--subfolders", 1, "--overwriting", 1, "--unordered", 1, "--killsAtNames", 1])


def run(*words, **options):
    return subprocess.run([str(word) for word in words], text=True, capture_output=True, check=False, **options)


def must(*words, **options):
    done = run(*words, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, words))}\n{done.stdout}{done.stderr}")


def copy_sources():
    """Only what has changed is copied, so that only that is built again."""
    COPY.mkdir(parents=True, exist_ok=True)
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                            capture_output=True).stdout.split(b"\0")
    for name in filter(None, listed):
        source = ROOT / name.decode()
        target = COPY / name.decode()
        if not source.is_file() or (target.is_file() and target.read_bytes() == source.read_bytes()):
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(source.read_bytes())
        target.chmod(source.stat().st_mode)


def build():
    return run("cmake", "--build", "build/release", "--target", "vantrell_simulate", cwd=COPY)


def seed_that_fails(lives):
    """The first seed that the simulation found and that is whole without the sabotage, with its hazards and sentence."""
    for hazards in WORLDS:
        done = run(PROGRAM, "--seed-from", 1, "--lives", lives, *hazards, cwd=COPY)
        for found in re.finditer(r"^seed (\d+): (.*)$", done.stdout, re.MULTILINE):
            if run(WHOLE, "--seed", found[1], *hazards, cwd=COPY).returncode == 0:
                return " ".join(map(str, (found[1], *hazards))), found[2]
    return None


def try_out(patch, lives):
    """Nothing when the sabotage was found, else why not."""
    if run("git", "apply", "--check", patch, cwd=COPY).returncode != 0:
        return "no longer applies"
    must("git", "apply", patch, cwd=COPY)
    try:
        built = build()
        if built.returncode != 0:
            return "does not build:\n" + built.stdout[-2000:]
        found = seed_that_fails(lives)
    finally:
        must("git", "apply", "--reverse", patch, cwd=COPY)
    if not found:
        return f"was not found in {lives} lives of each kind"
    print(f"{patch.stem}: found by seed {found[0]}: {found[1]}", flush=True)
    return None


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("--lives", type=int, default=100_000)
    arguments.add_argument("names", nargs="*")
    given = arguments.parse_args()
    patches = [PATCHES / f"{name}.patch" for name in given.names] or sorted(PATCHES.glob("*.patch"))
    copy_sources()
    must("git", "init", "-q", cwd=COPY)
    must("cmake", "--preset", "release", cwd=COPY)
    must("cmake", "--build", "build/release", "--target", "vantrell_simulate", cwd=COPY)
    shutil.copy2(PROGRAM, WHOLE)
    missed = 0
    for patch in patches:
        why = try_out(patch, given.lives)
        if why:
            missed += 1
            print(f"{patch.stem}: {why}", flush=True)
    print(f"{len(patches) - missed} of {len(patches)} sabotages were found.")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
