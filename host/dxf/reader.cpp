#include "dxf/reader.h"

#include <algorithm>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "dxf/binary_group.h"
#include "dxf/findings_log.h"
#include "dxf/structure.h"

namespace torva::dxf {
namespace {

constexpr std::size_t kLargestDrawing = std::size_t{8} << 30;  // a record takes at least 2 bytes, and record ids 32 bits
constexpr std::string_view kDefaultPage = "ANSI_1252";
constexpr double kScanShare = 0.9, kRecordsShare = 0.95;  // of the work, done when all is scanned, and records are checked

class Reader {
 public:
  Reader(FileContent content, const std::string& name, DamagePolicy policy, std::vector<Finding>& findings,
         const Progress& progress)
      : m_drawing{.content = std::move(content)},
        m_name(name),
        m_policy(policy),
        m_findings(findings),
        m_progress(progress) {}

  Result<OpenedDrawing> read() {
    if (bytes().empty()) return fail(ErrorCode::emptyFile, "the file is empty", m_name);
    if (bytes().size() > kLargestDrawing)
      return fail(ErrorCode::fileNotReadable, "drawings above 8 GB cannot be read", m_name);
    findForm();
    if (const auto result = scan(); !result) return tl::unexpected(result.error());
    if (m_drawing.outline.marks.empty() || !hasSection()) return notADrawing();
    FindingsLog log(m_drawing, m_findings);
    if (const auto result = checkStructure(m_drawing, m_scanEnd, m_name, m_policy, log); !result) {
      return tl::unexpected(result.error());
    }
    if (m_scanEnd.reason == ScanEnd::Reason::incompleteGroup) m_drawing.incompleteGroup = m_scanEnd.offset;
    if (const auto result = readHeader(log); !result) return tl::unexpected(result.error());
    if (!m_progress.goOn(kScanShare)) return cancelled();
    checkRecords(m_drawing, log);
    if (!m_progress.goOn(kRecordsShare)) return cancelled();
    m_drawing.handles = tableOfHandles(m_drawing, log);
    checkHandseed(log);
    if (!m_progress.goOn(1)) return cancelled();
    return std::move(m_drawing);
  }

 private:
  std::string_view bytes() const { return m_drawing.content.bytes(); }
  tl::unexpected<Error> cancelled() const { return fail(ErrorCode::cancelled, "opening was cancelled", m_name); }
  tl::unexpected<Error> notADrawing() const { return fail(ErrorCode::notADrawing, "this is no DXF drawing", m_name); }

  void findForm() {
    if (bytes().starts_with(kBinarySentinel)) {
      m_drawing.form = Form::binary;
      const std::string_view start = bytes().substr(kBinarySentinel.size());
      const bool isOneByte = start.size() >= 2 && start[0] == 0 && start[1] != 0;
      m_drawing.codes = isOneByte ? BinaryCodes::oneByte : BinaryCodes::twoBytes;
    } else {
      m_drawing.lineEnds = lineEndsOf(bytes());
    }
  }

  Result<void> scan() {
    scanFrom(beginScan());
    if (m_scanEnd.reason == ScanEnd::Reason::badGroupCode && mayHaveOtherLineEnds()) tryOtherLineEnds();
    while (m_scanEnd.reason == ScanEnd::Reason::badGroupCode) {
      if (m_policy == DamagePolicy::refuse) return hasSection() ? badGroupCode() : notADrawing();
      m_badCodes.push_back(m_scanEnd.offset);
      const std::size_t next = nextRecord(m_scanEnd.offset);
      if (next == bytes().size()) return {};
      scanFrom(next);
    }
    if (m_scanEnd.reason == ScanEnd::Reason::cancelled) return cancelled();
    return {};
  }

  void scanFrom(std::size_t from) {
    const Progress progress = m_progress.upTo(kScanShare);
    m_scanEnd = m_drawing.form == Form::text ? scanText(bytes(), from, m_drawing.lineEnds, m_drawing.outline, progress)
                                             : scanBinary(bytes(), from, m_drawing.codes, m_drawing.outline, progress);
  }

  /// Whether up to where a code was missed there are line ends of the kind that was not looked for.
  bool mayHaveOtherLineEnds() const {
    if (m_drawing.form != Form::text || m_drawing.lineEnds != LineEnds::lf) return false;
    const std::string_view seen = bytes().substr(0, findLineEnd(bytes(), m_scanEnd.offset, LineEnds::lf));
    for (auto at = seen.find('\r'); at != std::string_view::npos; at = seen.find('\r', at + 1)) {
      if (at + 1 < seen.size() && seen[at + 1] != '\n') return true;
    }
    return false;
  }

