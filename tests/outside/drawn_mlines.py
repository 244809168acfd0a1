#!/usr/bin/python3
"""Compares what MLINE draws with what ezdxf builds of the same path.

drawn_mlines.py --torvac PATH"""
import argparse
import math
import random
import sys
import tempfile
from pathlib import Path

import ezdxf
from ezdxf.math import Vec3

from outside_readers import audit, run

STYLES = {  # offsets, start angle, end angle
    "TWO": ([0.5, -0.5], 90, 90),
    "SLANTED": ([1.5, 0.5, -0.25, -2], 60, 125),
    "BESIDE": ([3, 2.5, 2], 90, 90),
    "ONE": ([0.75], 100, 80),
    "MANY": ([8 - i for i in range(16)], 45, 170),
}
TOLERANCE = 1e-9


def make_drawing(path):
    doc = ezdxf.new("R2000")
    for name, (offsets, start, end) in STYLES.items():
        style = doc.mline_styles.new(name)
        style.dxf.start_angle, style.dxf.end_angle = start, end
        for offset in offsets:
            style.elements.append(offset)
    doc.saveas(path)


def random_cases(rng, count):
    for number in range(count):
        size = 10 ** rng.uniform(-3, 6)
        path = [Vec3(rng.uniform(-size, size), rng.uniform(-size, size)) for _ in range(rng.randint(2, 7))]
        yield {"path": path, "closed": len(path) > 2 and number % 2 == 0, "style": list(STYLES)[number % len(STYLES)],
               "justification": rng.randint(0, 2), "scale": rng.choice([1, -1, 0, 0.02, -300]),
               "origin": Vec3(rng.uniform(-50, 50), rng.uniform(-50, 50)) if number % 3 else Vec3(),
               "turn": rng.choice([0, 90, -137.5, 33])}


def script_of(case):
    points = " ".join("%r,%r" % (p.x, p.y) for p in case["path"])
    return "UCS W\nUCS %r,%r\nUCS Z %r\nMLINE ST %s J %s S %r %s %s\n" % (
        case["origin"].x, case["origin"].y, case["turn"], case["style"], "TZB"[case["justification"]], case["scale"], points,
        "C" if case["closed"] else '""')


def same(a, b, size):
    return all(abs(p - q) <= TOLERANCE * size for p, q in zip(a, b))


def compare_with_builder(torvac, folder):
    source, script, out = folder / "styles.dxf", folder / "draw.scr", folder / "out.dxf"
    make_drawing(source)
    cases = list(random_cases(random.Random(7), 120))
    script.write_text("".join(map(script_of, cases)))
    run(torvac, source, "--script", script, "--output", out)
    assert audit(out) == [], f"ezdxf finds {audit(out)}"
    drawn = list(ezdxf.readfile(out).modelspace().query("MLINE"))
    assert len(drawn) == len(cases)
    builder = ezdxf.readfile(source).modelspace()
    for mline, case in zip(drawn, cases):
        world = [p.rotate(math.radians(case["turn"])) + case["origin"] for p in case["path"]]
        built = builder.add_mline(world, close=case["closed"], dxfattribs={
            "style_name": case["style"], "scale_factor": case["scale"], "justification": case["justification"]})
        assert mline.is_closed == built.is_closed and len(mline.vertices) == len(built.vertices), case
        assert mline.dxf.style_handle == built.dxf.style_handle and mline.dxf.style_element_count == len(STYLES[case["style"]][0]), case
        size = max(p.magnitude for p in world)
        for a, b in zip(mline.vertices, built.vertices):
            assert same(a.location, b.location, size) and same(a.line_direction, b.line_direction, 1) \
                and same(a.miter_direction, b.miter_direction, 1), case
            reach = max((abs(v[0]) for v in b.line_params), default=0)
            for p, q in zip(a.line_params, b.line_params):
                q = q if case["scale"] else (0, 0)  # a scale that ezdxf does not take
                # near a turn-back the miters reach far, and the last digits of their directions with them
                assert same(p, q, max(1, reach * reach)), (case, p, q)
    return len(cases)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--torvac", required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        print("%d multilines as ezdxf builds them" % compare_with_builder(options.torvac, Path(folder)))


if __name__ == "__main__":
    sys.exit(main())
