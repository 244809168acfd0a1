#pragma once

#include <optional>

#include "base/export.h"

#include <kdrx/cm_color.h>

class QString;
class QWidget;

namespace torva::dialog {

/// Lets the user choose a color in a dialog: one of those that have an index, or a true color.
/// @param present what is chosen at first, whatever it is; OK alone returns it as it is
/// @return nothing when the dialog was cancelled; never by layer or by block, unless that is the present one
TORVA_API std::optional<KdCmColor> chooseColor(QWidget* parent, const KdCmColor& present, const QString& title);

}  // namespace torva::dialog
