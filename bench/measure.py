#!/usr/bin/env python3
"""Compares the console program with the scanner and with cp, whole programs by their CPU time.

    measure.py --torvac PATH --scan PATH [--drawings DIR] [--turns N] [--small]

Commands that are compared run in turns (A B A B ...), and their medians make a ratio, so that a busy machine slows both.
Missing drawings are made in DIR first. --small leaves the 336 MB plan out. The exit status tells whether all limits were kept.
"""
import argparse
import math
import os
import statistics
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent
EDITS = 1000
VIEW_HEIGHT = 2000  # drawing units; a pick must meet one wall, not its neighbour


@dataclass
class Run:
    cpu: float   # seconds, user and system
    user: float
    peak: int    # bytes


@dataclass
class Row:
    name: str
    figure: str
    value: float
    limit: float | None = None

    def is_kept(self):
        return self.limit is None or self.value <= self.limit


def run(command):
    process = subprocess.Popen([str(c) for c in command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit("failed: " + " ".join(str(c) for c in command))
    return Run(usage.ru_utime + usage.ru_stime, usage.ru_utime, usage.ru_maxrss * 1024)


def in_turns(turns, **commands):
    """Medians by name."""
    runs = {name: [] for name in commands}
    for _ in range(turns):
        for name, command in commands.items():
            runs[name].append(run(command))
    return {name: Run(statistics.median(r.cpu for r in of_one), statistics.median(r.user for r in of_one),
                      max(r.peak for r in of_one)) for name, of_one in runs.items()}


def edit_script(edits, path, by_point):
    """EDITS cuts, evenly over the drawing; the file of edits names each multiline with two points of its first element."""
    lines = edits.read_text().split("\n")
    lines = [line.split() for line in lines if line]
    step = max(1, len(lines) // EDITS)
    chosen = lines[::step][:EDITS]
    if len(chosen) < EDITS:
        sys.exit(f"{edits}: fewer than {EDITS} multilines to edit")
    with open(path, "w") as script:
        for handle, x1, y1, x2, y2, *_ in chosen:
            if by_point:
                middle = f"{(float(x1) + float(x2)) / 2!r},{(float(y1) + float(y2)) / 2!r}"
                script.write(f"ZOOM C {middle} {VIEW_HEIGHT}\n-MLEDIT CA\n{x1},{y1}\n{x2},{y2}\n\n")
            else:
                script.write(f"-MLEDIT CA\n#{handle}:{x1},{y1}\n#{handle}:{x2},{y2}\n\n")
    return path


def same_bytes(a, b):
    return subprocess.run(["cmp", "-s", a, b]).returncode == 0


class Bench:
    def __init__(self, arguments, work):
        self.torvac, self.scan = arguments.torvac, arguments.scan
        self.turns, self.drawings, self.work = arguments.turns, Path(arguments.drawings), work
        self.rows = []

    def drawing(self, name):
        path = self.drawings / (name + ".dxf")
        if not path.exists():
            subprocess.run([sys.executable, HERE / "make_drawings.py", self.drawings, name], check=True)
        return path

    def open_command(self, drawing, *more):
        return [self.torvac, drawing, "--script", self.nothing, *more]

    def add(self, *row):
        self.rows.append(Row(*row))
        print(".", end="", flush=True, file=sys.stderr)

    def start_up(self):
        empty = self.drawing("empty")
        r = in_turns(5 * self.turns, torvac=self.open_command(empty), scan=[self.scan, empty])
        self.add("start-up on an empty drawing", "x scanner", r["torvac"].cpu / r["scan"].cpu, 3.0)
        self.add("", "ms", r["torvac"].cpu * 1e3, 5.0)

    def opening(self, name):
        drawing = self.drawing(name)
        r = in_turns(self.turns, torvac=self.open_command(drawing), scan=[self.scan, drawing])
        self.add(f"open {name}", "x scanner", r["torvac"].cpu / r["scan"].cpu, 1.0)
        self.add("", "x scanner, user time", r["torvac"].user / r["scan"].user)
        self.add("", "ms", r["torvac"].cpu * 1e3)

    def saving(self, name):
        drawing, out, copy = self.drawing(name), self.work / "out.dxf", self.work / "copy.dxf"
        r = in_turns(self.turns, torvac=self.open_command(drawing, "--output", out), cp=["cp", drawing, copy])
        self.add(f"open and save {name}", "x cp", r["torvac"].cpu / r["cp"].cpu, 3.5)
        if not same_bytes(drawing, out):
            sys.exit(f"{name}: the saved drawing differs")
        copy.unlink()
        out.unlink()

    def editing(self, name):
        drawing, out = self.drawing(name), self.work / "out.dxf"
        by_handle = edit_script(drawing.with_suffix(".edits"), self.work / "handle.scr", by_point=False)
        by_point = edit_script(drawing.with_suffix(".edits"), self.work / "point.scr", by_point=True)
        one_edit = self.work / "one.scr"
        one_edit.write_text("".join(by_handle.read_text().splitlines(keepends=True)[:4]))
        edit = lambda script: [self.torvac, drawing, "--script", script, "--output", out]
        r = in_turns(self.turns, handle=edit(by_handle), point=edit(by_point), one=edit(one_edit),
                     save=self.open_command(drawing, "--output", out), scan=[self.scan, drawing])
        out.unlink()
        self.add(f"{EDITS} cuts by handle in {name}", "ms more than one cut", (r["handle"].cpu - r["one"].cpu) * 1e3, 20)
        self.add("", "ms of one cut (the module is loaded)", (r["one"].cpu - r["save"].cpu) * 1e3, 20)
        self.add(f"{EDITS} cuts by point in {name}", "x scanner", r["point"].cpu / r["scan"].cpu, 3.5)
        size = drawing.stat().st_size
        # A small drawing's peak is mostly the program itself.
        is_large = size > 100e6
        self.add(f"memory by handle in {name}", "x file", r["handle"].peak / size, 1.35 if is_large else None)
        self.add(f"memory by point in {name}", "x file", r["point"].peak / size, 1.6 if is_large else None)

    def long_multilines(self, name, cross_limit):
        """One edit of multilines of 10,000 vertices: a cross of two, and the tools that edit one."""
        drawing, out, gap = self.drawing(name), self.work / "out.dxf", self.work / "gap.dxf"
        first, second = (line.split() for line in drawing.with_suffix(".edits").read_text().splitlines())
        here, there = f"#{first[0]}:{first[1]},{first[2]}", f"#{first[0]}:{first[3]},{first[4]}"

        def edit(tool, *picks, of=drawing, to=out):
            script = self.work / f"{tool}.scr"
            script.write_text("\n".join((f"-MLEDIT {tool}", *picks, "", "")))
            return [self.torvac, of, "--script", script, "--output", to]

        run(edit("CA", here, there, to=gap))
        crosses = ("CC", "OC", "MC")
        picks = (here, f"#{second[0]}:{second[1]},{second[2]}")
        r = in_turns(self.turns, **{tool: edit(tool, *picks) for tool in crosses},
                     CS=edit("CS", here, there), CA=edit("CA", here, there), AV=edit("AV", here), DV=edit("DV", here),
                     WA=edit("WA", here, there, of=gap), save=self.open_command(drawing, "--output", out),
                     scan=[self.scan, drawing])
        slowest = max(crosses, key=lambda tool: r[tool].cpu)
        self.add(f"{slowest}, the slowest cross in {name}", "x scanner", r[slowest].cpu / r["scan"].cpu, cross_limit)
        slowest = max(("CS", "CA", "AV", "DV", "WA"), key=lambda tool: r[tool].cpu)
        self.add(f"{slowest}, the slowest tool in {name}", "ms more than open and save",
                 (r[slowest].cpu - r["save"].cpu) * 1e3, 10)
        gap.unlink()
        out.unlink()

    def growth(self, small, large):
        a, b = self.drawing(small), self.drawing(large)
        out = self.work / "out.dxf"
        for name, more in (("open", []), ("open and save", ["--output", out])):
            r = in_turns(self.turns, small=self.open_command(a, *more), large=self.open_command(b, *more))
            exponent = math.log(r["large"].cpu / r["small"].cpu) / math.log(b.stat().st_size / a.stat().st_size)
            self.add(f"growth of {name}, {small} to {large}", "exponent", exponent, 1.08)
        out.unlink()

    def run(self, plans):
        self.nothing = self.work / "nothing.scr"
        self.nothing.write_text("; nothing\n")
        self.start_up()
        for name, cross_limit in (("long", 4.0), ("weave", 4.0), ("long-16", None)):
            self.long_multilines(name, cross_limit)
        for name in plans:
            self.opening(name)
            self.saving(name)
            self.editing(name)
        self.growth("plan-10k", plans[-1])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--torvac", required=True)
    parser.add_argument("--scan", required=True)
    parser.add_argument("--drawings", default=str(Path(tempfile.gettempdir()) / "torva-bench"))
    parser.add_argument("--turns", type=int, default=7)
    parser.add_argument("--small", action="store_true")
    arguments = parser.parse_args()
    Path(arguments.drawings).mkdir(parents=True, exist_ok=True)
    # Beside the drawings, so that all is written to the same disk.
    with tempfile.TemporaryDirectory(dir=arguments.drawings) as work:
        bench = Bench(arguments, Path(work))
        bench.run(["plan-100k"] if arguments.small else ["plan-100k", "plan-1m"])
    print(file=sys.stderr)
    for row in bench.rows:
        limit = "" if row.limit is None else f"<= {row.limit:g}"
        print(f"{row.name:38} {row.value:9.2f} {row.figure:37} {limit:8} {'' if row.is_kept() else 'MISSED'}")
    sys.exit(0 if all(row.is_kept() for row in bench.rows) else 1)


if __name__ == "__main__":
    main()
