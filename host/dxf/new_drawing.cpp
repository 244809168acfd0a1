#include <algorithm>
#include <charconv>
#include <string_view>

#include "dxf/drawing_file.h"

namespace torva::dxf {
namespace {

// One group a line, its code and a blank in front of the value, if any. Handles: 1 to 9 tables in their order, A root
// dictionary, from 10 table records, from 20 blocks, from 30 objects; $HANDSEED is the highest and one.
constexpr std::string_view kHeader = R"(0 SECTION
2 HEADER
9 $ACADVER
1 AC1032
9 $DWGCODEPAGE
3 ANSI_1252
9 $INSBASE
10 0.0
20 0.0
30 0.0
9 $EXTMIN
10 1.0E+20
20 1.0E+20
30 1.0E+20
9 $EXTMAX
10 -1.0E+20
20 -1.0E+20
30 -1.0E+20
9 $LIMMIN
10 0.0
20 0.0
9 $LIMMAX
10 420.0
20 297.0
9 $ORTHOMODE
70 0
9 $REGENMODE
70 1
9 $FILLMODE
70 1
9 $QTEXTMODE
70 0
9 $MIRRTEXT
70 0
9 $LTSCALE
40 1.0
9 $ATTMODE
70 1
9 $TEXTSIZE
40 2.5
9 $TEXTSTYLE
7 Standard
9 $CLAYER
8 0
9 $CELTYPE
6 ByLayer
9 $CECOLOR
62 256
9 $CELTSCALE
40 1.0
9 $DIMSTYLE
2 Standard
9 $LUNITS
70 2
9 $LUPREC
70 4
9 $AUNITS
70 0
9 $AUPREC
70 0
9 $ELEVATION
40 0.0
9 $THICKNESS
40 0.0
9 $ANGBASE
50 0.0
9 $ANGDIR
70 0
9 $PDMODE
70 0
9 $PDSIZE
40 0.0
9 $HANDSEED
5 39
9 $UCSNAME
2
9 $UCSORG
10 0.0
20 0.0
30 0.0
9 $UCSXDIR
10 1.0
20 0.0
30 0.0
9 $UCSYDIR
10 0.0
20 1.0
30 0.0
9 $TILEMODE
70 1
9 $PSLTSCALE
70 1
9 $CMLSTYLE
2 STANDARD
9 $CMLJUST
70 0
9 $CMLSCALE
40 1.0
9 $MEASUREMENT
70 1
9 $CELWEIGHT
370 -1
9 $LWDISPLAY
290 0
9 $INSUNITS
70 4
9 $PSTYLEMODE
290 1
0 ENDSEC
)";

constexpr std::string_view kClasses = R"(0 SECTION
2 CLASSES
0 CLASS
1 ACDBDICTIONARYWDFLT
2 AcDbDictionaryWithDefault
3 ObjectDBX Classes
90 0
91 1
280 0
281 0
0 CLASS
1 ACDBPLACEHOLDER
2 AcDbPlaceHolder
3 ObjectDBX Classes
90 0
91 1
280 0
281 0
0 CLASS
1 LAYOUT
2 AcDbLayout
3 ObjectDBX Classes
90 0
91 2
280 0
281 0
0 ENDSEC
)";

