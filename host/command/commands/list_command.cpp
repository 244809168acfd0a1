#include "command/commands/list_command.h"

#include "base/numbers.h"
#include "base/text.h"
#include "command/commands/mline_listing.h"
#include "command/editor.h"

namespace torva::command {

namespace {

std::wstring layerOf(const dxf::DrawingFile& file, dxf::RecordId record) {
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == 8) return file.text(group);
  }
  return L"0";
}

std::wstring hexOf(std::string_view bytes) {
  constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  std::wstring text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

/// A group's value as a reader wants it; of the text form as it stands, of the binary form by its kind.
std::wstring valueOf(const dxf::DrawingFile& file, const dxf::Group& group) {
  if (group.form == dxf::Form::text) return trimmed(file.text(group));
  switch (dxf::valueKind(group.code)) {
    case dxf::ValueKind::real:
      return wideFromUtf8(formatReal(group.realOr(0)));
    case dxf::ValueKind::int16:
    case dxf::ValueKind::int32:
    case dxf::ValueKind::int64:
    case dxf::ValueKind::boolean:
      return std::to_wstring(group.integerOr(0));
    case dxf::ValueKind::bytes:
      return hexOf(group.value);
    default:
      return file.text(group);
  }
}

void listGroups(Editor& editor, dxf::RecordId record) {
  const dxf::DrawingFile& file = editor.database().file();
  for (const dxf::Group& group : file.groups(record)) {
    std::wstring code = std::to_wstring(group.code);
    code.insert(0, code.size() < 4 ? 4 - code.size() : 0, L' ');
    editor.print(L"  " + code + L"  " + valueOf(file, group));
  }
}

}  // namespace

void listCommand(Editor& editor) {
  KdDbObjectId id;
  KdGePoint3d point;
  const int status = editor.selectEntity(L"Entity to list: ", id, point);
  if (status == kKdInputError && editor.lastMissed()) return editor.print(L"Nothing is there.");
  if (status != kKdInputNormal) return;

  editor.database().flush();
  const dxf::DrawingFile& file = editor.database().file();
  const dxf::RecordId record = editor.database().recordOf(id);
  editor.print(file.decode(file.typeName(record)) + L"  handle " + wideFromUtf8(formatHandle(file.handle(record))) +
               L", layer \"" + layerOf(file, record) + L'"');
  if (file.type(record) == dxf::RecordType::mline) return listMline(editor, record);
  listGroups(editor, record);
}

}  // namespace torva::command
