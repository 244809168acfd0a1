#include "dxf/drawing_file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "dxf/sample_drawing.h"

namespace torva::dxf {
namespace {

using test::Codes;
using test::openBytes;
using test::sampleGroups;

struct Shape {
  const char* name;
  std::string bytes;
};

/// One drawing in all the shapes that drawings come in.
std::vector<Shape> shapes() {
  const auto groups = sampleGroups();
  auto commented = groups;
  commented.insert(commented.begin(), {999, "made by hand"});
  commented.insert(commented.end() - 20, {999, "inside"});
  std::string mixed = test::textForm(groups);
  for (std::size_t at = 0; (at = mixed.find('\n', at + 40)) != std::string::npos; ++at) mixed.insert(at, 1, '\r');
  std::string unended = test::textForm(groups);
  unended.pop_back();
  return {
      {"LF", test::textForm(groups)},
      {"CR LF", test::textForm(groups, "\r\n")},
      {"CR", test::textForm(groups, "\r")},
      {"bare codes", test::textForm(groups, "\n", Codes::bare)},
      {"CR LF, bare codes", test::textForm(groups, "\r\n", Codes::bare)},
      {"mixed line ends", mixed},
      {"byte order mark", "\xEF\xBB\xBF" + test::textForm(groups)},
      {"comments", test::textForm(commented)},
      {"last line without end", unended},
      {"content behind EOF", test::textForm(groups) + "\nsigned: 0A1B\r\n\x1A"},
      {"binary", test::binaryForm(groups, BinaryCodes::twoBytes)},
      {"binary, codes of one byte", test::binaryForm(sampleGroups("AC1009"), BinaryCodes::oneByte)},
  };
}

DrawingFile opened(std::string bytes) {
  auto opened = openBytes(std::move(bytes));
  EXPECT_TRUE(opened.file) << opened.error->message();
  return std::move(*opened.file);
}

std::string textOf(const DrawingFile& file, Handle handle, int code) {
  for (const Group& group : file.groups(file.find(handle))) {
    if (group.code == code) return std::string(group.value);
  }
  return "no such group";
}

TEST(DrawingFile, ReadsAndKeepsADrawingInEveryShape) {
  const auto all = shapes();
  ASSERT_EQ(all.size(), 12u);
  for (const Shape& shape : all) {
    SCOPED_TRACE(shape.name);
    const DrawingFile file = opened(shape.bytes);
    EXPECT_EQ(file.toBytes(), shape.bytes);
    EXPECT_FALSE(file.isModified());
    const RecordId mline = file.find(0x2F);
    ASSERT_NE(mline, kNoRecord);
    EXPECT_EQ(file.type(mline), RecordType::mline);
    EXPECT_EQ(file.typeName(mline + 1), "UNHEARD");
    EXPECT_EQ(file.type(file.find(0x17)), RecordType::dimstyle);
    EXPECT_EQ(file.type(file.find(8)), RecordType::table);
    EXPECT_EQ(textOf(file, 0x2F, 8), "Walls");
    EXPECT_EQ(file.typeName(file.section("OBJECTS") + 1), "DICTIONARY");
    EXPECT_EQ(file.section("NONE"), kNoRecord);
    for (const Group& group : file.groups(mline)) {
      EXPECT_EQ(group.realOr(0), group.code == 20 ? 1e20 : group.realOr(0));
      EXPECT_EQ(group.integerOr(0), group.code == 72 ? 2 : group.integerOr(0));
    }
  }
}

TEST(DrawingFile, AnEditChangesWhatWasEditedAndNothingElse) {
  for (const Shape& shape : shapes()) {
    SCOPED_TRACE(shape.name);
    DrawingFile file = opened(shape.bytes);
    const RecordId mline = file.find(0x2F);
    RecordBuilder builder(file);
    for (const Group& group : file.groups(mline)) {
      if (group.code == 8) {
        builder.text(8, L"Roof");
      } else {
        builder.copy(group);
      }
    }
    const std::size_t groupAt = shape.bytes.find("Walls", shape.bytes.find(file.bytes(mline)));
    file.setBytes(mline, builder.take());
    EXPECT_TRUE(file.isModified());
    EXPECT_TRUE(file.isChanged(mline));
    EXPECT_EQ(textOf(file, 0x2F, 8), "Roof");

    const std::string edited = file.toBytes();
    const auto same = std::ranges::mismatch(edited, shape.bytes).in2 - shape.bytes.begin();
    EXPECT_LE(static_cast<std::ptrdiff_t>(groupAt) - same, 5) << "differs in front of the group";
    const std::size_t behind = edited.find("Roof") + 4;
    EXPECT_EQ(edited.substr(behind).substr(1), shape.bytes.substr(groupAt + 5).substr(1));
    EXPECT_LE(edited.size(), shape.bytes.size() + 2) << "a shorter name, a column more at most";
    EXPECT_TRUE(openBytes(edited).file);
  }
}

TEST(DrawingFile, RecordsAreAddedErasedAndRestored) {
  for (const Shape& shape : shapes()) {
    SCOPED_TRACE(shape.name);
    DrawingFile file = opened(shape.bytes);
    const auto made = [&](const char* name) {
      RecordBuilder builder(file);
      builder.name(0, name);
      builder.handle(5, file.newHandle());
      return builder.take();
    };
    const RecordId mline = file.find(0x2F);
    const RecordId first = file.insertAfter(mline, made("POINT"));
    const RecordId second = file.insertAfter(mline, made("CIRCLE"));
    const RecordId between = file.insertAfter(first, made("NEWTYPE"));
    EXPECT_EQ(file.type(first), RecordType::point);
    EXPECT_EQ(file.typeName(between), "NEWTYPE");
    EXPECT_EQ(file.typeOf("NEWTYPE"), file.type(between));
    EXPECT_EQ(file.find(file.handle(second)), second);
    EXPECT_GE(file.handle(first), 0x40u) << "$HANDSEED is above the highest handle";
    EXPECT_EQ(file.place(second), 0u);

    std::vector<RecordId> order;
    for (RecordId id = mline; order.size() < 5; id = file.next(id)) order.push_back(id);
    EXPECT_EQ(order, (std::vector<RecordId>{mline, first, between, second, mline + 1}));

    const std::string edited = file.toBytes();
    std::string expected = shape.bytes;
    for (const RecordId id : {first, between, second}) expected.insert(expected.find(file.bytes(mline + 1)), file.bytes(id));
    EXPECT_EQ(edited, expected);

    const RecordState former = file.state(mline);
    file.setErased(mline, true);
    EXPECT_TRUE(file.isErased(mline));
    EXPECT_EQ(file.find(0x2F), mline);
    EXPECT_EQ(file.toBytes().size(), edited.size() - file.bytes(mline).size());
    file.setState(mline, former);
    EXPECT_EQ(file.toBytes(), edited);
    for (const RecordId id : {first, between, second}) file.setErased(id, true);
    EXPECT_EQ(file.toBytes(), shape.bytes);
    EXPECT_FALSE(file.isModified());
  }
}

TEST(DrawingFile, ARecordBehindTheLastLineBeginsALineOfItsOwn) {
  const std::string bytes = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF";
  DrawingFile file = opened(bytes);
  file.insertAfter(file.originalCount() - 1, "999\nbye\n");
  EXPECT_EQ(file.toBytes(), bytes + "\n999\nbye\n");
}

TEST(DrawingFile, ARecordBehindACodeWithoutValueDoesNotBecomeItsValue) {
  const std::string whole = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n";
  DrawingFile file = opened(whole + "  0\n");
  const RecordId added = file.insertAfter(file.originalCount() - 1, "  0\nEOF\n");
  EXPECT_EQ(file.toBytes(), whole + "  0\nEOF\n");
  file.setErased(added, true);
  EXPECT_EQ(file.toBytes(), whole + "  0\n");
}

TEST(DrawingFile, SettingAHeaderVariableReplacesItAloneOrAddsItAtTheEnd) {
  auto groups = sampleGroups();
  DrawingFile file = opened(test::textForm(groups, "\r\n"));
  EXPECT_TRUE(file.setHeaderVariable("$HANDSEED", "  5\r\n40\r\n"));
  EXPECT_FALSE(file.isModified());
  EXPECT_EQ(file.headerVariable("$EXTMIN").size(), 3u);
  EXPECT_TRUE(file.setHeaderVariable("$EXTMIN", " 10\r\n7.0\r\n"));
  groups[9].second = "7.0";
  groups.erase(groups.begin() + 10, groups.begin() + 12);
  EXPECT_EQ(file.toBytes(), test::textForm(groups, "\r\n"));
  EXPECT_TRUE(file.setHeaderVariable("$CMLJUST", " 70\r\n     1\r\n"));
  groups.insert(groups.begin() + 10, {{9, "$CMLJUST"}, {70, "     1"}});
  EXPECT_EQ(file.toBytes(), test::textForm(groups, "\r\n"));

  DrawingFile bare = opened("  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n");
  EXPECT_EQ(bare.version(), Version::r12);
  EXPECT_FALSE(bare.setHeaderVariable("$ACADVER", "  1\nAC1015\n"));
  EXPECT_FALSE(bare.isModified());
}

TEST(DrawingFile, AByteOrderMarkStaysInFrontOfAChangedFirstRecord) {
  DrawingFile file = opened("\xEF\xBB\xBF" + test::textForm(sampleGroups()));
  file.setHeaderVariable("$HANDSEED", "  5\n41\n");
  EXPECT_TRUE(file.toBytes().starts_with("\xEF\xBB\xBF  0\nSECTION\n"));
}

TEST(DrawingFile, ViewsOfARecordOutliveOtherChanges) {
  DrawingFile file = opened(test::textForm(sampleGroups()));
  file.setBytes(1, std::string("  0\nA\n"));
  const std::string_view view = file.bytes(1);
  for (RecordId id = 2; id < file.originalCount(); ++id) file.setBytes(id, std::string("  0\nB\n"));
  for (int i = 0; i < 1000; ++i) file.insertAfter(1, "  0\nC\n");
  EXPECT_EQ(view, "  0\nA\n");
  EXPECT_EQ(view.data(), file.bytes(1).data());
}

TEST(DrawingFile, ANewHandleIsAboveAllThatAreUsed) {
  // The highest handle of the sample is 31.
  const std::pair<const char*, Handle> cases[] = {
      {"40", 0x40}, {"32", 0x32}, {"5", 0x32}, {"", 0x32}, {"FFFFFFFFFFFFFFFF", 0x32}, {"zzz", 0x32}};
  for (const auto& [seed, expected] : cases) {
    auto groups = sampleGroups();
    groups[7].second = seed;
    DrawingFile file = opened(test::textForm(groups));
    EXPECT_EQ(file.newHandle(), expected) << seed;
    EXPECT_EQ(file.newHandle(), expected + 1) << seed;
  }
}

TEST(DrawingFile, ThePlaceIsTheLineOrTheByte) {
  for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
    const DrawingFile file = opened("\xEF\xBB\xBF" + test::textForm(sampleGroups(), lineEnd));
    EXPECT_EQ(file.place(file.find(0x2F)), 69u);  // behind 34 groups of 2 lines
  }
  const std::string binary = test::binaryForm(sampleGroups(), BinaryCodes::twoBytes);
  const DrawingFile file = opened(binary);
  EXPECT_EQ(file.place(file.find(0x2F)), binary.find("MLINE") - 2);
}

TEST(DrawingFile, TextsFollowTheVersionAndTheCodePage) {
  const struct {
    const char* name;
    const char* version;
    const char* page;
    std::string value;
    std::wstring text;
    std::size_t findings;
  } cases[] = {
      {"page", "AC1015", "ANSI_1252", "B\xFCro", L"B\u00FCro", 0},
      {"page in small letters", "AC1015", "ansi_1251", "\xC6", L"\u0416", 0},
      {"UTF-8 whatever the page says", "AC1021", "ANSI_1251", "B\xC3\xBCro", L"B\u00FCro", 0},
      {"bytes that are no UTF-8", "AC1032", "ANSI_1252", "B\xFCro", L"B\xDCFCro", 0},
      {"UTF-8 under a page that cannot decode it", "AC1015", "ANSI_936", "\xE4\xB8\xAD", L"\u4E2D", 1},
      {"unknown page", "AC1009", "dos437", "\xFC", L"\u00FC", 1},
      {"unknown page, all ASCII", "AC1009", "dos437", "plain", L"plain", 0},
  };
  for (const auto& c : cases) {
    auto groups = sampleGroups(c.version);
    groups[5].second = c.page;
    for (auto& [code, value] : groups) value = value == "Walls" ? c.value : value;
    for (const std::string& bytes : {test::textForm(groups), test::binaryForm(groups, BinaryCodes::twoBytes)}) {
      const auto opened = openBytes(bytes);
      ASSERT_TRUE(opened.file) << c.name;
      EXPECT_EQ(opened.findings.size(), c.findings) << c.name;
      EXPECT_EQ(opened.file->decode(textOf(*opened.file, 0x2F, 8)), c.text) << c.name;
    }
  }
}

}  // namespace
}  // namespace torva::dxf
