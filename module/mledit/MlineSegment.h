#pragma once

#include <kdrx/db_mline.h>

/// One picked multiline: which entity, and where the pick lies on it.
///
/// A pick that resolves to nothing leaves segment, element and point as they were, so they may belong to another multiline:
/// hasElement() and nextVertex() tell whether they fit the one at hand.
class CMlineSegment {
 public:
  long name[2] = {0, 0};
  double point[3] = {0, 0, 0};  ///< The pick on the chosen element line, world coordinates.
  double distance = 0;          ///< From the element line's point at the segment's start vertex to `point`.
  int segment = 0;              ///< Index of the segment's start vertex; the closing segment starts at the last vertex.
  int element = 0;
  int numVertices = 0;
  int numElements = 0;
  KdDbMline* mline = nullptr;       ///< The open multiline; owned by its drawing.
  double (**ptList)[3] = nullptr;   ///< ptList[e][v]: where element line e passes vertex v. Owned by CMlineEdit.
  int ptListCount = 0;              ///< Rows of `ptList`, each of `numVertices` points.
  double origPoint[3] = {0, 0, 0};  ///< The pick as resolved, or as carried over to another element line.
  double origDistance = 0;
  int origSegment = 0;
  int origElement = 0;
  double weldPoint[3] = {0, 0, 0};

  bool isSameEntity(const CMlineSegment& other) const;
  /// The multiline's closed flag; false without a multiline.
  bool isClosed() const;
  /// True when `ptList` has a row for the element.
  bool hasElement(int index) const { return index >= 0 && index < ptListCount; }
  /// The vertex at which a segment ends: index + 1, 0 for the closing segment of a closed multiline, -1 when there is no
  /// such segment.
  int nextVertex(int index) const;
  /// Copies point, distance, segment and element into the `orig` fields.
  void adoptPick();
};

/// Opens both picked multilines for write for the time of one edit. The same entity picked twice is opened once.
class CMlineOpenObject {
 public:
  /// Reopens the multilines that the records hold open for read. Where that is refused, the record's `mline` becomes null.
  CMlineOpenObject(CMlineSegment* first, CMlineSegment* second);
  /// Closes both. The second record keeps its pointer, which whoever runs the tool closes once more at the end, in vain and
  /// without harm. Our own decision.
  ~CMlineOpenObject();
  CMlineOpenObject(const CMlineOpenObject&) = delete;
  CMlineOpenObject& operator=(const CMlineOpenObject&) = delete;

 private:
  CMlineSegment* m_first;
  CMlineSegment* m_second;
};

/// True when the name stands for an existing multiline.
bool needBreak(const long* name);

bool isSameName(const long* a, const long* b);

/// Opens a multiline by entity name; null when that is refused or it is no multiline.
KdDbMline* openMline(const long* name, KdOpenMode mode);
