#pragma once

#include <string>

#include "base/export.h"
#include "base/result.h"

#include <kdrx/text.h>

namespace torva::runtime {

/// The bytes of a picture file of an open resource library. @return notApplicable (no such library, or no host runs),
/// fileNotFound, fileNotReadable
TORVA_API Result<std::string> pictureOf(KdModuleHandle library, const std::wstring& name);

}  // namespace torva::runtime
