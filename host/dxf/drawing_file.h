#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "base/watch.h"
#include "dxf/file_identity.h"
#include "dxf/finding.h"
#include "dxf/group.h"
#include "dxf/record.h"
#include "dxf/record_edits.h"
#include "dxf/version.h"

namespace torva::dxf {

struct SaveOptions {
  bool keepsBackup = false;          ///< Leaves the former file beside, with ".bak" for its extension.
  bool replacesChangedFile = false;  ///< Saves although the file on disk is no longer the one that was opened.
};

/// Which file a drawing is an edited state of.
struct FileOrigin {
  std::string path;  ///< Empty for a new drawing.
  FileIdentity identity = {};
};

/// A drawing's bytes at one moment. They stay while the drawing is changed further or closed, and may be written by another
/// thread. What is as in the file is not copied.
class Snapshot {
 public:
  Snapshot(Snapshot&&) noexcept;
  Snapshot& operator=(Snapshot&&) = delete;
  ~Snapshot();

  /// In order, to be written one behind the other.
  const std::vector<std::string_view>& pieces() const;

 private:
  friend class DrawingFile;
  class TORVA_INTERNAL Imp;
  explicit Snapshot(std::unique_ptr<Imp> imp);
  std::unique_ptr<Imp> m_imp;
};

/// A drawing file held as records: an index of where each record begins, its type and its handle. Values are read when asked
/// for. Untouched records are written back byte for byte.
///
/// The file's content is safe from other programs while it is open: it is read through a map under a read lease of the
/// kernel, and copied into memory before another program's first write goes through; where no lease can be had it is read in
/// at once.
class TORVA_API DrawingFile {
 public:
  /// Opens a drawing in the text or binary form, R12 to R2018.
  /// @param[out] findings what was found wrong and mended, appended
  /// @return fileNotFound, fileNotReadable, isDirectory, emptyFile, notADrawing, unsupportedVersion, damagedDrawing (content
  /// would
  ///   be lost; with DamagePolicy::recover it is opened all the same), cancelled (nothing is left of it)
  static Result<DrawingFile> open(const std::string& path, DamagePolicy policy, std::vector<Finding>& findings,
                                  const Progress& progress = {});
  /// A drawing from bytes in memory; otherwise as open(). `name` is used in messages.
  static Result<DrawingFile> fromBytes(std::string bytes, const std::string& name, DamagePolicy policy,
                                       std::vector<Finding>& findings);

  DrawingFile(DrawingFile&&) noexcept;
  DrawingFile& operator=(DrawingFile&&) noexcept;
  ~DrawingFile();

  Form form() const;
  BinaryCodes binaryCodes() const;
  LineEnds lineEnds() const;
  /// What new lines of the text form end with: what the drawing's first line ends with.
  std::string_view lineEnd() const;
  Version version() const;
  /// Path from which it was opened or to which it was last saved; empty for a new one.
  const std::string& path() const;

  /// Number of records, new and erased ones included; valid ids are 0 .. recordCount() - 1.
  RecordId recordCount() const;
  /// Number of records that the file had when it was opened; they stand in the order of their ids.
  RecordId originalCount() const;
  RecordType type(RecordId id) const;
  /// The value of group 0, as written.
  std::string_view typeName(RecordId id) const;
  /// The number under which a type is known in this file; RecordType::none when no record has it.
  RecordType typeOf(std::string_view name) const;
  /// 0 when the record has none.
  Handle handle(RecordId id) const;
  bool isErased(RecordId id) const;
  bool isChanged(RecordId id) const;
  /// All bytes of the record as they would be saved. Valid until the record is changed.
  std::string_view bytes(RecordId id) const;
  Groups groups(RecordId id) const { return groupsOf(bytes(id)); }
  /// The groups of bytes in this drawing's form, such as a RecordBuilder made; a view of `bytes`.
  Groups groupsOf(std::string_view bytes) const { return Groups(bytes, form(), binaryCodes(), lineEnds()); }

  /// The record with a handle, erased ones included; kNoRecord when there is none. The first in the file of several.
  RecordId find(Handle handle) const;
  /// The record that follows in the order of saving, new ones in their places, erased ones included; kNoRecord at the end.
  RecordId next(RecordId id) const;
  /// All records of a type in the order of saving, erased ones included; faster than walking by next().
  std::vector<RecordId> recordsOf(RecordType type) const;
  /// The original record behind which a new one stands, itself or behind other new ones; an original record's own id.
  RecordId anchor(RecordId id) const;
  /// The first record of a section by its name ("TABLES"): the SECTION record itself; kNoRecord when there is none.
  RecordId section(std::string_view name) const;
  /// The original record behind the last one of that section, ENDSEC included where there is one; kNoRecord when there is no
  /// such section.
  RecordId sectionEnd(std::string_view name) const;

