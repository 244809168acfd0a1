#include "dxf/drawing_file.h"

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
    const auto opened = openBytes(shape.bytes);
    ASSERT_TRUE(opened.file) << shape.name << ": " << opened.error->message();
    const DrawingFile& file = *opened.file;
    EXPECT_EQ(file.toBytes(), shape.bytes) << shape.name;
    EXPECT_FALSE(file.isModified()) << shape.name;
    const RecordId mline = file.find(0x2F);
    ASSERT_NE(mline, kNoRecord) << shape.name;
    EXPECT_EQ(file.type(mline), RecordType::mline) << shape.name;
    EXPECT_EQ(file.typeName(mline + 1), "UNHEARD") << shape.name;
    EXPECT_EQ(file.type(file.find(0x17)), RecordType::dimstyle) << shape.name;
    EXPECT_EQ(file.type(file.find(8)), RecordType::table) << shape.name;
    EXPECT_EQ(textOf(file, 0x2F, 8), "Walls") << shape.name;
    EXPECT_EQ(file.typeName(file.section("OBJECTS") + 1), "DICTIONARY") << shape.name;
    EXPECT_EQ(file.section("NONE"), kNoRecord) << shape.name;
    for (const Group& group : file.groups(mline)) {
      EXPECT_EQ(group.realOr(0), group.code == 20 ? 1e20 : group.realOr(0)) << shape.name;
      EXPECT_EQ(group.integerOr(0), group.code == 72 ? 2 : group.integerOr(0)) << shape.name;
    }
  }
}

TEST(DrawingFile, AnEditChangesWhatWasEditedAndNothingElse) {
  for (const Shape& shape : shapes()) {
    auto opened = openBytes(shape.bytes);
    ASSERT_TRUE(opened.file) << shape.name;
    DrawingFile& file = *opened.file;
    const RecordId mline = file.find(0x2F);
    RecordBuilder builder(file);
    std::size_t formerSize = 0;
    std::string written;
    for (const Group& group : file.groups(mline)) {
      if (group.code == 8) {
        formerSize = group.source.size();
        RecordBuilder one(file);
        one.text(8, L"Roof");
        written = one.take();
        builder.text(8, L"Roof");
      } else {
        builder.copy(group);
      }
    }
    const std::size_t recordAt = shape.bytes.find(file.bytes(mline));
    const std::size_t groupAt = shape.bytes.find("Walls", recordAt);
    file.setBytes(mline, builder.take());
    EXPECT_TRUE(file.isModified()) << shape.name;
    EXPECT_TRUE(file.isChanged(mline)) << shape.name;
    EXPECT_EQ(textOf(file, 0x2F, 8), "Roof") << shape.name;

    const std::string edited = file.toBytes();
    std::size_t same = 0;
    while (edited[same] == shape.bytes[same]) ++same;
    EXPECT_LE(groupAt - same, 5u) << shape.name << ": differs in front of the group";
    const std::size_t behind = edited.find("Roof") + 4;
    EXPECT_EQ(edited.substr(behind).substr(1), shape.bytes.substr(groupAt + 5).substr(1)) << shape.name;
    EXPECT_LT(written.size(), formerSize + 4) << shape.name;
    EXPECT_TRUE(openBytes(edited).file) << shape.name;
  }
}

TEST(DrawingFile, RecordsAreAddedErasedAndRestored) {
  for (const Shape& shape : shapes()) {
    auto opened = openBytes(shape.bytes);
    ASSERT_TRUE(opened.file) << shape.name;
    DrawingFile& file = *opened.file;
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
    EXPECT_EQ(order, (std::vector<RecordId>{mline, first, between, second, mline + 1})) << shape.name;

    const std::string edited = file.toBytes();
    EXPECT_EQ(edited, std::string(shape.bytes)
                          .insert(shape.bytes.find(file.bytes(mline + 1)), std::string(file.bytes(first)) +
                                                                               std::string(file.bytes(between)) +
                                                                               std::string(file.bytes(second))))
        << shape.name;

    const RecordState former = file.state(mline);
    file.setErased(mline, true);
    EXPECT_TRUE(file.isErased(mline));
    EXPECT_EQ(file.find(0x2F), mline);
    EXPECT_EQ(file.toBytes().size(), edited.size() - file.bytes(mline).size()) << shape.name;
    file.setState(mline, former);
    EXPECT_EQ(file.toBytes(), edited) << shape.name;
    for (const RecordId id : {first, between, second}) file.setErased(id, true);
    EXPECT_EQ(file.toBytes(), shape.bytes) << shape.name;
    EXPECT_FALSE(file.isModified()) << shape.name;
  }
}

