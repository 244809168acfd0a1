#pragma once

#include <cstddef>
#include <string>

namespace torva::command {

/// One answer as it was typed.
struct Answer {
  enum class Kind {
    text,    ///< `text` holds it, without the quotes around it.
    empty,   ///< Enter: an empty line, or an empty text in quotes.
    cancel,  ///< ^C.
  };
  Kind kind = Kind::empty;
  std::wstring text = {};

  bool operator==(const Answer&) const = default;
};

/// A line of input, taken apart into answers.
///
/// Blanks and tabs separate answers; any number of them counts as one, and those at the line's ends count as none. A line of
/// blanks alone is one empty answer. The end of a line ends its last answer and is no answer of its own. A line beginning
/// with
/// `;` gives no answer. An answer beginning with `"` runs to the next `"` (or the line's end) and keeps its blanks; `""`
/// inside is one quote. `^C`, as two characters or as the control character, cancels and takes what stands before it in the
/// same answer with it; inside quotes it is text.
class AnswerLine {
 public:
  /// A line that is used up.
  AnswerLine() = default;
  explicit AnswerLine(std::wstring text);

  bool isExhausted() const { return m_isExhausted; }
  /// Whether nothing was taken from the line yet.
  bool isFresh() const { return m_isFresh; }
  /// The next answer. Requires: !isExhausted().
  Answer next();
  /// All that is left as one answer, blanks and inner quotes included; quotes around the whole are taken off. A ^C outside
  /// of such quotes cancels, and what follows it is left. Requires: !isExhausted().
  Answer rest();
  void dropRest() { m_isExhausted = true; }

 private:
  std::size_t cancelLength(std::size_t position) const;
  Answer quoted();
  void skipBlanks();

  std::wstring m_text;
  std::size_t m_position = 0;
  bool m_isExhausted = true;
  bool m_isFresh = true;
};

}  // namespace torva::command
