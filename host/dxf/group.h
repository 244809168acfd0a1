#pragma once

#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>

#include "dxf/line_ends.h"
#include "dxf/record.h"

namespace torva::dxf {

enum class Form : std::uint8_t { text, binary };

/// Bytes per group code in the binary form: 1 up to R12 (255 announces 2 more), else 2.
enum class BinaryCodes : std::uint8_t { oneByte, twoBytes };

/// Kind of the value that stands behind a group code.
enum class ValueKind : std::uint8_t { text, real, int16, int32, int64, boolean, handle, bytes, comment };

/// @return the kind for any code; codes without a meaning of their own count as text
ValueKind valueKind(int code);
/// Whether the format gives a code a meaning. Others can be kept in the text form alone: in the binary form nothing tells
/// how long their values are.
bool isKnownCode(int code);

/// Code of what stands in a record from a line on that should be a group code and is no number (or, in the binary form, from
/// an unknown code on) to the record's end: one group without a value, so that copying groups loses nothing.
inline constexpr int kUnreadableCode = std::numeric_limits<int>::min();

/// The group code on a line of the text form, blanks around; kUnreadableCode when it is none.
int parseGroupCode(std::string_view line);

/// One group of a record: a code and its value as it stands in the file. A view; valid while the record's bytes are.
struct Group {
  int code = 0;
  Form form = Form::text;
  std::string_view
      value;  ///< Text form: the value line without its end. Binary form: the value's bytes, without terminator.
  std::string_view source;  ///< All bytes of the group, code and line ends included.

  /// The value as a number or handle. Nothing when it cannot be read as one or is not finite.
  std::optional<double> real() const;
  std::optional<std::int64_t> integer() const;
  std::optional<Handle> handle() const;
  double realOr(double fallback) const { return real().value_or(fallback); }
  std::int64_t integerOr(std::int64_t fallback) const { return integer().value_or(fallback); }
};

/// The groups of a record's bytes, read one after the other; nothing is allocated. The first is group 0 with the record's
/// name. Stops at the end of the bytes; an incomplete last group is passed over.
/// `ends` matters in the text form alone.
class Groups {
 public:
  Groups(std::string_view bytes, Form form, BinaryCodes codes, LineEnds ends)
      : m_bytes(bytes), m_form(form), m_codes(codes), m_ends(ends) {}

  class Iterator {
   public:
    using value_type = Group;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;

    const Group& operator*() const { return m_group; }
    const Group* operator->() const { return &m_group; }
    Iterator& operator++() {
      advance();
      return *this;
    }
    void operator++(int) { advance(); }
    bool operator==(std::default_sentinel_t) const { return m_isDone; }

   private:
    friend class Groups;
    explicit Iterator(const Groups& groups) : m_rest(groups.m_bytes), m_codes(groups.m_codes), m_ends(groups.m_ends) {
      m_group.form = groups.m_form;
      advance();
    }
    void advance();
    void advanceText();
    /// Whether the next group could be read as nearly all are: a code in three columns and a short value.
    bool advanceUsual();
    void advanceBinary();
    /// Makes the first `size` bytes of the rest the current group's source.
    void take(std::size_t size);
    void takeUnreadable();

    std::string_view m_rest;
    BinaryCodes m_codes;
    LineEnds m_ends;
    Group m_group;
    bool m_isDone = false;
  };

  Iterator begin() const { return Iterator(*this); }
  std::default_sentinel_t end() const { return {}; }

 private:
  std::string_view m_bytes;
  Form m_form;
  BinaryCodes m_codes;
  LineEnds m_ends;
};

}  // namespace torva::dxf
