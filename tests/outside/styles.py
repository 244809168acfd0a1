#!/usr/bin/python3
"""Has a program work on the styles of drawings and compares what it shows with what ezdxf reads.

styles.py --work PROGRAM --root FOLDER"""
import argparse
import subprocess
import sys
import tempfile
from pathlib import Path

import ezdxf

from outside_readers import audit


def shown(line):
    name, flags, fill, start, end, *elements = line.split("\t")
    split = [element.split(" ", 2) for element in elements]
    return name, int(flags), int(fill), float(start), float(end), [(float(o), int(c), l.upper()) for o, c, l in split]


def read(style):
    dxf = style.dxf
    return (dxf.name, dxf.flags, dxf.fill_color, round(dxf.start_angle, 9), round(dxf.end_angle, 9),
            [(round(e.offset, 9), e.color, e.linetype.upper()) for e in style.elements])


def compare(program, library, drawing, out):
    done = subprocess.run([program, library, drawing, out], capture_output=True, text=True, timeout=60)
    assert done.returncode == 0, done.stderr
    worse = [code for code in audit(out) if code not in audit(drawing)]
    assert not worse, f"{drawing}: ezdxf finds {worse}"
    doc = ezdxf.readfile(out)
    ours = [shown(line) for line in done.stdout.splitlines()]
    assert [name for name, _ in doc.mline_styles] == [style[0] for style in ours]
    for (_, style), own in zip(doc.mline_styles, ours):
        assert read(style) == own, f"{drawing}: {read(style)} is shown as {own}"
        for _, _, linetype in own[-1]:
            assert linetype in doc.linetypes, f"{drawing}: no linetype {linetype}"
    inside = {style.dxf.handle for _, style in doc.mline_styles}
    stray = [o.dxf.handle for o in doc.objects.query("MLINESTYLE") if o.dxf.handle not in inside]
    assert not stray, f"{drawing}: nothing leads to the styles {stray}"
    for mline in doc.query("MLINE"):
        assert mline.dxf.style_name.upper() == mline.style.dxf.name.upper(), f"{drawing}: {mline} names another style"
    return len(ours)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--work", required=True)
    parser.add_argument("--root", type=Path, required=True)
    options = parser.parse_args()
    compared = 0
    with tempfile.TemporaryDirectory() as folder:
        drawings = [options.root / "samples/floor-plan.dxf"]
        for version in ("R2000", "R2007", "R2018"):
            drawings.append(Path(folder) / f"{version}.dxf")
            doc = ezdxf.new(version, setup=["linetypes"])
            doc.modelspace().add_mline([(0, 0), (10, 0)])
            doc.saveas(drawings[-1])
        for drawing in drawings:
            compared += compare(options.work, options.root / "support/Support/TORVA.mln", drawing, Path(folder) / "out.dxf")
    print(f"{compared} styles read alike by ezdxf")
    return 0 if compared else 1


if __name__ == "__main__":
    sys.exit(main())
