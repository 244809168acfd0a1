#include "command/commands/mline_listing.h"

#include "command/editor.h"
#include "command/shown_values.h"

#include <kdrx/db_mline_style.h>

namespace torva::command {

namespace {

constexpr int kHasVertices = 1, kIsClosed = 2, kSuppressesStartCaps = 4, kSuppressesEndCaps = 8;

std::wstring justificationName(KdMlineJustification justification) {
  switch (justification) {
    case KdMlineJustification::top:
      return L"top";
    case KdMlineJustification::bottom:
      return L"bottom";
    default:
      return L"zero";
  }
}

std::wstring flagsOf(const db::MlineData& mline) {
  const int word = mline.otherFlags | (mline.vertices.empty() ? 0 : kHasVertices) | (mline.isClosed ? kIsClosed : 0) |
                   (mline.suppressesStartCaps ? kSuppressesStartCaps : 0) |
                   (mline.suppressesEndCaps ? kSuppressesEndCaps : 0);
  std::wstring text = L"flags " + std::to_wstring(word) + (mline.isClosed ? L": closed" : L": open");
  if (mline.suppressesStartCaps) text += L", no start caps";
  if (mline.suppressesEndCaps) text += L", no end caps";
  return text;
}

std::wstring inBrackets(std::span<const double> values) {
  std::wstring text;
  for (const double value : values) text += (text.empty() ? L"" : L" ") + shown(value);
  return L"[" + text + L"]";
}

/// What the list of an element draws on its segment: "0 to 3, 5 to end".
std::wstring drawnBy(std::span<const double> list) {
  std::wstring text;
  for (std::size_t start = 1; start < list.size(); start += 2) {
    const std::wstring stop = start + 1 < list.size() ? shown(list[start + 1]) : L"end";
    text += (text.empty() ? L"" : L", ") + shown(list[start]) + L" to " + stop;
  }
  return text.empty() ? L"nothing" : text;
}

std::wstring elementOf(std::size_t index, const KdMLSegmentView& element, bool startsSegment) {
  const std::span<const double> list = element.elementParameters;
  std::wstring text = L"    element " + std::to_wstring(index) + L": ";
  if (list.empty()) return text + L"no list";
  text += L"at " + shown(list.front());
  if (startsSegment) text += L", draws " + drawnBy(list);
  text += L"  " + inBrackets(list);
  if (!element.areaFillParameters.empty()) text += L", fill " + inBrackets(element.areaFillParameters);
  return text;
}

std::wstring styleElements(const KdDbMlineStyle& style) {
  std::wstring text;
  for (int i = 0; i < style.numElements(); ++i) {
    double offset = 0;
    KdCmColor color;
    KdDbObjectId linetype;
    if (style.getElementAt(i, offset, color, linetype) == KdStatus::ok) text += (i ? L", " : L"") + shown(offset);
  }
  return text;
}

void listStyle(Editor& editor, dxf::RecordId record, const db::MlineData& mline) {
  std::wstring text = L"  style \"" + mline.styleName + L"\"";
  KdDbMline* entity = nullptr;
  KdDbMlineStyle* style = nullptr;
  if (kddbOpenObject(entity, editor.database().idOf(record), KdOpenMode::forRead) == KdStatus::ok) {
    if (kddbOpenObject(style, entity->style(), KdOpenMode::forRead) == KdStatus::ok) {
      text += L", elements at " + styleElements(*style);
      if (style->filled()) text += L", filled";
      if (style->showMiters()) text += L", with joints";
      style->close();
    } else {
      text += L" (not in the drawing)";
    }
    entity->close();
  }
  editor.print(text);
}

}  // namespace

void listMline(Editor& editor, dxf::RecordId record) {
  const db::MlineData& mline = editor.database().mline(record);
  listStyle(editor, record, mline);
  editor.print(L"  scale " + shown(mline.scale) + L", justification " + justificationName(mline.justification) +
               L", normal " + shown(mline.normal));
  editor.print(L"  " + flagsOf(mline));
  const std::size_t count = mline.vertices.size();
  editor.print(L"  vertices " + std::to_wstring(count) + L", elements " + std::to_wstring(mline.elementCount()));
  for (std::size_t i = 0; i < count; ++i) {
    const db::MlineVertex& vertex = mline.vertices[i];
    editor.print(L"  vertex " + std::to_wstring(i) + L": " + shown(vertex.position) + L"  direction " + shown(vertex.axis) +
                 L"  miter " + shown(vertex.miter));
    for (std::size_t e = 0; e < vertex.elements.size(); ++e) {
      editor.print(elementOf(e, vertex.elements[e], mline.isClosed || i + 1 < count));
    }
  }
}

}  // namespace torva::command
