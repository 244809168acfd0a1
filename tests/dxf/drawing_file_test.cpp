#include "dxf/drawing_file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/numbers.h"
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

/// A value as a text drawing has it.
std::string shown(const Group& group) {
  const ValueKind kind = valueKind(group.code);
  if (kind == ValueKind::real) return formatReal(group.real().value());
  if (kind == ValueKind::text || kind == ValueKind::handle || group.form == Form::text) return std::string(group.value);
  if (kind != ValueKind::bytes) return std::to_string(group.integer().value());
  std::string digits;
  for (const unsigned char c : group.value) digits.append({"0123456789ABCDEF"[c / 16], "0123456789ABCDEF"[c % 16]});
  return digits;
}

TEST(DrawingFile, ReadsAndKeepsADrawingInEveryShape) {
  const auto all = shapes();
  ASSERT_EQ(all.size(), 11u);
  for (const Shape& shape : all) {
    SCOPED_TRACE(shape.name);
    const DrawingFile file = opened(shape.bytes);
    EXPECT_EQ(file.toBytes(), shape.bytes);
    EXPECT_FALSE(file.isModified());
    EXPECT_EQ(file.type(file.find(0x2F)), RecordType::mline);
    EXPECT_EQ(file.type(file.find(0x17)), RecordType::dimstyle);
    EXPECT_EQ(file.typeName(file.section("OBJECTS") + 1), "DICTIONARY");
    test::SampleGroups read, expected = sampleGroups(file.version() == Version::r12 ? "AC1009" : "AC1015");
    for (RecordId id = file.section("HEADER"); id < file.recordCount(); ++id) {
      for (const Group& group : file.groups(id)) {
        if (group.code != 999) read.emplace_back(group.code, shown(group));
      }
    }
    for (auto& [code, value] : expected) {
      if (valueKind(code) == ValueKind::real) value = formatReal(parseReal(value).value());
    }
    read.resize(expected.size());  // behind EOF anything may stand
    EXPECT_EQ(read, expected);
  }
}

TEST(DrawingFile, AnEditChangesWhatWasEditedAndNothingElse) {
  for (const Shape& shape : shapes()) {
    SCOPED_TRACE(shape.name);
    DrawingFile file = opened(shape.bytes);
    const RecordId mline = file.find(0x2F);
    RecordBuilder builder(file);
    for (const Group& group : file.groups(mline)) group.code == 8 ? builder.text(8, L"Roof") : builder.copy(group);
    const std::size_t groupAt = shape.bytes.find("Walls", shape.bytes.find(file.bytes(mline)));
    file.setBytes(mline, builder.take());
    EXPECT_TRUE(file.isModified());
    const std::string edited = file.toBytes();
    const auto same = std::ranges::mismatch(edited, shape.bytes).in2 - shape.bytes.begin();
    EXPECT_LE(static_cast<std::ptrdiff_t>(groupAt) - same, 5) << "differs in front of the group";
    EXPECT_EQ(edited.substr(edited.find("Roof") + 5), shape.bytes.substr(groupAt + 6));
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
    EXPECT_EQ(file.typeOf("NEWTYPE"), file.type(between));
    EXPECT_EQ(file.find(file.handle(second)), second);
    EXPECT_GE(file.handle(first), 0x40u) << "$HANDSEED is above the highest handle";

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

TEST(DrawingFile, ARecordBehindABrokenLastLineBeginsALineOfItsOwn) {
  const std::string whole = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n";
  for (const auto& [last, kept] : {std::pair<std::string, std::string>{"  0\nEOF", "  0\nEOF\n"}, {"  0\n", ""}}) {
    DrawingFile file = opened(whole + last);
    const RecordId added = file.insertAfter(file.originalCount() - 1, "999\nbye\n");
    EXPECT_EQ(file.toBytes(), whole + kept + "999\nbye\n");
    file.setErased(added, true);
    EXPECT_EQ(file.toBytes(), whole + last);
  }
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
  EXPECT_FALSE(bare.setHeaderVariable("$ACADVER", "  1\nAC1015\n"));
  EXPECT_FALSE(bare.isModified());
}

TEST(DrawingFile, ANewOneHasNothingToMend) {
  const auto made = openBytes(newDrawing());
  ASSERT_TRUE(made.file) << made.error->message();
  EXPECT_TRUE(made.findings.empty());
  EXPECT_EQ(made.file->version(), Version::r2018);
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
  for (const auto& [seed, expected] :
       {std::pair<const char*, Handle>{"40", 0x40}, {"5", 0x32}, {"FFFFFFFFFFFFFFFF", 0x32}}) {
    auto groups = sampleGroups();
    groups[7].second = seed;
    EXPECT_EQ(opened(test::textForm(groups)).newHandle(), expected) << seed;
  }
}

TEST(DrawingFile, ThePlaceIsTheLineOrTheByteAlsoBehindAByteOrderMark) {
  for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
    DrawingFile file = opened("\xEF\xBB\xBF" + test::textForm(sampleGroups(), lineEnd));
    EXPECT_EQ(file.place(file.find(0x2F)), 69u);  // behind 34 groups of 2 lines
    file.setHeaderVariable("$HANDSEED", {});
    EXPECT_TRUE(file.toBytes().starts_with("\xEF\xBB\xBF  0"));
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
      {"page in small letters", "AC1015", "ansi_1251", "\xC6", L"\u0416", 0},
      {"UTF-8 whatever the page says", "AC1021", "ANSI_1251", "B\xC3\xBCro", L"B\u00FCro", 0},
      {"bytes that are no UTF-8", "AC1032", "ANSI_1252", "B\xFCro", L"B\xDCFCro", 0},
      {"UTF-8 under a page that cannot decode it", "AC1015", "ANSI_936", "\xE4\xB8\xAD", L"\u4E2D", 1},
      {"unknown page", "AC1009", "dos437", "\xFC", L"\u00FC", 1},
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
