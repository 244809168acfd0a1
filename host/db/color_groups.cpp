#include "db/color_groups.h"

#include <cstdlib>

namespace torva::db {

void ColorGroups::take(const dxf::DrawingFile& file, const dxf::Group& group) {
  if (group.code == 430) {
    book = file.text(group);
    return;
  }
  const auto value = group.integer();
  if (!value) return;
  if (group.code == 62) {
    index = static_cast<int>(*value);
  } else {
    rgb = static_cast<std::uint32_t>(*value) & 0xFFFFFFu;
  }
}

KdCmColor ColorGroups::color(int missing) const {
  KdCmColor result = rgb ? KdCmColor::trueColor(*rgb) : KdCmColor::byIndex(std::abs(index.value_or(missing)));
  result.setNamesFromDictionaryKey(book);
  return result;
}

ColorGroups ColorGroups::of(const KdCmColor& color) {
  ColorGroups groups;
  groups.index = color.colorIndex();
  if (color.isTrueColor()) groups.rgb = color.rgb();
  groups.book = color.dictionaryKey();
  return groups;
}

bool ColorGroups::says(const dxf::DrawingFile& file, const dxf::Group& group) const {
  if (group.code == 430) return book == file.text(group);
  const auto value = group.integer();
  if (!value) return false;
  if (group.code == 420) return rgb == (static_cast<std::uint32_t>(*value) & 0xFFFFFFu);
  // Beside a true color the index is only an approximation for old readers, which every program chooses in its own way.
  return rgb ? true : index == static_cast<int>(*value);
}

bool ColorGroups::has(int code) const {
  if (code == 62) return index.has_value();
  return code == 420 ? rgb.has_value() : !book.empty();
}

void ColorGroups::write(dxf::RecordBuilder& out, int code) const {
  if (!has(code)) return;
  if (code == 62) {
    out.integer(62, *index);
  } else if (code == 420) {
    out.integer(420, *rgb);
  } else {
    out.text(430, book);
  }
}

}  // namespace torva::db
