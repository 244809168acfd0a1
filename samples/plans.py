"""Two plans on which several tools work together: a street corner in metres and an apartment in millimetres."""
from sheet import Sheet, gap


def street_corner():
    sheet = Sheet(60, 3, ["STREET", "LANE", "PATH", "FENCE"], ["STREETS", "LANES", "PATHS", "FENCES", "HOUSES", "TREES"])
    sheet.box("HOUSES", 26, 32.5, 10, 6)
    sheet.box("HOUSES", 24, 3, 13, 7)
    sheet.outline("HOUSES", (5, 30), (14, 30), (14, 38), (10, 38), (10, 35), (5, 35))
    for x in (30, 33):
        sheet.line("HOUSES", (x, 10), (x, 13.8))
    sheet.circles("TREES", 1.3, (2, 10), (12, 10), (51, 12), (56, 8), (53, 38))
    street = sheet.mline("STREET", "STREETS", (-2, 18), (34, 18), (62, 24))
    gap(street, 1, 20, 24, elements=[0])
    sheet.mline("LANE", "LANES", (18, -2), (18, 42))
    sheet.mline("LANE", "LANES", (44, -2), (44, 12))
    sheet.mline("PATH", "PATHS", (-2, 25.5), (33.3, 25.5), (62, 31.65))
    sheet.mline("PATH", "PATHS", (7, -2), (7, 24))
    sheet.mline("FENCE", "FENCES", (21, 28), (33, 28), (58, 33.36))
    sheet.mline("FENCE", "FENCES", (22.5, 29.5), (22.5, 39.5))
    return sheet


def apartment():
    sheet = Sheet(13500, 250, ["WALL", "PARTITION"], ["WALLS", "PARTITIONS", "DOORS", "WINDOWS", "FURNITURE"])
    windows(sheet)
    furniture(sheet)
    sheet.door((2400, 4857.5), 885, opened=90, closed=0)
    sheet.door((11885, 4742.5), 885, opened=270, closed=180)
    sheet.door((8542.5, 5400), 760, opened=180, closed=90)
    sheet.door((11610, 7917.5), 1010, opened=270, closed=180)
    sheet.mline("WALL", "WALLS", (400, 900), (12900, 900))
    sheet.mline("WALL", "WALLS", (12400, 400), (12400, 7500))
    sheet.mline("WALL", "WALLS", (12900, 8100), (1700, 8100))
    sheet.mline("WALL", "WALLS", (1000, 7600), (1000, 1400))
    sheet.mline("WALL", "WALLS", (3600, 8850), (3600, 8400))
    along = sheet.mline("PARTITION", "PARTITIONS", (1500, 4800), (12700, 4800))
    gap(along, 0, 2600, 3485)
    sheet.mline("PARTITION", "PARTITIONS", (8600, 1500), (8600, 7700))
    sheet.mline("PARTITION", "PARTITIONS", (5300, 4400), (5300, 5900), (5900, 5900), (5900, 6900), (5300, 6900), (5300, 8300))
    return sheet


def windows(sheet):
    for x in (2200, 5400, 9600):
        sheet.box("WINDOWS", x, 800, 1800, 80)
        sheet.box("WINDOWS", x, 880, 1800, 80)
    for x in (1900, 6400):
        sheet.box("WINDOWS", x, 8060, 1400, 80)


def furniture(sheet):
    sheet.box("FURNITURE", 1250, 5900, 2000, 1600)
    sheet.box("FURNITURE", 1250, 6050, 400, 600)
    sheet.box("FURNITURE", 1250, 6750, 400, 600)
    sheet.box("FURNITURE", 6650, 7100, 1700, 750)
    sheet.circles("FURNITURE", 200, (6200, 5200), (7000, 5200))
    sheet.circles("FURNITURE", 600, (4400, 2800))
    sheet.circles("FURNITURE", 200, (4400, 3700), (4400, 1900), (3500, 2800), (5300, 2800))
    sheet.box("FURNITURE", 9200, 1150, 2950, 600)
    sheet.box("FURNITURE", 9300, 1250, 600, 400)


DRAWINGS = [street_corner, apartment]
