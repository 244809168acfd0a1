#include "db/linetype_file.h"

#include <gmock/gmock.h>

#include "db/plan.h"
#include "support/temporary_folder.h"

namespace torva::test {
namespace {

using testing::ElementsAre;

constexpr char kFile[] =
    ";; ours\n\n*ONE,first __ .\r\nA,.5,-.25,0,-.25\r\n"
    "*two\n; in between\n A , 1 , -1 \n*BAD1,no "
    "list\n*BAD2\nA,1\n*BAD3\nB,1,-1\n*BAD4\nA,-1,1\n*BAD5\nA,1,x\n*BAD6\nA,1,-1,[S]\n"
    "*LONG\nA,1,-1,1,-1,1,-1,1,-1,1,-1,1,-1,1\n*LAST";

TEST(LinetypeFile, DefinitionsAreFoundByName) {
  const auto one = db::readLinetype(kFile, L"one");
  ASSERT_TRUE(one);
  EXPECT_THAT(one->dashes, ElementsAre(0.5, -0.25, 0, -0.25));
  EXPECT_THAT(db::readLinetype(kFile, L"TWO")->dashes, ElementsAre(1, -1));
  EXPECT_EQ(db::readLinetype(kFile, L"three").error().code, ErrorCode::unknownName);
  for (const wchar_t* name : {L"BAD1", L"BAD2", L"BAD3", L"BAD4", L"BAD5", L"BAD6", L"LONG", L"LAST"}) {
    const auto bad = db::readLinetype(kFile, name);
    ASSERT_FALSE(bad) << name;
    EXPECT_EQ(bad.error().code, ErrorCode::invalidValue) << name;
  }
  EXPECT_EQ(db::readLinetype(kFile, L"BAD2").error().line, 10u);
}

class LinetypeLoadingTest : public PlanTest {
 protected:
  TemporaryFolder m_folder;
  const std::string m_path = m_folder.write("types.lin", kFile);
};

TEST_F(LinetypeLoadingTest, AddsTheRecordOnce) {
  EXPECT_EQ(db::loadLinetype(database(), "/nowhere", L"dashed").value(), database().file().find(0x14));
  EXPECT_EQ(db::loadLinetype(database(), m_folder.path(), L"ONE").error().code, ErrorCode::fileNotFound);
  EXPECT_THAT(changes(), testing::IsEmpty());
  database().beginUndoStep(L"");
  const auto made = db::loadLinetype(database(), m_path, L"one");
  ASSERT_TRUE(made);
  EXPECT_EQ(db::loadLinetype(database(), m_path, L"ONE").value(), *made);
  EXPECT_THAT(changes(),
              ElementsAre("+0 LTYPE", "+5 FFFF", "+330 5", "+100 AcDbSymbolTableRecord", "+100 AcDbLinetypeTableRecord",
                          "+2 ONE", "+70      0", "+3 first __ .", "+72     65", "+73      4", "+40 1.0", "+49 0.5",
                          "+74      0", "+49 -0.25", "+74      0", "+49 0.0", "+74      0", "+49 -0.25", "+74      0"));
  database().undo();
  EXPECT_EQ(database().findSymbol(dxf::RecordType::ltype, L"ONE"), dxf::kNoRecord);
}

}  // namespace
}  // namespace torva::test
