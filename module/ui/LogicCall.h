#pragma once

#include <kdrx/ui.h>

/// Calls a handler of the logic behind a dialog's widget; does nothing when there is none of that class.
template <class Logic>
void CallLogic(const QBaseDialog& widget, void (Logic::*handler)()) {
  if (auto* logic = dynamic_cast<Logic*>(widget.GetLogic())) (logic->*handler)();
}
