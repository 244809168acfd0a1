#include "command/commands/mline_run.h"

#include <memory>

#include "base/text.h"
#include "command/editor.h"
#include "command/variable_access.h"
#include "db/mline_imp.h"
#include "db/mline_styles.h"
#include "db/new_entity.h"
#include "db/opened.h"

#include <kdrx/db_mline.h>

namespace torva::command {

namespace {

constexpr std::size_t kLeastClosed = 3;

/// Two segments run back over each other when the angle between them is smaller (in radians): the elements would have to
/// meet farther away than drawings reach.
constexpr double kLeastAngleRad = 1e-5;

bool runsBack(const KdGePoint3d& from, const KdGePoint3d& over, const KdGePoint3d& to) {
  const KdGeVector3d in = (over - from) * (1 / from.distanceTo(over)), out = (to - over) * (1 / over.distanceTo(to));
  return (in + out).length() < kLeastAngleRad;
}

}  // namespace

MlineRun::MlineRun(Editor& editor, const KdGePoint3d& start) : m_editor(editor), m_path{start} {}

bool MlineRun::canClose() const {
  return m_path.size() >= kLeastClosed;
}

bool MlineRun::runsBackAt(const KdGePoint3d& point) const {
  return m_path.size() > 1 && runsBack(m_path[m_path.size() - 2], m_path.back(), point);
}

draw::DisplayList MlineRun::preview(const KdGePoint3d& point) const {
  const KdGePoint3d next = onPathLevel(point);
  db::Database& drawing = m_editor.database();
  const dxf::RecordId style = db::findMlineStyle(drawing, db::currentMlineStyle(drawing, m_editor.variables()));
  draw::DisplayList list;
  if (style == dxf::kNoRecord || next.isEqualTo(m_path.back()) || runsBackAt(next)) return list;
  std::vector<KdGePoint3d> path(m_path.end() - std::min<std::ptrdiff_t>(2, std::ssize(m_path)), m_path.end());
  path.push_back(next);
  const auto mline = make(style, path);
  if (!mline) return list;
  const auto* imp = static_cast<db::MlineImp*>(KdDbSystemInternals::getImpObject(mline.get()));
  m_editor.picker().drawer().drawShapes(imp->data(), list);
  return list;
}

MlineRun::Step MlineRun::append(KdGePoint3d point) {
  point = onPathLevel(point);
  if (point.isEqualTo(m_path.back())) return refuse(L"The last point again: nothing is drawn.");
  if (runsBackAt(point)) return refuse(L"A multiline cannot run straight back over itself.");
  if (m_mline.isNull() && begin() == Step::failed) return Step::failed;
  const db::Opened<KdDbMline> mline(m_editor.database(), m_mline, KdOpenMode::forWrite);
  if (!mline || mline->appendSeg(m_editor.toWorld(point)) != KdStatus::ok) return fail();
  m_path.push_back(point);
  return Step::taken;
}

void MlineRun::undo() {
  if (m_path.size() < 2) return m_editor.print(L"All segments are undone already.");
  m_path.pop_back();
  if (m_path.size() < 2) {
    m_editor.database().setErased(m_editor.database().recordOf(m_mline), true);
    m_mline = {};
    return;
  }
  const db::Opened<KdDbMline> mline(m_editor.database(), m_mline, KdOpenMode::forWrite);
  KdGePoint3d removed;
  if (!mline || mline->removeLastSeg(removed) != KdStatus::ok) fail();
}

MlineRun::Step MlineRun::close() {
  const KdGePoint3d first = m_path.front();
  const bool endsAtStart = m_path.back().isEqualTo(first);
  const std::size_t count = m_path.size() - (endsAtStart ? 1 : 0);
  if (count < kLeastClosed) return refuse(L"A closed multiline needs three different points.");
  if (runsBack(m_path[count - 2], m_path[count - 1], first) || runsBack(m_path[count - 1], first, m_path[1])) {
    return refuse(L"A multiline cannot run straight back over itself.");
  }
  const db::Opened<KdDbMline> mline(m_editor.database(), m_mline, KdOpenMode::forWrite);
  KdGePoint3d removed;
  if (!mline || (endsAtStart && mline->removeLastSeg(removed) != KdStatus::ok)) return fail();
  return mline->setClosedMline(true) == KdStatus::ok ? Step::taken : fail();
}

Result<dxf::RecordId> MlineRun::currentStyle() {
  db::Database& drawing = m_editor.database();
  const std::wstring name = db::currentMlineStyle(drawing, m_editor.variables());
  Result<dxf::RecordId> style = db::findMlineStyle(drawing, name);
  if (*style == dxf::kNoRecord) style = db::makeStandardMlineStyle(drawing);
  if (style && drawing.mlineStyle(*style).elements.empty()) {
    return torva::fail(ErrorCode::notApplicable, "the multiline style " + utf8FromWide(name) + " has no elements");
  }
  return style;
}

std::unique_ptr<KdDbMline> MlineRun::make(dxf::RecordId style, const std::vector<KdGePoint3d>& path) const {
  const db::SystemVariables& variables = m_editor.variables();
  auto mline = std::make_unique<KdDbMline>();
  const auto justification = static_cast<KdMlineJustification>(variableOr(variables, L"CMLJUST", 0));
  bool isWell = mline->setNormal(m_editor.userPlane().z) == KdStatus::ok &&
                mline->setStyle(m_editor.database().idOf(style)) == KdStatus::ok &&
                mline->setScale(variableOr(variables, L"CMLSCALE", 1.0)) == KdStatus::ok &&
                mline->setJustification(justification) == KdStatus::ok;
  for (const KdGePoint3d& point : path) isWell = isWell && mline->appendSeg(m_editor.toWorld(point)) == KdStatus::ok;
  if (!isWell) return nullptr;
  static_cast<db::MlineImp*>(KdDbSystemInternals::getImpObject(mline.get()))
      ->setProperties(db::currentProperties(variables));
  return mline;
}

/// Puts a multiline of one vertex into the drawing.
MlineRun::Step MlineRun::begin() {
  db::Database& drawing = m_editor.database();
  const auto style = currentStyle();
  if (!style) {
    m_editor.report(style.error(), Fault::script);
    return Step::failed;
  }
  auto mline = make(*style, {m_path.front()});
  if (!mline) return fail();
  const db::Opened<KdDbBlockTableRecord> modelSpace(drawing, drawing.modelSpaceId(), KdOpenMode::forWrite);
  if (!modelSpace || modelSpace->appendEntity(mline.get(), m_mline) != KdStatus::ok) return fail();
  mline.release()->close();
  return Step::taken;
}

MlineRun::Step MlineRun::refuse(const wchar_t* reason) {
  m_editor.print(reason);
  return Step::refused;
}

MlineRun::Step MlineRun::fail() {
  m_editor.report({ErrorCode::notApplicable, "the drawing does not take the multiline"}, Fault::script);
  return Step::failed;
}

}  // namespace torva::command
