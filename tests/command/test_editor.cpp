#include "test_editor.h"

#include <stdexcept>

#include "support/drawing_text.h"

namespace torva::command {

namespace {

constexpr std::string_view kDrawing = R"(
  0 SECTION | 2 HEADER
  9 $UCSORG | 10 0.0 | 20 0.0 | 30 0.0
  0 ENDSEC
  0 SECTION | 2 ENTITIES
  0 MLINE | 5 2F | 8 0 | 100 AcDbMline | 2 STANDARD | 40 1.0 | 70 1 | 71 1 | 72 2 | 73 1
    10 0.0 | 20 0.0 | 30 0.0 | 210 0.0 | 220 0.0 | 230 1.0
    11 0.0 | 21 0.0 | 31 0.0 | 12 1.0 | 22 0.0 | 32 0.0 | 13 0.0 | 23 1.0 | 33 0.0
    74 2 | 41 0.0 | 41 0.0 | 75 0
    11 10.0 | 21 0.0 | 31 0.0 | 12 1.0 | 22 0.0 | 32 0.0 | 13 0.0 | 23 1.0 | 33 0.0
    74 2 | 41 0.0 | 41 0.0 | 75 0
  0 LINE | 5 30 | 8 0 | 10 0.0 | 20 5.0 | 30 0.0 | 11 10.0 | 21 5.0 | 31 0.0
  0 ENDSEC
  0 EOF
)";

}  // namespace

std::unique_ptr<db::Database> drawingFrom(std::string_view shortForm) {
  std::vector<dxf::Finding> findings;
  auto opened = db::Database::fromBytes(test::groupsFrom(shortForm), "test", dxf::DamagePolicy::refuse, findings);
  if (!opened) throw std::runtime_error(opened.error().message());
  return std::move(*opened);
}

std::vector<dxf::Handle> handlesIn(const db::Database& database) {
  std::vector<dxf::Handle> handles;
  database.forEachModelSpaceEntity([&](dxf::RecordId entity) { handles.push_back(database.file().handle(entity)); });
  return handles;
}

TestEditor::TestEditor()
    : editor(
          commands, [this](std::wstring_view text) { output += text; },
          [this](const std::string& fault) { faults.push_back(fault); }) {
  registerBuiltInCommands(commands, editor);
  commands.add({L"TEST", L"ASK", L"ASK", 0, [this] { ask(editor); }});
  editor.setDatabase(drawingFrom(kDrawing));
}

Fault TestEditor::run(const std::string& script, OnFault onFault) {
  return editor.run(*ScriptSource::fromText(script, "test"), onFault);
}

}  // namespace torva::command
