#pragma once

#include <memory>
#include <string>

#include <kdrx/db_object.h>

/// Walks the entries of a dictionary in their order. A change of the dictionary ends the walk's validity.
class KDRX_API KdDbDictionaryIterator {
 public:
  virtual ~KdDbDictionaryIterator();
  virtual bool done() const = 0;
  virtual void next() = 0;
  virtual std::wstring name() const = 0;
  virtual KdDbObjectId objectId() const = 0;
};

/// Named references to objects. Names are compared ignoring case.
class KDRX_API KdDbDictionary : public KdDbObject {
 public:
  ~KdDbDictionary() override;
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  int numEntries() const;
  bool has(const std::wstring& name) const;
  /// @return keyNotFound; `id` is unchanged then
  KdStatus getAt(const std::wstring& name, KdDbObjectId& id) const;
  /// @return keyNotFound; `name` is unchanged then
  KdStatus nameAt(KdDbObjectId id, std::wstring& name) const;
  /// Adds `object`, which then belongs to the database (on success only) and is open for write until closed, under `name`.
  /// An entry of that name names the new object from then on; with the old one it is as with remove().
  /// @param[out] id the new object's
  /// @return nullPointer, notOpen, invalidInput (empty name), alreadyInDatabase, wrongClass (not a multiline style),
  ///   notApplicable (the drawing's format has no objects)
  KdStatus setAt(const std::wstring& name, KdDbObject* object, KdDbObjectId& id);
  /// Removes an entry; the object it named is not erased by that. A multiline style that no multiline uses either is dropped
  /// from the drawing when the command ends, as nothing in a saved file would lead to it.
  /// @return notOpen, keyNotFound
  KdStatus remove(const std::wstring& name);
  /// Renames an entry.
  /// @return notOpen, keyNotFound, duplicateKey, invalidInput (empty name)
  KdStatus setName(const std::wstring& oldName, const std::wstring& newName);

  std::unique_ptr<KdDbDictionaryIterator> newIterator() const;

 private:
  KdDbDictionary();
  friend class KdDbSystemInternals;
  friend class KdDbDictionaryImp;
};
