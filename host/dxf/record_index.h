#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "dxf/record.h"
#include "dxf/type_names.h"

namespace torva::dxf {

/// Where each record of a file begins, its type and its handle, in the order of the file: 16 bytes a record.
class RecordIndex {
 public:
  /// Offsets ascend. Requires: offset < 2^48, fewer than kNoRecord records.
  RecordId append(std::size_t offset, RecordType type) {
    if ((m_size & kBlockMask) == 0) m_blocks.push_back(std::make_unique_for_overwrite<Entry[]>(kBlockSize));
    m_blocks.back()[m_size & kBlockMask] = {offset << kTypeBits | static_cast<std::uint16_t>(type), 0};
    return m_size++;
  }
  void setHandle(RecordId id, Handle handle) { entry(id).handle = handle; }

  RecordId size() const { return m_size; }
  std::size_t offset(RecordId id) const { return entry(id).place >> kTypeBits; }
  RecordType type(RecordId id) const { return static_cast<RecordType>(entry(id).place & 0xFFFF); }
  Handle handle(RecordId id) const { return entry(id).handle; }

 private:
  struct Entry {
    std::uint64_t place;  // offset and type
    Handle handle;
  };
  static constexpr int kTypeBits = 16;
  static constexpr int kBlockBits = 12;
  static constexpr std::size_t kBlockSize = std::size_t{1} << kBlockBits;
  static constexpr RecordId kBlockMask = kBlockSize - 1;

  Entry& entry(RecordId id) { return m_blocks[id >> kBlockBits][id & kBlockMask]; }
  const Entry& entry(RecordId id) const { return m_blocks[id >> kBlockBits][id & kBlockMask]; }

  std::vector<std::unique_ptr<Entry[]>> m_blocks;  // growing moves no entry, so that the peak is what is used
  RecordId m_size = 0;
};

/// Finds the records of an index by handle.
class HandleTable {
 public:
  HandleTable() = default;
  /// `onDuplicate` is told each record whose handle an earlier one has, and that earlier one.
  HandleTable(const RecordIndex& index, const std::function<void(RecordId earlier, RecordId later)>& onDuplicate);

  /// The first record with a handle; kNoRecord when there is none.
  RecordId find(const RecordIndex& index, Handle handle) const;
  /// 0 when no record has a handle.
  Handle highest() const { return m_highest; }

 private:
  Handle m_highest = 0;
  // Handles are mostly dense: a table by handle then, record ids plus one. Else ids sorted by handle.
  std::vector<RecordId> m_byHandle;
  std::vector<RecordId> m_sorted;
};

}  // namespace torva::dxf
