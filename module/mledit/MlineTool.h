#pragma once

class CMlineEdit;
class CMlineSegment;

/// Text ids of refusals, printed by CMlineEdit::refuse().
constexpr unsigned kClosedRefusal = 4006, kNoCrossingRefusal = 4007;

/// What a tool fills into the command loop that the tools share: pick, pick again, edit, and so on until the user ends it.
struct CMlineTool {
  enum class Changes { first, both };

  const wchar_t* command;  ///< Starts the tool from the command line; the host looks up help and runs previews by it.
  unsigned undoPrompt;     ///< Text id of the first prompt while there is something to undo.
  unsigned firstPrompt;    ///< And while there is nothing.
  unsigned secondPrompt;   ///< Asked again until `acceptsSecond`.
  /// Null for a tool with a single pick.
  bool (CMlineEdit::*acceptsSecond)();
  /// Edits the two multilines, which are open for write.
  void (CMlineEdit::*edit)();
  /// Whether the first pick can be worked with; null for any multiline.
  bool (CMlineEdit::*acceptsFirst)() = nullptr;
  /// Resolves a pick; null for CMlineEdit::mlineEditInitialize().
  void (CMlineEdit::*resolve)(CMlineSegment* seg, long* name, CMlineSegment* other) = nullptr;
  /// The multilines that `edit` changes and UNDO brings back.
  Changes changes = Changes::first;
};
