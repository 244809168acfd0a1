"""One drawing for each tool of -MLEDIT. Roads are in metres, everything else in millimetres."""
from sheet import Sheet, gap


def closed_cross():
    sheet = Sheet(6000, 250, ["DUCT", "PIPE"], ["DUCTS", "PIPES"])
    sheet.mline("DUCT", "DUCTS", (300, 2000), (5700, 2000))
    sheet.mline("PIPE", "PIPES", (1800, 400), (1800, 3600))
    sheet.mline("PIPE", "PIPES", (3600, 400), (4600, 3600))
    return sheet


def open_cross():
    sheet = Sheet(60, 3, ["STREET", "LANE", "PATH"], ["STREETS", "LANES", "PATHS", "HOUSES"])
    sheet.mline("STREET", "STREETS", (2, 20), (58, 20))
    sheet.mline("LANE", "LANES", (13, 2), (19, 38))
    sheet.mline("PATH", "PATHS", (44, 2), (44, 38))
    sheet.box("HOUSES", 24, 27, 14, 9)
    sheet.box("HOUSES", 24, 4, 12, 8)
    return sheet


def merged_cross():
    sheet = Sheet(4500, 100, ["CAVITY", "PARTITION"], ["WALLS", "PARTITIONS"])
    sheet.mline("CAVITY", "WALLS", (300, 1500), (4200, 1500))
    sheet.mline("CAVITY", "WALLS", (1400, 300), (1400, 2700))
    sheet.mline("PARTITION", "PARTITIONS", (3000, 300), (3000, 2700))
    return sheet


def closed_tee():
    sheet = Sheet(6000, 250, ["WALL", "PARTITION"], ["WALLS", "PARTITIONS"])
    sheet.mline("WALL", "WALLS", (300, 2800), (5700, 2800))
    sheet.mline("PARTITION", "PARTITIONS", (1800, 600), (1800, 2200))
    sheet.mline("PARTITION", "PARTITIONS", (3800, 600), (4400, 3400))
    return sheet


def open_tee():
    sheet = Sheet(60, 3, ["STREET", "LANE"], ["STREETS", "LANES", "HOUSES"])
    sheet.mline("STREET", "STREETS", (2, 28), (58, 28))
    sheet.mline("LANE", "LANES", (16, 4), (16, 20))
    sheet.mline("LANE", "LANES", (44, 4), (44, 30))
    sheet.box("HOUSES", 23, 9, 14, 9)
    return sheet


def merged_tee():
    sheet = Sheet(4500, 100, ["CAVITY", "PARTITION"], ["WALLS", "PARTITIONS"])
    sheet.mline("CAVITY", "WALLS", (300, 2100), (4200, 2100))
    sheet.mline("CAVITY", "WALLS", (1400, 400), (1400, 2300))
    sheet.mline("PARTITION", "PARTITIONS", (3000, 400), (3000, 1600))
    return sheet


def corner_joint():
    sheet = Sheet(6000, 250, ["WALL"], ["WALLS", "PARTITIONS"])
    sheet.mline("WALL", "WALLS", (400, 3000), (4200, 3000))
    sheet.mline("WALL", "PARTITIONS", (1100, 500), (1100, 3600))
    sheet.mline("WALL", "PARTITIONS", (5000, 500), (5000, 2300))
    return sheet


def add_vertex():
    sheet = Sheet(6000, 250, ["SLABS"], ["WALLS", "TREES"])
    sheet.mline("SLABS", "WALLS", (500, 800), (3600, 800), (5400, 3200))
    sheet.circles("TREES", 400, (1200, 2600), (3000, 2100))
    return sheet


def delete_vertex():
    sheet = Sheet(6000, 250, ["WALL"], ["WALLS", "TREES"])
    sheet.mline("WALL", "WALLS", (400, 1300), (1700, 1300), (1700, 2700), (3900, 2700), (3900, 1300), (5600, 1300))
    sheet.circles("TREES", 350, (2800, 1900))
    return sheet


def cut_single():
    sheet = Sheet(60, 3, ["STREET"], ["STREETS", "HOUSES", "TREES"])
    sheet.mline("STREET", "STREETS", (2, 24), (38, 24), (58, 32))
    sheet.box("HOUSES", 8, 4, 16, 10)
    sheet.box("HOUSES", 34, 2, 14, 10)
    for x in (18, 22):
        sheet.line("HOUSES", (x, 14), (x, 19.85))
    for x in (44, 48):
        sheet.line("HOUSES", (x, 12), (x, 19.5 + (x - 38) * 0.4))
    sheet.circles("TREES", 1.5, (5, 10), (28, 8))
    return sheet


def cut_all():
    sheet = Sheet(6000, 250, ["WALL", "PARTITION"], ["WALLS", "PARTITIONS", "DOORS"])
    sheet.door((2857.5, 1300), 885, 0, 90)
    sheet.door((1000, 882.5), 1010, 90, 0)
    sheet.mline("WALL", "WALLS", (400, 700), (5600, 700), (5600, 3400), (400, 3400), close=True)
    sheet.mline("PARTITION", "PARTITIONS", (2800, 882.5), (2800, 3217.5))
    return sheet


def weld_all():
    sheet = Sheet(6000, 250, ["WALL", "PARTITION"], ["WALLS", "PARTITIONS", "DOORS"])
    outer = sheet.mline("WALL", "WALLS", (400, 700), (5600, 700), (5600, 3400), (400, 3400), close=True)
    inner = sheet.mline("PARTITION", "PARTITIONS", (2800, 882.5), (2800, 3217.5))
    gap(outer, 0, 600, 1610)
    gap(inner, 0, 400, 1285)
    return sheet


DRAWINGS = [closed_cross, open_cross, merged_cross, closed_tee, open_tee, merged_tee, corner_joint, add_vertex,
            delete_vertex, cut_single, cut_all, weld_all]
