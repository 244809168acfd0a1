#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dxf/record.h"
#include "dxf/record_text.h"

namespace torva::dxf {

/// What a record holds apart from its place in the file; what undo keeps.
struct RecordState {
  std::optional<RecordText> bytes;  ///< Nothing: as in the file that was opened, or as inserted.
  bool isErased = false;
};

/// A record that the file did not have when it was opened.
struct InsertedRecord {
  std::string bytes;
  RecordType type = RecordType::none;
  Handle handle = 0;
  RecordId anchor = kNoRecord;  ///< The original record behind which it stands.
  RecordId next = kNoRecord;    ///< The next one inserted behind the same anchor.
};

/// What was changed in a drawing's records. Costs what was changed, not what the drawing holds.
class RecordEdits {
 public:
  explicit RecordEdits(RecordId originalCount) : m_originalCount(originalCount) {}

  RecordId recordCount() const { return m_originalCount + static_cast<RecordId>(m_inserted.size()); }
  RecordId originalCount() const { return m_originalCount; }
  bool isInserted(RecordId id) const { return id >= m_originalCount; }
  /// Requires: isInserted(id).
  const InsertedRecord& inserted(RecordId id) const { return m_inserted[id - m_originalCount]; }

  /// The state of a record that was changed; null for all others.
  const RecordState* changed(RecordId id) const {
    return id < m_hasState.size() && m_hasState[id] ? &m_states.find(id)->second : nullptr;
  }
  void setState(RecordId id, RecordState state);
  /// Whether any record differs from the file that was opened.
  bool isAnyChanged() const;

  /// Whether there is an inserted record that is not erased.
  bool hasInserted() const { return m_erasedInserted != m_inserted.size(); }

  /// The highest handle of an inserted record that is not erased; 0 when there is none.
  Handle highestInserted() const;

  /// `record` needs bytes, type and handle; its place is behind `previous` and what was inserted behind that before.
  RecordId insertAfter(RecordId previous, InsertedRecord record);
  /// The first inserted record with a handle; kNoRecord when there is none.
  RecordId findInserted(Handle handle) const;
  /// The record that follows in the order of saving; kNoRecord at the end.
  RecordId next(RecordId id) const;
  /// The first record inserted behind an original one; kNoRecord when there is none.
  RecordId firstBehind(RecordId original) const;

  /// The original records that were changed or have inserted ones behind them, in order.
  std::vector<RecordId> touchedOriginals() const;

 private:
  const RecordId m_originalCount;
  std::unordered_map<RecordId, RecordState> m_states;  // nodes: views of a state's bytes outlive other changes
  std::vector<bool> m_hasState;  // by record, up to the highest that has one: most are asked for in vain
  std::deque<InsertedRecord> m_inserted;
  std::unordered_map<RecordId, RecordId> m_firstBehind;  // by original record
  std::unordered_map<RecordId, RecordId> m_lastBehind;   // by record: the last one inserted behind it
  std::unordered_map<Handle, RecordId> m_insertedByHandle;
  std::size_t m_erasedInserted = 0;
};

}  // namespace torva::dxf
