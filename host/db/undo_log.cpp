#include "db/undo_log.h"

namespace torva::db {

void Database::UndoLog::begin(std::wstring name) {
  m_isRecording = true;
  m_current.name = std::move(name);
}

void Database::UndoLog::keep(const dxf::DrawingFile& file, dxf::RecordId record) {
  if (!m_isRecording || !m_kept.emplace(record, m_current.entries.size()).second) return;
  m_current.entries.push_back({record, file.state(record)});
}

const dxf::RecordState* Database::UndoLog::kept(dxf::RecordId record) const {
  const auto found = m_kept.find(record);
  return found == m_kept.end() ? nullptr : &m_current.entries[found->second].state;
}

void Database::UndoLog::keepNew(const dxf::DrawingFile& file, dxf::RecordId record) {
  if (!m_isRecording || !m_kept.emplace(record, m_current.entries.size()).second) return;
  dxf::RecordState state = file.state(record);
  state.isErased = true;
  m_current.entries.push_back({record, std::move(state)});
}

void Database::UndoLog::end(const dxf::DrawingFile& file) {
  if (!std::exchange(m_isRecording, false)) return;
  m_kept.clear();
  Step step = std::exchange(m_current, {});
  std::erase_if(step.entries, [&](const Entry& entry) {
    const bool isErasedStill = entry.state.isErased && file.isErased(entry.record);
    return isErasedStill || file.isInState(entry.record, entry.state);
  });
  if (step.entries.empty()) return;
  m_done.push_back(std::move(step));
  m_undone.clear();
}

Database::UndoLog::Step* Database::UndoLog::takeBack() {
  return move(m_done, m_undone);
}

Database::UndoLog::Step* Database::UndoLog::bringAgain() {
  return move(m_undone, m_done);
}

Database::UndoLog::Step* Database::UndoLog::move(std::vector<Step>& from, std::vector<Step>& to) {
  if (from.empty()) return nullptr;
  to.push_back(std::move(from.back()));
  from.pop_back();
  return &to.back();
}

}  // namespace torva::db
