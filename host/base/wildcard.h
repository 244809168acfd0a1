#pragma once

#include <string_view>

namespace torva {

/// Whether a name matches a pattern: `*` stands for any characters or none, `?` for one. Ignores case.
bool matchesWildcard(std::wstring_view name, std::wstring_view pattern);

}  // namespace torva
