#pragma once

#include <vector>

#include "db/dictionary_data.h"
#include "db/object_imp.h"

#include <kdrx/db_dictionary.h>

/// The content of a dictionary.
class KdDbDictionaryImp final : public KdDbObjectImp {
 public:
  /// A dictionary object without a record as yet.
  static std::unique_ptr<KdDbObject> makeObject();

  void read() override { m_entries = torva::db::readDictionary(file(), file().groups(record())); }
  const std::vector<torva::db::DictionaryEntry>& entries() const { return m_entries; }
  /// The entries for a change; touches the object. Requires: it is writable.
  std::vector<torva::db::DictionaryEntry>& change();

 protected:
  torva::dxf::RecordText write() const override;

 private:
  std::vector<torva::db::DictionaryEntry> m_entries;
};
