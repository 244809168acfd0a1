// Works on the styles of a drawing as the dialogs do, saves it, and prints what is to be seen in its styles then:
// style_work LIBRARY.mln DRAWING.dxf OUT.dxf
#include <cstdio>
#include <numbers>
#include <string>

#include "command/editor.h"
#include "db/database.h"
#include "mlaccess/mlstyle_access.h"
#include "mlstyle/OpenedObject.h"
#include "mlstyle/library/style_library.h"
#include "runtime/host.h"

#include <kdrx/text.h>

namespace {

using namespace torva;

KdDbObjectId styleDictionary(const db::Database& drawing) {
  return drawing.idOf(drawing.findInDictionary(std::array<std::wstring_view, 1>{L"ACAD_MLINESTYLE"}));
}

KdDbObjectId find(const db::Database& drawing, const std::wstring& name) {
  return drawing.idOf(drawing.findInDictionary(std::array<std::wstring_view, 2>{L"ACAD_MLINESTYLE", name}));
}

void rename(const db::Database& drawing, const std::wstring& former, const std::wstring& name) {
  (void)COpenedObject<KdDbMlineStyle>(find(drawing, former), KdOpenMode::forWrite)->setName(name);
  (void)COpenedObject<KdDbDictionary>(styleDictionary(drawing), KdOpenMode::forWrite)->setName(former, name);
}

void change(KdDbMlineStyle& style) {
  const double offsets[] = {2, 1, -3};
  int indices[] = {1, 0, 300};
  const unsigned rgbs[] = {0x102030, kNoRgb, kNoRgb};
  const wchar_t* const linetypes[] = {L"HIDDEN2", L"ByBlock", L"no such"};
  SetNumElements(&style, 3);
  SetElemOffset(&style, offsets, 3);
  SetElemColor(&style, indices, 3);
  SetElemRgb(&style, rgbs, 3);
  SetElemLtype(&style, linetypes, 3, kddbWorkingDatabase());
  SetFlag(&style, kStyleFilled | kStyleEndRoundCap | kStyleStartInnerArcs);
  style.setStartAngle(22.5 * std::numbers::pi / 180);
  style.setFillColor(KdCmColor::trueColor(0x405060));
  style.setDescription(L"Stra\u00dfe \u4e2d");
}

void work(const db::Database& drawing, const std::wstring& library) {
  const auto names = listLibrary(library).value();
  for (const std::wstring& name : names) (void)loadFromLibrary(library, name, addStyle(name, styleDictionary(drawing)));
  change(*COpenedObject<KdDbMlineStyle>(find(drawing, L"ROAD"), KdOpenMode::forWrite).Get());
  rename(drawing, L"PIPE", L"TUBE");
  rename(drawing, L"STANDARD", L"PLAIN");
  rename(drawing, L"PLAIN", L"STANDARD");
  (void)COpenedObject<KdDbDictionary>(styleDictionary(drawing), KdOpenMode::forWrite)->remove(L"WALL-5");
  kddbNextUndoStep();
}

/// The index, and a true color behind it.
std::string shown(const KdCmColor& color) {
  char rgb[16] = "";
  if (color.isTrueColor()) std::snprintf(rgb, sizeof rgb, ":%06x", color.rgb());
  return std::to_string(color.colorIndex()) + rgb;
}

void print(const KdDbMlineStyle& style) {
  const auto degrees = [](double angle) { return angle * 180 / std::numbers::pi; };
  const int flags = style.filled() + 2 * style.showMiters() + 16 * style.startSquareCap() + 32 * style.startInnerArcs() +
                    64 * style.startRoundCap() + 256 * style.endSquareCap() + 512 * style.endInnerArcs() +
                    1024 * style.endRoundCap();
  std::printf("%s\t%s\t%d\t%s\t%.9f\t%.9f", kdutUtf8FromWide(style.name()).c_str(),
              kdutUtf8FromWide(style.description()).c_str(), flags, shown(style.fillColor()).c_str(),
              degrees(style.startAngle()), degrees(style.endAngle()));
  for (int i = 0; i < style.numElements(); ++i) {
    double offset = 0;
    KdCmColor color;
    KdDbObjectId id;
    style.getElementAt(i, offset, color, id);
    const COpenedObject<KdDbLinetypeTableRecord> linetype(id, KdOpenMode::forRead);
    std::printf("\t%.9f %s %ls", offset, shown(color).c_str(), linetype ? linetype->name().c_str() : L"-");
  }
  std::printf("\n");
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) return 2;
  runtime::HostOptions options;
  options.profileUse = runtime::ProfileUse::none;
  const auto host = std::move(*runtime::Host::create(options));
  if (const auto opened = host->openDrawing(arguments[2], dxf::DamagePolicy::refuse); !opened) return 1;
  db::Database& drawing = host->editor().database();
  drawing.beginUndoStep(L"MLSTYLE");
  work(drawing, kdutWideFromUtf8(arguments[1]));
  drawing.endUndoStep();
  const COpenedObject<KdDbDictionary> styles(styleDictionary(drawing), KdOpenMode::forRead);
  for (const auto entry = styles->newIterator(); !entry->done(); entry->next()) {
    print(*COpenedObject<KdDbMlineStyle>(entry->objectId(), KdOpenMode::forRead).Get());
  }
  return host->saveDrawing(arguments[3]) ? 0 : 1;
}
