#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/export.h"

namespace torva::command {

/// The keywords that a prompt offers. A value that is cheap to copy.
class Keywords {
 public:
  /// Reads names separated by blanks. Nothing when a name holds control characters, is longer than an answer may be, or is
  /// there twice (case does not count).
  static std::optional<Keywords> parse(std::wstring_view list);

  bool isEmpty() const { return names().empty(); }
  TORVA_API const std::vector<std::wstring>& names() const;

  /// The keyword that an answer means, in its full spelling, case aside. In this order: the name itself; its short form (its
  /// capitals and digits); the beginning of exactly one name. An underscore before the answer is passed over. Null for none.
  const std::wstring* match(std::wstring_view answer) const;

  /// The names as a message shows them: "Close/Open/Undo".
  std::wstring list() const;

 private:
  std::shared_ptr<const std::vector<std::wstring>> m_names;  // copies share them; null for none
};

}  // namespace torva::command
