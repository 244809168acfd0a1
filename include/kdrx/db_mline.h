#pragma once

#include <span>
#include <vector>

#include <kdrx/db_mline_segments.h>
#include <kdrx/db_object.h>
#include <kdrx/ge.h>

/// Place of the path among the elements.
enum class KdMlineJustification { top = 0, zero = 1, bottom = 2 };

/// All that a multiline holds at one vertex, world coordinates.
struct KdMlineVertex {
  KdGePoint3d position;
  KdGeVector3d axis;      ///< Unit direction of the segment that starts at the vertex.
  KdGeVector3d miter;     ///< Unit direction along which the elements are offset.
  KdMLSegments elements;  ///< In the style's element order; may differ in number from vertex to vertex in odd files.
};

/// A multiline: parallel element lines along one path of vertices.
///
/// All points and directions are in world coordinates. Vertex indices run from 0 to numVertices() - 1; segment i runs from
/// vertex i to vertex i + 1, and in a closed multiline the last one back to vertex 0.
class KDRX_API KdDbMline : public KdDbEntity {
 public:
  /// An empty multiline outside any database: no vertex, open, normal (0, 0, 1), scale 1, zero justification, no style.
  KdDbMline();
  ~KdDbMline() override;

  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  int numVertices() const;
  /// Position of a vertex; the origin when `index` is outside 0 .. numVertices() - 1.
  KdGePoint3d vertexAt(int index) const;
  /// Unit direction of the segment that starts at the vertex; a zero vector when `index` is outside.
  KdGeVector3d axisAt(int index) const;
  /// Unit direction along which the elements are offset at the vertex; a zero vector when `index` is outside.
  KdGeVector3d miterAt(int index) const;

  /// All vertices as they are stored, without copying them. Valid until the multiline is changed or closed.
  std::span<const KdMlineVertex> vertices() const;
  /// Replaces all that is stored at a vertex, adds a vertex in front of one (numVertices(): at the end), or removes some.
  /// All others stay as they are: nothing follows from the change.
  /// @return notOpen, invalidIndex, invalidInput (a value that is no number); nothing is changed then
  KdStatus setVertexAt(int index, KdMlineVertex vertex);
  KdStatus insertVertexAt(int index, KdMlineVertex vertex);
  KdStatus removeVerticesAt(int index, int count);

  /// The element lists at a vertex.
  /// @param[out] parameters one entry, holding one KdMLSegment per element in element order; emptied first
  /// @return KdStatus::invalidIndex; `parameters` is unchanged then
  KdStatus getParametersAt(int index, std::vector<std::vector<KdMLSegment>>& parameters) const;
  /// Replaces the element lists at a vertex by the first entry of `parameters`; the element count of the vertex follows it.
  /// @return invalidIndex, invalidInput (no entry, or a value that is no number), notOpen; nothing is changed then
  KdStatus setParametersAt(int index, const std::vector<std::vector<KdMLSegment>>& parameters);
  /// The same lists without copying them. Valid until the multiline is changed or closed; none when `index` is outside.
  const KdMLSegments& segmentsAt(int index) const;
  /// @return invalidIndex, invalidInput (a value that is no number), notOpen; nothing is changed then
  KdStatus setSegmentsAt(int index, const KdMLSegments& segments);

  /// Replaces one list: what is drawn of an element, or its fill boundaries.
  /// @return notOpen, invalidIndex, invalidInput (a value that is no number); nothing is changed then
  KdStatus setElementParametersAt(int vertex, int element, std::span<const double> values);
  KdStatus setAreaFillParametersAt(int vertex, int element, std::span<const double> values);

  /// Appends a vertex and draws the new segment whole: axes, miters and the lists of the vertices concerned follow from
  /// style, scale and justification. In an empty multiline it places the first vertex.
  /// @return notOpen, invalidInput (a coordinate that is no number)
  KdStatus appendSeg(const KdGePoint3d& point);
  /// Removes the last vertex; the one before it becomes the end.
  /// @param[out] lastVertex the removed position
  /// @return notOpen, invalidIndex when there is no vertex
  KdStatus removeLastSeg(KdGePoint3d& lastVertex);

  bool closedMline() const;
  /// Closes or opens the path. The segment from the last vertex is drawn whole; at vertex 0 the miter turns and the breaks
  /// stay where they are in the drawing. With less than two vertices only the flag changes.
  /// @return notOpen
  KdStatus setClosedMline(bool isClosed);
  bool supressStartCaps() const;
  KdStatus setSupressStartCaps(bool isSuppressed);
  bool supressEndCaps() const;
  KdStatus setSupressEndCaps(bool isSuppressed);

  KdGeVector3d normal() const;
  /// Sets the plane's normal, made one long; vertices and vectors stay. @return notOpen, invalidInput (no direction)
  KdStatus setNormal(const KdGeVector3d& normal);
  /// Factor of the style's offsets; negative values put the elements on the other side of the path.
  double scale() const;
  /// A change of scale or justification recomputes miters and distances at all vertices; breaks stay where they are in the
  /// drawing. @return notOpen, invalidInput (no number)
  KdStatus setScale(double scale);
  KdMlineJustification justification() const;
  KdStatus setJustification(KdMlineJustification justification);

  /// The style's id: by the entity's style handle, if that is dead by its style name, else STANDARD; null when none exists.
  /// A multiline outside any database looks it up in the working drawing.
  KdDbObjectId style() const;
  /// Sets the style and recomputes the lists as setScale() does; where the number of elements changes they are drawn whole.
  /// @return notOpen, nullObjectId, unknownObjectId, wrongClass
  KdStatus setStyle(KdDbObjectId style);

  KdStatus copyFrom(const KdDbObject* source) override;
};
