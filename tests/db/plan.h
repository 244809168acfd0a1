#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "base/current.h"
#include "db/database.h"
#include "support/drawing_text.h"

#include <kdrx/db_mline.h>

namespace torva::test {

/// Two walls with a break in the second, in the short form of groupsFrom(). Number formats are odd on purpose.
inline constexpr std::string_view kWalls = R"(
  0 MLINE | 5 A0 | 330 1F | 100 AcDbEntity | 8 WALLS | 62      3
    100 AcDbMline | 2 STANDARD | 340 18 | 40 1.0 | 70      1 | 71      1 | 72      2 | 73      2
    10 0.0 | 20 0.0 | 30 0.0 | 210 0.0 | 220 0.0 | 230 1.0
    11 0.000 | 21 0.0 | 31 0.0 | 12 1.00 | 22 0.0 | 32 0.0 | 13 0.0 | 23 1.0 | 33 0.0
    74      2 | 41 0.50 | 41 0.00 | 75      0
    74      2 | 41 -0.5 | 41 0.0 | 75      0
    11 100.0 | 21 0.0 | 31 0.0 | 12 1.0 | 22 0.0 | 32 0.0 | 13 0.0 | 23 1.0 | 33 0.0
    74      2 | 41 0.5 | 41 0.0 | 75      0
    74      2 | 41 -0.5 | 41 0.0 | 75      0
    1001 OTHERS | 1040 11.0
  0 LINE | 5 A1 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbLine | 10 0.0 | 20 0.0 | 11 1.0 | 21 1.0
  0 POLYLINE | 5 A2 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDb2dPolyline | 66 1
  0 VERTEX | 5 A3 | 330 A2 | 8 0 | 10 0.0 | 20 0.0
  0 SEQEND | 5 A4 | 330 A2 | 8 0
  0 CIRCLE | 5 A5 | 330 1B | 100 AcDbEntity | 67 1 | 8 0 | 100 AcDbCircle | 10 0.0 | 20 0.0 | 40 1.0
)";

/// An R2000 drawing with layers 0 and WALLS, a linetype, model space, paper space and one block, a style STANDARD of two and
/// a style DOUBLE of three elements, and `entities` in its spaces.
inline std::string planText(std::string_view entities = kWalls) {
  std::string text = groupsFrom(R"(
    0 SECTION | 2 HEADER
    9 $ACADVER | 1 AC1015
    9 $HANDSEED | 5 FFFF
    9 $DIMZIN | 70      8
    9 $CLAYER | 8 WALLS
    0 ENDSEC
    0 SECTION | 2 TABLES
    0 TABLE | 2 LTYPE | 5 5
    0 LTYPE | 5 14 | 330 5 | 100 AcDbSymbolTableRecord
      100 AcDbLinetypeTableRecord | 2 DASHED | 70      0 | 3 __ __ | 72     65 | 73      2 | 40 0.75 | 49 0.5
      74      0 | 49 -0.25 | 74      0
    0 ENDTAB
    0 TABLE | 2 LAYER | 5 2
    0 LAYER | 5 10 | 330 2 | 100 AcDbSymbolTableRecord
      100 AcDbLayerTableRecord | 2 0 | 70      0 | 62      7 | 6 CONTINUOUS
    0 LAYER | 5 11 | 330 2 | 100 AcDbSymbolTableRecord
      100 AcDbLayerTableRecord | 2 Walls | 70      1 | 62     -3 | 6 Dashed
    0 ENDTAB
    0 TABLE | 2 BLOCK_RECORD | 5 1
    0 BLOCK_RECORD | 5 1F | 330 1 | 100 AcDbSymbolTableRecord | 100 AcDbBlockTableRecord | 2 *Model_Space
    0 BLOCK_RECORD | 5 1B | 330 1 | 100 AcDbSymbolTableRecord | 100 AcDbBlockTableRecord | 2 *Paper_Space
    0 BLOCK_RECORD | 5 1C | 330 1 | 100 AcDbSymbolTableRecord | 100 AcDbBlockTableRecord | 2 Door
    0 ENDTAB
    0 ENDSEC
    0 SECTION | 2 BLOCKS
    0 BLOCK | 5 30 | 330 1C | 100 AcDbEntity | 8 0 | 100 AcDbBlockBegin | 2 Door | 70      0
    0 ARC | 5 31 | 330 1C | 100 AcDbEntity | 8 0 | 100 AcDbCircle
    0 ENDBLK | 5 32 | 330 1C
    0 ENDSEC
    0 SECTION | 2 ENTITIES
  )");
  text += groupsFrom(entities);
  text += groupsFrom(R"(
    0 ENDSEC
    0 SECTION | 2 OBJECTS
    0 DICTIONARY | 5 C | 330 0 | 100 AcDbDictionary | 281      1 | 3 ACAD_GROUP | 350 D
      3 ACAD_MLINESTYLE | 350 17
    0 DICTIONARY | 5 D | 330 C | 100 AcDbDictionary | 281      1
    0 DICTIONARY | 5 17 | 330 C | 100 AcDbDictionary | 281      1 | 3 Standard | 350 18
      3 DOUBLE | 350 019
      1001 OTHERS | 1000 kept
    0 MLINESTYLE | 5 18 | 102 {ACAD_REACTORS | 330 D | 102 } | 330 17
      100 AcDbMlineStyle | 2 STANDARD | 70      0 | 3 | 62    256 | 51 90.0 | 52 90.00 | 71      2
      49 0.5 | 62    256 | 6 BYLAYER
      49 -0.5 | 62    256 | 6 BYLAYER
    0 MLINESTYLE | 5 19 | 330 17
      100 AcDbMlineStyle | 2 DOUBLE | 70    272 | 3 two leaves | 62      1 | 51 45.0 | 52 60.0 | 71      3
      49 2.0 | 62      2 | 6 Dashed
      49 1.0 | 420 16711680 | 62      1 | 6 MISSING
      49 -1.0 | 62      4 | 6 BYLAYER
    0 ENDSEC
    0 EOF
  )");
  return text;
}

