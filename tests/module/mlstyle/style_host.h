#pragma once

#include <gtest/gtest.h>
#include <numbers>

#include "command/editor.h"
#include "db/database.h"
#include "mlaccess/mlstyle_access.h"
#include "mlstyle/OpenedObject.h"
#include "support/host_driver.h"

/// A host with an empty drawing, whose root folder holds what is installed there, and its styles.
class StyleHost : public testing::Test, protected HostDriver {
 protected:
  struct Element {
    double offset;
    int color = 256;
    std::wstring linetype = L"ByLayer";
    bool operator==(const Element&) const = default;
    friend void PrintTo(const Element& e, std::ostream* out) {
      *out << e.offset << ' ' << e.color << ' ' << testing::PrintToString(e.linetype);
    }
  };
  struct Style {
    std::wstring name, description;
    int flags;
    std::vector<Element> elements;
  };

  StyleHost() {
    std::filesystem::create_directory(folder.path("bin"));
    std::filesystem::copy(TORVA_SOURCE_DIR "/support", folder.path(), std::filesystem::copy_options::recursive);
    startHost(torva::runtime::DialogUse::none, folder.path("bin"));
  }
  ~StyleHost() override { EXPECT_TRUE(host->editor().database().openObjects().empty()) << "an object is left open"; }

  void run(const std::string& script) { EXPECT_EQ(HostDriver::run(script), torva::command::Fault::none); }
  std::wstring path(const char* name) const { return kdutWideFromUtf8(folder.path(name)); }

  KdDbObjectId dictionary() {
    return drawing().idOf(drawing().findInDictionary(std::array<std::wstring_view, 1>{L"ACAD_MLINESTYLE"}));
  }
  KdDbObjectId find(const std::wstring& name) {
    KdDbObjectId id;
    COpenedObject<KdDbDictionary>(dictionary(), KdOpenMode::forRead)->getAt(name, id);
    return id;
  }
  /// Adds a style, or changes the one of that name; `also` may change more of it.
  void put(const Style& style, const std::function<void(KdDbMlineStyle&)>& also = {}) {
    KdDbObjectId id = find(style.name);
    if (id.isNull()) {
      auto* made = new KdDbMlineStyle;
      made->setName(style.name);
      EXPECT_EQ(COpenedObject<KdDbDictionary>(dictionary(), KdOpenMode::forWrite)->setAt(style.name, made, id),
                KdStatus::ok);
      made->close();
    }
    const COpenedObject<KdDbMlineStyle> opened(id, KdOpenMode::forWrite);
    fill(*opened.Get(), style);
    if (also) also(*opened.Get());
  }
  Style read(const std::wstring& name) {
    const COpenedObject<KdDbMlineStyle> style(find(name), KdOpenMode::forRead);
    Style result{style->name(), style->description(), flagsOf(*style.Get()), {}};
    for (int i = 0; i < style->numElements(); ++i) {
      Element element{};
      KdCmColor color;
      KdDbObjectId linetype;
      style->getElementAt(i, element.offset, color, linetype);
      element.color = color.colorIndex();
      const COpenedObject<KdDbLinetypeTableRecord> record(linetype, KdOpenMode::forRead);
      element.linetype = record ? record->name() : L"";
      result.elements.push_back(element);
    }
    return result;
  }

 private:
  static int flagsOf(const KdDbMlineStyle& s) {
    return s.filled() + 2 * s.showMiters() + 16 * s.startSquareCap() + 32 * s.startInnerArcs() + 64 * s.startRoundCap() +
           256 * s.endSquareCap() + 512 * s.endInnerArcs() + 1024 * s.endRoundCap();
  }
  void fill(KdDbMlineStyle& style, const Style& from) {
    const int count = static_cast<int>(from.elements.size());
    std::vector<double> offsets;
    std::vector<int> colors;
    std::vector<const wchar_t*> linetypes;
    for (const Element& element : from.elements) {
      offsets.push_back(element.offset);
      colors.push_back(element.color);
      linetypes.push_back(element.linetype.c_str());
    }
    style.setDescription(from.description);
    SetNumElements(&style, count);
    SetElemOffset(&style, offsets.data(), count);
    SetElemColor(&style, colors.data(), count);
    SetElemLtype(&style, linetypes.data(), count, &drawing());
    SetFlag(&style, from.flags);
  }
};
