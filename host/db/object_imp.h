#pragma once

#include <string>

#include "dxf/drawing_file.h"

#include <kdrx/db_mline_imp.h>
#include <kdrx/db_object.h>

namespace torva::db {
class Database;
}

/// The host's side of a database object: which record it stands for, who has it open, and its typed content.
/// One class for each way of reading a record; this one holds no content, the record itself is the truth.
class KdDbObjectImp {
 public:
  KdDbObjectImp() = default;
  virtual ~KdDbObjectImp() = default;
  KdDbObjectImp(const KdDbObjectImp&) = delete;
  KdDbObjectImp& operator=(const KdDbObjectImp&) = delete;

  /// Null, and kNoRecord, for an object outside any database.
  torva::db::Database* database() const { return m_database; }
  torva::dxf::RecordId record() const { return m_record; }
  /// The database in which the content's handles and names are to be looked up: the object's own, else the working one. Null
  /// when there is neither.
  torva::db::Database* context() const;
  /// The file of database(). Requires: the object belongs to a database.
  const torva::dxf::DrawingFile& file() const;

  /// Makes the object the one of a record. Requires: it belonged to none.
  void attach(torva::db::Database& database, torva::dxf::RecordId record);

  bool isWritable() const { return !m_database || m_hasWriter; }
  int readers() const { return m_readers; }
  bool hasWriter() const { return m_hasWriter; }
  bool isOpen() const { return m_hasWriter || m_readers > 0; }
  /// @return wasOpenForWrite, wasOpenForRead
  KdStatus open(KdOpenMode mode);
  /// @return notOpen
  KdStatus close();

  /// To be called before the content is changed: keeps the record for undo and has the content written at the next flush.
  void touch();
  /// Whether the content is newer than the record.
  bool isDirty() const { return m_isDirty; }
  /// The record's bytes for the content as it is now. The object counts as unchanged after that.
  torva::dxf::RecordText takeBytes();

  /// Called when the object has come into its database from outside: what means nothing there is replaced.
  virtual void enter() {}
  /// Reads the content from the record. Requires: the object belongs to a database.
  virtual void read() {}
  /// Frees content that can be read from the record again. Requires: the content is not newer than the record.
  virtual void letGo() {}
  /// Name of the layer an entity stands on; empty for what is no entity.
  virtual std::wstring layerName() const;
  /// The multiline side; null for other classes.
  virtual KdDbMlineImp* mline() { return nullptr; }

 protected:
  /// The record's bytes with the content put in.
  virtual torva::dxf::RecordText write() const;
  /// Brings changed content into the form in which it is stored; called when the writer closes the object.
  virtual void settle() {}

 private:
  torva::db::Database* m_database = nullptr;
  torva::dxf::RecordId m_record = torva::dxf::kNoRecord;
  int m_readers = 0;
  bool m_hasWriter = false;
  bool m_isDirty = false;
  bool m_isChangedSinceOpen = false;
};
