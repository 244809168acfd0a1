#include "command/selection.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "command/editor.h"
#include "command/refusals.h"
#include "db/layers.h"

namespace torva::command {

namespace {

constexpr wchar_t kKeywords[] = L"Window Crossing Last Previous ALL Remove Add";

/// The dialogue of one selection.
class Selecting {
 public:
  explicit Selecting(Editor& editor) : m_editor(editor) {}

  std::vector<dxf::RecordId> run() {
    while (ask()) {
    }
    if (m_isCancelled) return {};
    return {m_chosen.begin(), m_chosen.end()};
  }

 private:
  using Records = std::vector<dxf::RecordId>;

  /// False when the selection is done.
  bool ask() {
    if (m_editor.initGet(kKdInitGetNone, kKeywords) != kKdInputNormal) return false;
    KdDbObjectId id;
    KdGePoint3d point;
    switch (m_editor.selectEntity(m_takesOut ? L"Remove objects: " : L"Select objects: ", id, point, Picks::many)) {
      case kKdInputNormal:
        take(topLevel(id));
        return true;
      case kKdInputKeyword:
        takeKeyword(m_editor.lastKeyword());
        return !m_isCancelled;
      case kKdInputError:
        if (!m_editor.lastMissed()) return false;
        take({});
        return true;
      default:
        m_isCancelled = true;
        return false;
    }
  }

  void takeKeyword(const std::wstring& keyword) {
    if (keyword == L"Remove" || keyword == L"Add") {
      m_takesOut = keyword == L"Remove";
    } else if (keyword == L"Window") {
      takeWindow(view::WindowRule::whole);
    } else if (keyword == L"Crossing") {
      takeWindow(view::WindowRule::part);
    } else {
      take(keyword == L"Last" ? last() : keyword == L"Previous" ? previous() : all());
    }
  }

  void takeWindow(view::WindowRule rule) {
    KdGePoint3d first, second;
    int status = m_editor.getPoint(nullptr, L"First corner: ", first);
    if (status == kKdInputNormal) status = m_editor.getCorner(first, L"Opposite corner: ", second);
    m_isCancelled = status == kKdInputCancel;
    if (status != kKdInputNormal) return;
    take(m_editor.entitiesIn(m_editor.toWorld(first), m_editor.toWorld(second), rule));
  }

  Records topLevel(KdDbObjectId id) {
    const db::Database& database = m_editor.database();
    const dxf::RecordId record = database.recordOf(id);
    if (database.blockOfEntity(record) != dxf::kNoRecord) return {record};
    m_editor.print(L"The entity " + wideFromUtf8(formatHandle(database.file().handle(record))) +
                   L" is part of a block or of another entity.");
    return {};
  }

  bool isVisible(dxf::RecordId record) { return m_editor.picker().drawer().isVisible(record); }

  Records all() {
    Records found;
    m_editor.database().forEachModelSpaceEntity([&](dxf::RecordId record) {
      if (isVisible(record)) found.push_back(record);
    });
    return found;
  }

  Records last() {
    const db::Database& database = m_editor.database();
    const dxf::RecordId modelSpace = database.recordOf(database.modelSpaceId());
    Records entities;
    database.forEachEntity([&](dxf::RecordId record) { entities.push_back(record); });
    const auto isMeant = [&](dxf::RecordId record) {
      return database.blockOfEntity(record) == modelSpace && isVisible(record);
    };
    const auto found = std::find_if(entities.rbegin(), entities.rend(), isMeant);
    return found == entities.rend() ? Records() : Records{*found};
  }

  Records previous() {
    const db::Database& database = m_editor.database();
    Records found;
    for (const KdDbObjectId id : m_editor.previousSelection()) {
      const dxf::RecordId record = database.recordOf(id);
      if (record != dxf::kNoRecord && !database.file().isErased(record)) found.push_back(record);
    }
    return found;
  }

  void take(const Records& found) {
    const bool hadSome = !m_chosen.empty();
    std::size_t changed = 0;
    for (const dxf::RecordId record : found) changed += m_takesOut ? m_chosen.erase(record) : m_chosen.insert(record).second;
    m_editor.showTaken({m_chosen.begin(), m_chosen.end()});
    std::wstring text = std::to_wstring(found.size()) + L" found";
    if (m_takesOut) {
      text += L", " + std::to_wstring(changed) + L" removed";
    } else if (changed < found.size()) {
      text += L" (" + std::to_wstring(found.size() - changed) + L" chosen before)";
    }
    if (hadSome) text += L", " + std::to_wstring(m_chosen.size()) + L" total";
    m_editor.print(text);
  }

  Editor& m_editor;
  std::set<dxf::RecordId> m_chosen;
  bool m_takesOut = false;
  bool m_isCancelled = false;
};

void leaveOutLocked(Editor& editor, std::vector<dxf::RecordId>& entities) {
  const auto isLocked = [&](dxf::RecordId entity) { return db::isOnLockedLayer(editor.database(), entity); };
  reportLocked(editor, std::erase_if(entities, isLocked));
}

}  // namespace

std::vector<dxf::RecordId> selectObjects(Editor& editor, SelectionUse use) {
  std::vector<dxf::RecordId> entities = editor.takePickedFirst();
  if (entities.empty()) {
    entities = Selecting(editor).run();
  } else {
    editor.print(std::to_wstring(entities.size()) + L" found");
  }
  if (entities.empty()) return entities;
  std::vector<KdDbObjectId>& previous = editor.previousSelection();
  previous.clear();
  for (const dxf::RecordId entity : entities) previous.push_back(editor.database().idOf(entity));
  if (use == SelectionUse::change) leaveOutLocked(editor, entities);
  return entities;
}

void pickFirst(Editor& editor, const std::vector<dxf::RecordId>& entities, Choice choice) {
  std::vector<dxf::RecordId> chosen = editor.pickedFirst();
  if (choice == Choice::add) {
    chosen.insert(chosen.end(), entities.begin(), entities.end());
  } else {
    const std::set<dxf::RecordId> removed(entities.begin(), entities.end());
    std::erase_if(chosen, [&](dxf::RecordId entity) { return removed.contains(entity); });
  }
  editor.setPickedFirst(std::move(chosen));
}

bool pickFirstAt(Editor& editor, const KdGePoint3d& pointWcs, Choice choice) {
  const dxf::RecordId entity = editor.entityAt(pointWcs);
  if (entity == dxf::kNoRecord) return false;
  pickFirst(editor, {entity}, choice);
  return true;
}

void pickFirstIn(Editor& editor, const KdGePoint3d& cornerWcs, const KdGePoint3d& oppositeWcs, view::WindowRule rule,
                 Choice choice) {
  pickFirst(editor, editor.entitiesIn(cornerWcs, oppositeWcs, rule), choice);
}

}  // namespace torva::command
