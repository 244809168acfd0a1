#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <utility>

#include <kdrx/export.h>
#include <kdrx/status.h>
#include <kdrx/ut.h>

class KdDbDatabase;
class KdDbObjectImp;

/// Identity of an object in an open drawing. Stays valid while the drawing is open, also while the object is erased; ids of
/// a drawing that was closed are recognised and refused. Value type; null by default.
class KdDbObjectId {
 public:
  constexpr KdDbObjectId() = default;
  constexpr explicit KdDbObjectId(std::uint64_t word) : m_word(word) {}

  constexpr bool isNull() const { return m_word == 0; }
  constexpr void setNull() { m_word = 0; }
  /// The id as one word: the drawing's number in the upper half, the object's in the lower.
  constexpr std::uint64_t word() const { return m_word; }
  constexpr auto operator<=>(const KdDbObjectId&) const = default;

 private:
  std::uint64_t m_word = 0;
};

/// Describes one class of the object hierarchy. One instance a class, with static lifetime.
class KDRX_API KdRxClass {
 public:
  KdRxClass(const wchar_t* name, const KdRxClass* base) : m_name(name), m_base(base) {}
  KdRxClass(const KdRxClass&) = delete;
  KdRxClass& operator=(const KdRxClass&) = delete;

  const wchar_t* name() const { return m_name; }
  const KdRxClass* base() const { return m_base; }
  /// True when this class is `other` or derives from it.
  bool isDerivedFrom(const KdRxClass* other) const;

 private:
  const wchar_t* m_name;
  const KdRxClass* m_base;
};

/// Base of all database objects.
///
/// An object either belongs to a database (opened by kddbOpenObject(), released by close(), owned by its database) or stands
/// outside of any (made by `new`, owned by its maker and deleted by him; open and close do not apply to it).
/// The pointer to a database object stays valid after close() until its database goes.
/// Setters of an object that belongs to a database need it open for write; else they return KdStatus::notOpen.
class KDRX_API KdDbObject {
 public:
  virtual ~KdDbObject();
  KdDbObject(const KdDbObject&) = delete;
  KdDbObject& operator=(const KdDbObject&) = delete;

  static const KdRxClass* desc();
  virtual const KdRxClass* isA() const;
  bool isKindOf(const KdRxClass* other) const { return isA()->isDerivedFrom(other); }

  /// Null for an object outside any database.
  KdDbObjectId objectId() const;
  /// Null when there is no owner, or none that exists.
  KdDbObjectId ownerId() const;
  /// Null for an object outside any database.
  KdDbDatabase* database() const;
  /// The handle as the drawing file has it; 0 for an object outside any database.
  std::uint64_t handle() const;

  bool isReadEnabled() const;
  bool isWriteEnabled() const;
  bool isErased() const;

  /// Releases one open: the writer's, or one reader's.
  /// @return KdStatus::notOpen when the object is not open; nothing is changed then
  KdStatus close();

  /// Erases the object from its database, or brings it back, with what is part of it (the vertices of a polyline, the
  /// attributes of an insert); it stays open until closed. Names in dictionaries stay.
  /// @return KdStatus::notOpen when it is not open for write, KdStatus::notInDatabase outside a database
  [[nodiscard]] KdStatus erase();
  [[nodiscard]] KdStatus unerase();

  /// Takes over all content of `source`, an object of the same class: what it draws, its properties, its style. Identity
  /// (id, handle, owner) and open state stay as they are.
  /// @return KdStatus::wrongClass (also for every class that cannot stand outside a database), KdStatus::nullPointer or
  ///   KdStatus::notOpen; nothing is changed then
  virtual KdStatus copyFrom(const KdDbObject* source);

 protected:
  explicit KdDbObject(std::unique_ptr<KdDbObjectImp> imp);

  std::unique_ptr<KdDbObjectImp> m_imp;

 private:
  friend class KdDbSystemInternals;
};

/// A drawing entity: anything that stands in a block (model space and paper spaces are blocks too).
class KDRX_API KdDbEntity : public KdDbObject {
 public:
  static const KdRxClass* desc();
  const KdRxClass* isA() const override;

  KdDbObjectId layerId() const;

 protected:
  using KdDbObject::KdDbObject;
  friend class KdDbSystemInternals;
};

/// Gives the host's internal side of an object. Owned by the object.
class KDRX_API KdDbSystemInternals {
 public:
  static KdDbObjectImp* getImpObject(const KdDbObject* object);
  /// Makes an object of class T around an internal side. Only the host has internal sides to give.
  template <class T>
  static std::unique_ptr<KdDbObject> make(std::unique_ptr<KdDbObjectImp> imp) {
    return std::unique_ptr<KdDbObject>(new T(std::move(imp)));
  }
};

/// Opens an object of the working database.
/// @param[out] object the object, owned by its database, valid until that goes; unchanged on failure
/// @param openErased true to open erased objects too
/// @return nullObjectId, unknownObjectId, wasErased, onLockedLayer (an entity on a locked layer, for write; the command line
///   tells the user when the command ends), wasOpenForWrite (any open while a writer holds it), or wasOpenForRead (for write
///   while readers hold it)
[[nodiscard]] KDRX_API KdStatus kddbOpenObject(KdDbObject*& object, KdDbObjectId id, KdOpenMode mode,
                                               bool openErased = false) noexcept;

/// As above for an object of class T; one of another class is closed again and gives KdStatus::wrongClass.
template <class T>
[[nodiscard]] KdStatus kddbOpenObject(T*& object, KdDbObjectId id, KdOpenMode mode, bool openErased = false) noexcept {
  KdDbObject* any = nullptr;
  if (const KdStatus status = kddbOpenObject(any, id, mode, openErased); status != KdStatus::ok) return status;
  if (!any->isKindOf(T::desc())) {
    any->close();
    return KdStatus::wrongClass;
  }
  object = static_cast<T*>(any);
  return KdStatus::ok;
}

/// Converts an entity name to an object id and back.
/// @return nullObjectId for a null name or id, unknownObjectId when no such object exists; the output is unchanged then
[[nodiscard]] KDRX_API KdStatus kddbGetObjectId(KdDbObjectId& id, const KdName name) noexcept;
[[nodiscard]] KDRX_API KdStatus kddbGetName(KdName name, KdDbObjectId id) noexcept;
