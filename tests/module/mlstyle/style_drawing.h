#pragma once

#include <cmath>
#include <cwctype>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <numbers>

#include "command/editor.h"
#include "db/database.h"
#include "mlaccess/mlstyle_access.h"
#include "mlstyle/OpenedObject.h"
#include "support/host_driver.h"

inline std::wstring inLowerCase(std::wstring text) {
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
  return text;
}

/// Each element of a style from the largest offset on as " offset:linetype:color", in lower case.
inline std::wstring elementsOf(const KdDbMlineStyle& style) {
  std::multimap<double, std::wstring, std::greater<>> elements;
  for (int i = 0; i < style.numElements(); ++i) {
    double offset = 0;
    KdCmColor color;
    KdDbObjectId id;
    EXPECT_EQ(style.getElementAt(i, offset, color, id), KdStatus::ok);
    const COpenedObject<KdDbLinetypeTableRecord> linetype(id, KdOpenMode::forRead);
    wchar_t text[64];
    std::swprintf(text, 64, L" %g:", offset);
    elements.emplace(offset, text + (linetype ? linetype->name() : L"ByLayer") + L":" + color.displayName());
  }
  std::wstring all;
  for (const auto& [offset, text] : elements) all += text;
  return inLowerCase(all);
}

/// A style in one line: description, flags, fill, angles in hundredths of a degree, and the elements.
inline std::wstring describe(const KdDbMlineStyle& s) {
  const int flags = s.filled() + 2 * s.showMiters() + 16 * s.startSquareCap() + 32 * s.startInnerArcs() +
                    64 * s.startRoundCap() + 256 * s.endSquareCap() + 512 * s.endInnerArcs() + 1024 * s.endRoundCap();
  std::wstring all = s.description() + L" " + std::to_wstring(flags) + L" " + inLowerCase(s.fillColor().displayName());
  for (const double rad : {s.startAngle(), s.endAngle()}) {
    all += L" " + std::to_wstring(std::lround(rad * 18000 / std::numbers::pi));
  }
  return all + elementsOf(s);
}

/// A host with a drawing and its styles.
class StyleDrawing : protected HostDriver {
 protected:
  struct Element {
    double offset;
    int color = 256;
    const wchar_t* linetype = L"ByLayer";
  };

  KdDbObjectId dictionaryId() {
    return drawing().idOf(drawing().findInDictionary(std::array<std::wstring_view, 1>{L"ACAD_MLINESTYLE"}));
  }
  KdDbObjectId find(const std::wstring& name) {
    KdDbObjectId id;
    COpenedObject<KdDbDictionary>(dictionaryId(), KdOpenMode::forRead)->getAt(name, id);
    return id;
  }
  std::wstring stored(const std::wstring& name) {
    const COpenedObject<KdDbMlineStyle> style(find(name), KdOpenMode::forRead);
    return style ? describe(*style.Get()) : L"none";
  }
  std::wstring storedElements(const std::wstring& name) {
    return elementsOf(*COpenedObject<KdDbMlineStyle>(find(name), KdOpenMode::forRead).Get());
  }

  /// Adds a style, or changes the one of that name; `also` may change more of it.
  void put(const std::wstring& name, const std::wstring& description, int flags, const std::vector<Element>& elements,
           const std::function<void(KdDbMlineStyle&)>& also = {}) {
    KdDbObjectId id = find(name);
    if (id.isNull()) {
      auto* made = new KdDbMlineStyle;
      made->initMlineStyle();
      made->setName(name);
      EXPECT_EQ(COpenedObject<KdDbDictionary>(dictionaryId(), KdOpenMode::forWrite)->setAt(name, made, id), KdStatus::ok);
      made->close();
    }
    const COpenedObject<KdDbMlineStyle> style(id, KdOpenMode::forWrite);
    SetNumElements(style.Get(), 0);
    std::vector<const wchar_t*> linetypes;
    for (const Element& element : elements) {
      int index = 0;
      style->addElement(index, element.offset, KdCmColor::byIndex(element.color), {});
      linetypes.push_back(element.linetype);
    }
    SetElemLtype(style.Get(), linetypes.data(), static_cast<int>(linetypes.size()), &drawing());
    style->setDescription(description);
    SetFlag(style.Get(), flags);
    if (also) also(*style.Get());
  }
};