inline std::unique_ptr<db::Database> openText(std::string text) {
  std::vector<dxf::Finding> findings;
  auto database = db::Database::fromBytes(std::move(text), "plan.dxf", dxf::DamagePolicy::refuse, findings);
  EXPECT_TRUE(database) << (database ? "" : database.error().message());
  for (const dxf::Finding& finding : findings) ADD_FAILURE() << finding.text;
  return std::move(*database);
}

/// An object of the working drawing or of another one.
template <class T>
T* openIn(const db::Database& database, dxf::Handle handle, KdOpenMode mode = KdOpenMode::forRead) {
  T* object = nullptr;
  EXPECT_EQ(kddbOpenObject(object, database.idOfHandle(handle), mode), KdStatus::ok);
  return object;
}

/// Puts a new multiline, which is then closed, at the end of a block of the working drawing.
inline KdDbObjectId append(KdDbMline* mline, KdDbObjectId block) {
  KdDbObjectId made;
  KdDbBlockTableRecord* space = nullptr;
  EXPECT_EQ(kddbOpenObject(space, block, KdOpenMode::forWrite), KdStatus::ok);
  EXPECT_EQ(space->appendEntity(mline, made), KdStatus::ok);
  mline->close();
  space->close();
  return made;
}

/// All records as they would be saved, but for the header.
inline std::string textOf(const db::Database& database) {
  const dxf::DrawingFile& file = database.file();
  std::string text;
  for (dxf::RecordId record = 0; record != dxf::kNoRecord; record = file.next(record)) {
    if (!file.isErased(record)) text += file.bytes(record);
  }
  return text;
}

/// A drawing that is the working one.
class PlanTest : public testing::Test {
 protected:
  explicit PlanTest(std::string text = planText()) : m_database(openText(std::move(text))), m_current(*m_database) {}

  db::Database& database() { return *m_database; }
  KdDbObjectId id(dxf::Handle handle) const { return m_database->idOfHandle(handle); }

  template <class T>
  T* open(dxf::Handle handle, KdOpenMode mode = KdOpenMode::forRead) {
    return openIn<T>(*m_database, handle, mode);
  }

  /// What the drawing differs in from how it was opened.
  std::vector<std::string> changes() {
    m_database->flush();
    return difference(m_before, textOf(*m_database));
  }

 private:
  std::unique_ptr<db::Database> m_database;
  Current<db::Database> m_current;
  std::string m_before = textOf(*m_database);
};

}  // namespace torva::test
