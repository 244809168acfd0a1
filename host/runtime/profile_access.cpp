#include <exception>

#include "base/current.h"
#include "base/text.h"
#include "runtime/profile.h"

#include <kdrx/app.h>

using torva::Current;
using torva::utf8FromWide;
using torva::runtime::Profile;

namespace {

constexpr wchar_t kDigits[] = L"0123456789abcdef";

/// Calls `access` with the current profile, section and key; `otherwise` when one is missing or it fails.
template <class Value, class Access>
Value withEntry(const wchar_t* section, const wchar_t* key, Value otherwise, const Access& access) noexcept {
  Profile* profile = Current<Profile>::get();
  if (!profile || !section || !key) return otherwise;
  try {
    return access(*profile, utf8FromWide(section), utf8FromWide(key));
  } catch (const std::exception&) {
    return otherwise;
  }
}

std::wstring textOfBlock(const std::vector<unsigned char>& block) {
  std::wstring text;
  for (const unsigned char byte : block) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
  }
  return text;
}

/// Empty for a text that textOfBlock() did not make.
std::vector<unsigned char> blockOfText(const std::wstring& text) {
  std::vector<unsigned char> block;
  const std::wstring_view digits(kDigits);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const std::size_t high = digits.find(text[i]);
    const std::size_t low = i + 1 < text.size() ? digits.find(text[i + 1]) : digits.npos;
    if (high == digits.npos || low == digits.npos) return {};
    block.push_back(static_cast<unsigned char>(high << 4 | low));
  }
  return block;
}

}  // namespace

int kdrxGetProfileInt(const wchar_t* section, const wchar_t* key, int otherwise) noexcept {
  return withEntry(section, key, otherwise, [=](const Profile& profile, const std::string& s, const std::string& k) {
    return profile.integer(s, k).value_or(otherwise);
  });
}

bool kdrxWriteProfileInt(const wchar_t* section, const wchar_t* key, int value) noexcept {
  return withEntry(section, key, false, [=](Profile& profile, const std::string& s, const std::string& k) {
    return profile.setInteger(s, k, value).has_value();
  });
}

CStdStr<wchar_t> kdrxGetProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* otherwise) noexcept {
  const CStdStr<wchar_t> fallback(otherwise ? otherwise : L"");
  return withEntry(section, key, fallback, [&](const Profile& profile, const std::string& s, const std::string& k) {
    return CStdStr<wchar_t>(profile.text(s, k).value_or(fallback));
  });
}

bool kdrxWriteProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* text) noexcept {
  if (!text) return false;
  return withEntry(section, key, false, [=](Profile& profile, const std::string& s, const std::string& k) {
    return profile.setText(s, k, text).has_value();
  });
}

std::vector<unsigned char> kdrxGetProfileBinary(const wchar_t* section, const wchar_t* key) noexcept {
  return withEntry(section, key, std::vector<unsigned char>(),
                   [](const Profile& profile, const std::string& s, const std::string& k) {
                     return blockOfText(profile.text(s, k).value_or(L""));
                   });
}

bool kdrxWriteProfileBinary(const wchar_t* section, const wchar_t* key, const std::vector<unsigned char>& block) noexcept {
  return withEntry(section, key, false, [&](Profile& profile, const std::string& s, const std::string& k) {
    return profile.setText(s, k, textOfBlock(block)).has_value();
  });
}
