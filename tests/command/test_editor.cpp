#include "test_editor.h"

#include <stdexcept>

namespace torva::command {

namespace {

constexpr const char* kDrawing =
    "0\nSECTION\n2\nHEADER\n9\n$UCSORG\n10\n0.0\n20\n0.0\n30\n0.0\n0\nENDSEC\n"
    "0\nSECTION\n2\nENTITIES\n"
    "0\nMLINE\n5\n2F\n8\n0\n100\nAcDbMline\n2\nSTANDARD\n40\n1.0\n70\n1\n71\n1\n72\n2\n73\n1\n10\n0.0\n20\n0.0\n30\n0.0\n"
    "210\n0.0\n220\n0.0\n230\n1.0\n"
    "11\n0.0\n21\n0.0\n31\n0.0\n12\n1.0\n22\n0.0\n32\n0.0\n13\n0.0\n23\n1.0\n33\n0.0\n74\n2\n41\n0.0\n41\n0.0\n75\n0\n"
    "11\n10.0\n21\n0.0\n31\n0.0\n12\n1.0\n22\n0.0\n32\n0.0\n13\n0.0\n23\n1.0\n33\n0.0\n74\n2\n41\n0.0\n41\n0.0\n75\n0\n"
    "0\nLINE\n5\n30\n8\n0\n10\n0.0\n20\n5.0\n30\n0.0\n11\n10.0\n21\n5.0\n31\n0.0\n"
    "0\nENDSEC\n0\nEOF\n";

std::unique_ptr<db::Database> drawing() {
  std::vector<dxf::Finding> findings;
  auto opened = db::Database::fromBytes(kDrawing, "test", dxf::DamagePolicy::refuse, findings);
  if (!opened) throw std::runtime_error(opened.error().message());
  return std::move(*opened);
}

}  // namespace

TestEditor::TestEditor()
    : editor(
          commands, [this](std::wstring_view text) { output += text; },
          [this](const std::string& fault) { faults.push_back(fault); }) {
  registerBuiltInCommands(commands, editor);
  commands.add({L"TEST", L"ASK", L"ASK", 0, [this] { ask(editor); }});
  editor.setDatabase(drawing());
}

Fault TestEditor::run(const std::string& script, OnFault onFault) {
  return editor.run(*ScriptSource::fromText(script, "test"), onFault);
}

}  // namespace torva::command
