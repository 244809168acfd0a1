#pragma once

#include <kdrx/db_dictionary.h>
#include <kdrx/db_tables.h>

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
