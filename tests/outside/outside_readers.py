#!/usr/bin/python3
"""Judges what torvac writes by readers that are not ours: ezdxf audits the structure, ogrinfo reads the drawn lines.

outside_readers.py --torvac PATH --samples FOLDER"""
import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import ezdxf
from ezdxf import bbox
from ezdxf.math import Vec3

TOLERANCE = 1e-6


def run(torvac, *arguments):
    done = subprocess.run([torvac, *map(str, arguments)], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
    assert done.returncode == 0 and not done.stderr, f"{arguments}: status {done.returncode}\n{done.stdout}{done.stderr}"


def audit(path):
    """Codes of the errors that ezdxf finds, sorted."""
    auditor = ezdxf.readfile(path).audit()
    return sorted(error.code for error in auditor.errors + auditor.fixes)


def lines_by_ogr(path):
    """Drawn lines of every multiline by handle, as another program sees them."""
    text = subprocess.run(["ogrinfo", "-al", "-q", path], capture_output=True, text=True, check=True).stdout
    out = {}
    for feature in text.split("OGRFeature")[1:]:
        if "AcDbMline" not in feature:
            continue
        handle = re.search(r"EntityHandle \(String\) = (\w+)", feature).group(1)
        lines = re.findall(r"\(([^()]+)\)", feature[feature.index("LINESTRING"):])
        out[handle] = [[tuple(map(float, p.split()))[:2] for p in line.split(",")] for line in lines]
    return out


def drawn_by_lists(mline):
    """The same lines from the stored lists, in the plan."""
    vertices, lines = list(mline.vertices), []
    count = len(vertices) if mline.is_closed else len(vertices) - 1
    for index in range(count):
        a, b = vertices[index], vertices[(index + 1) % len(vertices)]
        for element, values in enumerate(a.line_params):
            start = a.location + a.miter_direction * values[0]
            end = b.location + b.miter_direction * b.line_params[element][0]
            for at in range(1, len(values), 2):
                stop = start + a.line_direction * values[at + 1] if at + 1 < len(values) else end
                begin = start + a.line_direction * values[at]
                lines.append([(begin.x, begin.y), (stop.x, stop.y)])
    return lines


def same_lines(a, b):
    key = lambda line: [round(v, 3) for point in line for v in point]
    a, b = sorted(a, key=key), sorted(b, key=key)
    return len(a) == len(b) and all(abs(v - w) <= TOLERANCE * max(1.0, abs(v)) for x, y in zip(a, b)
                                    for p, q in zip(x, y) for v, w in zip(p, q))


def judge(torvac, drawing, scripts, folder):
    """Checks one sample drawing, unedited and after each of its scripts; returns the number of multilines compared."""
    out, compared = folder / "out.dxf", 0
    run(torvac, drawing, "--output", out)
    assert out.read_bytes() == drawing.read_bytes(), f"{drawing.name}: an unedited save differs"
    for script in scripts:
        run(torvac, drawing, "--script", script, "--output", out)
        assert out.read_bytes() != drawing.read_bytes(), f"{script.name}: nothing was edited"
        worse = [code for code in audit(out) if code not in audit(drawing)]
        assert not worse, f"{script.name}: ezdxf finds {worse}"
        seen = lines_by_ogr(out)
        for mline in ezdxf.readfile(out).modelspace().query("MLINE"):
            assert same_lines(seen[mline.dxf.handle], drawn_by_lists(mline)), f"{script.name}: multiline {mline.dxf.handle} reads otherwise"
            compared += 1
    return compared


def edited(torvac, drawing, command, out):
    """The model space of a drawing after a command, in its order; the audit may find nothing new."""
    run(torvac, drawing, "--command", command, "--output", out)
    worse = [code for code in audit(out) if code not in audit(drawing)]
    assert not worse, f"{command}: ezdxf finds {worse}"
    return list(ezdxf.readfile(out).modelspace())


def judge_edits(torvac, drawing, out):
    """Checks the commands that work on selections; returns the number of entities and lines compared."""
    before = list(ezdxf.readfile(drawing).modelspace())
    boxes = [bbox.extents([entity]) for entity in before]
    way = Vec3(1250, -300, 7)
    for command, first in (("MOVE", 0), ("COPY", len(before))):
        after = edited(torvac, drawing, f'{command} ALL "" 0,0,0 {way.x},{way.y},{way.z}', out)[first:]
        assert [e.dxftype() for e in after] == [e.dxftype() for e in before], f"{command}: other entities"
        for entity, box in zip(after, boxes):
            there = bbox.extents([entity])
            assert there.extmin.isclose(box.extmin + way, abs_tol=TOLERANCE) and there.extmax.isclose(
                box.extmax + way, abs_tol=TOLERANCE), f"{command}: {entity} is not where it should be"
    lines = [line[i:i + 2] for run_ in lines_by_ogr(drawing).values() for line in run_ for i in range(len(line) - 1)]
    pieces = edited(torvac, drawing, 'EXPLODE ' + " ".join(f"#{e.dxf.handle}:0,0" for e in before if e.dxftype() == "MLINE") + ' ""', out)
    drawn = [[(e.dxf.start.x, e.dxf.start.y), (e.dxf.end.x, e.dxf.end.y)] for e in pieces if e.dxftype() == "LINE"]
    missing = [line for line in lines if not any(same_lines([line], [piece]) for piece in drawn)]
    assert not missing, f"EXPLODE: {missing} of the multilines' lines are gone"
    assert edited(torvac, drawing, 'ERASE ALL ""', out) == [], "ERASE: something is left"
    return 2 * len(before) + len(lines)


def judge_new_records(torvac, version, form, folder):
    """Checks a layer, a style with its dictionary and a multiline that are made in a drawing of some version."""
    old, out = folder / "old.dxf", folder / "made.dxf"
    doc = ezdxf.new(version)
    doc.rootdict.discard("ACAD_MLINESTYLE")
    doc.saveas(old, fmt=form)
    made, = edited(torvac, old, 'LAYER M "Stra\u00dfe" "" MLINE S 3 J Z 0,0 10,0 10,10 0,0 C', out)
    assert made.dxf.layer == "Stra\u00dfe" and made.is_closed and len(made.vertices) == 3, f"{version} {form}: {made}"
    assert [e.offset for e in made.style.elements] == [0.5, -0.5], f"{version} {form}: {made.style}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--torvac", required=True)
    parser.add_argument("--samples", type=Path, required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        new = Path(folder) / "new.dxf"
        run(options.torvac, "--output", new)
        assert audit(new) == [], f"a new drawing: ezdxf finds {audit(new)}"
        compared = judge(options.torvac, options.samples / "floor-plan.dxf", [options.samples / "cut-doors.scr"], Path(folder))
        for script in sorted(options.samples.glob("*.scr")):
            if script.with_suffix(".dxf").exists():
                compared += judge(options.torvac, script.with_suffix(".dxf"), [script], Path(folder))
        for version, form in (("R2000", "asc"), ("R2007", "asc"), ("R2018", "asc"), ("R2018", "bin")):
            judge_new_records(options.torvac, version, form, Path(folder))
        entities = judge_edits(options.torvac, options.samples / "floor-plan.dxf", Path(folder) / "edited.dxf")
    print(f"{compared} multilines, {entities} edited entities and lines read alike by other programs")
    return 0 if compared and entities else 1


if __name__ == "__main__":
    sys.exit(main())
