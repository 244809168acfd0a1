#include "command/command_preview.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "command/editor.h"
#include "command/variable_access.h"
#include "db/layers.h"
#include "db/mline_styles.h"
#include "dxf/extract.h"

namespace torva::command {

namespace {

std::wstring answerOf(const db::Database& drawing, const EntityPick& pick) {
  const auto& [x, y, z] = pick.pointUcs;
  return L"#" + wideFromUtf8(formatHandle(drawing.file().handle(pick.entity))) + L":" +
         wideFromUtf8(formatReal(x) + "," + formatReal(y) + "," + formatReal(z));
}

/// The multiline styles that entities are drawn in, behind the dictionaries that name them.
std::vector<dxf::RecordId> stylesOf(const db::Database& drawing, const std::vector<dxf::RecordId>& entities) {
  std::vector<dxf::RecordId> objects;
  const auto add = [&](dxf::RecordId object) {
    const bool isNew = std::find(objects.begin(), objects.end(), object) == objects.end();
    if (object != dxf::kNoRecord && isNew) objects.push_back(object);
  };
  add(drawing.recordOf(drawing.namedObjectsDictionaryId()));
  add(drawing.findInDictionary(std::array<std::wstring_view, 1>{db::kMlineStyleDictionary}));
  for (const dxf::RecordId entity : entities) {
    if (drawing.file().type(entity) != dxf::RecordType::mline) continue;
    const db::MlineData& mline = drawing.mline(entity);
    add(db::mlineStyleOf(drawing, mline.styleHandle, mline.styleName));
  }
  return objects;
}

/// An editor with a drawing of copies, which looks at them as another editor does.
class Rehearsal {
 public:
  Rehearsal(Editor& editor, std::unique_ptr<db::Database> copies)
      : m_editor(
            editor.commands(), [](std::wstring_view) {}, [](const std::string&) {}) {
    m_editor.setDatabase(std::move(copies));
    m_editor.view() = editor.view();
    m_editor.variables().setInternally(L"PICKBOX", variableOr(editor.variables(), L"PICKBOX", 3));
  }

  /// What the entities look like after a script; empty when it changes none of them.
  draw::DisplayList drawAfter(const std::wstring& script, const std::vector<dxf::Handle>& handles) {
    draw::DisplayList list;
    const auto source = ScriptSource::fromText(utf8FromWide(script), {});
    m_editor.run(*source, OnFault::stop);
    if (!m_editor.hasUnsavedChanges()) return list;
    for (const dxf::Handle handle : handles) {
      m_editor.picker().drawer().drawShapes(m_editor.database().file().find(handle), list);
    }
    return list;
  }

 private:
  Editor m_editor;
};

class CommandPreview {
 public:
  CommandPreview(Editor& editor, std::wstring command, std::vector<EntityPick> picks, std::chrono::milliseconds longest)
      : m_editor(editor), m_command(std::move(command)), m_picks(std::move(picks)), m_longest(longest) {}

  draw::DisplayList operator()(const Cursor& cursor) {
    if (cursor.entity == dxf::kNoRecord || cursor.entity == m_tooSlow) return {};
    const auto begin = std::chrono::steady_clock::now();
    draw::DisplayList list = rehearse(cursor);
    if (std::chrono::steady_clock::now() - begin <= m_longest) return list;
    m_tooSlow = cursor.entity;
    return {};
  }

 private:
  draw::DisplayList rehearse(const Cursor& cursor) {
    db::Database& drawing = m_editor.database();
    drawing.flush();
    std::vector<EntityPick> picks = m_picks;
    picks.push_back({cursor.entity, cursor.pointUcs});
    std::wstring script = m_command + L"\n";
    std::vector<dxf::RecordId> entities;
    std::vector<dxf::Handle> handles;
    for (const EntityPick& pick : picks) {
      script += answerOf(drawing, pick) + L"\n";
      if (std::find(entities.begin(), entities.end(), pick.entity) != entities.end()) continue;
      entities.push_back(pick.entity);
      handles.push_back(drawing.file().handle(pick.entity));
    }
    const auto isLocked = [&](dxf::RecordId entity) { return db::isOnLockedLayer(drawing, entity); };
    if (std::any_of(entities.begin(), entities.end(), isLocked)) return {};
    std::vector<dxf::Finding> findings;
    auto copies = db::Database::fromBytes(dxf::extract(drawing.file(), entities, stylesOf(drawing, entities)), {},
                                          dxf::DamagePolicy::recover, findings);
    if (!copies) return {};
    return Rehearsal(m_editor, std::move(*copies)).drawAfter(script + L"\n", handles);
  }

  Editor& m_editor;
  std::wstring m_command;
  std::vector<EntityPick> m_picks;
  std::chrono::milliseconds m_longest;
  dxf::RecordId m_tooSlow = dxf::kNoRecord;
};

}  // namespace

Preview commandPreview(Editor& editor, std::wstring command, std::vector<EntityPick> picks,
                       std::chrono::milliseconds longest) {
  return CommandPreview(editor, std::move(command), std::move(picks), longest);
}

}  // namespace torva::command
