#include "db/mline_segments.h"

#include <algorithm>

void KdMLSegmentsBuilder::clear() {
  m_ends.clear();
  m_values.clear();
}

KdMLSegments KdMLSegmentsBuilder::take() {
  if (!m_lastEnds || *m_lastEnds != m_ends) m_lastEnds = std::make_shared<const KdMLSegments::Ends>(m_ends);
  if (m_blockSize - m_blockUsed < m_values.size() || !m_block) {
    m_blockSize = std::max(m_valuesPerBlock, m_values.size());
    m_block = std::make_shared_for_overwrite<double[]>(m_blockSize);
    m_blockUsed = 0;
  }
  KdMLSegments segments;
  segments.m_ends = m_lastEnds;
  segments.m_values = {m_block, m_block.get() + m_blockUsed};
  std::ranges::copy(m_values, segments.m_values.get());
  m_blockUsed += m_values.size();
  clear();
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
    auto ends = std::make_shared<Ends>(*m_ends);
    (*ends)[2 * element] = static_cast<std::uint32_t>(begin + parameters);
    const auto growth = static_cast<std::uint32_t>(begin + parameters + fill - end);  // may wrap around, and back again
    for (std::size_t i = 2 * element + 1; i < ends->size(); ++i) (*ends)[i] += growth;
    m_ends = std::move(ends);
  }
  m_values = {values, values.get()};
}

bool KdMLSegments::operator==(const KdMLSegments& other) const {
  if (size() != other.size()) return false;
  if (empty() || (m_values == other.m_values && m_ends == other.m_ends)) return true;
  const bool areEquallyLong = m_ends == other.m_ends || *m_ends == *other.m_ends;
  return areEquallyLong && std::equal(m_values.get(), m_values.get() + m_ends->back(), other.m_values.get());
}
