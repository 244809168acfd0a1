#include "command/commands/drawing_commands.h"

#include <cstdlib>
#include <memory>
#include <sys/stat.h>

#include "base/text.h"
#include "command/confirmation.h"
#include "command/editor.h"

namespace torva::command {

namespace {

bool mayLoseChanges(Editor& editor) {
  return !editor.hasUnsavedChanges() || isConfirmed(editor, L"The drawing has unsaved changes. Discard changes?");
}

std::optional<std::string> askFileName(Editor& editor) {
  std::wstring name;
  if (editor.getString(L"File name: ", Blanks::endAnswer, name) != kKdInputNormal) return std::nullopt;
  return utf8FromWide(name);
}

bool isSameFile(const std::string& a, const std::string& b) {
  struct stat first {
  }, second{};
  return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

bool mayReplace(Editor& editor, const std::string& path) {
  struct stat status {};
  const bool isOtherFile =
      ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && !isSameFile(path, editor.database().file().path());
  return !isOtherFile || isConfirmed(editor, L"The file exists. Replace it?");
}

void save(Editor& editor, const std::string& path) {
  auto saved = editor.saveDrawing(path);
  if (!saved && saved.error().code == ErrorCode::fileChangedOnDisk) {
    if (!isConfirmed(editor, L"The file was changed by another program since it was opened. Replace it?")) {
      return editor.report(saved.error(), Fault::drawing);
    }
    saved = editor.saveDrawing(path, ChangedFile::replace);
  }
  if (!saved) return editor.report(saved.error(), Fault::drawing);
  editor.print(L"Saved " + wideFromUtf8(path) + L".");
}

}  // namespace

void openCommand(Editor& editor) {
  if (!mayLoseChanges(editor)) return;
  const auto path = askFileName(editor);
  if (!path) return;
  const auto opened = editor.openDrawing(*path);
  if (opened) return editor.print(L"Opened " + wideFromUtf8(*path) + L".");
  if (opened.error().code == ErrorCode::cancelled) return editor.print(L"*Cancel*");
  editor.report(opened.error(), Fault::drawing);
}

void newCommand(Editor& editor) {
  if (!mayLoseChanges(editor)) return;
  editor.beginNewDrawing();
  editor.print(L"New drawing.");
}

void qsaveCommand(Editor& editor) {
  const std::string path = editor.database().file().path();
  if (path.empty()) return saveasCommand(editor);
  save(editor, path);
}

void saveasCommand(Editor& editor) {
  const auto path = askFileName(editor);
  if (path && mayReplace(editor, *path)) save(editor, *path);
}

void quitCommand(Editor& editor) {
  if (mayLoseChanges(editor)) editor.requestQuit();
}

}  // namespace torva::command
