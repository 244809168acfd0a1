#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "dxf/drawing_file.h"
#include "dxf/sample_drawing.h"
#include "support/drawing_text.h"

namespace torva::dxf {
namespace {

using test::openBytes;
using test::sampleGroups;
using test::SampleGroups;

std::string text(std::string_view shortForm) {
  return torva::test::inColumns(torva::test::groupsFrom(shortForm));
}

std::string entities(std::string_view records) {
  return text("0 SECTION | 2 ENTITIES\n" + std::string(records) + "\n0 ENDSEC");
}

const std::string kHeader = text("0 SECTION | 2 HEADER | 9 $ACADVER | 1 AC1015 | 0 ENDSEC");
const std::string kEntities = entities("0 LINE | 5 2F | 8 0"), kEof = text("0 EOF");

using Places = std::vector<std::pair<FindingCode, std::size_t>>;

Places placesOf(const std::vector<Finding>& findings) {
  Places places;
  for (const Finding& finding : findings) {
    places.emplace_back(finding.code, finding.line);
    EXPECT_FALSE(finding.text.empty());
  }
  return places;
}

TEST(Damage, WhatCanBeMendedIsAFindingAndTheBytesStay) {
  const auto tables = [](const std::string& records) { return text("0 SECTION | 2 TABLES\n" + records + "\n0 EOF"); };
  const struct {
    const char* name;
    std::string bytes;
    Places findings;
  } cases[] = {
      {"nothing", kHeader + kEntities + kEof, {}},
      {"no EOF and half a group",
       kHeader + kEntities + "  0\n",
       {{FindingCode::truncatedGroup, 23}, {FindingCode::missingEof, 23}}},
      {"no ENDSEC before a section",
       kHeader + text("0 SECTION | 2 BLOCKS") + kEntities + kEof,
       {{FindingCode::missingEndsec, 15}}},
      {"no ENDTAB",
       tables("0 TABLE | 2 VPORT | 0 TABLE | 2 LAYER | 0 ENDTAB | 0 ENDSEC"),
       {{FindingCode::missingEndtab, 9}}},
      {"no ENDBLK", text("0 SECTION | 2 BLOCKS | 0 BLOCK | 0 LINE | 0 ENDSEC | 0 EOF"), {{FindingCode::missingEndblk, 9}}},
      {"handle used twice", kHeader + kEntities + kEntities + kEof, {{FindingCode::duplicateHandle, 27}}},
      {"handle that is none", entities("0 LINE | 5 wall") + kEof, {{FindingCode::badHandle, 5}}},
      {"no handles", kHeader + entities("0 LINE | 8 0 | 0 LINE") + kEof, {{FindingCode::missingHandle, 15}}},
      {"content behind EOF", kHeader + kEntities + kEof + "\nsigned\n", {{FindingCode::contentAfterEof, 26}}},
      {"seed not above the handles",
       text("0 SECTION | 2 HEADER | 9 $HANDSEED | 5 2F | 0 ENDSEC") + kEntities + kEof,
       {{FindingCode::badHandseed, 0}}},
  };
  for (const auto& c : cases) {
    for (const DamagePolicy policy : {DamagePolicy::refuse, DamagePolicy::recover}) {
      const auto opened = openBytes(c.bytes, policy);
      ASSERT_TRUE(opened.file) << c.name << ": " << opened.error->message();
      EXPECT_EQ(placesOf(opened.findings), c.findings) << c.name;
      EXPECT_EQ(opened.file->toBytes(), c.bytes) << c.name;
    }
  }
}

TEST(Damage, WhatWouldLoseContentIsRefusedAndCanBeRecovered) {
  const struct {
    const char* name;
    std::string bytes;
    std::string message;
    Places recovered;
  } cases[] = {
      {"cut behind a code",
       kHeader + "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  5\n",
       "plan.dxf:17: the drawing ends inside section ENTITIES: it was cut short",
       {{FindingCode::truncatedGroup, 17},
        {FindingCode::missingEndsec, 17},
        {FindingCode::missingEof, 17},
        {FindingCode::missingHandle, 15}}},
      {"lost line",
       kHeader + "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n2F\n  8\n0\n  0\nENDSEC\n" + kEof,
       "plan.dxf:17: \"2F\" is no group code",
       {{FindingCode::badGroupCode, 17}, {FindingCode::missingHandle, 15}}},
      {"garbled bytes",
       kHeader + "  0\nSECTION\n\x01\xFE\x02\n" + kEntities + kEof,
       "plan.dxf:13: \"???\" is no group code",
       {{FindingCode::missingEndsec, 14}, {FindingCode::badGroupCode, 13}}},
      {"unknown version",
       text("0 SECTION | 2 HEADER | 9 $ACADVER | 1 AC9999 | 0 ENDSEC | 0 EOF"),
       "plan.dxf: version \"AC9999\" is not known (R12 to R2018 are)",
       {{FindingCode::unknownVersion, 0}}},
  };
  for (const auto& c : cases) {
    const auto refused = openBytes(c.bytes);
    ASSERT_FALSE(refused.file) << c.name;
    EXPECT_EQ(refused.error->message(), c.message) << c.name;
    const auto recovered = openBytes(c.bytes, DamagePolicy::recover);
    ASSERT_TRUE(recovered.file) << c.name << ": " << recovered.error->message();
    EXPECT_EQ(placesOf(recovered.findings), c.recovered) << c.name;
    EXPECT_EQ(recovered.file->toBytes(), c.bytes) << c.name;
  }
}

TEST(Damage, BinaryDamageIsTold) {
  const auto groups = sampleGroups();
  const std::string whole = test::binaryForm(groups, BinaryCodes::twoBytes);
  std::string unknown = whole;
  const std::size_t at = whole.find("Walls") - 2;
  unknown.replace(at, 2, "\xFF\x7F");
  const auto refused = openBytes(unknown);
  ASSERT_TRUE(refused.error);
  EXPECT_EQ(refused.error->message(), "plan.dxf: unknown group code at byte " + std::to_string(at));
  const auto recovered = openBytes(unknown, DamagePolicy::recover);
  ASSERT_TRUE(recovered.file);
  EXPECT_EQ(recovered.file->toBytes(), unknown);
  EXPECT_EQ(recovered.file->typeName(recovered.file->find(0x31)), "LINE") << "the records behind are found again";

  auto commented = groups;
  commented.insert(commented.begin() + 4, {999, "not here"});
  EXPECT_EQ(openBytes(test::binaryForm(commented, BinaryCodes::twoBytes)).findings.at(0).code, FindingCode::commentInBinary);
}

TEST(Damage, WhatIsNoDrawingIsSaidToBeNone) {
  const std::pair<const char*, std::string> cases[] = {
      {"text", "Dear reader,\nthis is a letter.\n"},
      {"CSV", "0,LINE,5\n1,2,3\n"},
      {"zero bytes", std::string(5000, '\0')},
      {"line ends", std::string(5000, '\n')},
      {"records without sections", "  0\nLINE\n  0\nEOF\n"},
      {"a picture", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)},
  };
  for (const auto& [name, bytes] : cases) {
    for (const DamagePolicy policy : {DamagePolicy::refuse, DamagePolicy::recover}) {
      const auto opened = openBytes(bytes, policy);
      ASSERT_TRUE(opened.error) << name;
      EXPECT_EQ(opened.error->code, ErrorCode::notADrawing) << name;
    }
  }
  EXPECT_EQ(openBytes("").error->code, ErrorCode::emptyFile);
}

TEST(Damage, ADrawingBrokenAllOverIsNotReportedWithoutEnd) {
  std::string bytes = "  0\nSECTION\n  2\nENTITIES\n";
  for (int i = 0; i < 10'000; ++i) bytes += "  0\nLINE\n  5\n2F\nlost\n";
  bytes += "  0\nENDSEC\n  0\nEOF\n";
  const auto opened = openBytes(bytes, DamagePolicy::recover);
  ASSERT_TRUE(opened.file);
  EXPECT_LE(opened.findings.size(), 50u);
  EXPECT_THAT(opened.findings.at(19).text, testing::HasSubstr("further ones are not listed"));
  EXPECT_EQ(opened.file->toBytes(), bytes);
}

TEST(Damage, ARecordTooLongToBeMeantIsAFinding) {
  const std::string bytes = kHeader + entities("0 TEXT | 5 2F | 1 " + std::string(std::size_t{65} << 20, 'x')) + kEof;
  EXPECT_EQ(placesOf(openBytes(bytes).findings), (Places{{FindingCode::absurdRecord, 15}}));
}

TEST(Damage, CutAnywhereADrawingIsRefusedOrKept) {
  for (const std::string& whole : {test::textForm(sampleGroups(), "\r\n"), test::textForm(sampleGroups(), "\r"),
                                   test::binaryForm(sampleGroups(), BinaryCodes::twoBytes)}) {
    std::size_t kept = 0;
    for (std::size_t size = 1; size < whole.size(); ++size) {
      for (const DamagePolicy policy : {DamagePolicy::refuse, DamagePolicy::recover}) {
        const auto opened = openBytes(whole.substr(0, size), policy);
        if (!opened.file) continue;
        ++kept;
        ASSERT_EQ(opened.file->toBytes(), whole.substr(0, size));
      }
    }
    EXPECT_GT(kept, whole.size() * 9 / 10) << "nearly all cut drawings can be recovered";
  }
}

}  // namespace
}  // namespace torva::dxf
