"""What the sample drawings of the tools have in common: styles, layers, and a sheet to draw on."""
import ezdxf
from ezdxf.math import Vec2

BY_LAYER = 256
JOINTS, LINE_CAPS = 2, 16 | 256
STYLES = {  # name: flags, elements as (offset, linetype)
    "WALL": (LINE_CAPS, [(182.5, ""), (-22.5, ""), (-182.5, "")]),
    "CAVITY": (LINE_CAPS, [(200, ""), (85, ""), (25, ""), (-200, "")]),
    "PARTITION": (LINE_CAPS, [(57.5, ""), (-57.5, "")]),
    "SLABS": (LINE_CAPS | JOINTS, [(125, ""), (-125, "")]),
    "DUCT": (LINE_CAPS, [(200, ""), (-200, "")]),
    "PIPE": (0, [(75, ""), (0, "CENTER"), (-75, "")]),
    "STREET": (0, [(4, ""), (0, "DASHED"), (-4, "")]),
    "LANE": (0, [(2.75, ""), (0, "DASHED"), (-2.75, "")]),
    "PATH": (0, [(1.25, ""), (-1.25, "")]),
    "FENCE": (LINE_CAPS, [(0.15, ""), (-0.15, "")]),
}
LAYERS = {"WALLS": 7, "PARTITIONS": 5, "DUCTS": 7, "PIPES": 5, "STREETS": 7, "LANES": 5, "PATHS": 32, "FENCES": 14,
          "DOORS": 30, "WINDOWS": 4, "FURNITURE": 8, "HOUSES": 8, "TREES": 94}


class Sheet:
    """A drawing of 3:2 that grows by the entities that are added to it."""

    def __init__(self, width, linetype_scale, styles, layers):
        ezdxf.options.write_fixed_meta_data_for_testing = True
        self.doc = ezdxf.new("R2000", setup=["linetypes"])
        in_metres = width < 1000
        self.doc.header["$INSUNITS"] = 6 if in_metres else 4
        self.doc.header["$LTSCALE"] = linetype_scale
        for linetype in [linetype.dxf.name for linetype in self.doc.linetypes]:
            if linetype.upper() not in ("BYLAYER", "BYBLOCK", "CONTINUOUS", "DASHED", "CENTER"):
                self.doc.linetypes.remove(linetype)
        for name in styles:
            style = self.doc.mline_styles.new(name)
            style.dxf.flags, elements = STYLES[name]
            for offset, linetype in elements:
                style.elements.append(offset, BY_LAYER, linetype or "BYLAYER")
        for name in layers:
            self.doc.layers.new(name, dxfattribs={"color": LAYERS[name]})
        self.msp = self.doc.modelspace()
        self.doc.set_modelspace_vport(height=width * 2 / 3, center=(width / 2, width / 3))

    def mline(self, style, layer, *points, close=False):
        attribs = {"layer": layer, "style_name": style, "justification": 1}
        return self.msp.add_mline(points, close=close, dxfattribs=attribs)

    def line(self, layer, start, end):
        self.msp.add_line(start, end, dxfattribs={"layer": layer})

    def outline(self, layer, *points):
        self.msp.add_lwpolyline(points, close=True, dxfattribs={"layer": layer})

    def box(self, layer, x, y, width, height):
        self.outline(layer, (x, y), (x + width, y), (x + width, y + height), (x, y + height))

    def circles(self, layer, radius, *centers):
        for center in centers:
            self.msp.add_circle(center, radius, dxfattribs={"layer": layer})

    def door(self, hinge, width, opened, closed):
        """A leaf that stands open, and the arc it swings along from `opened` to `closed`, both in degrees."""
        self.line("DOORS", hinge, Vec2(hinge) + Vec2.from_deg_angle(opened, width))
        self.msp.add_arc(hinge, width, min(opened, closed), max(opened, closed), dxfattribs={"layer": "DOORS"})


def gap(mline, segment, start, stop, elements=None):
    """Cuts elements, all unless some are named, square to one segment, as another program would have stored it; the distances
    are taken from the segment's vertex."""
    vertex = mline.vertices[segment]
    along = vertex.miter_direction.dot(vertex.line_direction)
    for index, (offset, *_) in enumerate(vertex.line_params):
        if elements is None or index in elements:
            vertex.line_params[index] = (offset, 0.0, start - offset * along, stop - offset * along)
