#include "mlaccess/mlstyle_access.h"

#include <algorithm>
#include <cwchar>

#include <kdrx/ed.h>

namespace {

constexpr wchar_t kContinuous[] = L"Continuous", kByLayer[] = L"ByLayer";
constexpr wchar_t kImperialLinetypes[] = L"torva.lin", kMetricLinetypes[] = L"torvaiso.lin";
constexpr wchar_t kBookMark = L'$';
constexpr int kByLayerIndex = 256;
constexpr unsigned kFirstNoRgb = 0x1000000, kTrueColorWord = 0xC2000000;

struct Element {
  double offset = 0;
  KdCmColor color;
  KdDbObjectId linetype;
};

// Reads each element, lets `change` alter it, and writes it back whole. An element for which `change` gives false stays.
template <class Change>
int changeElements(KdDbMlineStyle* style, Change change) {
  if (!style) return 0;
  for (int i = 0; i < style->numElements(); ++i) {
    Element element;
    style->getElementAt(i, element.offset, element.color, element.linetype);
    if (change(i, element)) style->setElement(i, element.offset, element.color, element.linetype);
  }
  return 1;
}

KdDbObjectId linetypeInDrawing(KdDbDatabase& database, const wchar_t* name) {
  KdDbObjectId id;
  KdDbLinetypeTable* table = nullptr;
  if (kddbOpenObject(table, database.linetypeTableId(), KdOpenMode::forRead) != KdStatus::ok) return id;
  table->getAt(name, id, false);
  table->close();
  return id;
}

bool isMetric() {
  KdResbuf value;
  return kdedGetVar(L"MEASUREMENT", &value) == kKdInputNormal && value.value.shortInteger != 0;
}

KdDbObjectId findLinetype(KdDbDatabase& database, const wchar_t* name) {
  KdDbObjectId id = linetypeInDrawing(database, name);
  if (!id.isNull()) return id;
  const wchar_t* const file = isMetric() ? kMetricLinetypes : kImperialLinetypes;
  if (kddbLoadLinetypeFromFile(file, name, id, &database, 1) == KdStatus::ok) return id;
  return linetypeInDrawing(database, kContinuous);
}

}  // namespace

int SetNumElements(KdDbMlineStyle* style, int n) {
  // The host reads this word as by layer.
  constexpr unsigned kNewElementColor = 192;
  constexpr double kNewElementOffset = 0.5;
  if (!style) return 0;
  n = std::max(n, 0);
  const int surplus = style->numElements() - n;
  for (int i = 0; i < surplus; ++i) style->removeElementAt(0);
  KdCmColor color;
  color.setColor(kNewElementColor);
  for (int i = style->numElements(); i < n; ++i) {
    int index = 0;
    if (style->addElement(index, kNewElementOffset, color, KdDbObjectId(), true) != KdStatus::ok) break;
  }
  return 1;
}

int SetElemOffset(KdDbMlineStyle* style, const double* offsets, int count) {
  return changeElements(style, [=](int i, Element& element) {
    if (!offsets) return false;
    element.offset = i < count ? offsets[i] : 0.0;
    return true;
  });
}

int GetElemOffset(const KdDbMlineStyle* style, double* offsets, int count) {
  if (!style) return 0;
  for (int i = 0; offsets && i < count; ++i) {
    Element element;
    style->getElementAt(i, element.offset, element.color, element.linetype);
    offsets[i] = element.offset;
  }
  return 1;
}

int SetElemColor(KdDbMlineStyle* style, int* indices, int count) {
  return changeElements(style, [=](int i, Element& element) {
    if (!indices) return false;
    if (i < count && (indices[i] < 0 || indices[i] > kByLayerIndex)) indices[i] = kByLayerIndex;
    return element.color.setColorIndex(i < count ? indices[i] : kByLayerIndex);
  });
}

int SetElemRgb(KdDbMlineStyle* style, const unsigned* rgbs, int count) {
  return changeElements(style, [=](int i, Element& element) {
    if (!rgbs || rgbs[i] >= kFirstNoRgb || i >= count) return false;
    element.color.setColorMethod(KdCmColor::kByColor);
    element.color.setColor(kTrueColorWord + rgbs[i]);
    return true;
  });
}

int SetElemName(KdDbMlineStyle* style, const wchar_t* const* names, int count) {
  return changeElements(style, [=](int i, Element& element) {
    if (!names || !names[0] || i >= count) return false;
    element.color.setNamesFromDictionaryKey(IsColorBookNameValid(names[i]) ? names[i] : L"");
    return true;
  });
}

bool IsColorBookNameValid(const wchar_t* name) {
  if (!name || !*name) return false;
  const wchar_t* const mark = std::wcschr(name, kBookMark);
  if (!mark) return true;
  return mark != name && mark[1] && !std::wcschr(mark + 1, kBookMark);
}

int SetElemLtype(KdDbMlineStyle* style, const wchar_t* const* names, int /*count*/, KdDbDatabase* database) {
  return changeElements(style, [=](int i, Element& element) {
    if (!names || !names[i] || !database) return false;
    // A drawing without a record for it has nothing to look up; no id stands for by layer.
    const bool isByLayer = wcscasecmp(names[i], kByLayer) == 0;
    const KdDbObjectId id = isByLayer ? linetypeInDrawing(*database, kByLayer) : findLinetype(*database, names[i]);
    if (id.isNull() && !isByLayer) return false;
    element.linetype = id;
    return true;
  });
}

int SetFlag(KdDbMlineStyle* style, int flags) {
  if (!style) return 0;
  style->setFilled(flags & kStyleFilled);
  style->setShowMiters(flags & kStyleShowMiters);
  style->setStartSquareCap(flags & kStyleStartSquareCap);
  style->setStartInnerArcs(flags & kStyleStartInnerArcs);
  style->setStartRoundCap(flags & kStyleStartRoundCap);
  style->setEndSquareCap(flags & kStyleEndSquareCap);
  style->setEndInnerArcs(flags & kStyleEndInnerArcs);
  style->setEndRoundCap(flags & kStyleEndRoundCap);
  return 1;
}
