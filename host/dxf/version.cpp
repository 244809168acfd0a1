#include "dxf/version.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace torva::dxf {
namespace {

constexpr std::pair<std::string_view, Version> kVersions[] = {
    {"AC1009", Version::r12},   {"AC1012", Version::r13},   {"AC1014", Version::r14},
    {"AC1015", Version::r2000}, {"AC1018", Version::r2004}, {"AC1021", Version::r2007},
    {"AC1024", Version::r2010}, {"AC1027", Version::r2013}, {"AC1032", Version::r2018},
};

}  // namespace

std::optional<Version> versionFromName(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(kVersions), std::end(kVersions), [&](const auto& v) { return v.first == name; });
  if (found == std::end(kVersions)) return std::nullopt;
  return found->second;
}

}  // namespace torva::dxf
