#include "command/keywords.h"

#include <algorithm>
#include <cwctype>

#include "base/text.h"

#include <kdrx/ed.h>

namespace torva::command {

namespace {

std::wstring shortForm(const std::wstring& name) {
  std::wstring form;
  std::copy_if(name.begin(), name.end(), std::back_inserter(form),
               [](wchar_t c) { return std::iswupper(static_cast<wint_t>(c)) || std::iswdigit(static_cast<wint_t>(c)); });
  return form;
}

bool isReadable(const std::wstring& name) {
  return name.size() < static_cast<std::size_t>(kKdInputCapacity) &&
         std::none_of(name.begin(), name.end(), [](wchar_t c) { return c < L' ' || c == 127; });
}

bool beginsWith(std::wstring_view name, std::wstring_view beginning) {
  return beginning.size() <= name.size() && equalsIgnoringCase(name.substr(0, beginning.size()), beginning);
}

}  // namespace

std::optional<Keywords> Keywords::parse(std::wstring_view list) {
  std::vector<std::wstring> names;
  names.reserve(static_cast<std::size_t>(std::count(list.begin(), list.end(), L' ')) + 1);
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(L' ', begin), list.size());
    std::wstring name(list.substr(begin, end - begin));
    begin = end + 1;
    if (name.empty()) continue;
    const bool isTwice =
        std::ranges::any_of(names, [&](const std::wstring& other) { return equalsIgnoringCase(other, name); });
    if (isTwice || !isReadable(name)) return std::nullopt;
    names.push_back(std::move(name));
  }
  Keywords keywords;
  keywords.m_names = std::make_shared<const std::vector<std::wstring>>(std::move(names));
  return keywords;
}

const std::vector<std::wstring>& Keywords::names() const {
  static const std::vector<std::wstring> kNone;
  return m_names ? *m_names : kNone;
}

const std::wstring* Keywords::match(std::wstring_view answer) const {
  if (answer.size() > 1 && answer.front() == L'_') answer.remove_prefix(1);
  if (answer.empty()) return nullptr;
  const auto find = [this](auto isMeant) {
    const auto found = std::ranges::find_if(names(), isMeant);
    return found == names().end() ? nullptr : &*found;
  };
  if (const auto* name = find([&](const std::wstring& n) { return equalsIgnoringCase(n, answer); })) return name;
  if (const auto* name = find([&](const std::wstring& n) { return equalsIgnoringCase(shortForm(n), answer); })) return name;
  const auto begins = [&](const std::wstring& n) { return beginsWith(n, answer); };
  return std::ranges::count_if(names(), begins) == 1 ? find(begins) : nullptr;
}

std::wstring Keywords::list() const {
  std::wstring text;
  for (const std::wstring& name : names()) text += (text.empty() ? L"" : L"/") + name;
  return text;
}

}  // namespace torva::command