  /// Reads the drawing with CR as a line end too, and stays with that when it leads further.
  void tryOtherLineEnds() {
    Outline former = std::exchange(m_drawing.outline, {});
    const ScanEnd formerEnd = m_scanEnd;
    m_drawing.lineEnds = LineEnds::lfAndCr;
    scanFrom(beginScan());
    const bool isBetter = m_scanEnd.reason != ScanEnd::Reason::badGroupCode || m_scanEnd.offset > formerEnd.offset;
    if (isBetter) return;
    m_drawing.outline = std::move(former);
    m_drawing.lineEnds = LineEnds::lf;
    m_scanEnd = formerEnd;
  }

  /// Where the groups begin. What stands in front of the first record becomes a record without a type.
  std::size_t beginScan() {
    if (m_drawing.form == Form::binary) {
      m_drawing.outline.index.append(0, RecordType::none);
      return kBinarySentinel.size();
    }
    const std::size_t from = bytes().starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    const std::size_t firstEnd = findLineEnd(bytes(), from, m_drawing.lineEnds);
    const bool beginsWithRecord = parseGroupCode(bytes().substr(from, firstEnd - from)) == 0;
    if (from != 0 || !beginsWithRecord) m_drawing.outline.index.append(0, RecordType::none);
    return from;
  }

  bool hasSection() const {
    const auto& marks = m_drawing.outline.marks;
    return std::any_of(marks.begin(), marks.end(),
                       [&](RecordId id) { return m_drawing.outline.index.type(id) == RecordType::section; });
  }

  std::string_view lineAt(std::size_t offset) const {
    return bytes().substr(offset, findLineEnd(bytes(), offset, m_drawing.lineEnds) - offset);
  }

  tl::unexpected<Error> badGroupCode() {
    FindingsLog log(m_drawing, m_findings);
    const std::size_t place = log.placeOf(m_scanEnd.offset);
    if (m_drawing.form == Form::text) {
      return fail(ErrorCode::damagedDrawing, quoted(withoutCarriageReturn(lineAt(m_scanEnd.offset))) + " is no group code",
                  m_name, place);
    }
    return fail(ErrorCode::damagedDrawing, "unknown group code at byte " + std::to_string(place), m_name);
  }

  /// The next place behind a fault at which a record seems to begin; the content's end when there is none.
  std::size_t nextRecord(std::size_t offset) const {
    return m_drawing.form == Form::text ? nextTextRecord(offset) : nextBinaryRecord(offset);
  }

  std::size_t nextTextRecord(std::size_t offset) const {
    bool wasRecordCode = false;
    std::size_t previous = offset;
    for (std::size_t at = offset; at < bytes().size();) {
      const std::string_view line = lineAt(at);
      if (wasRecordCode && looksLikeTypeName(withoutCarriageReturn(line))) return previous;
      wasRecordCode = parseGroupCode(line) == 0;
      previous = at;
      at += line.size() + 1;
    }
    return bytes().size();
  }

  std::size_t nextBinaryRecord(std::size_t offset) const {
    const std::string_view code =
        m_drawing.codes == BinaryCodes::oneByte ? std::string_view("\0", 1) : std::string_view("\0\0", 2);
    for (std::size_t at = bytes().find(code, offset + 1); at != std::string_view::npos; at = bytes().find(code, at + 1)) {
      const std::string_view rest = bytes().substr(at + code.size(), kLongestTypeName);
      if (looksLikeTypeName(rest.substr(0, rest.find('\0'))) && rest.find('\0') != std::string_view::npos) return at;
    }
    return bytes().size();
  }

  static constexpr std::size_t kLongestTypeName = 64;

  static bool looksLikeTypeName(std::string_view name) {
    constexpr std::size_t kShortest = 3;
    const auto isNameCharacter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; };
    const auto isLetter = [](char c) { return c >= 'A' && c <= 'Z'; };
    return name.size() >= kShortest && name.size() < kLongestTypeName &&
           std::all_of(name.begin(), name.end(), isNameCharacter) && std::any_of(name.begin(), name.end(), isLetter);
  }

  Result<void> readHeader(FindingsLog& log) {
    for (const std::size_t offset : m_badCodes) {
      log.addAt(FindingCode::badGroupCode, offset, "no group code here: all up to the next record is kept unread");
    }
    std::string_view version;
    std::string_view page = kDefaultPage;
    if (const Section* header = m_drawing.section("HEADER")) {
      std::string_view variable;
      for (const Group& group : m_drawing.groups(header->first)) {
        if (group.code == 9) {
          variable = group.value;
        } else if (variable == "$ACADVER" && group.code == 1) {
          version = group.value;
        } else if (variable == "$DWGCODEPAGE" && group.code == 3) {
          page = group.value;
        } else if (variable == "$HANDSEED" && group.code == 5) {
          m_drawing.handseed = group.handle().value_or(0);
          m_hasHandseed = true;
        }
      }
    }
    if (auto result = takeVersion(withoutBlanks(version), log); !result) return result;
    findCodec(withoutBlanks(page), log);
    return {};
  }

