#!/usr/bin/python3
"""Plots each sample drawing before and after its script, the same bytes each time.

gallery.py --torvac PATH [--check] FOLDER

Writes NAME-before.svg and NAME-after.svg into the folder for every NAME.dxf beside this file that has a NAME.scr. The first
picture shows where the script picks, numbered in order, unless the picks are many. --check writes nothing there; it names the
pictures that are missing, left over or would change, and the drawings that make_samples.py would write otherwise.
"""
import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import ezdxf

HERE = Path(__file__).resolve().parent
WIDTH, HEIGHT = 480, 320
MOST_MARKS = 8  # more would hide the drawing
PICK = re.compile(r"^Select .*: (?:#\w+:)?(-?[\d.]+),(-?[\d.]+)$", re.MULTILINE)
# What the painter writes about fonts and identity says nothing about the lines, but depends on the machine.
NOISE = re.compile(r'\n?<(title|desc)>.*</\1>|<defs>\s*</defs>'
                   r'|\s(font-\w+="[^"]*"|vector-effect="none"|transform="matrix\(1,0,0,1,0,0\)")')
EMPTY = re.compile(r"<g [^>]*>\s*</g>\s*")
MARK = ('<g transform="translate(%.1f,%.1f)"><circle r="4" fill="none" stroke="#d00000" stroke-width="1.5"/>'
        '<text x="6" y="-6" font-family="sans-serif" font-size="13" fill="#d00000">%d</text></g>\n')


def torvac(program, *arguments):
    done = subprocess.run([program, *map(str, arguments)], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
    if done.returncode or done.stderr:
        sys.exit("%s: status %d\n%s" % (arguments, done.returncode, done.stderr))
    return done.stdout


def plot(program, drawing, folder):
    picture = folder / "picture.svg"
    torvac(program, drawing, "--viewport", "%dx%d" % (WIDTH, HEIGHT), "--command", "PLOT %s" % picture)
    text = picture.read_text()
    picture.unlink()
    text = re.sub(r'width="[^"]*mm" height="[^"]*mm"', 'width="%d" height="%d"' % (WIDTH, HEIGHT), NOISE.sub("", text))
    return re.sub(r"\n+", "\n", EMPTY.sub("", text))


def with_marks(picture, drawing, picks):
    if len(picks) > MOST_MARKS:
        return picture
    view = ezdxf.readfile(drawing).viewports.get("*Active")[0].dxf
    scale = HEIGHT / view.height
    marks = "".join(MARK % (WIDTH / 2 + (float(x) - view.center.x) * scale, HEIGHT / 2 - (float(y) - view.center.y) * scale, number)
                    for number, (x, y) in enumerate(picks, start=1))
    return picture.replace("</svg>", marks + "</svg>")


def pictures(program, script, folder):
    """The two pictures of a sample: (file name, text)."""
    drawing, edited = script.with_suffix(".dxf"), folder / "edited.dxf"
    picks = PICK.findall(torvac(program, drawing, "--script", script, "--output", edited))
    yield script.stem + "-before.svg", with_marks(plot(program, drawing, folder), drawing, picks)
    yield script.stem + "-after.svg", plot(program, edited, folder)


def drawings():
    """What make_samples.py writes now: file names with contents."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, "-B", HERE / "make_samples.py", folder], check=True, timeout=60)
        return {path.name: path.read_bytes() for path in Path(folder).glob("*.dxf")}


def stale(made, kept):
    return sorted(name for name in made.keys() | kept.keys() if made.get(name) != kept.get(name))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--torvac", required=True, type=Path)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("folder", type=Path)
    options = parser.parse_args()
    scripts = [script for script in sorted(HERE.glob("*.scr")) if script.with_suffix(".dxf").exists()]
    with tempfile.TemporaryDirectory() as folder:
        made = dict(pair for script in scripts for pair in pictures(options.torvac, script, Path(folder)))
    if not options.check:
        options.folder.mkdir(parents=True, exist_ok=True)
        for name, text in made.items():
            (options.folder / name).write_text(text)
        print("%d pictures written to %s" % (len(made), options.folder))
        return 0
    wrong = stale(made, {path.name: path.read_text() for path in options.folder.glob("*.svg")})
    wrong += stale(drawings(), {path.name: path.read_bytes() for path in HERE.glob("*.dxf")})
    for name in wrong:
        print("%s is not what scripts/gallery or make_samples.py makes now" % name)
    print("%d pictures, %d files stale" % (len(made), len(wrong)))
    return 1 if wrong or not made else 0


if __name__ == "__main__":
    sys.exit(main())
