#pragma once

class CMlineEdit;
class CMlineSegment;

/// Text ids of refusals, printed by CMlineEdit::refuse().
constexpr unsigned kClosedRefusal = 4006, kNoCrossingRefusal = 4007;

/// Text ids of a tool's prompts.
struct CMlinePrompts {
  unsigned undo;    ///< The first prompt while there is something to undo.
  unsigned first;   ///< And while there is nothing.
  unsigned second;  ///< Asked again until the pick is accepted; 0 for a tool with a single pick.
};
constexpr CMlinePrompts kPairPrompts{4003, 4004, 4005};     ///< Of the tools that work on two multilines.
constexpr CMlinePrompts kVertexPrompts{4008, 4009, 0};      ///< Of those that work at one place.
constexpr CMlinePrompts kStretchPrompts{4010, 4011, 4012};  ///< Of those that work between two places on one multiline.

/// What a tool fills into the command loop that the tools share: pick, pick again, edit, and so on until the user ends it.
struct CMlineTool {
  enum class Changes { first, both };

  const wchar_t* command;  ///< Starts the tool from the command line; the host looks up help and runs previews by it.
  CMlinePrompts prompts;
  /// Whether the first pick can be worked with; null for any multiline.
  bool (CMlineEdit::*acceptsFirst)() = nullptr;
  /// The same for the second pick; null for a tool with a single pick.
  bool (CMlineEdit::*acceptsSecond)() = nullptr;
  /// Resolves a pick; null for CMlineEdit::mlineEditInitialize().
  void (CMlineEdit::*resolve)(CMlineSegment* seg, long* name, CMlineSegment* other) = nullptr;
  /// Edits the two multilines, which are open for write.
  void (CMlineEdit::*edit)();
  /// The multilines that `edit` changes and UNDO brings back.
  Changes changes = Changes::first;
};
