#pragma once

#include "mledit/MlineEdit.h"
#include "module/mline_sketch.h"

/// Puts a multiline outside any drawing into a record of the engine, as if it had been picked: the pick lies on `element` of
/// `segment`, at `along` drawing units from the element's start.
inline void pick(CMlineEdit& engine, CMlineSegment& seg, KdDbMline& mline, long name, int segment, int element,
                 double along) {
  seg.name[0] = name;
  seg.mline = &mline;
  seg.numVertices = mline.numVertices();
  GetSegmentsSize(&mline, &seg.numElements);
  engine.ptListInitialize(&mline, seg.numVertices, seg.numElements, &seg.ptList, &seg.ptListCount);
  seg.segment = segment;
  seg.element = element;
  seg.distance = along;
  const KdGeVector3d axis = mline.axisAt(segment);
  const double* start = seg.ptList[element][segment];
  seg.point[0] = start[0] + axis.x * along;
  seg.point[1] = start[1] + axis.y * along;
  seg.point[2] = start[2] + axis.z * along;
  seg.adoptPick();
}
