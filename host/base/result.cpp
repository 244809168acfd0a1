#include "base/result.h"

namespace torva {

std::string Error::message() const {
  if (file.empty()) return text;
  if (line == 0) return file + ": " + text;
  return file + ":" + std::to_string(line) + ": " + text;
}

}  // namespace torva
