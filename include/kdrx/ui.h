#pragma once

// Dialogs, offered by libtorva-gui.so: logic objects over Qt widgets. A module that includes this needs Qt, so only what is
// loaded when a dialog is to be shown should; kdrxShowsDialogs() in rx.h says whether the host can show one.
//
// A dialog is a pair. The logic, derived from CDialog, makes the widget, derived from QBaseDialog, whose layout gives every
// control that the logic binds a dynamic property "controlId" with its number. Both live as long as the logic object.
//
// Texts are shown as they stand. Rectangles are in Qt's pixels, which a finer screen shows as several of its own.

#include <kdrx/ui/color_box.h>
#include <kdrx/ui/controls.h>
#include <kdrx/ui/dialog.h>
#include <kdrx/ui/list_ctrl.h>
#include <kdrx/ui/picture.h>
#include <kdrx/ui/wnd.h>
