#!/usr/bin/python3
"""Writes the sample drawings, the same bytes each time: make_samples.py [FOLDER]. Needs Debian's python3-ezdxf.

floor-plan.dxf   A one-family house in millimetres: outer walls as a closed multiline of three elements, inner walls of two,
                 one of them with a door opening already cut, and around them what a real plan has: furniture, room names,
                 dimension lines, hatched tiles, inserted blocks, and data of another application on some walls.

tool_drawings.py and plans.py hold the other drawings: one for each tool of -MLEDIT, and two plans on which several tools work
together. Beside each of them stands the script that edits it.
"""
import sys
from pathlib import Path

import ezdxf
from ezdxf.enums import TextEntityAlignment

import plans
import tool_drawings
from sheet import gap

HERE = Path(__file__).resolve().parent
OWNER = "WALLPLAN"  # an application whose data must survive every edit


def new_document():
    ezdxf.options.write_fixed_meta_data_for_testing = True
    doc = ezdxf.new("R2010", setup=["linetypes"])
    doc.header["$INSUNITS"] = 4
    doc.header["$MEASUREMENT"] = 1
    doc.header["$LTSCALE"] = 250
    doc.appids.new(OWNER)
    for name, color in (("WALLS", 7), ("FURNITURE", 3), ("TEXT", 2), ("DIMENSIONS", 1), ("TILES", 8), ("DOORS", 5)):
        doc.layers.new(name, dxfattribs={"color": color})
    return doc


def wall_styles(doc):
    outer = doc.mline_styles.new("WALL-OUTER")
    outer.elements.append(150.0, 7)
    outer.elements.append(30.0, 8, "DASHED")
    outer.elements.append(-150.0, 7)
    inner = doc.mline_styles.new("WALL-INNER")
    inner.elements.append(57.5, 7)
    inner.elements.append(-57.5, 7)
    inner.dxf.flags = 16 | 256  # a line across each end


def blocks(doc):
    door = doc.blocks.new("DOOR-LEAF")
    door.add_line((0, 0), (0, 885))
    door.add_arc((0, 0), 885, 0, 90)
    sink = doc.blocks.new("SINK")
    sink.add_lwpolyline([(0, 0), (600, 0), (600, 450), (0, 450)], close=True)
    sink.add_ellipse((300, 225), (220, 0), 0.7)
    sink.add_circle((300, 225), 25)


def walls(msp):
    def wall(style, points, close=False):
        attribs = {"layer": "WALLS", "style_name": style, "justification": 1}
        return msp.add_mline(points, close=close, dxfattribs=attribs)

    outer = wall("WALL-OUTER", [(0, 0), (11800, 0), (11800, 5600), (8400, 5600), (8400, 8700), (0, 8700)], close=True)
    outer.set_xdata(OWNER, [(1000, "F90"), (1040, 0.24), (1070, 3)])
    corridor = wall("WALL-INNER", [(150, 4300), (8250, 4300)])
    bath = wall("WALL-INNER", [(3900, 4357.5), (3900, 8550)])
    kitchen = wall("WALL-INNER", [(5200, 150), (5200, 2600), (7400, 2600), (7400, 4242.5)])
    study = wall("WALL-INNER", [(8250, 5450), (8250, 3000), (11650, 3000)])
    gap(kitchen, 0, 700.0, 1585.0)
    bath.set_xdata(OWNER, [(1000, "water pipe"), (1005, corridor.dxf.handle)])
    study.set_xdata(OWNER, [(1000, "light")])


def furniture(msp):
    layer = {"layer": "FURNITURE"}
    msp.add_lwpolyline([(600, 600), (2600, 600), (2600, 2500), (600, 2500)], close=True, dxfattribs=layer)
    msp.add_lwpolyline([(700, 700, 0, 0, 0.3), (1500, 700, 0, 0, 0.3), (1500, 1100), (700, 1100)], close=True, dxfattribs=layer)
    msp.add_circle((9900, 1500), 650, dxfattribs=layer)
    for angle in (0, 90, 180, 270):
        msp.add_arc((9900, 1500), 900, angle - 20, angle + 20, dxfattribs=layer)
    msp.add_spline([(600, 7900), (1300, 8200), (2100, 7700), (2900, 8100)], dxfattribs=layer)
    msp.add_ellipse((6000, 6900), (900, 0, 0), 0.55, dxfattribs=layer)
    msp.add_blockref("SINK", (4200, 7900), dxfattribs=layer)
    msp.add_blockref("SINK", (7250, 500), dxfattribs={**layer, "rotation": 90, "xscale": 1.2})
    msp.add_blockref("DOOR-LEAF", (5257.5, 850), dxfattribs={"layer": "DOORS", "rotation": -90})


def lettering(msp):
    for name, place in (("Living", (2600, 3200)), ("Kitchen", (6300, 1400)), ("Dining", (9900, 2650)), ("Bedroom", (2000, 6600)),
                        ("Bath", (6000, 5100)), ("Study – Büro", (10000, 4300))):
        msp.add_text(name, height=250, dxfattribs={"layer": "TEXT"}).set_placement(place, align=TextEntityAlignment.MIDDLE_CENTER)
    msp.add_mtext("Ground floor\\P1:50", dxfattribs={"layer": "TEXT", "char_height": 300, "insert": (9000, 7800)})
    for a, b in (((0, -600), (11800, -600)), ((-600, 0), (-600, 8700))):
        msp.add_line(a, b, dxfattribs={"layer": "DIMENSIONS"})
        for end in (a, b):
            msp.add_circle(end, 60, dxfattribs={"layer": "DIMENSIONS"})
    msp.add_linear_dim(base=(0, -1200), p1=(0, 0), p2=(11800, 0), dimstyle="Standard",
                       override={"dimtxt": 250, "dimasz": 150}, dxfattribs={"layer": "DIMENSIONS"}).render()


def tiles(msp):
    hatch = msp.add_hatch(color=9, dxfattribs={"layer": "TILES"})
    hatch.paths.add_polyline_path([(4100, 4450), (8200, 4450), (8200, 4700), (4100, 4700)], is_closed=True)


def floor_plan():
    doc = new_document()
    wall_styles(doc)
    blocks(doc)
    msp = doc.modelspace()
    tiles(msp)
    walls(msp)
    furniture(msp)
    lettering(msp)
    doc.set_modelspace_vport(height=11000, center=(5900, 4000))
    return doc


def save(doc, path):
    """Saves with the classes in a fixed order; the library takes some of them from a set."""
    doc.classes.add_required_classes(doc.dxfversion)
    for key in (("LAYOUT", "AcDbLayout"), ("ACDBPLACEHOLDER", "AcDbPlaceHolder")):
        doc.classes.classes.move_to_end(key)
    doc.saveas(path)


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else HERE
    save(floor_plan(), folder / "floor-plan.dxf")
    for drawing in tool_drawings.DRAWINGS + plans.DRAWINGS:
        save(drawing().doc, folder / (drawing.__name__.replace("_", "-") + ".dxf"))


if __name__ == "__main__":
    main()
