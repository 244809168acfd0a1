#include "base/code_page.h"

#include <algorithm>
#include <charconv>
#include <iconv.h>
#include <memory>
#include <mutex>

#include "base/text.h"

namespace torva {
namespace {

struct Known {
  int number;
  const char* iconvName;
};

constexpr Known kKnown[] = {{874, "CP874"},   {932, "CP932"},   {936, "CP936"},   {949, "CP949"},   {950, "CP950"},
                            {1250, "CP1250"}, {1251, "CP1251"}, {1252, "CP1252"}, {1253, "CP1253"}, {1254, "CP1254"},
                            {1255, "CP1255"}, {1256, "CP1256"}, {1257, "CP1257"}, {1258, "CP1258"}, {1361, "JOHAB"}};

constexpr std::size_t kFirstHighByte = 0x80;
constexpr std::size_t kTrails = 256;
constexpr std::size_t kFirstTrail = 0x30;  // no page has lower second bytes

class Converter {
 public:
  explicit Converter(const char* from) : m_descriptor(iconv_open("WCHAR_T", from)) {}
  ~Converter() {
    if (isOpen()) iconv_close(m_descriptor);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  /// The one character that all of `bytes` stand for; 0 when they are none or more.
  wchar_t operator()(std::string bytes) const {
    if (!isOpen()) return 0;
    iconv(m_descriptor, nullptr, nullptr, nullptr, nullptr);
    std::array<wchar_t, 4> out{};
    char* input = bytes.data();
    std::size_t inputLeft = bytes.size();
    char* output = reinterpret_cast<char*>(out.data());
    std::size_t outputLeft = sizeof out;
    if (iconv(m_descriptor, &input, &inputLeft, &output, &outputLeft) == static_cast<std::size_t>(-1)) return 0;
    // Some pages hold back a character that a following accent could join.
    iconv(m_descriptor, nullptr, nullptr, &output, &outputLeft);
    const bool isOne = sizeof out - outputLeft == sizeof(wchar_t);
    return isOne ? out[0] : 0;
  }

 private:
  bool isOpen() const { return reinterpret_cast<std::intptr_t>(m_descriptor) != -1; }
  iconv_t m_descriptor;
};

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

CodePage::CodePage(int number, const char* iconvName) : m_number(number) {
  const Converter convert(iconvName);
  for (std::size_t i = 0; i < m_single.size(); ++i) {
    const std::size_t byte = kFirstHighByte + i;
    m_single[i] = convert({static_cast<char>(byte)});
    if (m_single[i] != 0) m_codes.emplace(m_single[i], static_cast<std::uint16_t>(byte));
  }
  const bool isSingleByte = number == 874 || (number >= 1250 && number <= 1258);
  if (isSingleByte) return;
  m_pairs.resize(m_single.size() * kTrails);
  for (std::size_t i = 0; i < m_single.size(); ++i) {
    if (m_single[i] != 0) continue;
    const std::size_t lead = kFirstHighByte + i;
    for (std::size_t trail = kFirstTrail; trail < kTrails; ++trail) {
      const wchar_t c = convert({static_cast<char>(lead), static_cast<char>(trail)});
      m_pairs[i * kTrails + trail] = c;
      if (c != 0) m_codes.emplace(c, static_cast<std::uint16_t>(lead << 8 | trail));
    }
  }
}

const CodePage* CodePage::find(int number) {
  static std::mutex mutex;
  static std::array<std::unique_ptr<const CodePage>, std::size(kKnown)> pages;
  const auto* known = std::find_if(std::begin(kKnown), std::end(kKnown), [&](const Known& k) { return k.number == number; });
  if (known == std::end(kKnown)) return nullptr;
  const std::lock_guard lock(mutex);
  auto& page = pages[static_cast<std::size_t>(known - std::begin(kKnown))];
  if (!page) page.reset(new CodePage(known->number, known->iconvName));
  return page.get();
}

const CodePage* CodePage::find(std::string_view name) {
  constexpr std::string_view kPrefix = "ANSI_";
  if (equalsIgnoringCase(name, "GB2312")) return find(936);  // 936 holds all of it at the same places
  if (equalsIgnoringCase(name, "JOHAB")) return find(1361);
  if (name.size() > kPrefix.size() && equalsIgnoringCase(name.substr(0, kPrefix.size()), kPrefix)) name.remove_prefix(5);
  int number = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  return error == std::errc() && end == name.data() + name.size() ? find(number) : nullptr;
}

CodePage::Decoded CodePage::decodeAt(std::string_view text, std::size_t at) const {
  const std::size_t first = static_cast<unsigned char>(text[at]);
  if (first < kFirstHighByte) return {static_cast<wchar_t>(first), 1};
  if (const wchar_t c = m_single[first - kFirstHighByte]) return {c, 1};
  if (m_pairs.empty() || at + 1 == text.size()) return {};
  const wchar_t c = m_pairs[(first - kFirstHighByte) * kTrails + static_cast<unsigned char>(text[at + 1])];
  return c != 0 ? Decoded{c, 2} : Decoded{};
}

std::wstring CodePage::decode(std::string_view text) const {
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Decoded decoded = decodeAt(text, at);
    wide += decoded.length != 0 ? decoded.character : rawByteCharacter(text[at]);
    at += std::max<std::size_t>(decoded.length, 1);
  }
  return wide;
}

bool CodePage::canDecode(std::string_view text) const {
  if (isAscii(text)) return true;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = decodeAt(text, at).length;
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::optional<std::string> CodePage::encode(wchar_t character) const {
  if (character >= 0 && character < 0x80) return std::string(1, static_cast<char>(character));
  if (const auto raw = rawByte(character)) return std::string(1, *raw);
  const auto found = m_codes.find(character);
  if (found == m_codes.end()) return std::nullopt;
  std::string bytes;
  if (found->second > 0xFF) bytes += static_cast<char>(found->second >> 8);
  bytes += static_cast<char>(found->second & 0xFF);
  return bytes;
}

}  // namespace torva
