#!/usr/bin/python3
"""Has a program work on the styles of drawings and compares what it shows with what ezdxf reads.

styles.py --work PROGRAM --root FOLDER"""
import argparse
import subprocess
import sys
import tempfile
from pathlib import Path

import ezdxf
from ezdxf.lldxf.encoding import decode_dxf_unicode
from ezdxf.lldxf.tagger import ascii_tags_loader, binary_tags_loader

from outside_readers import audit


def shown(line):
    name, description, flags, fill, start, end, *elements = line.split("\t")
    split = [element.split(" ", 2) for element in elements]
    return name, description, int(flags), fill, float(start), float(end), [(float(o), c, l.upper()) for o, c, l in split]


def true_colors(path, encoding):
    """True colors by the handle of a style and the number of the element (0: the fill); ezdxf does not keep them."""
    binary = b"\0" in path.read_bytes()[:64]
    colors, handle, element, is_style = {}, None, 0, False
    with open(path, encoding=encoding, errors="surrogateescape") as stream:
        for code, value in binary_tags_loader(path.read_bytes()) if binary else ascii_tags_loader(stream):
            if code == 0:
                is_style, element = value == "MLINESTYLE", 0
            elif is_style and code == 5:
                handle = value
            elif is_style and code == 49:
                element += 1
            elif is_style and code == 420:
                colors[handle, element] = f":{int(value):06x}"
    return colors


def read(style, colors):
    dxf = style.dxf
    shown_color = lambda index, element: f"{index}{colors.get((dxf.handle, element), '')}"
    return (dxf.name, decode_dxf_unicode(dxf.description), dxf.flags, shown_color(dxf.fill_color, 0), round(dxf.start_angle, 9),
            round(dxf.end_angle, 9),
            [(round(e.offset, 9), shown_color(e.color, i), e.linetype.upper()) for i, e in enumerate(style.elements, 1)])


def compare(program, library, drawing, out):
    done = subprocess.run([program, library, drawing, out], capture_output=True, encoding="utf-8", timeout=60)
    assert done.returncode == 0, done.stderr
    worse = [code for code in audit(out) if code not in audit(drawing)]
    assert not worse, f"{drawing}: ezdxf finds {worse}"
    doc = ezdxf.readfile(out)
    ours = [shown(line) for line in done.stdout.splitlines()]
    assert [name for name, _ in doc.mline_styles] == [style[0] for style in ours]
    colors = true_colors(out, doc.output_encoding)
    assert len(colors) == 2, f"{drawing}: true colors {colors}"
    for (_, style), own in zip(doc.mline_styles, ours):
        assert read(style, colors) == own, f"{drawing}: {read(style, colors)} is shown as {own}"
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
        for version, form in (("R2000", "asc"), ("R2007", "asc"), ("R2018", "asc"), ("R2018", "bin")):
            drawings.append(Path(folder) / f"{version}-{form}.dxf")
            doc = ezdxf.new(version, setup=["linetypes"])
            doc.modelspace().add_mline([(0, 0), (10, 0)])
            doc.saveas(drawings[-1], fmt=form)
        for drawing in drawings:
            compared += compare(options.work, options.root / "support/Support/TORVA.mln", drawing, Path(folder) / "out.dxf")
    print(f"{compared} styles read alike by ezdxf")
    return 0 if compared else 1


if __name__ == "__main__":
    sys.exit(main())
