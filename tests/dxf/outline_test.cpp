#include "dxf/outline.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace torva::dxf {
namespace {

struct Found {
  std::size_t offset;
  std::string name;
  Handle handle;
  bool operator==(const Found&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Found& found) {
  return out << found.name << " at " << found.offset << ", handle " << found.handle;
}

/// The second method: group after group.
std::vector<Found> readGroupByGroup(const std::string& text, LineEnds ends) {
  std::vector<Found> found;
  bool hasHandle = false;
  for (const Group& group : Groups(text, Form::text, BinaryCodes::twoBytes, ends)) {
    if (group.code == 0) {
      found.push_back({static_cast<std::size_t>(group.source.data() - text.data()), std::string(group.value), 0});
      hasHandle = false;
    }
    if (found.empty() || hasHandle || found.back().name == "SECTION" || found.back().name == "ENDSEC") continue;
    if (group.code != (found.back().name == "DIMSTYLE" ? 105 : 5)) continue;
    found.back().handle = group.handle().value_or(0);
    hasHandle = true;
  }
  return found;
}

std::vector<Found> recordsOf(const Outline& outline, const std::string& text, LineEnds ends) {
  std::vector<Found> found;
  for (RecordId id = 0; id < outline.index.size(); ++id) {
    const std::size_t offset = outline.index.offset(id);
    const Groups groups(std::string_view(text).substr(offset), Form::text, BinaryCodes::twoBytes, ends);
    found.push_back({offset, std::string(groups.begin()->value), outline.index.handle(id)});
  }
  return found;
}

/// Drawings with all that can confuse a pass: values that look like codes, empty values, lines of all lengths, so that line
/// ends fall on all places of a block of 64 bytes.
std::string randomDrawing(std::mt19937& random, const std::vector<std::string>& lineEnds) {
  const auto pick = [&](std::initializer_list<const char*> choices) {
    return std::string(*(choices.begin() + random() % choices.size()));
  };
  std::string text;
  const std::size_t groups = random() % 400;
  for (std::size_t i = 0; i < groups; ++i) {
    const std::string code = pick({"0",   "  0", "   0", "00",   "5",      "  5", "005",  "105", " 10", "10",  "8",
                                   "  8", "100", "330",  "1001", "  1071", " 62", "  0 ", "050", "205", "500", "-5"});
    std::string value = pick({"LINE", "SECTION", "DIMSTYLE", "MLINE", "0", "  0", "5", "", "2F", "FFFFFFFF", "12.5", " 0",
                              "LWPOLYLINE", "a name of some length", "ENDSEC", "9G", "X"});
    if (random() % 8 == 0) value = std::string(random() % 150, 'v');
    text.append(code)
        .append(lineEnds[random() % lineEnds.size()])
        .append(value)
        .append(lineEnds[random() % lineEnds.size()]);
  }
  if (random() % 4 == 0 && !text.empty()) text.pop_back();
  return text;
}

TEST(Outline, FindsTheSameRecordsAsReadingGroupByGroup) {
  const struct {
    const char* name;
    LineEnds ends;
    std::vector<std::string> lineEnds;
  } cases[] = {
      {"LF", LineEnds::lf, {"\n"}},
      {"CR LF", LineEnds::lf, {"\r\n"}},
      {"LF and CR LF", LineEnds::lf, {"\n", "\r\n"}},
      {"CR", LineEnds::lfAndCr, {"\r"}},
      {"LF and CR LF, CR looked for", LineEnds::lfAndCr, {"\n", "\r\n"}},
      {"CR and CR LF", LineEnds::lfAndCr, {"\r\n", "\r"}},
  };
  constexpr unsigned kSeed = 22;
  std::size_t records = 0;
  for (const auto& c : cases) {
    std::mt19937 random(kSeed);
    for (int i = 0; i < 400; ++i) {
      const std::string text = randomDrawing(random, c.lineEnds);
      Outline outline;
      const ScanEnd end = scanText(text, 0, c.ends, outline);
      ASSERT_NE(end.reason, ScanEnd::Reason::badGroupCode) << c.name << " drawing " << i << " at " << end.offset;
      ASSERT_EQ(recordsOf(outline, text, c.ends), readGroupByGroup(text, c.ends)) << c.name << " drawing " << i;
      records += outline.index.size();
    }
  }
  EXPECT_GT(records, 10'000u);
}

TEST(Outline, BadCodesAreFoundWhereverTheyStand) {
  for (const std::string bad : {"lost", "", " ", "1 0", "0x", "10.0", "\xE4", "- 5", "1234567", "O", "\v0", "!10", "1:0",
                                "11/", "1 01", "10:0", "/071"}) {
    for (std::size_t filler = 0; filler < 130; ++filler) {
      const std::string before = "  0\nLINE\n  1\n" + std::string(filler, 'v') + "\n";
      const std::string text = before + bad + "\nvalue\n  0\nEOF\n";
      Outline outline;
      const ScanEnd end = scanText(text, 0, LineEnds::lf, outline);
      ASSERT_EQ(end.reason, ScanEnd::Reason::badGroupCode) << '"' << bad << "\" behind " << filler;
      ASSERT_EQ(end.offset, before.size()) << '"' << bad << "\" behind " << filler;
    }
  }
}

TEST(Outline, NamesGetTheSameNumberEachTimeAsLongAsThereAreNumbers) {
  TypeNames names;
  std::vector<std::string> made;
  for (int i = 0; i < 70'000; ++i) made.push_back((i % 2 == 0 ? "T" : "A_NAME_LONGER_THAN_16_BYTES_") + std::to_string(i));
  std::vector<RecordType> types;
  for (const std::string& name : made) types.push_back(names.intern(name));
  EXPECT_EQ(types.back(), TypeNames::kNameless);
  for (std::size_t i = 0; i < 5000; ++i) {
    ASSERT_EQ(names.intern(made[i]), types[i]);
    ASSERT_EQ(names.find(made[i]), types[i]);
    ASSERT_NE(types[i], types[i + 1]);
  }
  EXPECT_EQ(names.intern("ACAD_TABLE"), RecordType::table_entity);
  EXPECT_EQ(names.find("mline"), RecordType::none);
  EXPECT_EQ(names.find(""), RecordType::none);
}

TEST(Outline, HandlesAreFoundWhetherDenseOrNot) {
  for (const Handle spread : {Handle{1}, Handle{3}, Handle{100}, Handle{1} << 40}) {
    RecordIndex index;
    for (Handle i = 1; i <= 5000; ++i) index.setHandle(index.append(i, RecordType::line), i * spread);
    index.append(6000, RecordType::endsec);
    index.setHandle(index.append(6001, RecordType::line), 77 * spread);
    std::vector<std::pair<RecordId, RecordId>> duplicates;
    const HandleTable table(index, [&](RecordId earlier, RecordId later) { duplicates.emplace_back(earlier, later); });
    EXPECT_EQ(duplicates, (std::vector<std::pair<RecordId, RecordId>>{{76, 5001}})) << spread;
    EXPECT_EQ(table.highest(), 5000 * spread);
    for (RecordId id = 0; id < 5000; ++id) ASSERT_EQ(table.find(index, (id + 1) * spread), id) << spread;
    EXPECT_EQ(table.find(index, 0), kNoRecord);
    EXPECT_EQ(table.find(index, 5001 * spread), kNoRecord);
    EXPECT_EQ(table.find(index, spread + 1), spread == 1 ? 1u : kNoRecord);
  }
}

}  // namespace
}  // namespace torva::dxf