constexpr std::string_view kTables = R"(0 SECTION
2 TABLES
0 TABLE
2 VPORT
5 1
330 0
100 AcDbSymbolTable
70 1
0 VPORT
5 10
330 1
100 AcDbSymbolTableRecord
100 AcDbViewportTableRecord
2 *ACTIVE
70 0
10 0.0
20 0.0
11 1.0
21 1.0
12 210.0
22 148.5
13 0.0
23 0.0
14 10.0
24 10.0
15 10.0
25 10.0
16 0.0
26 0.0
36 1.0
17 0.0
27 0.0
37 0.0
40 297.0
41 1.0
42 50.0
43 0.0
44 0.0
50 0.0
51 0.0
71 0
72 1000
73 1
74 3
75 0
76 0
77 0
78 0
281 0
65 1
110 0.0
120 0.0
130 0.0
111 1.0
121 0.0
131 0.0
112 0.0
122 1.0
132 0.0
79 0
146 0.0
0 ENDTAB
0 TABLE
2 LTYPE
5 2
330 0
100 AcDbSymbolTable
70 3
0 LTYPE
5 11
330 2
100 AcDbSymbolTableRecord
100 AcDbLinetypeTableRecord
2 ByBlock
70 0
3
72 65
73 0
40 0.0
0 LTYPE
5 12
330 2
100 AcDbSymbolTableRecord
100 AcDbLinetypeTableRecord
2 ByLayer
70 0
3
72 65
73 0
40 0.0
0 LTYPE
5 13
330 2
100 AcDbSymbolTableRecord
100 AcDbLinetypeTableRecord
2 Continuous
70 0
3 Solid line
72 65
73 0
40 0.0
0 ENDTAB
0 TABLE
2 LAYER
5 3
330 0
100 AcDbSymbolTable
70 1
0 LAYER
5 14
330 3
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 0
70 0
62 7
6 Continuous
370 -3
390 33
0 ENDTAB
0 TABLE
2 STYLE
5 4
330 0
100 AcDbSymbolTable
70 1
0 STYLE
5 15
330 4
100 AcDbSymbolTableRecord
100 AcDbTextStyleTableRecord
2 Standard
70 0
40 0.0
41 1.0
50 0.0
71 0
42 2.5
3 txt
4
0 ENDTAB
0 TABLE
2 VIEW
5 5
330 0
100 AcDbSymbolTable
70 0
0 ENDTAB
0 TABLE
2 UCS
5 6
330 0
100 AcDbSymbolTable
70 0
0 ENDTAB
0 TABLE
2 APPID
5 7
330 0
100 AcDbSymbolTable
70 1
0 APPID
5 16
330 7
100 AcDbSymbolTableRecord
100 AcDbRegAppTableRecord
2 ACAD
70 0
0 ENDTAB
0 TABLE
2 DIMSTYLE
5 8
330 0
100 AcDbSymbolTable
70 1
100 AcDbDimStyleTable
71 1
340 17
0 DIMSTYLE
105 17
330 8
100 AcDbSymbolTableRecord
100 AcDbDimStyleTableRecord
2 Standard
70 0
340 15
0 ENDTAB
0 TABLE
2 BLOCK_RECORD
5 9
330 0
100 AcDbSymbolTable
70 2
0 BLOCK_RECORD
5 18
330 9
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Model_Space
340 36
70 0
280 1
281 0
0 BLOCK_RECORD
5 19
330 9
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Paper_Space
340 37
70 0
280 1
281 0
0 ENDTAB
0 ENDSEC
)";

constexpr std::string_view kBlocks = R"(0 SECTION
2 BLOCKS
0 BLOCK
5 20
330 18
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 *Model_Space
70 0
10 0.0
20 0.0
30 0.0
3 *Model_Space
1
0 ENDBLK
5 21
330 18
100 AcDbEntity
8 0
100 AcDbBlockEnd
0 BLOCK
5 22
330 19
100 AcDbEntity
67 1
8 0
100 AcDbBlockBegin
2 *Paper_Space
70 0
10 0.0
20 0.0
30 0.0
3 *Paper_Space
1
0 ENDBLK
5 23
330 19
100 AcDbEntity
67 1
8 0
100 AcDbBlockEnd
0 ENDSEC
0 SECTION
2 ENTITIES
0 ENDSEC
)";

