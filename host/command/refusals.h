#pragma once

#include <string>
#include <vector>

#include "base/result.h"
#include "dxf/record.h"

namespace torva::command {

class Editor;

/// Collects what a command could not do with some of its entities, to say it once for all of a type.
class Refusals {
 public:
  explicit Refusals(Editor& editor) : m_editor(editor) {}

  void note(dxf::RecordId entity, const Error& error);
  /// Reports a fault for each type and reason: "3DSOLID 2F and 3 more left as they are: ...".
  void report();

 private:
  struct Refusal {
    std::string typeName, reason;
    dxf::RecordId first;
    std::size_t count = 1;
  };

  Editor& m_editor;
  std::vector<Refusal> m_refusals;
};

/// Reports as a fault how many entities a command left as they are because their layers are locked; none are no fault.
void reportLocked(Editor& editor, std::size_t count);

}  // namespace torva::command
