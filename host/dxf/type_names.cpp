#include "dxf/type_names.h"

#include <array>
#include <cstring>
#include <utility>

namespace torva::dxf {
namespace {

constexpr std::size_t kFirstSlots = 256;

constexpr std::pair<std::string_view, RecordType> kKnownNames[] = {
    {"SECTION", RecordType::section},
    {"ENDSEC", RecordType::endsec},
    {"TABLE", RecordType::table},
    {"ENDTAB", RecordType::endtab},
    {"BLOCK", RecordType::block},
    {"ENDBLK", RecordType::endblk},
    {"EOF", RecordType::eof},
    {"CLASS", RecordType::classRecord},
    {"VPORT", RecordType::vport},
    {"LTYPE", RecordType::ltype},
    {"LAYER", RecordType::layer},
    {"STYLE", RecordType::style},
    {"VIEW", RecordType::view},
    {"UCS", RecordType::ucs},
    {"APPID", RecordType::appid},
    {"DIMSTYLE", RecordType::dimstyle},
    {"BLOCK_RECORD", RecordType::blockRecord},
    {"LINE", RecordType::line},
    {"POINT", RecordType::point},
    {"CIRCLE", RecordType::circle},
    {"ARC", RecordType::arc},
    {"ELLIPSE", RecordType::ellipse},
    {"LWPOLYLINE", RecordType::lwpolyline},
    {"POLYLINE", RecordType::polyline},
    {"VERTEX", RecordType::vertex},
    {"SEQEND", RecordType::seqend},
    {"SPLINE", RecordType::spline},
    {"MLINE", RecordType::mline},
    {"TEXT", RecordType::text},
    {"MTEXT", RecordType::mtext},
    {"INSERT", RecordType::insert},
    {"ATTRIB", RecordType::attrib},
    {"ATTDEF", RecordType::attdef},
    {"SOLID", RecordType::solid},
    {"TRACE", RecordType::trace},
    {"3DFACE", RecordType::face3d},
    {"HATCH", RecordType::hatch},
    {"DIMENSION", RecordType::dimension},
    {"LEADER", RecordType::leader},
    {"MULTILEADER", RecordType::mleader},
    {"RAY", RecordType::ray},
    {"XLINE", RecordType::xline},
    {"IMAGE", RecordType::image},
    {"VIEWPORT", RecordType::viewport},
    {"REGION", RecordType::region},
    {"3DSOLID", RecordType::solid3d},
    {"BODY", RecordType::body},
    {"WIPEOUT", RecordType::wipeout},
    {"ACAD_TABLE", RecordType::table_entity},
    {"DICTIONARY", RecordType::dictionary},
    {"ACDBDICTIONARYWDFLT", RecordType::dictionaryWithDefault},
    {"DICTIONARYVAR", RecordType::dictionaryVariable},
    {"MLINESTYLE", RecordType::mlineStyle},
    {"LAYOUT", RecordType::layout},
    {"XRECORD", RecordType::xrecord},
    {"PLOTSETTINGS", RecordType::plotSettings},
};
static_assert(std::size(kKnownNames) + 1 == static_cast<std::size_t>(RecordType::kFirstOther));

template <class T>
std::uint64_t load(const char* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

}  // namespace

TypeNames::TypeNames() : m_slots(kFirstSlots) {
  for (const auto& [name, type] : kKnownNames) put({keyOf(name), name, type});
}

TypeNames::Key TypeNames::keyOf(std::string_view name) {
  const char* begin = name.data();
  const char* end = begin + name.size();
  if (name.size() >= 8) return {load<std::uint64_t>(begin), load<std::uint64_t>(end - 8), name.size()};
  if (name.size() >= 4) return {load<std::uint32_t>(begin), load<std::uint32_t>(end - 4), name.size()};
  if (name.size() >= 2) return {load<std::uint16_t>(begin), load<std::uint16_t>(end - 2), name.size()};
  return {name.empty() ? 0 : load<std::uint8_t>(begin), 0, name.size()};
}

std::size_t TypeNames::slotOf(std::string_view name, const Key& key) const {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;
  const std::size_t mask = m_slots.size() - 1;
  std::size_t at = ((key.first + key.size) * kFactor ^ key.last * kFactor >> 7) >> 40 & mask;
  const auto isOther = [&](const Slot& slot) {
    return slot.key != key || (key.size > 2 * sizeof key.first && slot.name != name);
  };
  while (m_slots[at].type != RecordType::none && isOther(m_slots[at])) at = (at + 1) & mask;
  return at;
}

void TypeNames::put(const Slot& slot) {
  if (++m_count * 2 > m_slots.size()) {
    const std::vector<Slot> former = std::exchange(m_slots, std::vector<Slot>(m_slots.size() * 2));
    for (const Slot& old : former) {
      if (old.type != RecordType::none) m_slots[slotOf(old.name, old.key)] = old;
    }
  }
  m_slots[slotOf(slot.name, slot.key)] = slot;
}

RecordType TypeNames::intern(std::string_view name) {
  const Key key = keyOf(name);
  const RecordType known = m_slots[slotOf(name, key)].type;
  if (known != RecordType::none) return known;
  if (m_next == static_cast<std::uint16_t>(kNameless)) return kNameless;
  const auto type = static_cast<RecordType>(m_next++);
  put({key, name, type});
  return type;
}

RecordType TypeNames::find(std::string_view name) const {
  return m_slots[slotOf(name, keyOf(name))].type;
}

}  // namespace torva::dxf
