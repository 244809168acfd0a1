#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace torva::dxf {

/// Versions of the file format that the host reads and writes, in their order.
enum class Version : std::uint8_t { r12, r13, r14, r2000, r2004, r2007, r2010, r2013, r2018 };

/// The version that a header's $ACADVER names ("AC1032"); nothing for names of other versions.
std::optional<Version> versionFromName(std::string_view name);

}  // namespace torva::dxf
