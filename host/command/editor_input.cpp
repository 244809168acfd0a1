#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "command/editor.h"
#include "command/point_text.h"
#include "command/session.h"
#include "command/variable_access.h"

namespace torva::command {

namespace {

PointContext pointContext(Editor& editor) {
  return {variableOr(editor.variables(), L"LASTPOINT", KdGePoint3d{}), editor.userPlane().elevation};
}

/// Status of a number under the restrictions; nothing when they forbid it.
template <class Number>
std::optional<int> accepted(Number number, int flags) {
  if ((flags & kKdNoZero) && number == 0) return std::nullopt;
  if ((flags & kKdNoNegative) && number < 0) return std::nullopt;
  return kKdInputNormal;
}

}  // namespace

int Editor::initGet(int flags, const wchar_t* keywords) {
  m_session->restrictions = {};
  const Keywords* const read = m_session->keywordsOf(keywords ? keywords : L"");
  if (!read) return kKdInputError;
  m_session->restrictions = {flags, *read};
  return kKdInputNormal;
}

void Editor::offerPreview(Preview preview) {
  m_session->restrictions.preview = std::move(preview);
}

const std::wstring& Editor::lastKeyword() const {
  return m_session->lastKeyword;
}

int Editor::getKeyword(std::wstring prompt, std::wstring& keyword) {
  const auto acceptNone = [](const std::wstring&, int) { return std::optional<int>(); };
  const int status = m_session->request({Question::Kind::keyword, std::move(prompt)}, acceptNone);
  if (status != kKdInputKeyword) return status;
  keyword = m_session->lastKeyword;
  return kKdInputNormal;
}

int Editor::getPoint(const KdGePoint3d* baseUcs, std::wstring prompt, KdGePoint3d& pointUcs) {
  Question question{Question::Kind::point, std::move(prompt)};
  if (baseUcs) question.base = *baseUcs;
  return askPoint(std::move(question), pointUcs);
}

int Editor::getCorner(const KdGePoint3d& firstUcs, std::wstring prompt, KdGePoint3d& pointUcs) {
  return askPoint({Question::Kind::corner, std::move(prompt), {}, firstUcs}, pointUcs);
}

int Editor::askPoint(Question question, KdGePoint3d& pointUcs) {
  const std::optional<KdGePoint3d> base = question.base;
  const auto accept = [&](const std::wstring& text, int) -> std::optional<int> {
    PointContext context = pointContext(*this);
    if (base) context.last = *base;
    const auto point = parsePoint(text, context);
    if (!point) return std::nullopt;
    pointUcs = *point;
    m_variables.setInternally(L"LASTPOINT", pointUcs);
    return kKdInputNormal;
  };
  return m_session->request(std::move(question), accept);
}

int Editor::getReal(std::wstring prompt, double& value) {
  const auto accept = [&](const std::wstring& text, int flags) -> std::optional<int> {
    const auto number = parseNumber(text);
    if (!number || !accepted(*number, flags)) return std::nullopt;
    value = *number;
    return kKdInputNormal;
  };
  return m_session->request({Question::Kind::real, std::move(prompt)}, accept);
}

int Editor::getDistance(const KdGePoint3d& baseUcs, std::wstring prompt, double& value) {
  const auto accept = [&](const std::wstring& text, int flags) -> std::optional<int> {
    auto distance = parseNumber(text);
    if (const auto point = parsePoint(text, {baseUcs, baseUcs.z})) distance = baseUcs.distanceTo(*point);
    if (!distance || !accepted(*distance, flags)) return std::nullopt;
    value = *distance;
    return kKdInputNormal;
  };
  return m_session->request({Question::Kind::distance, std::move(prompt), {}, baseUcs}, accept);
}

int Editor::getInteger(std::wstring prompt, int& value) {
  const auto accept = [&](const std::wstring& text, int flags) -> std::optional<int> {
    const auto number = parseInteger(utf8FromWide(text));
    if (!number || *number != static_cast<int>(*number) || !accepted(*number, flags)) return std::nullopt;
    value = static_cast<int>(*number);
    return kKdInputNormal;
  };
  return m_session->request({Question::Kind::integer, std::move(prompt)}, accept);
}

int Editor::getString(std::wstring prompt, Blanks blanks, std::wstring& text) {
  const auto accept = [&](const std::wstring& answer, int) -> std::optional<int> {
    text = answer;
    return kKdInputNormal;
  };
  const auto kind = blanks == Blanks::endAnswer ? Question::Kind::word : Question::Kind::text;
  return m_session->request({kind, std::move(prompt)}, accept);
}

int Editor::selectEntity(std::wstring prompt, KdDbObjectId& id, KdGePoint3d& pointUcs, Picks picks) {
  const auto pickAt = [&](const KdGePoint3d& point) {
    pointUcs = point;
    m_variables.setInternally(L"LASTPOINT", point);
  };
  const auto accept = [&](const std::wstring& text, int) -> std::optional<int> {
    const PointContext context = pointContext(*this);
    if (const auto pick = parseHandlePick(text, context)) {
      pickAt(pick->point);
      return pickByHandle(pick->handle, id);
    }
    const auto point = parsePoint(text, context);
    if (!point) return std::nullopt;
    pickAt(*point);
    return pickByPoint(*point, id);
  };
  const auto kind = picks == Picks::one ? Question::Kind::entity : Question::Kind::selection;
  const int status = m_session->request({kind, std::move(prompt)}, accept);
  if (status != kKdInputNone) return status;
  m_variables.setInternally(L"ERRNO", static_cast<int>(kKdErrnoEmptyAnswer));
  return kKdInputError;
}

int Editor::pickByHandle(std::uint64_t handle, KdDbObjectId& id) {
  const KdDbObjectId named = m_database->idOfHandle(handle);
  KdDbObject* object = nullptr;
  if (const dxf::RecordId record = m_database->recordOf(named);
      record == dxf::kNoRecord || m_database->file().isErased(record)) {
    print(L"There is no entity with the handle " + wideFromUtf8(formatHandle(handle)) + L".");
    return miss();
  }
  if (m_database->openObject(object, named, KdOpenMode::forRead, false) == KdStatus::ok) {
    const bool isEntity = object->isKindOf(KdDbEntity::desc());
    object->close();
    if (!isEntity) {
      print(L"The object " + wideFromUtf8(formatHandle(handle)) + L" is no entity.");
      return miss();
    }
  }
  id = named;
  return kKdInputNormal;
}

int Editor::pickByPoint(const KdGePoint3d& pointUcs, KdDbObjectId& id) {
  const dxf::RecordId picked = entityAt(toWorld(pointUcs));
  if (picked == dxf::kNoRecord) return miss();
  id = m_database->idOf(picked);
  return kKdInputNormal;
}

dxf::RecordId Editor::entityAt(const KdGePoint3d& pointWcs) {
  const double halfSide = variableOr(m_variables, L"PICKBOX", 3) * view().unitsPerPixel(1.0);
  return picker().pick(pointWcs, halfSide, view());
}

std::vector<dxf::RecordId> Editor::entitiesIn(const KdGePoint3d& cornerWcs, const KdGePoint3d& oppositeWcs,
                                              view::WindowRule rule) {
  geom::Box3 box;
  box.add(view().toDisplay(cornerWcs));
  box.add(view().toDisplay(oppositeWcs));
  return picker().pickAll({box.min, box.max}, rule, view());
}

bool Editor::lastMissed() const {
  return variableOr(m_variables, L"ERRNO", 0) == kKdErrnoPickMissed;
}

std::vector<dxf::RecordId> Editor::pickedFirst() const {
  std::vector<dxf::RecordId> entities = m_session->pickedFirst.entities;
  std::erase_if(entities, [&](dxf::RecordId entity) { return m_database->file().isErased(entity); });
  return entities;
}

void Editor::setPickedFirst(std::vector<dxf::RecordId> entities) {
  std::sort(entities.begin(), entities.end());
  entities.erase(std::unique(entities.begin(), entities.end()), entities.end());
  m_session->pickedFirst = {std::move(entities)};
}

std::vector<dxf::RecordId> Editor::takePickedFirst() {
  if (std::exchange(m_session->pickedFirst.isTaken, true)) return {};
  return pickedFirst();
}

void Editor::showTaken(std::vector<dxf::RecordId> entities) {
  m_session->pickedFirst = {std::move(entities), true};
}

std::vector<KdDbObjectId>& Editor::previousSelection() {
  return m_session->previousSelection;
}

int Editor::miss() {
  m_variables.setInternally(L"ERRNO", static_cast<int>(kKdErrnoPickMissed));
  return kKdInputError;
}

}  // namespace torva::command
