#include "dxf/record_text.h"

#include <gtest/gtest.h>

namespace torva::dxf {
namespace {

const std::string kLong(5000, 'L'), kOther(5000, 'O');

std::vector<std::string_view> piecesOf(const RecordText& text) {
  std::vector<std::string_view> pieces;
  text.forEachPiece([&](std::string_view piece) { pieces.push_back(piece); });
  return pieces;
}

RecordText mixed(const std::string& kept) {
  RecordText text;
  text.append("a");
  text.appendKept(kept);
  text.appendKept("short");
  text.append("b");
  text.appendKept(kept);
  return text;
}

TEST(RecordText, LongRunsStayWhereTheyAreUntilAllIsWantedInOnePlace) {
  const RecordText text = mixed(kLong);
  const auto pieces = piecesOf(text);
  ASSERT_EQ(pieces, (std::vector<std::string_view>{"a", kLong, "shortb", kLong}));
  EXPECT_EQ(pieces[1].data(), kLong.data());
  EXPECT_EQ(pieces[3].data(), kLong.data());
  const std::string all = "a" + kLong + "shortb" + kLong;
  EXPECT_EQ(text.size(), all.size());
  EXPECT_TRUE(text.says(all));
  EXPECT_EQ(text.bytes(), all);
  EXPECT_EQ(piecesOf(text), std::vector<std::string_view>{all});
  EXPECT_EQ(text.size(), all.size());
}

TEST(RecordText, IsComparedByItsBytes) {
  const RecordText text = mixed(kLong);
  const std::string elsewhere = kLong;
  EXPECT_TRUE(text == mixed(elsewhere));
  EXPECT_FALSE(text == mixed(kOther));
  EXPECT_TRUE(text == RecordText("a" + kLong + "shortb" + kLong));
  EXPECT_FALSE(text.says("a" + kLong + "shortb"));
  EXPECT_TRUE(RecordText().says(""));
}

}  // namespace
}  // namespace torva::dxf
