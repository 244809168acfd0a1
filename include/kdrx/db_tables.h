#pragma once

#include <memory>
#include <string>

#include <kdrx/cm_color.h>
#include <kdrx/db_object.h>

/// A named entry of a symbol table: layer, linetype, block...
class KDRX_API KdDbSymbolTableRecord : public KdDbObject {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;
  const std::wstring& name() const;

 protected:
  using KdDbObject::KdDbObject;
  friend class KdDbSystemInternals;
};

/// A symbol table. Names are compared ignoring case; iteration follows the drawing file.
class KDRX_API KdDbSymbolTable : public KdDbObject {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  bool has(const std::wstring& name) const;
  /// @return keyNotFound; `id` is unchanged then
  KdStatus getAt(const std::wstring& name, KdDbObjectId& id, bool getErased = false) const;

 protected:
  using KdDbObject::KdDbObject;
  friend class KdDbSystemInternals;
};

class KDRX_API KdDbLayerTableRecord : public KdDbSymbolTableRecord {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  bool isOff() const;
  bool isFrozen() const;
  bool isLocked() const;
  KdCmColor color() const;
  KdDbObjectId linetypeId() const;

 protected:
  using KdDbSymbolTableRecord::KdDbSymbolTableRecord;
  friend class KdDbSystemInternals;
};

class KDRX_API KdDbLinetypeTableRecord : public KdDbSymbolTableRecord {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  int numDashes() const;
  /// Length in drawing units: positive a dash, negative a gap, 0 a dot; 0 when `index` is outside.
  double dashLengthAt(int index) const;

 protected:
  using KdDbSymbolTableRecord::KdDbSymbolTableRecord;
  friend class KdDbSystemInternals;
};

class KDRX_API KdDbLayerTable : public KdDbSymbolTable {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

 protected:
  using KdDbSymbolTable::KdDbSymbolTable;
  friend class KdDbSystemInternals;
};

class KDRX_API KdDbLinetypeTable : public KdDbSymbolTable {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

 protected:
  using KdDbSymbolTable::KdDbSymbolTable;
  friend class KdDbSystemInternals;
};

/// Walks the entities of a block in drawing order, erased ones left out.
class KDRX_API KdDbBlockTableRecordIterator {
 public:
  virtual ~KdDbBlockTableRecordIterator();
  virtual bool done() const = 0;
  virtual void step() = 0;
  virtual KdDbObjectId entityId() const = 0;
  /// The entity's class without opening or parsing it; KdDbEntity::desc() for classes without a type of their own.
  virtual const KdRxClass* entityClass() const = 0;
  /// Opens the entity; the statuses are those of kddbOpenObject().
  [[nodiscard]] virtual KdStatus getEntity(KdDbEntity*& entity, KdOpenMode mode) const = 0;
};

/// A block: model space, a paper space, or a block definition.
class KDRX_API KdDbBlockTableRecord : public KdDbSymbolTableRecord {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  std::unique_ptr<KdDbBlockTableRecordIterator> newIterator() const;
  /// Adds `entity`, which stood outside any database, at the end of the block; the database owns it then and it stays open
  /// for write until closed.
  /// @return nullPointer, notOpen, alreadyInDatabase, wrongClass (not a multiline), notApplicable (the drawing's format has
  /// no
  ///   multilines, or the block has no place for entities)
  KdStatus appendEntity(KdDbEntity* entity, KdDbObjectId& id);

 protected:
  using KdDbSymbolTableRecord::KdDbSymbolTableRecord;
  friend class KdDbSystemInternals;
};

class KDRX_API KdDbBlockTableIterator {
 public:
  virtual ~KdDbBlockTableIterator();
  virtual bool done() const = 0;
  virtual void step() = 0;
  virtual KdDbObjectId recordId() const = 0;
  [[nodiscard]] virtual KdStatus getRecord(KdDbBlockTableRecord*& record, KdOpenMode mode) const = 0;
};

class KDRX_API KdDbBlockTable : public KdDbSymbolTable {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  std::unique_ptr<KdDbBlockTableIterator> newIterator() const;

 protected:
  using KdDbSymbolTable::KdDbSymbolTable;
  friend class KdDbSystemInternals;
};
