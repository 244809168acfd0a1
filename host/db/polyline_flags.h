#pragma once

namespace torva::db {

/// Bits of the flag words (group 70) of POLYLINE and VERTEX records.
enum PolylineFlag {
  kPolylineClosed = 1,
  kPolylineInSpace = 8,
  kPolylineMesh = 16,
  kPolylineClosedAcross = 32,
  kPolyface = 64
};
enum VertexFlag { kVertexOfSplineFrame = 16, kVertexOfPolyface = 64, kVertexIsFace = 128 };

/// Whether the flags of a POLYLINE say that it lies in a plane and may have bulges.
constexpr bool isPlanePolyline(int flags) {
  return (flags & (kPolylineInSpace | kPolylineMesh | kPolyface)) == 0;
}

/// Whether the flags of a VERTEX say that it is a face of a polyface, which names points and is none itself.
constexpr bool isPolyfaceFace(int vertexFlags) {
  return (vertexFlags & kVertexIsFace) && (vertexFlags & kVertexOfPolyface) == 0;
}

/// Whether the flags of a VERTEX say that it is a point that something drawn goes through.
constexpr bool isPolylinePoint(int vertexFlags) {
  return !isPolyfaceFace(vertexFlags) && (vertexFlags & kVertexOfSplineFrame) == 0;
}

}  // namespace torva::db