  /// Line, counted from 1, (text form) or byte offset (binary form) at which an original record begins; 0 for new records.
  /// Costs a scan.
  std::size_t place(RecordId id) const;
  /// The same for a group; 0 when its record is new or was changed.
  std::size_t place(const Group& group) const;

  /// Text of a group: escapes and code page decoded. Bytes that cannot be decoded survive a way through encode().
  std::wstring text(const Group& group) const;
  std::wstring decode(std::string_view value) const;
  std::string encode(std::wstring_view text) const;

  /// Whether records have handles: in drawings older than R13 not all do.
  bool usesHandles() const;
  /// A handle that no record has and that will not be given out again.
  Handle newHandle();

  RecordState state(RecordId id) const;
  /// Whether that is what state() returns; nothing is copied.
  bool isInState(RecordId id, const RecordState& state) const;
  /// Puts a record into a state taken from state() or made anew. Type and handle stay those it had when it was opened or
  /// inserted.
  void setState(RecordId id, RecordState state);
  void setBytes(RecordId id, RecordText bytes);
  void setErased(RecordId id, bool isErased);
  /// Adds a record behind another one (and behind those already added there). Its type and handle are read from `bytes`.
  /// Requires: previous is a valid id.
  RecordId insertAfter(RecordId previous, std::string bytes);

  /// The groups of a header variable, without its group 9; empty when the drawing has no such variable.
  std::vector<Group> headerVariable(std::string_view name) const;
  /// Replaces the groups of a header variable, or adds it at the header's end. `groups` comes from a RecordBuilder; without
  /// groups the variable is taken out.
  /// A drawing without HEADER gets none: false.
  bool setHeaderVariable(std::string_view name, std::string_view groups);

  /// All bytes as save() would write them now.
  std::string toBytes() const;

  bool isModified() const;  ///< Whether anything differs from the file opened or last saved; changed back, it does not.
  /// Whether the file on disk is still the one that was opened or last saved. True for a new drawing.
  bool isUnchangedOnDisk() const;

  /// The file that the drawing is an edited state of: its path, and what it was when opened or last saved.
  FileOrigin origin() const;
  /// Makes the drawing an edited state of another file, as which it counts as modified until it is saved.
  void setOrigin(FileOrigin origin);

  /// What save() would write now, to be written elsewhere. The drawing stays as it is.
  Snapshot snapshot();

  /// Writes the drawing beside `path`, syncs and renames it there; a link is followed. $HANDSEED follows the handles given
  /// out. On success `path` is the drawing's path and isModified() is false.
  /// @return fileNotWritable, diskFull, isDirectory, fileChangedOnDisk (path is the drawing's own and another program
  /// changed
  ///   it); the former file is untouched then
  Result<void> save(const std::string& path, const SaveOptions& options);

 private:
  class TORVA_INTERNAL Imp;
  explicit DrawingFile(std::unique_ptr<Imp> imp);
  std::unique_ptr<Imp> m_imp;
};

/// Puts groups together in the form of a drawing: text with its own line ends, or binary.
class RecordBuilder {
 public:
  explicit RecordBuilder(const DrawingFile& file);

  /// A group as it stands in the drawing.
  void copy(const Group& group);
  void real(int code, double value);
  void integer(int code, std::int64_t value);
  void handle(int code, Handle value);
  void text(int code, std::wstring_view value);
  /// A value in ASCII: record names, class marks, handles as text.
  void name(int code, std::string_view value);

  std::string take() { return std::exchange(m_bytes, {}); }
  /// Moves what was put together to the end of a text.
  void moveTo(RecordText& text) {
    text.append(m_bytes);
    m_bytes.clear();
  }
  void reserve(std::size_t size) { m_bytes.reserve(size); }

 private:
  /// A drawing's last line may have no end.
  void endLine();
  void code(int code);
  void line(int code, std::string_view value);

  const DrawingFile& m_file;
  std::string m_lineEnd;
  std::string m_bytes;
};

/// The bytes of an empty drawing (R2018 text form, model space and one paper layout, layer 0, style STANDARD for
/// multilines).
std::string newDrawing();

}  // namespace torva::dxf