TEST(DrawingFile, ARecordBehindTheLastLineBeginsALineOfItsOwn) {
  const std::string bytes = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF";
  auto opened = openBytes(bytes);
  ASSERT_TRUE(opened.file);
  opened.file->insertAfter(opened.file->originalCount() - 1, "999\nbye\n");
  EXPECT_EQ(opened.file->toBytes(), bytes + "\n999\nbye\n");
}

TEST(DrawingFile, ARecordBehindACodeWithoutValueDoesNotBecomeItsValue) {
  const std::string whole = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n";
  auto opened = openBytes(whole + "  0\n");
  ASSERT_TRUE(opened.file);
  DrawingFile& file = *opened.file;
  const RecordId added = file.insertAfter(file.originalCount() - 1, "  0\nEOF\n");
  EXPECT_EQ(file.toBytes(), whole + "  0\nEOF\n");
  file.setErased(added, true);
  EXPECT_EQ(file.toBytes(), whole + "  0\n");
}

TEST(DrawingFile, AByteOrderMarkStaysInFrontOfAChangedFirstRecord) {
  auto opened = openBytes(std::string("\xEF\xBB\xBF").append(test::textForm(sampleGroups())));
  ASSERT_TRUE(opened.file);
  opened.file->setHeaderVariable("$HANDSEED", "  5\n41\n");
  EXPECT_TRUE(opened.file->toBytes().starts_with("\xEF\xBB\xBF  0\nSECTION\n"));
}

TEST(DrawingFile, ViewsOfARecordOutliveOtherChanges) {
  auto opened = openBytes(test::textForm(sampleGroups()));
  ASSERT_TRUE(opened.file);
  DrawingFile& file = *opened.file;
  file.setBytes(1, std::string("  0\nA\n"));
  const std::string_view view = file.bytes(1);
  for (RecordId id = 2; id < file.originalCount(); ++id) file.setBytes(id, std::string("  0\nB\n"));
  for (int i = 0; i < 1000; ++i) file.insertAfter(1, "  0\nC\n");
  EXPECT_EQ(view, "  0\nA\n");
  EXPECT_EQ(view.data(), file.bytes(1).data());
}

TEST(DrawingFile, ANewHandleIsAboveAllThatAreUsed) {
  struct Case {
    const char* seed;
    Handle expected;
  };
  // The highest handle of the sample is 31.
  const Case cases[] = {{"40", 0x40}, {"32", 0x32}, {"5", 0x32}, {"", 0x32}, {"FFFFFFFFFFFFFFFF", 0x32}, {"zzz", 0x32}};
  for (const Case& c : cases) {
    auto groups = sampleGroups();
    groups[7].second = c.seed;
    auto opened = openBytes(test::textForm(groups));
    ASSERT_TRUE(opened.file) << c.seed;
    EXPECT_EQ(opened.file->newHandle(), c.expected) << c.seed;
    EXPECT_EQ(opened.file->newHandle(), c.expected + 1) << c.seed;
  }
}

TEST(DrawingFile, ThePlaceIsTheLineOrTheByte) {
  for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
    const auto opened = openBytes("\xEF\xBB\xBF" + test::textForm(sampleGroups(), lineEnd));
    ASSERT_TRUE(opened.file);
    EXPECT_EQ(opened.file->place(opened.file->find(0x2F)), 69u);  // behind 34 groups of 2 lines
  }
  const std::string binary = test::binaryForm(sampleGroups(), BinaryCodes::twoBytes);
  const auto opened = openBytes(binary);
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(opened.file->place(opened.file->find(0x2F)), binary.find("MLINE") - 2);
}

TEST(DrawingFile, TextsFollowTheVersionAndTheCodePage) {
  struct Case {
    const char* name;
    const char* version;
    const char* page;
    std::string value;
    std::wstring text;
    std::size_t findings;
  };
  const Case cases[] = {
      {"page", "AC1015", "ANSI_1252",
       "K\xFC"
       "che",
       L"K\u00FCche", 0},
      {"page in small letters", "AC1015", "ansi_1251", "\xC6", L"\u0416", 0},
      {"UTF-8 whatever the page says", "AC1021", "ANSI_1251",
       "K\xC3\xBC"
       "che",
       L"K\u00FCche", 0},
      {"bytes that are no UTF-8", "AC1032", "ANSI_1252",
       "K\xFC"
       "che",
       L"K\xDCFC"
       L"che",
       0},
      {"UTF-8 under a page that cannot decode it", "AC1015", "ANSI_936", "\xE4\xB8\xAD", L"\u4E2D", 1},
      {"unknown page", "AC1009", "dos437", "\xFC", L"\u00FC", 1},
      {"unknown page, all ASCII", "AC1009", "dos437", "plain", L"plain", 0},
  };
  for (const Case& c : cases) {
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
