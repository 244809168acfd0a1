#pragma once

class QAbstractItemView;

namespace torva::dialog {

/// Lets the arrow and page keys select the current row of a list that has no selected one, Home the first and End the last.
/// Else the keys would go away from the row that Qt makes the current one without selecting it, or do nothing.
void letKeysSelect(QAbstractItemView& list);

}  // namespace torva::dialog
