#!/usr/bin/python3
"""Runs the console sessions that stand in text files and compares what they print.

sessions.py --torvac PATH [--samples FOLDER] [--update] FILE...

A session is a fenced block marked `console`; a block that does not end is a fault. A line beginning with `$ ` is a shell command; the lines up to the next one are
what it prints, standard output and standard error together, and `[status N]` at the end when its exit status N is not 0. What
stands below `$ cat NAME` becomes the file NAME instead, unless there is such a file. The sessions of one file share a fresh
folder that holds room.dxf, or the drawings and scripts of the sample folder; torvac is on the path. --update writes what was
printed into the files.
"""
import argparse
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from room import make_room

FENCE_BEGIN, FENCE_END = "```console", "```"


class UnclosedFence(Exception):
    """Holds the number of the line that opens it."""


def blocks(lines):
    """(first, last + 1) line numbers of the sessions' contents."""
    begin, is_session = None, False
    for number, mark in enumerate(map(str.strip, lines)):
        if not mark.startswith(FENCE_END):
            continue
        if begin is None:
            begin, is_session = number + 1, mark == FENCE_BEGIN
        elif mark == FENCE_END:
            if is_session:
                yield begin, number
            begin = None
        else:
            break
    if begin is not None:
        raise UnclosedFence(begin)


def steps(lines):
    """The commands of a session with the lines that they are expected to print."""
    found = []
    for line in lines:
        if line.startswith("$ "):
            found.append((line[2:], []))
        else:
            found[-1][1].append(line)
    return found


def run(command, folder, torvac):
    env = dict(os.environ, PATH="%s:/usr/bin:/bin" % torvac.parent, HOME=str(folder), LC_ALL="C.UTF-8")
    env.pop("XDG_CONFIG_HOME", None)
    done = subprocess.run(["bash", "-c", command], cwd=folder, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=60)
    printed = done.stdout.decode(errors="backslashreplace").splitlines()
    return [line.rstrip() for line in printed] + (["[status %d]" % done.returncode] if done.returncode else [])


def run_step(command, expected, folder, torvac):
    name = folder / command[4:]
    if command.startswith("cat ") and not name.exists():
        name.write_text("".join(line + "\n" for line in expected))
    return run(command, folder, torvac)


def fill(folder, samples):
    if not samples:
        return make_room(folder / "room.dxf")
    for file in [*samples.glob("*.dxf"), *samples.glob("*.scr")]:
        shutil.copy(file, folder)


def check_file(path, torvac, samples, update):
    lines = path.read_text().splitlines()
    printed_lines, copied, failed, count = [], 0, 0, 0
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        fill(folder, samples)
        for begin, end in blocks(lines):
            printed_lines += lines[copied:begin]
            copied = end
            for command, expected in steps(lines[begin:end]):
                count += 1
                printed = run_step(command, expected, folder, torvac)
                printed_lines += ["$ " + command] + printed
                if printed != expected and not update:
                    failed += 1
                    print("%s: $ %s" % (path.name, command))
                    print("  expected:", *expected, sep="\n    ")
                    print("  printed:", *printed, sep="\n    ")
    if update:
        path.write_text("\n".join(printed_lines + lines[copied:]) + "\n")
    return count, failed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--torvac", required=True, type=Path)
    parser.add_argument("--samples", type=Path)
    parser.add_argument("--update", action="store_true")
    parser.add_argument("files", nargs="+", type=Path)
    options = parser.parse_args()
    total = wrong = 0
    for path in options.files:
        try:
            count, failed = check_file(path, options.torvac.resolve(), options.samples, options.update)
        except UnclosedFence as fence:
            print("%s:%s: this fence is not closed" % (path.name, fence))
            return 1
        if count == 0:
            print("%s: no session in it" % path)
            return 1
        total, wrong = total + count, wrong + failed
    print("%d commands run, %d differ" % (total, wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
