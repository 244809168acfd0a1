#include "command/commands/mline_command.h"

#include "base/text.h"
#include "command/commands/mline_run.h"
#include "command/editor.h"
#include "command/session.h"
#include "command/shown_values.h"
#include "command/variable_access.h"
#include "db/mline_styles.h"

namespace torva::command {

namespace {

constexpr const wchar_t* kJustifications[] = {L"Top", L"Zero", L"Bottom"};

std::wstring currentStyle(Editor& editor) {
  return db::currentMlineStyle(editor.database(), editor.variables());
}

const wchar_t* currentJustification(Editor& editor) {
  const int justification = variableOr(editor.variables(), L"CMLJUST", 0);
  return kJustifications[justification >= 0 && justification <= 2 ? justification : 0];
}

void printSettings(Editor& editor) {
  editor.print(std::wstring(L"Current settings: Justification = ") + currentJustification(editor) + L", Scale = " +
               shown(variableOr(editor.variables(), L"CMLSCALE", 1.0)) + L", Style = " + currentStyle(editor));
}

// Every option gives the status of its last question.

int askJustification(Editor& editor) {
  if (editor.initGet(kKdInitGetNone, L"Top Zero Bottom") != kKdInputNormal) return kKdInputError;
  std::wstring answer;
  const int status = editor.getKeyword(
      std::wstring(L"Enter justification type [Top/Zero/Bottom] <") + currentJustification(editor) + L">: ", answer);
  if (status != kKdInputNormal) return status;
  for (int value = 0; value < 3; ++value) {
    if (answer == kJustifications[value]) storeVariable(editor, L"CMLJUST", value);
  }
  return status;
}

int askScale(Editor& editor) {
  double scale = variableOr(editor.variables(), L"CMLSCALE", 1.0);
  const int status = editor.getReal(L"Enter mline scale <" + shown(scale) + L">: ", scale);
  if (status == kKdInputNormal) storeVariable(editor, L"CMLSCALE", scale + 0.0);  // a zero has no sign
  return status;
}

void listStyles(Editor& editor) {
  db::Database& drawing = editor.database();
  editor.print(L"Multiline styles:");
  for (const std::wstring& name : db::mlineStyleNames(drawing)) {
    const std::wstring description = drawing.mlineStyle(db::findMlineStyle(drawing, name)).description;
    editor.print(L"  " + name + (description.empty() ? L"" : L"  " + description));
  }
}

int askStyle(Editor& editor) {
  for (;;) {
    if (editor.initGet(kKdInitGetNone, L"?") != kKdInputNormal) return kKdInputError;
    std::wstring answer;
    const int status =
        editor.getString(L"Enter mline style name or [?] <" + currentStyle(editor) + L">: ", Blanks::endAnswer, answer);
    if (status == kKdInputKeyword) {
      listStyles(editor);
      continue;
    }
    if (status != kKdInputNormal) return status;
    for (const std::wstring& name : db::mlineStyleNames(editor.database())) {
      if (!equalsIgnoringCase(name, answer)) continue;
      storeVariable(editor, L"CMLSTYLE", name);
      return status;
    }
    editor.report({ErrorCode::unknownName, utf8FromWide(L"there is no multiline style " + inQuotes(answer))}, Fault::script);
    return status;
  }
}

int askOption(Editor& editor) {
  const std::wstring option = editor.lastKeyword();
  if (option == L"Justification") return askJustification(editor);
  return option == L"Scale" ? askScale(editor) : askStyle(editor);
}

/// Asks for the start point until there is one. False when the user ends the command instead.
bool askStart(Editor& editor, KdGePoint3d& start) {
  printSettings(editor);
  for (;;) {
    if (editor.initGet(kKdInitGetNone, L"Justification Scale STyle") != kKdInputNormal) return false;
    const int status = editor.getPoint(nullptr, L"Specify start point or [Justification/Scale/STyle]: ", start);
    if (status == kKdInputNormal) return true;
    if (status != kKdInputKeyword || askOption(editor) == kKdInputCancel) return false;
    printSettings(editor);
  }
}

void askPath(Editor& editor, MlineRun& run) {
  auto step = MlineRun::Step::taken;
  while (step != MlineRun::Step::failed) {
    const bool canClose = run.canClose();
    if (editor.initGet(kKdInitGetNone, canClose ? L"Close Undo" : L"Undo") != kKdInputNormal) return;
    const std::wstring prompt = canClose ? L"Specify next point or [Close/Undo]: " : L"Specify next point or [Undo]: ";
    editor.offerPreview([&](const Cursor& cursor) { return run.preview(cursor.pointUcs); });
    KdGePoint3d point;
    const int status = editor.getPoint(&run.lastPoint(), prompt, point);
    if (status != kKdInputNormal && status != kKdInputKeyword) return;
    if (status == kKdInputNormal) {
      step = run.append(point);
    } else if (editor.lastKeyword() == L"Undo") {
      run.undo();
    } else {
      step = run.close();
      if (step == MlineRun::Step::taken) return;
    }
  }
}

}  // namespace

void mlineCommand(Editor& editor) {
  if (editor.database().file().version() == dxf::Version::r12) {
    return editor.report({ErrorCode::notApplicable, "drawings of R12 cannot hold multilines"}, Fault::script);
  }
  KdGePoint3d start;
  if (!askStart(editor, start)) return;
  MlineRun run(editor, start);
  askPath(editor, run);
}

}  // namespace torva::command
