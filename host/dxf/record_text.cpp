#include "dxf/record_text.h"

#include <algorithm>
#include <utility>

namespace torva::dxf {

void RecordText::appendKept(std::string_view bytes) {
  constexpr std::size_t kShortest = 128;  // about what keeping a piece takes itself
  if (bytes.size() < kShortest) return append(bytes);
  m_kept.push_back({m_own.size(), bytes});
}

std::size_t RecordText::size() const {
  std::size_t size = m_own.size();
  for (const Kept& kept : m_kept) size += kept.bytes.size();
  return size;
}

std::string_view RecordText::bytes() const {
  if (m_kept.empty()) return m_own;
  std::string all;
  all.reserve(size());
  forEachPiece([&](std::string_view piece) { all.append(piece); });
  m_own = std::move(all);
  m_kept.clear();
  return m_own;
}

bool RecordText::operator==(const RecordText& other) const {
  if (size() != other.size()) return false;
  const auto isSame = [](const Kept& a, const Kept& b) {
    return a.place == b.place && a.bytes.data() == b.bytes.data() && a.bytes.size() == b.bytes.size();
  };
  const bool haveSamePieces = std::ranges::equal(m_kept, other.m_kept, isSame);
  return haveSamePieces ? m_own == other.m_own : says(other.bytes());
}

bool RecordText::says(std::string_view bytes) const {
  if (size() != bytes.size()) return false;
  bool isSame = true;
  forEachPiece([&](std::string_view piece) {
    isSame = isSame && (piece.data() == bytes.data() || bytes.starts_with(piece));
    bytes.remove_prefix(piece.size());
  });
  return isSame;
}

}  // namespace torva::dxf
