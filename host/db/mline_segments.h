#pragma once

#include <kdrx/db_mline_segments.h>

/// Puts the lists of one vertex after the other together, where they come in their order of storage: for each element its
/// element parameters, then its area-fill parameters.
class KdMLSegmentsBuilder {
 public:
  /// Vertices that are read together are mostly kept together: their values share blocks of memory of this size.
  explicit KdMLSegmentsBuilder(std::size_t valuesPerBlock = 0) : m_valuesPerBlock(valuesPerBlock) {}

  void add(double value) {
    if (m_blockUsed == m_blockSize) growBlock();
    m_block[m_blockUsed++] = value;
  }
  void endList() { m_ends.push_back(static_cast<std::uint32_t>(m_blockUsed - m_blockBegin)); }
  /// Drops what was added since the last take().
  void clear();
  /// Requires: two lists were ended for each element.
  KdMLSegments take();

 private:
  /// Goes on in a new block, into which the values since the last take() are moved.
  void growBlock();

  std::size_t m_valuesPerBlock;
  KdMLSegments::Ends m_ends;
  std::shared_ptr<KdMLSegments::Ends> m_lastEnds;
  std::shared_ptr<double[]> m_block;
  std::size_t m_blockBegin = 0, m_blockUsed = 0, m_blockSize = 0;  // the values since the last take(): begin to used
};
