#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "command/keywords.h"
#include "draw/display_list.h"
#include "dxf/record.h"

#include <kdrx/ge.h>

namespace torva::command {

/// What the cursor stands for before the user answers with it.
struct Cursor {
  KdGePoint3d pointUcs;                   ///< Snapped already.
  dxf::RecordId entity = dxf::kNoRecord;  ///< What a pick there would give, at an entity prompt.
};

/// Draws what an answer with the cursor would lead to. Called only while the question waits; an empty list for nothing.
using Preview = std::function<draw::DisplayList(const Cursor&)>;

/// What the command line waits for. A source of answers that shows the question can help with it; any answer is a line of
/// text all the same, whatever is asked.
struct Question {
  enum class Kind {
    command,    ///< The name of a command or variable.
    point,      ///< A point in user coordinates.
    corner,     ///< The corner of a window opposite to `base`.
    entity,     ///< A point at an entity.
    selection,  ///< Points at entities, one by one; windows are asked for by keyword.
    keyword,    ///< One of the keywords alone.
    distance,   ///< A number, or a point, which gives its distance from `base`.
    real,
    integer,
    word,  ///< A text that ends at a blank.
    text,  ///< A text with its blanks.
  };
  Kind kind = Kind::command;
  std::wstring prompt = {};              ///< Without line ends in front.
  Keywords keywords = {};                ///< Answers offered.
  std::optional<KdGePoint3d> base = {};  ///< Where the rubber band starts, user coordinates.
  Preview preview = {};
};

/// What an answer should be, for the message when it is not: "a point". Empty for commands and keywords.
std::wstring_view expectedAnswer(Question::Kind kind);

}  // namespace torva::command
