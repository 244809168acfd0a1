#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <kdrx/export.h>

/// One element of a multiline at one vertex: what is drawn of it on the segment that starts there.
struct KdMLSegment {
  /// Fill boundaries (exchange group 42), kept as read.
  std::vector<double> areaFillParameters;
  /// Exchange group 41. Entry 0: distance from the vertex along the miter. Entries 1, 3, 5...: distances from that point
  /// along the segment at which the line starts; 2, 4, 6...: at which it stops. With an even number of entries the last
  /// stretch runs on to the next vertex.
  std::vector<double> elementParameters;

  bool operator==(const KdMLSegment&) const = default;
};

/// The same, seen where it is stored.
struct KdMLSegmentView {
  std::span<const double> areaFillParameters;
  std::span<const double> elementParameters;
};

/// The lists of all elements at one vertex, in element order. A value: copies share one memory until they are changed, so
/// that copying costs the same for one element and for many.
class KDRX_API KdMLSegments {
 public:
  KdMLSegments() = default;
  KdMLSegments(const std::vector<KdMLSegment>& segments);

  std::size_t size() const { return m_ends ? m_ends->size() / 2 : 0; }
  bool empty() const { return size() == 0; }
  /// The lists of an element, both empty when there is none with that index. Valid until this value is changed or gone.
  KdMLSegmentView operator[](std::size_t element) const {
    if (element >= size()) return {};
    const std::uint32_t* ends = m_ends->data() + 2 * element;
    const double* values = m_values.get();
    return {{values + ends[0], values + ends[1]}, {values + (element == 0 ? 0 : ends[-1]), values + ends[0]}};
  }
  std::vector<KdMLSegment> toVector() const;

  /// Replaces the lists of an element; either may be a part of the present one. Requires: element < size().
  void set(std::size_t element, const KdMLSegmentView& lists);

  bool operator==(const KdMLSegments& other) const;

 private:
  friend class KdMLSegmentsBuilder;
  /// Where the lists end in the values, two an element: its element parameters, then its area-fill parameters.
  using Ends = std::vector<std::uint32_t>;

  // Shared, as the class promises, and changed only where they are not. Vertices whose lists are equally long share the ends
  // as well.
  std::shared_ptr<Ends> m_ends;
  std::shared_ptr<double> m_values;
};
