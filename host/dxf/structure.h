#pragma once

#include <string>

#include "base/result.h"
#include "dxf/findings_log.h"
#include "dxf/reader.h"

namespace torva::dxf {

/// Finds the sections of a scanned drawing, and what is missing of ENDSEC, ENDTAB, ENDBLK and EOF.
/// @return damagedDrawing when the drawing was cut short inside a section, unless the policy is to recover it
Result<void> checkStructure(OpenedDrawing& drawing, const ScanEnd& end, const std::string& name, DamagePolicy policy,
                            FindingsLog& log);

/// Finds unreadable and missing handles, comments in the binary form, and records too long to be meant.
void checkRecords(const OpenedDrawing& drawing, FindingsLog& log);

/// The table of handles; a handle used twice is a finding.
HandleTable tableOfHandles(const OpenedDrawing& drawing, FindingsLog& log);

}  // namespace torva::dxf
