#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace torva::dxf {

/// The bytes of a changed record. Runs that it has in common with the bytes it was made of are not copied: an edit of a
/// record of megabytes costs what it changes.
class RecordText {
 public:
  RecordText() = default;
  RecordText(std::string bytes) : m_own(std::move(bytes)) {}

  void append(std::string_view bytes) { m_own.append(bytes); }
  /// The same for bytes that stay where they are, and as they are, as long as this text and its copies live or until
  /// bytes() was called. Short ones are copied.
  void appendKept(std::string_view bytes);

  std::size_t size() const;
  /// All bytes in one place, where they are copied to when first asked for. Valid until this object is changed or gone.
  std::string_view bytes() const;

  /// Calls visit(bytes) for all pieces in order. The pieces are valid as bytes() is, and until that is called.
  template <class Visit>
  void forEachPiece(const Visit& visit) const {
    std::size_t from = 0;
    for (const Kept& kept : m_kept) {
      if (kept.place > from) visit(std::string_view(m_own).substr(from, kept.place - from));
      visit(kept.bytes);
      from = kept.place;
    }
    if (from < m_own.size()) visit(std::string_view(m_own).substr(from));
  }

  bool operator==(const RecordText& other) const;
  /// Whether these are its bytes.
  bool says(std::string_view bytes) const;

 private:
  struct Kept {
    std::size_t place;  // behind so many of the own bytes
    std::string_view bytes;
  };

  mutable std::string m_own;
  mutable std::vector<Kept> m_kept;
};

}  // namespace torva::dxf
