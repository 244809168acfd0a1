#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "base/processor.h"
#include "dxf/byte_masks.h"
#include "dxf/outline.h"

namespace torva::dxf {
namespace {

/// What a code line means to the pass.
enum class CodeClass : std::uint8_t { unclear, plain, record, handle, dimstyleHandle };

CodeClass classOf(int code) {
  switch (code) {
    case 0:
      return CodeClass::record;
    case 5:
      return CodeClass::handle;
    case 105:
      return CodeClass::dimstyleHandle;
    default:
      return CodeClass::plain;
  }
}

// Nearly all code lines are three characters, blanks in front of digits. What the last two can mean is looked up together,
// what the first one allows of it separately.
enum Meaning : std::uint8_t {
  plainAfterBlank = 1,
  plainAfterDigit = 2,
  recordAfterBlank = 4,
  handleAfterBlank = 8,
  dimstyleHandleAfterOne = 16,
};

constexpr auto kLastTwo = [] {  // by the last character * 256 + the one before it
  std::array<std::uint8_t, 1 << 16> meanings{};
  for (unsigned last = '0'; last <= '9'; ++last) {
    meanings[last << 8 | ' '] = last == '0' ? recordAfterBlank : last == '5' ? handleAfterBlank : plainAfterBlank;
    for (unsigned tens = '0'; tens <= '9'; ++tens) {
      const bool isLeadingZero = tens == '0';
      meanings[last << 8 | tens] = static_cast<std::uint8_t>(plainAfterDigit | (isLeadingZero ? 0 : plainAfterBlank));
    }
  }
  meanings['5' << 8 | '0'] |= dimstyleHandleAfterOne;
  return meanings;
}();

constexpr auto kFirst = [] {
  std::array<std::uint8_t, 256> allowed{};
  allowed[' '] = plainAfterBlank | recordAfterBlank | handleAfterBlank;
  for (unsigned digit = '1'; digit <= '9'; ++digit) allowed[digit] = plainAfterDigit;
  allowed['1'] |= dimstyleHandleAfterOne;
  return allowed;
}();

CodeClass classOf(char first, std::uint32_t lastTwo) {
  const unsigned meaning = kLastTwo[lastTwo] & kFirst[static_cast<unsigned char>(first)];
  if (meaning - 1 <= 1) return CodeClass::plain;  // one of the two plain ones and nothing else
  if ((meaning & dimstyleHandleAfterOne) != 0) return CodeClass::dimstyleHandle;
  if (meaning == recordAfterBlank) return CodeClass::record;
  return meaning == handleAfterBlank ? CodeClass::handle : CodeClass::unclear;
}

/// Four digits without a zero in front: the code of extended data.
bool isFourDigitCode(std::uint32_t characters) {
  static_assert(std::endian::native == std::endian::little);
  const std::uint32_t digits = characters ^ 0x30303030u;  // 0 to 9, anything else more
  return (((digits + 0x76767676u) | digits) & 0x80808080u) == 0 && (digits & 0xFF) != 0;
}

/// One pass, 64 bytes at a time. Of the line ends only every second matters, that of a code line. Most code lines are found
/// to have a plain code all at once, the others are looked at; the value lines of the few codes that matter are searched for
/// when such a code is met. `areCrLf` tells what most lines end with; it changes the speed alone.
template <LineEnds ends, bool areCrLf>
class TextScanner {
 public:
  TextScanner(std::string_view content, std::size_t from, Outline& outline)
      : m_content(content), m_outline(outline), m_from(from) {}

  ScanEnd run(const Progress& progress) {
    std::size_t at = m_from;
    while (at + kBlock <= m_content.size()) {
      const double share = static_cast<double>(at) / static_cast<double>(m_content.size());
      if (!progress.goOn(share)) return {ScanEnd::Reason::cancelled, at};
      if (!takeStretch(at)) return m_end;
    }
    if (!takeLastBlock(at)) return m_end;
    if (!m_isValueNext) return {ScanEnd::Reason::contentEnd, m_content.size()};
    return {ScanEnd::Reason::incompleteGroup, lastLineBegin()};
  }

 private:
  static constexpr std::size_t kBlock = 64;
  static_assert(kWatchedStretch % kBlock == 0);

  /// Takes whole blocks, a stretch of them at most, and leaves `at` behind the last; false when the pass is at its end.
  bool takeStretch(std::size_t& at) {
    const std::size_t end = std::min(m_content.size(), at + kWatchedStretch);
    for (; at + kBlock <= end; at += kBlock) {
      const char* block = m_content.data() + at;
      if (hasHighBit64(block) && !m_outline.firstHighByte) m_outline.firstHighByte = at;
      const char follower = ends == LineEnds::lfAndCr && at + kBlock < m_content.size() ? block[kBlock] : '\0';
      const bool canLookBack = at >= kCodeReach;
      const std::uint64_t plain = canLookBack ? mask64(block, longCodeEndMask16<areCrLf>) : 0;
      if (!takeBlock(at, lineEndMask<ends>(block, follower), plain)) return false;
    }
    return true;
  }

  /// Takes what is behind the last whole block; the content's end ends a line as well.
  bool takeLastBlock(std::size_t at) {
    std::array<char, kBlock> block{};
    const std::size_t size = m_content.size() - at;
    std::copy_n(m_content.data() + at, size, block.data());
    if (hasHighBit64(block.data()) && !m_outline.firstHighByte) m_outline.firstHighByte = at;
    std::uint64_t lineEnds = lineEndMask<ends>(block.data(), '\0');
    const bool isLineOpen = m_content.size() > m_from && !isLineEnd(m_content.back());
    if (isLineOpen) lineEnds |= std::uint64_t{1} << size;
    return takeBlock(at, lineEnds, 0);
  }

