#pragma once

#include <kdrx/db_dictionary.h>
#include <kdrx/db_tables.h>

/// Walks all multilines of a drawing, in whatever block they stand: model space, paper spaces, block definitions, inserted
/// or not. They are known by the types of their records, so no other entity is looked into. A change of a multiline or of a
/// style leaves the walk as it was begun.
class KDRX_API KdDbMlineIterator {
 public:
  virtual ~KdDbMlineIterator();
  virtual bool done() const = 0;
  virtual void step() = 0;
  virtual KdDbObjectId mlineId() const = 0;
  /// The style's id as KdDbMline::style() gives it, without opening the multiline or reading its vertices.
  virtual KdDbObjectId styleId() const = 0;
};

/// A drawing. The host owns the working database; databases that a module makes with create() are its own.
class KDRX_API KdDbDatabase {
 public:
  virtual ~KdDbDatabase();
  KdDbDatabase(const KdDbDatabase&) = delete;
  KdDbDatabase& operator=(const KdDbDatabase&) = delete;

  virtual KdDbObjectId blockTableId() const = 0;
  virtual KdDbObjectId layerTableId() const = 0;
  virtual KdDbObjectId linetypeTableId() const = 0;
  virtual KdDbObjectId namedObjectsDictionaryId() const = 0;
  virtual KdDbObjectId modelSpaceId() const = 0;

  /// Opens the block table; the statuses are those of kddbOpenObject().
  [[nodiscard]] KdStatus getBlockTable(KdDbBlockTable*& table, KdOpenMode mode);
  std::unique_ptr<KdDbMlineIterator> newMlineIterator() const;

 protected:
  KdDbDatabase() = default;
};

/// The drawing that the command line works on; null when none is open. Owned by the host.
KDRX_API KdDbDatabase* kddbWorkingDatabase() noexcept;

/// The root dictionary of the working drawing, as an entity name.
/// @return kKdInputNormal, or kKdInputError when there is none
[[nodiscard]] KDRX_API int kddbNamedObjDict(KdName name) noexcept;

/// Looks up an entry of a dictionary.
/// @param[out] entry a chain whose item of type kKdResultName names the object; released with kdutRelRb()
/// @return kKdInputNormal, or kKdInputError when there is no such entry; `entry` is unchanged then
[[nodiscard]] KDRX_API int kddbDictSearch(const KdName dictionary, const wchar_t* key, KdResbuf** entry) noexcept;

/// Ends the running step of undo and begins another, so that what was changed up to here and what comes now are taken back
/// by one `U` each. A step in which nothing changed is none.
KDRX_API void kddbNextUndoStep() noexcept;

/// Loads a linetype from a linetype file into a drawing, at the end of its linetype table. A linetype of that name that the
/// drawing has stays as it is.
/// @param file absolute, or relative to the root folder: "torva.lin", "torvaiso.lin"
/// @param name ignoring case; "*" is a name like any other
/// @param[out] id the linetype of the drawing; unchanged on failure
/// @param flags without effect
/// @return nullPointer, fileNotFound, keyNotFound (the file has no such linetype), invalidInput (it has, but in a form that
///   cannot be read), notApplicable (the drawing has no linetype table)
[[nodiscard]] KDRX_API KdStatus kddbLoadLinetypeFromFile(const wchar_t* file, const wchar_t* name, KdDbObjectId& id,
                                                         KdDbDatabase* database, int flags) noexcept;
