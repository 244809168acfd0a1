#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/export.h"
#include "base/result.h"
#include "db/database.h"

#include <kdrx/cm_color.h>

namespace torva::command {

/// A color as users type it, in any case: "BYLAYER", "BYBLOCK", a number from 1 to 255, the name of one of the first seven
/// ("red"), or "r,g,b" with three numbers from 0 to 255; nothing for another text.
TORVA_API std::optional<KdCmColor> colorOf(std::wstring_view text);

/// The same for a color that is to be put into a drawing.
/// @return invalidValue for another text; notApplicable for r,g,b in a drawing before R2004, which cannot hold it
Result<KdCmColor> colorFor(const db::Database& drawing, std::wstring_view text);

/// A color as messages show it: "1 (red)", "30", "255,128,0", "BYLAYER".
TORVA_API std::wstring shown(const KdCmColor& color);

}  // namespace torva::command