  /// Takes the line ends of a block; false when the pass is at its end. Lines that end at `plain`, if they are code lines,
  /// say a code without a meaning to the pass.
  bool takeBlock(std::size_t at, std::uint64_t lineEnds, std::uint64_t plain) {
    const std::uint64_t odd = oddCounts(lineEnds);
    std::uint64_t others = lineEnds & (m_isValueNext ? ~odd : odd) & ~plain;
    m_isValueNext = m_isValueNext != (odd >> (kBlock - 1) != 0);
    for (; others != 0; others &= others - 1) {
      const std::size_t codeEnd = at + static_cast<std::size_t>(std::countr_zero(others));
      const CodeClass codeClass = classify(codeEnd);
      if (codeClass != CodeClass::plain && !takeSpecial(codeClass, codeEnd)) return false;
    }
    return true;
  }

  /// Looks at the code line that ends at `end`. The line end in front of it tells where it begins.
  CodeClass classify(std::size_t end) const {
    if (end < m_from + 5) return CodeClass::unclear;
    end -= isPair(end) ? 1 : 0;
    std::uint32_t characters = 0;
    std::memcpy(&characters, m_content.data() + end - 4, 4);
    if (isLineEnd(static_cast<char>(characters))) return classOf(static_cast<char>(characters >> 8), characters >> 16);
    if (isLineEnd(static_cast<char>(characters >> 16))) return classOf(' ', characters >> 24 << 8 | ' ');
    if (isLineEnd(static_cast<char>(characters >> 8))) return classOf(' ', characters >> 16);
    const bool isFour = end > m_from + 4 && isLineEnd(m_content[end - 5]) && isFourDigitCode(characters);
    return isFour ? CodeClass::plain : CodeClass::unclear;
  }

  bool takeSpecial(CodeClass codeClass, std::size_t codeEnd) {
    if (codeClass == CodeClass::unclear) {
      const std::size_t lineBegin = beginOfLine(codeEnd);
      const int code = parseGroupCode(m_content.substr(lineBegin, codeEnd - lineBegin));
      if (code == kUnreadableCode) {
        const bool isCutShort = codeEnd == m_content.size();
        return stop(isCutShort ? ScanEnd::Reason::incompleteGroup : ScanEnd::Reason::badGroupCode, lineBegin);
      }
      codeClass = classOf(code);
      if (codeClass == CodeClass::plain) return true;
    }
    const bool hasValue = codeEnd + 1 < m_content.size();
    if (codeClass == CodeClass::record) {
      return hasValue ? takeRecord(beginOfLine(codeEnd), codeEnd)
                      : stop(ScanEnd::Reason::incompleteGroup, beginOfLine(codeEnd));
    }
    if (codeClass == m_handleClass && hasValue) {
      m_outline.readHandle(m_record, valueBehind(codeEnd));
      m_handleClass = CodeClass::plain;
    }
    return true;
  }

  bool takeRecord(std::size_t lineBegin, std::size_t codeEnd) {
    m_record = m_outline.addRecord(lineBegin, valueBehind(codeEnd));
    const RecordType type = m_outline.index.type(m_record);
    if (type == RecordType::eof) return stop(ScanEnd::Reason::eofRecord, lineBegin);
    m_handleClass = classOf(handleCode(type));
    return true;
  }

  std::string_view valueBehind(std::size_t codeEnd) const {
    const std::size_t begin = codeEnd + 1;
    return withoutCarriageReturn(m_content.substr(begin, findNearLineEnd(m_content, begin, ends) - begin));
  }

  static bool isLineEnd(char c) { return c == '\n' || (ends == LineEnds::lfAndCr && c == '\r'); }

  /// Whether the line end at `end` is a CR LF.
  bool isPair(std::size_t end) const {
    if constexpr (ends == LineEnds::lf) return m_content[end - 1] == '\r';
    return m_content[end - 1] == '\r' && end < m_content.size() && m_content[end] == '\n';
  }

  std::size_t beginOfLine(std::size_t end) const {
    if (end > m_from && isPair(end)) --end;
    while (end > m_from && !isLineEnd(m_content[end - 1])) --end;
    return end;
  }

  std::size_t lastLineBegin() const {
    const bool hasEnd = m_content.size() > m_from && isLineEnd(m_content.back());
    return beginOfLine(m_content.size() - (hasEnd ? 1 : 0));
  }

  bool stop(ScanEnd::Reason reason, std::size_t offset) {
    m_end = {reason, offset};
    return false;
  }

  const std::string_view m_content;
  Outline& m_outline;
  const std::size_t m_from;
  bool m_isValueNext = false;
  RecordId m_record = kNoRecord;
  CodeClass m_handleClass = CodeClass::plain;  // what gives the record its handle; plain: nothing does any more
  ScanEnd m_end;
};

}  // namespace

ScanEnd scanText(std::string_view content, std::size_t from, LineEnds ends, Outline& outline, const Progress& progress) {
  return runForProcessor([&] {
    if (ends == LineEnds::lfAndCr) return TextScanner<LineEnds::lfAndCr, false>(content, from, outline).run(progress);
    if (firstLineEnd(content) == "\r\n") return TextScanner<LineEnds::lf, true>(content, from, outline).run(progress);
    return TextScanner<LineEnds::lf, false>(content, from, outline).run(progress);
  });
}

}  // namespace torva::dxf
