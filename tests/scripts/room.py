"""The small drawing that the console tests work on, written by an independent DXF library."""
import ezdxf


def make_room(path):
    """A closed multiline (a wall), an open one of three elements that crosses a line, a circle and a text."""
    ezdxf.options.write_fixed_meta_data_for_testing = True  # the same bytes each time: some tests cut it short
    doc = ezdxf.new("R2000")
    style = doc.mline_styles.new("PIPE")
    style.dxf.description = "three lines"
    for offset in (0.5, 0.0, -0.5):
        style.elements.append(offset, 256, "BYLAYER")
    doc.layers.add("WALLS", color=3)
    msp = doc.modelspace()
    msp.add_mline([(0, 0), (20, 0), (20, 10), (0, 10)], close=True, dxfattribs={"layer": "WALLS", "scale_factor": 0.4})
    msp.add_mline([(2, 2), (12, 2), (12, 8)], dxfattribs={"style_name": "PIPE", "scale_factor": 1})
    msp.add_line((5, 1), (5, 9), dxfattribs={"layer": "WALLS"})
    msp.add_circle((16, 5), radius=2)
    msp.add_text("room", dxfattribs={"height": 1, "insert": (15, 8.5)})
    doc.saveas(path)


if __name__ == "__main__":
    import sys
    make_room(sys.argv[1])
