#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "dxf/record.h"

namespace torva::dxf {

/// Numbers for the names of record types: those of RecordType for the names the host knows, further ones in the order in
/// which other names are met. Names are not copied; what they view must outlive the table.
class TypeNames {
 public:
  /// The number given to names once all numbers are used up, which takes a drawing that was made for it.
  static constexpr RecordType kNameless = static_cast<RecordType>(0xFFFF);

  TypeNames();

  /// The number of a name, a new one for a new name.
  RecordType intern(std::string_view name);
  /// RecordType::none for a name that was not met.
  RecordType find(std::string_view name) const;

 private:
  /// The first and the last 8 bytes and the length: all there is to compare of a name of up to 16 bytes.
  struct Key {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::size_t size = 0;
    bool operator==(const Key&) const = default;
  };
  struct Slot {
    Key key;
    std::string_view name;
    RecordType type = RecordType::none;
  };

  static Key keyOf(std::string_view name);
  std::size_t slotOf(std::string_view name, const Key& key) const;
  void put(const Slot& slot);

  std::vector<Slot> m_slots;  // a power of two; open addressing
  std::size_t m_count = 0;
  std::uint16_t m_next = static_cast<std::uint16_t>(RecordType::kFirstOther);
};

}  // namespace torva::dxf
