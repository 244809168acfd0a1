#include "mledit/MlineSegment.h"

#include <algorithm>

#include "mlaccess/mline_access.h"

bool CMlineSegment::isSameEntity(const CMlineSegment& other) const {
  return isSameName(name, other.name);
}

bool CMlineSegment::isClosed() const {
  int flags = 0;
  return GetFlag(mline, &flags) && (flags & kMlineIsClosed);
}

int CMlineSegment::nextVertex(int index) const {
  if (index < 0 || index >= numVertices) return -1;
  if (index + 1 < numVertices) return index + 1;
  return isClosed() ? 0 : -1;
}

void CMlineSegment::adoptPick() {
  std::copy_n(point, 3, origPoint);
  origDistance = distance;
  origSegment = segment;
  origElement = element;
}

CMlineOpenObject::CMlineOpenObject(CMlineSegment* first, CMlineSegment* second) : m_first(first), m_second(second) {
  const auto reopen = [](CMlineSegment& seg) {
    if (!seg.mline) return;
    seg.mline->close();
    seg.mline = openMline(seg.name, KdOpenMode::forWrite);
  };
  reopen(*m_first);
  if (!m_second->isSameEntity(*m_first)) reopen(*m_second);
}

CMlineOpenObject::~CMlineOpenObject() {
  if (m_first->mline) m_first->mline->close();
  m_first->mline = nullptr;
  if (!m_second->mline) return;
  m_second->mline->close();
  // It is the first record's pointer that is cleared again here; see the declaration.
  m_first->mline = nullptr;
}

bool needBreak(const long* name) {
  KdDbObjectId id;
  KdDbEntity* entity = nullptr;
  if (!name || kddbGetObjectId(id, name) != KdStatus::ok || id.isNull()) return false;
  if (kddbOpenObject(entity, id, KdOpenMode::forRead) != KdStatus::ok) return false;
  const bool isMline = entity->isKindOf(KdDbMline::desc());
  entity->close();
  return isMline;
}

bool isSameName(const long* a, const long* b) {
  return a[0] == b[0] && a[1] == b[1];
}

KdDbMline* openMline(const long* name, KdOpenMode mode) {
  KdDbObjectId id;
  KdDbMline* mline = nullptr;
  if (kddbGetObjectId(id, name) != KdStatus::ok) return nullptr;
  return kddbOpenObject(mline, id, mode) == KdStatus::ok ? mline : nullptr;
}