constexpr std::string_view kDictionaries = R"(0 SECTION
2 OBJECTS
0 DICTIONARY
5 A
330 0
100 AcDbDictionary
281 1
3 ACAD_GROUP
350 30
3 ACAD_LAYOUT
350 31
3 ACAD_MLINESTYLE
350 34
3 ACAD_PLOTSETTINGS
350 38
3 ACAD_PLOTSTYLENAME
350 32
0 DICTIONARY
5 30
330 A
100 AcDbDictionary
281 1
0 DICTIONARY
5 31
330 A
100 AcDbDictionary
281 1
3 Layout1
350 37
3 Model
350 36
0 DICTIONARY
5 34
330 A
100 AcDbDictionary
281 1
3 STANDARD
350 35
0 DICTIONARY
5 38
330 A
100 AcDbDictionary
281 1
0 ACDBDICTIONARYWDFLT
5 32
330 A
100 AcDbDictionary
281 1
3 Normal
350 33
100 AcDbDictionaryWithDefault
340 33
0 ACDBPLACEHOLDER
5 33
330 32
0 MLINESTYLE
5 35
330 34
100 AcDbMlineStyle
2 STANDARD
70 0
3
62 256
51 90.0
52 90.0
71 2
49 0.5
62 256
6 BYLAYER
49 -0.5
62 256
6 BYLAYER
)";

// A layout follows its handle; its name, order, block record and paper stand behind.
constexpr std::string_view kLayoutPlot = R"(330 31
100 AcDbPlotSettings
1
2 none_device
4 ISO_A3_(420.00_x_297.00_MM)
6
40 0.0
41 0.0
42 0.0
43 0.0
44 420.0
45 297.0
46 0.0
47 0.0
48 0.0
49 0.0
140 0.0
141 0.0
142 1.0
143 1.0
)";

constexpr std::string_view kLayoutPlace = R"(11 420.0
21 297.0
12 0.0
22 0.0
32 0.0
14 1.0E+20
24 1.0E+20
34 1.0E+20
15 -1.0E+20
25 -1.0E+20
35 -1.0E+20
146 0.0
13 0.0
23 0.0
33 0.0
16 1.0
26 0.0
36 0.0
17 0.0
27 1.0
37 0.0
76 0
)";

constexpr std::string_view kModelLayout = R"(70 1024
72 1
73 0
74 0
7
75 0
147 1.0
148 0.0
149 0.0
100 AcDbLayout
1 Model
70 1
71 0
10 0.0
20 0.0
)";

constexpr std::string_view kPaperLayout = R"(70 0
72 1
73 0
74 5
7
75 16
147 1.0
148 0.0
149 0.0
100 AcDbLayout
1 Layout1
70 1
71 1
10 0.0
20 0.0
)";

/// Brings groups into the text form.
void append(std::string& drawing, std::string_view groups) {
  while (!groups.empty()) {
    const std::size_t end = groups.find('\n');
    const std::string_view line = groups.substr(0, end);
    const std::string_view code = line.substr(0, line.find(' '));
    const std::string_view value = line.substr(std::min(code.size() + 1, line.size()));
    int number = 0;
    std::from_chars(code.data(), code.data() + code.size(), number);
    drawing.append(3 - code.size(), ' ').append(code).append("\r\n");
    const ValueKind kind = valueKind(number);
    const bool isInteger = kind == ValueKind::int16 || kind == ValueKind::boolean || kind == ValueKind::int32;
    const std::size_t width = kind == ValueKind::int32 ? 9 : 6;
    if (isInteger && value.size() < width) drawing.append(width - value.size(), ' ');
    drawing.append(value).append("\r\n");
    groups.remove_prefix(end + 1);
  }
}

}  // namespace

std::string newDrawing() {
  std::string drawing;
  for (const std::string_view part :
       {kHeader, kClasses, kTables, kBlocks, kDictionaries,                                     //
        std::string_view("0 LAYOUT\n5 36\n"), kLayoutPlot, kModelLayout, kLayoutPlace,          //
        std::string_view("330 18\n0 LAYOUT\n5 37\n"), kLayoutPlot, kPaperLayout, kLayoutPlace,  //
        std::string_view("330 19\n0 ENDSEC\n0 EOF\n")}) {
    append(drawing, part);
  }
  return drawing;
}

}  // namespace torva::dxf
