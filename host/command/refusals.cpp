#include "command/refusals.h"

#include <algorithm>

#include "base/numbers.h"
#include "command/editor.h"

namespace torva::command {

void Refusals::note(dxf::RecordId entity, const Error& error) {
  const std::string typeName(m_editor.database().file().typeName(entity));
  const auto same =
      std::ranges::find_if(m_refusals, [&](const Refusal& r) { return r.typeName == typeName && r.reason == error.text; });
  if (same != m_refusals.end()) {
    ++same->count;
  } else {
    m_refusals.push_back({typeName, error.text, entity});
  }
}

void Refusals::report() {
  for (const Refusal& refusal : m_refusals) {
    std::string text = refusal.typeName;
    if (const dxf::Handle handle = m_editor.database().file().handle(refusal.first)) text += ' ' + formatHandle(handle);
    if (refusal.count > 1) text += " and " + std::to_string(refusal.count - 1) + " more";
    text += refusal.count > 1 ? " left as they are: " : " left as it is: ";
    m_editor.report({ErrorCode::notApplicable, text + refusal.reason}, Fault::script);
  }
  m_refusals.clear();
}

void reportLocked(Editor& editor, std::size_t count) {
  if (count == 0) return;
  const std::string text = count == 1 ? "1 entity is on a locked layer and left as it is"
                                      : std::to_string(count) + " entities are on locked layers and left as they are";
  editor.report({ErrorCode::notApplicable, text}, Fault::script);
}

}  // namespace torva::command
