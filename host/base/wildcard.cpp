#include "base/wildcard.h"

#include "base/text.h"

namespace torva {

bool matchesWildcard(std::wstring_view name, std::wstring_view pattern) {
  // Only the last `*` met can have to take more: those before it have what they need.
  std::size_t n = 0, p = 0, nameAtStar = 0;
  std::size_t star = std::wstring_view::npos;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == L'*') {
      star = p++;
      nameAtStar = n;
    } else if (p < pattern.size() && (pattern[p] == L'?' || equalsIgnoringCase(name.substr(n, 1), pattern.substr(p, 1)))) {
      ++n, ++p;
    } else if (star != std::wstring_view::npos) {
      p = star + 1;
      n = ++nameAtStar;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == L'*') ++p;
  return p == pattern.size();
}

}  // namespace torva