  Result<void> takeVersion(std::string_view name, FindingsLog& log) {
    if (name.empty()) return {};
    if (const auto version = versionFromName(name)) {
      m_drawing.version = *version;
      return {};
    }
    if (m_policy == DamagePolicy::refuse) {
      return fail(ErrorCode::unsupportedVersion, "version " + quoted(name) + " is not known (R12 to R2018 are)", m_name);
    }
    m_drawing.version = Version::r2018;
    log.add(FindingCode::unknownVersion, "version " + quoted(name) + " is not known; read as R2018");
    return {};
  }

  void findCodec(std::string_view pageName, FindingsLog& log) {
    if (m_drawing.version >= Version::r2007 || bytes().starts_with(kByteOrderMark)) return;
    const CodePage* page = CodePage::find(pageName);
    const auto firstHighByte = m_drawing.outline.firstHighByte;
    if (page == nullptr) {
      page = CodePage::find(1252);
      if (firstHighByte)
        log.add(FindingCode::unknownCodePage, "code page " + quoted(pageName) + " is not known; read as ANSI_1252");
    }
    m_drawing.codec = TextCodec(page);
    if (!firstHighByte || !isUtf8Instead(*page, *firstHighByte)) return;
    m_drawing.codec = TextCodec(nullptr);
    log.addAt(FindingCode::codePageMismatch, *firstHighByte,
              "texts are not in code page " + quoted(pageName) + " but in UTF-8");
  }

  /// Whether the texts cannot be of a page and can be UTF-8. Looks at no more than the first part of those that matter.
  bool isUtf8Instead(const CodePage& page, std::size_t firstHighByte) const {
    constexpr std::size_t kSample = std::size_t{4} << 20;
    bool isOfPage = true;
    const auto differs = [&](std::string_view text) {
      isOfPage = isOfPage && page.canDecode(text);
      return !isUtf8(text);
    };
    if (m_drawing.form == Form::binary) {
      for (const Group& group :
           Groups(bytes().substr(firstHighByte, kSample), Form::binary, m_drawing.codes, m_drawing.lineEnds)) {
        if (valueKind(group.code) == ValueKind::text && differs(group.value)) return false;
      }
      return !isOfPage;
    }
    const std::size_t end = std::min(bytes().size(), firstHighByte + kSample);
    // The place can be inside a character, never so a line's begin.
    std::size_t at = findLineBegin(firstHighByte);
    while (at < end) {
      const std::string_view line = lineAt(at);
      if (differs(line)) return false;
      at += line.size() + 1;
    }
    return !isOfPage;
  }

  std::size_t findLineBegin(std::size_t offset) const {
    while (offset > 0 && bytes()[offset - 1] != '\n' && bytes()[offset - 1] != '\r') --offset;
    return offset;
  }

  void checkHandseed(FindingsLog& log) const {
    if (!m_hasHandseed || m_drawing.handseed > m_drawing.handles.highest()) return;
    log.add(FindingCode::badHandseed,
            "$HANDSEED is not above the highest handle " + formatHandle(m_drawing.handles.highest()));
  }

  OpenedDrawing m_drawing;
  const std::string& m_name;
  const DamagePolicy m_policy;
  std::vector<Finding>& m_findings;
  const Progress m_progress;
  ScanEnd m_scanEnd;
  std::vector<std::size_t> m_badCodes;
  bool m_hasHandseed = false;
};

}  // namespace

std::string_view OpenedDrawing::bytes(RecordId id) const {
  const std::size_t begin = outline.index.offset(id);
  const std::size_t end = id + 1 < outline.index.size() ? outline.index.offset(id + 1) : content.bytes().size();
  return content.bytes().substr(begin, end - begin);
}

const Section* OpenedDrawing::section(std::string_view name) const {
  const auto found = std::find_if(sections.begin(), sections.end(), [&](const Section& s) { return s.name == name; });
  return found == sections.end() ? nullptr : &*found;
}

Result<OpenedDrawing> readDrawing(FileContent content, const std::string& name, DamagePolicy policy,
                                  std::vector<Finding>& findings, const Progress& progress) {
  const auto known = static_cast<std::ptrdiff_t>(findings.size());
  auto drawing = Reader(std::move(content), name, policy, findings, progress).read();
  if (!drawing && drawing.error().code == ErrorCode::cancelled) findings.erase(findings.begin() + known, findings.end());
  return drawing;
}

}  // namespace torva::dxf
