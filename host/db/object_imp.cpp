#include "db/object_imp.h"

#include "base/current.h"
#include "db/database.h"
#include "db/record_groups.h"

using torva::db::Database;

Database* KdDbObjectImp::context() const {
  return m_database ? m_database : torva::Current<Database>::get();
}

const torva::dxf::DrawingFile& KdDbObjectImp::file() const {
  return m_database->file();
}

void KdDbObjectImp::attach(Database& database, torva::dxf::RecordId record) {
  m_database = &database;
  m_record = record;
}

KdStatus KdDbObjectImp::open(KdOpenMode mode) {
  if (m_hasWriter) return KdStatus::wasOpenForWrite;
  if (mode == KdOpenMode::forWrite && m_readers > 0) return KdStatus::wasOpenForRead;
  if (!isOpen()) m_database->noteOpened(m_record);
  if (mode == KdOpenMode::forWrite) {
    m_hasWriter = true;
  } else {
    ++m_readers;
  }
  return KdStatus::ok;
}

KdStatus KdDbObjectImp::close() {
  if (!isOpen()) return KdStatus::notOpen;
  if (m_hasWriter) {
    if (m_isChangedSinceOpen) {
      settle();
      m_database->noteChanged(m_record);
    }
    m_isChangedSinceOpen = false;
    m_hasWriter = false;
  } else {
    --m_readers;
  }
  if (!isOpen()) m_database->noteClosed(m_record);
  return KdStatus::ok;
}

void KdDbObjectImp::touch() {
  m_isChangedSinceOpen = true;
  if (!m_database || m_isDirty) return;
  m_isDirty = true;
  m_database->noteDirty(m_record);
}

torva::dxf::RecordText KdDbObjectImp::takeBytes() {
  m_isDirty = false;
  return write();
}

torva::dxf::RecordText KdDbObjectImp::write() const {
  return std::string(file().bytes(m_record));
}

std::wstring KdDbObjectImp::layerName() const {
  return m_database ? torva::db::firstText(file(), m_record, 8) : std::wstring();
}
