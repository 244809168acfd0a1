#!/usr/bin/python3
"""Ends and cancels scripts at every answer, and runs random ones: no command may leave an object open, hang or crash.

cut_scripts.py --torvac PATH [--rounds N]

Every script below is cut behind each of its answers. Cut short, it must report nothing but the command it ended in; with `^C`
there, it must report nothing, and `UNDO` must bring the drawing back byte for byte, as far as it is still the same drawing.
"""
import argparse
import random
import subprocess
import sys
import tempfile
from pathlib import Path

from room import make_room

PIPE, ON_PIPE, OTHER, NOTHING = "#32:4,2.5", "#32:8,2.5", "#31:8,0", "900,900"
SCRIPTS = [
    "-MLEDIT CS %s %s UNDO %s %s" % (PIPE, ON_PIPE, PIPE, ON_PIPE),
    "-MLEDIT CA %s %s %s %s %s %s undo" % (NOTHING, OTHER, NOTHING, PIPE, OTHER, "#31:10,0"),
    "-MLEDIT CA 4,2 8,2 10,2 %s 11,2" % NOTHING,
    "-MLEDIT CA #33:5,5 #FFFF:1,1 rubbish %s # #32 #32: %s" % (PIPE, ON_PIPE),
    "LIST %s" % PIPE, "LIST #33:5,5", "LIST #22:0,0", "LIST %s" % NOTHING,
    "ZOOM C 10,5 30", "ZOOM E", "ZOOM W 0,0 @20,10", "ZOOM 2X",
    "PICKBOX 5", "SETVAR CMLSCALE 2.5", "SETVAR ?",
    "-MLEDIT CA %s %s ^C U REDO UNDO 3 REDO" % (PIPE, ON_PIPE),
    "-MLEDIT CA %s %s ^C NEW No OPEN N QUIT No NEW Yes" % (PIPE, ON_PIPE),
    "SAVEAS other.dxf QSAVE NEW SAVEAS other.dxf Yes QSAVE OPEN room.dxf",
    "HELP ? MLEDIT MLSTYLE",
    'ERASE ALL R W 0,0 9,9 C 0,0 9,9 "" MOVE 8,0 "" 1,1 2,2 MOVE ALL "" D 1,1 COPY ALL "" D "" EXPLODE #31:0,0 "" CHPROP L "" C 5 ""',
    "LINE 0,0 1,0 1,1 u 2,2 c CIRCLE 1,1 d 3 CIRCLE 2p 0,0 1,0 CIRCLE 3p 0,0 1,0 0,1 UCS o 1,2 UCS z 30 UCS 3,4 UCS w UCS p",
    "MLINE j z s 2 st ? standard 0,0 1,0 1,1 u u u 2,0 2,2 0,2 c",
    'LAYER n A,B m C s 0 off C,0 yes on * c red A l ? continuous B f A t * lo * u A ? * ""',
]
WORDS = sorted({word for script in SCRIPTS for word in script.split()} | {"^C", "\n", "@1,1", "@5<30", "\"", ";", "1e999", "\0", "_u"})


class Torvac:
    def __init__(self, path, folder):
        self.path, self.folder, self.failures = path.resolve(), folder, 0
        make_room(folder / "room.dxf")
        self.room = (folder / "room.dxf").read_bytes()

    def run(self, text):
        """Runs a script on the drawing as it was made, whatever the runs before have saved."""
        for leftover in self.folder.glob("*.dxf*"):
            leftover.unlink()
        (self.folder / "room.dxf").write_bytes(self.room)
        (self.folder / "cut.scr").write_text(text)
        command = [self.path, "--profile", "profile", "room.dxf", "--script", "cut.scr", "--output", "out.dxf"]
        return subprocess.run(command, cwd=self.folder, stdin=subprocess.DEVNULL, capture_output=True, timeout=60)

    def expect(self, holds, what, text, done):
        if not holds:
            self.failures += 1
            print("%s: %r\n  status %d\n  %s" % (what, text, done.returncode, done.stderr.decode(errors="replace").strip()))


def cut(torvac, script):
    words = script.split()
    for count in range(1, len(words) + 1):
        text = " ".join(words[:count])
        done = torvac.run(text)
        faults = done.stderr.decode().splitlines()
        ended = [fault for fault in faults if "ended inside the command" in fault]
        torvac.expect(len(ended) <= 1 and ended == faults and done.returncode == len(ended), "cut short", text, done)

        text = text + "\n^C\nUNDO 99\n"
        done = torvac.run(text)
        isAsBefore = (torvac.folder / "out.dxf").read_bytes() == torvac.room or "NEW" in words
        torvac.expect(done.returncode == 0 and not done.stderr and b" to take back." in done.stdout and isAsBefore,
                      "cancelled", text, done)
    return len(words)


def randomly(torvac, rounds):
    seed = 4711
    print("random scripts, seed", seed)
    source = random.Random(seed)
    for _ in range(rounds):
        text = " ".join(source.choices(WORDS, k=source.randint(1, 40)))
        done = torvac.run(text)
        torvac.expect(done.returncode in (0, 1) and b"left an object open" not in done.stderr and b"failed:" not in done.stderr,
                      "random", text, done)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--torvac", required=True, type=Path)
    parser.add_argument("--rounds", type=int, default=300)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        torvac = Torvac(options.torvac, Path(name))
        places = sum(cut(torvac, script) for script in SCRIPTS)
        randomly(torvac, options.rounds)
    print("%d places cut, %d random scripts, %d wrong" % (places, options.rounds, torvac.failures))
    return 1 if torvac.failures or places < len(SCRIPTS) else 0


if __name__ == "__main__":
    sys.exit(main())
