#include <gtest/gtest.h>

#include "dxf/drawing_file.h"
#include "dxf/sample_drawing.h"

namespace torva::dxf {
namespace {

using test::openBytes;
using test::sampleGroups;

std::vector<std::string> valuesOf(const DrawingFile& file, std::string_view name) {
  std::vector<std::string> values;
  for (const Group& group : file.headerVariable(name))
    values.push_back(std::to_string(group.code) + " " + std::string(group.value));
  return values;
}

TEST(Header, VariablesAreFoundByName) {
  const auto opened = openBytes(test::textForm(sampleGroups(), "\r\n"));
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(valuesOf(*opened.file, "$ACADVER"), std::vector<std::string>{"1 AC1015"});
  EXPECT_EQ(valuesOf(*opened.file, "$EXTMIN"), (std::vector<std::string>{"10 1.5", "20 -2.0", "30 0.0"}));
  EXPECT_EQ(valuesOf(*opened.file, "$CMLSCALE"), std::vector<std::string>{});
}

TEST(Header, SettingReplacesOneVariableOnly) {
  auto groups = sampleGroups();
  auto opened = openBytes(test::textForm(groups, "\r\n"));
  ASSERT_TRUE(opened.file);
  RecordBuilder builder(*opened.file);
  builder.real(10, 7);
  EXPECT_TRUE(opened.file->setHeaderVariable("$EXTMIN", builder.take()));
  groups[9].second = "7.0";
  groups.erase(groups.begin() + 10, groups.begin() + 12);
  EXPECT_EQ(opened.file->toBytes(), test::textForm(groups, "\r\n"));
}

TEST(Header, ANewVariableIsAddedAtItsEnd) {
  auto groups = sampleGroups();
  auto opened = openBytes(test::textForm(groups));
  ASSERT_TRUE(opened.file);
  RecordBuilder builder(*opened.file);
  builder.integer(70, 1);
  EXPECT_TRUE(opened.file->setHeaderVariable("$CMLJUST", builder.take()));
  groups.insert(groups.begin() + 12, {{9, "$CMLJUST"}, {70, "     1"}});
  EXPECT_EQ(opened.file->toBytes(), test::textForm(groups));
}

TEST(Header, SettingTheSameValueChangesNothing) {
  auto opened = openBytes(test::textForm(sampleGroups()));
  ASSERT_TRUE(opened.file);
  EXPECT_TRUE(opened.file->setHeaderVariable("$HANDSEED", "  5\n40\n"));
  EXPECT_FALSE(opened.file->isModified());
}

TEST(Header, ADrawingWithoutHeaderGetsNone) {
  auto opened = openBytes("  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n");
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(opened.file->version(), Version::r12);
  EXPECT_TRUE(opened.file->headerVariable("$ACADVER").empty());
  EXPECT_FALSE(opened.file->setHeaderVariable("$ACADVER", "  1\nAC1015\n"));
  EXPECT_FALSE(opened.file->isModified());
}

}  // namespace
}  // namespace torva::dxf
