#pragma once

#include <cstdint>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "db/database.h"

namespace torva::runtime {

/// An unsaved drawing that a program which did not come to its end has left.
struct LeftDrawing {
  std::string folder;             ///< What it is known by.
  std::string copy;               ///< Path of the drawing as it was kept last.
  dxf::FileOrigin original = {};  ///< What it is an edited state of; without path for a new drawing.
  std::int64_t keptAt = 0;        ///< When it was kept last, in seconds since 1970.
};

/// Keeps a copy of the unsaved drawing of a running program, and finds those that other programs left.
///
/// Each running program has a folder of its own in the recovery folder while it keeps something: the copy ("drawing.dxf"), a
/// text that tells what it is of ("original.txt"), and a file that the program holds locked as long as it runs. All of it is
/// gone once there is nothing to lose.
class TORVA_API Recovery {
 public:
  /// @param folder made when something is to be kept; empty: nothing ever is
  explicit Recovery(std::string folder);
  /// A program that ends as it should leaves nothing.
  ~Recovery();
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;

  /// Begins to write a copy of the drawing when it has unsaved changes and changed since the last copy, on a thread of its
  /// own: what is in use costs the caller no more than its changes. Without unsaved changes, drops the copy. Does nothing
  /// while the last copy is still being written or an object of the drawing is open; so it may be called at any time, again
  /// and again.
  ///
  /// The drawing's path, state and origin stay as they are.
  /// @return fileNotWritable, diskFull, also those of the copy before, which is then tried again at the next call
  Result<void> keep(db::Database& database);
  /// Waits for the copy that is being written; errors as of keep().
  Result<void> finish();
  /// Removes the copy: the drawing was saved, or its changes were given up.
  void drop();

  /// What other programs left that do not run any more, the latest first. Folders without a whole copy are removed.
  std::vector<LeftDrawing> list() const;
  /// Makes a left drawing, when its copy has been opened, the one that this program keeps in place of its former one: nobody
  /// else is offered it, and it is there until it is saved or given up.
  /// @return fileNotFound when it is gone or another program has taken it; the former one is kept then
  Result<void> take(const LeftDrawing& left);
  /// Removes a left drawing. @return fileNotFound as above
  Result<void> discard(const LeftDrawing& left);

 private:
  class Place;
  static Result<Place> claim(const LeftDrawing& left);
  Result<void> findPlace();

  const std::string m_folder;
  std::unique_ptr<Place> m_place;  // null: nothing is kept
  std::future<Result<void>> m_writing;
  std::uint32_t m_keptSerial = 0;  // of the drawing that was kept last, and its change count then
  std::size_t m_keptChanges = 0;
};

}  // namespace torva::runtime
