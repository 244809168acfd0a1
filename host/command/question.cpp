#include "command/question.h"

namespace torva::command {

std::wstring_view expectedAnswer(Question::Kind kind) {
  using enum Question::Kind;
  switch (kind) {
    case command:
    case keyword:
      return {};
    case point:
    case corner:
      return L"a point";
    case entity:
    case selection:
      return L"a point or #handle:point";
    case distance:
      return L"a distance";
    case real:
      return L"a number";
    case integer:
      return L"a whole number";
    case word:
    case text:
      return L"a text";
  }
  return {};
}

}  // namespace torva::command
