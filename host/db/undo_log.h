#pragma once

#include <unordered_map>

#include "db/database.h"

namespace torva::db {

/// The steps that can be taken back and brought again. A step keeps of each record that it touched the state that the record
/// does not have now; taking it back and bringing it again are the same exchange.
class Database::UndoLog {
 public:
  struct Entry {
    dxf::RecordId record;
    dxf::RecordState state;
  };
  struct Step {
    std::wstring name;
    std::vector<Entry> entries;
  };

  bool isRecording() const { return m_isRecording; }
  /// The name of the step that is running.
  const std::wstring& name() const { return m_current.name; }
  void begin(std::wstring name);
  /// Keeps the state of a record, the first time in a step; does nothing outside of one.
  void keep(const dxf::DrawingFile& file, dxf::RecordId record);
  /// The state that the running step has kept of a record; null when it has none. Valid until the next keep() or end().
  const dxf::RecordState* kept(dxf::RecordId record) const;
  /// For a record that the step has made: taken back, it is erased.
  void keepNew(const dxf::DrawingFile& file, dxf::RecordId record);
  /// Ends the step. Records that are as they were, or erased as they were, are left out, a step without records is dropped.
  void end(const dxf::DrawingFile& file);

  /// Moves the last step over to the other side and returns it for exchange(); null when there is none.
  Step* takeBack();
  Step* bringAgain();

 private:
  static Step* move(std::vector<Step>& from, std::vector<Step>& to);

  bool m_isRecording = false;
  Step m_current;
  std::unordered_map<dxf::RecordId, std::size_t> m_kept;  // where in the current step
  std::vector<Step> m_done, m_undone;
};

}  // namespace torva::db
