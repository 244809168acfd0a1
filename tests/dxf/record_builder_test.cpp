#include <array>
#include <gtest/gtest.h>

#include "dxf/drawing_file.h"
#include "dxf/sample_drawing.h"

namespace torva::dxf {
namespace {

using test::openBytes;
using test::sampleGroups;

void buildAll(RecordBuilder& builder) {
  builder.name(0, "MLINE");
  builder.handle(5, 0x2F);
  builder.real(10, 1.0 / 3);
  builder.integer(70, -3);
  builder.integer(290, 1);
  builder.integer(90, 123456);
  builder.integer(160, 5000000000);
  builder.text(1, L"B\u00FCro \u4E2D^\t");
  builder.real(1040, 2);
  builder.integer(1071, 7);
}

/// What buildAll() gives, with its integers in this format.
test::SampleGroups builtGroups(const std::array<const char*, 4>& integers) {
  return {{0, "MLINE"},      {5, "2F"},           {10, "0.3333333333333333"},  {70, integers[0]}, {290, integers[1]},
          {90, integers[2]}, {160, "5000000000"}, {1, "B\xFCro \\U+4E2D^ ^I"}, {1040, "2.0"},     {1071, integers[3]}};
}

TEST(RecordBuilder, WritesColumnsAndLineEndsAsTheDrawingHasThem) {
  const auto built = [](std::string drawing) {
    const auto opened = openBytes(std::move(drawing));
    EXPECT_TRUE(opened.file);
    RecordBuilder builder(*opened.file);
    buildAll(builder);
    return builder.take();
  };
  const test::SampleGroups text = builtGroups({"    -3", "     1", "   123456", "        7"});
  for (const std::string lineEnd : {"\n", "\r\n", "\r"})
    EXPECT_EQ(built(test::textForm(sampleGroups(), lineEnd)), test::textForm(text, lineEnd));
  for (const BinaryCodes codes : {BinaryCodes::oneByte, BinaryCodes::twoBytes})
    EXPECT_EQ(built(test::binaryForm(sampleGroups("AC1009"), codes)),
              test::binaryForm(builtGroups({"-3", "1", "123456", "7"}), codes).substr(22));
}

TEST(RecordBuilder, AGroupBehindALastLineWithoutEndBeginsALineOfItsOwn) {
  const auto opened = openBytes("  0\r\nSECTION\r\n  2\r\nENTITIES\r\n  0\r\nENDSEC\r\n  0\r\nPOINT\r\n  8\r\nWalls");
  ASSERT_TRUE(opened.file);
  RecordBuilder builder(*opened.file);
  for (const Group& group : opened.file->groups(opened.file->recordCount() - 1)) builder.copy(group);
  builder.integer(62, 1);
  EXPECT_EQ(builder.take(), "  0\r\nPOINT\r\n  8\r\nWalls\r\n 62\r\n     1\r\n");
}

}  // namespace
}  // namespace torva::dxf
