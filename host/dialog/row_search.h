#pragma once

#include <string>

#include <kdrx/text.h>

#include <QtCore/QString>

namespace torva::dialog {

/// Finds a row by its text, ignoring case, from the one behind `after` on, and then from the first one.
/// @param textOf gives the text of a row
/// @return -1 when there is none
template <class TextOf, class Matches>
int findRow(int count, int after, const TextOf& textOf, const Matches& matches) {
  const int first = after < 0 || after >= count ? 0 : after + 1;
  for (int i = 0; i < count; ++i) {
    const int row = (first + i) % count;
    if (matches(textOf(row))) return row;
  }
  return -1;
}

// Rows often are names in a drawing, so they are compared as those: what one takes for two names must not be one to the
// other.

inline auto isText(const wchar_t* text) {
  return [wanted = std::wstring(text ? text : L"")](const QString& row) {
    return kdutEqualsIgnoringCase(row.toStdWString().c_str(), wanted.c_str());
  };
}

inline auto beginsWith(const wchar_t* text) {
  return [wanted = std::wstring(text ? text : L"")](const QString& row) {
    return kdutEqualsIgnoringCase(row.toStdWString().substr(0, wanted.size()).c_str(), wanted.c_str());
  };
}

}  // namespace torva::dialog
