#include "db/mline_segments.h"

#include <algorithm>

void KdMLSegmentsBuilder::clear() {
  m_ends.clear();
  m_blockUsed = m_blockBegin;
}

void KdMLSegmentsBuilder::growBlock() {
  constexpr std::size_t kLeast = 16;
  const std::size_t count = m_blockUsed - m_blockBegin;
  m_blockSize = std::max({kLeast, m_valuesPerBlock, 2 * count});
  auto block = std::make_shared_for_overwrite<double[]>(m_blockSize);
  std::copy_n(m_block.get() + m_blockBegin, count, block.get());
  m_block = std::move(block);
  m_blockBegin = 0;
  m_blockUsed = count;
}

KdMLSegments KdMLSegmentsBuilder::take() {
  if (!m_lastEnds || *m_lastEnds != m_ends) m_lastEnds = std::make_shared<KdMLSegments::Ends>(m_ends);
  KdMLSegments segments;
  segments.m_ends = m_lastEnds;
  segments.m_values = {m_block, m_block.get() + m_blockBegin};
  m_blockBegin = m_blockUsed;
  m_ends.clear();
  return segments;
}

KdMLSegments::KdMLSegments(const std::vector<KdMLSegment>& segments) {
  KdMLSegmentsBuilder builder;
  for (const KdMLSegment& segment : segments) {
    for (const std::vector<double>* list : {&segment.elementParameters, &segment.areaFillParameters}) {
      for (const double value : *list) builder.add(value);
      builder.endList();
    }
  }
  *this = builder.take();
}

std::vector<KdMLSegment> KdMLSegments::toVector() const {
  std::vector<KdMLSegment> segments(size());
  for (std::size_t i = 0; i < segments.size(); ++i) {
    const auto [fill, parameters] = (*this)[i];
    segments[i] = {{fill.begin(), fill.end()}, {parameters.begin(), parameters.end()}};
  }
  return segments;
}

void KdMLSegments::set(std::size_t element, const KdMLSegmentView& lists) {
  const KdMLSegmentView old = (*this)[element];
  const std::size_t begin = static_cast<std::size_t>(old.elementParameters.data() - m_values.get());
  const std::size_t end = (*m_ends)[2 * element + 1], count = m_ends->back();
  const std::size_t parameters = lists.elementParameters.size(), fill = lists.areaFillParameters.size();
  const bool isAsLong = parameters == old.elementParameters.size() && fill == old.areaFillParameters.size();
  if (isAsLong && m_values.use_count() == 1) {
    double* const to = m_values.get() + begin;
    if (lists.elementParameters.data() != to) std::ranges::copy(lists.elementParameters, to);
    if (lists.areaFillParameters.data() != to + parameters) std::ranges::copy(lists.areaFillParameters, to + parameters);
    return;
  }
  const double* from = m_values.get();
  const auto values = std::make_shared_for_overwrite<double[]>(count - (end - begin) + parameters + fill);
  double* to = std::copy(from, from + begin, values.get());
  to = std::ranges::copy(lists.elementParameters, to).out;
  to = std::ranges::copy(lists.areaFillParameters, to).out;
  std::copy(from + end, from + count, to);

  if (!isAsLong) {
    if (m_ends.use_count() > 1) m_ends = std::make_shared<Ends>(*m_ends);
    Ends& ends = *m_ends;
    ends[2 * element] = static_cast<std::uint32_t>(begin + parameters);
    const auto growth = static_cast<std::uint32_t>(begin + parameters + fill - end);  // may wrap around, and back again
    for (std::size_t i = 2 * element + 1; i < ends.size(); ++i) ends[i] += growth;
  }
  m_values = {values, values.get()};
}

bool KdMLSegments::operator==(const KdMLSegments& other) const {
  if (size() != other.size()) return false;
  if (empty() || (m_values == other.m_values && m_ends == other.m_ends)) return true;
  const bool areEquallyLong = m_ends == other.m_ends || *m_ends == *other.m_ends;
  return areEquallyLong && std::equal(m_values.get(), m_values.get() + m_ends->back(), other.m_values.get());
}
