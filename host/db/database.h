#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "db/dictionary_data.h"
#include "db/mline_data.h"
#include "db/mline_index.h"
#include "db/mline_style_data.h"
#include "dxf/drawing_file.h"

#include <kdrx/cm_color.h>
#include <kdrx/db_database.h>

namespace torva::db {

class RecentMlines;

/// Why an object was left open, for the check at a command's end.
struct OpenObject {
  KdDbObjectId id;
  int readers = 0;
  bool hasWriter = false;
};

/// A drawing as objects over its records. Objects are made when first opened and live until the drawing is closed; a changed
/// object becomes its record's bytes at flush(), at the latest when the command ends or the drawing is saved. Multilines,
/// multiline styles and dictionaries are changed through their objects alone.
class TORVA_API Database final : public KdDbDatabase {
 public:
  /// Opens a drawing file; errors and findings are those of dxf::DrawingFile::open(). Any thread may do so and hand the
  /// drawing to another one.
  static Result<std::unique_ptr<Database>> open(const std::string& path, dxf::DamagePolicy policy,
                                                std::vector<dxf::Finding>& findings, const Progress& progress = {});
  static Result<std::unique_ptr<Database>> fromBytes(std::string bytes, const std::string& name, dxf::DamagePolicy policy,
                                                     std::vector<dxf::Finding>& findings);
  /// A new, empty drawing.
  static std::unique_ptr<Database> create();
  ~Database() override;

  KdDbObjectId blockTableId() const override;
  KdDbObjectId layerTableId() const override;
  KdDbObjectId linetypeTableId() const override;
  KdDbObjectId namedObjectsDictionaryId() const override;
  KdDbObjectId modelSpaceId() const override;

  dxf::DrawingFile& file() { return m_file; }
  const dxf::DrawingFile& file() const { return m_file; }

  /// Identity of a record's object and back; null and kNoRecord when there is none. Every record has an id.
  KdDbObjectId idOf(dxf::RecordId record) const;
  dxf::RecordId recordOf(KdDbObjectId id) const;
  KdDbObjectId idOfHandle(dxf::Handle handle) const;

  KdStatus openObject(KdDbObject*& object, KdDbObjectId id, KdOpenMode mode, bool openErased);
  /// The same for callers from outside the host, to whom entities on locked layers are refused for write (onLockedLayer).
  KdStatus openUnlessLocked(KdDbObject*& object, KdDbObjectId id, KdOpenMode mode, bool openErased);
  /// The entities that openUnlessLocked() refused; taking them empties the set.
  std::set<dxf::RecordId> takeLockedEntities() { return std::exchange(m_lockedEntities, {}); }
  /// The objects that are open now. Costs what is open, not what is in the drawing.
  std::vector<OpenObject> openObjects() const;
  /// Closes all that is open, whoever opened it. For the host's clean-up after a faulty command.
  void closeAll();

  /// Whether an object was made for the record, so that it may hold more than the record's bytes say.
  bool hasObject(dxf::RecordId record) const { return m_objects.contains(record); }
  /// The multiline of a record as it stands now: of the object when one was made, else read from the record. Valid until the
  /// next call, or until an object is closed.
  const MlineData& mline(dxf::RecordId record) const;
  /// The same when it need not be read from a record of the file; else null.
  const MlineData* knownMline(dxf::RecordId record) const;

  /// The same for a multiline style. Requires of both: the record is of that type.
  MlineStyleData mlineStyle(dxf::RecordId record) const;

  /// All multilines as they were when last closed. Shared, since a walk over them goes on when one is changed meanwhile.
  std::shared_ptr<const MlineIndex> mlines() const;

  /// The multilines read last, for the object that is made of one of them.
  RecentMlines& recentMlines() { return *m_recentMlines; }

  /// What objects found wrong with their records when they were read; taking them empties the list.
  std::vector<dxf::Finding> takeFindings() { return std::exchange(m_findings, {}); }
  void note(dxf::Finding finding) { m_findings.push_back(std::move(finding)); }

  /// Writes changed objects into their records.
  void flush();

  /// Undo. Between begin and end everything changed counts as one step; a step in which nothing changed is none. A step
  /// begun while another one runs is part of that one; what changes outside of any step cannot be taken back. undo() and
  /// redo() end a running step first.
  void beginUndoStep(std::wstring name);
  void endUndoStep();
  /// Ends a running step and begins another one of its name; does nothing outside of one.
  void nextUndoStep();
  /// Name of the step taken back or brought again; nothing when there is none.
  std::optional<std::wstring> undo();
  std::optional<std::wstring> redo();

  /// Records changed, added, erased or restored, in order, since a position returned by changeCount(). For views.
  std::size_t changeCount() const { return m_changes.size(); }
  std::span<const dxf::RecordId> changesSince(std::size_t position) const { return std::span(m_changes).subspan(position); }

  /// Entities of model space, or of the block that `block` (a BLOCK_RECORD or BLOCK record) stands for, in drawing order,
  /// erased ones left out. Sub-records (VERTEX, ATTRIB, SEQEND) are passed over: they belong to the entity before them.
  void forEachModelSpaceEntity(const std::function<void(dxf::RecordId)>& visit) const;
  /// The same for all of the ENTITIES section, paper space included: no record is looked into, which is faster.
  void forEachEntity(const std::function<void(dxf::RecordId)>& visit) const;
  void forEachBlockEntity(dxf::RecordId block, const std::function<void(dxf::RecordId)>& visit) const;
  /// The BLOCK record of a block by name, ignoring case; kNoRecord when there is none.
  dxf::RecordId findBlock(std::wstring_view name) const;
  /// The table record of a symbol by table and name, ignoring case; kNoRecord when there is none.
  dxf::RecordId findSymbol(dxf::RecordType table, std::wstring_view name) const;
  /// All records of a symbol table, in order, erased ones left out. Valid until a symbol is added or erased.
  const std::vector<dxf::RecordId>& symbols(dxf::RecordType table) const;
  /// The LAYER records of locked layers. Valid until a layer is added, changed or erased.
  const std::set<dxf::RecordId>& lockedLayers() const;
  /// Dictionary entries by path from the root ("ACAD_MLINESTYLE", "STANDARD"); kNoRecord when one is missing.
  dxf::RecordId findInDictionary(std::span<const std::wstring_view> path) const;
  /// The entries of a dictionary as they stand now: of the object when one was made, else read from the record into
  /// `storage`. None for another record.
  const std::vector<DictionaryEntry>& dictionary(dxf::RecordId record, std::vector<DictionaryEntry>& storage) const;

  /// Appends an entity (bytes of a whole record, handle and owner groups included by the caller) to model space, or to the
  /// block that `block` stands for (see forEachModelSpaceEntity()). NewEntity puts such records together.
  /// @return kNoRecord when the drawing has no place for it
  dxf::RecordId appendToModelSpace(std::string bytes);
  dxf::RecordId appendToBlock(dxf::RecordId block, std::string bytes);
  /// The same for a symbol, behind the last one of a table, whose count follows, and for a record of the BLOCKS section or
  /// an object (kNoRecord without that section).
  dxf::RecordId appendToTable(dxf::RecordId table, std::string bytes);
  dxf::RecordId appendToBlocks(std::string bytes);
  dxf::RecordId appendToObjects(std::string bytes);
  /// Replaces the bytes of a record, to be taken back with the running step. Bytes that say the same as the file has the
  /// file's bytes again. Requires: its object, if there is one, is not open and was flushed.
  void setBytes(dxf::RecordId record, std::string bytes);
  /// Erases a record or brings it back, with the parts of the entity that follow it (VERTEX, ATTRIB, SEQEND).
  void setErased(dxf::RecordId record, bool isErased);

  /// Whether a record is an entity that stands in the ENTITIES section and is not part of another.
  bool isTopLevelEntity(dxf::RecordId record) const;
  /// The block of an entity that stands in the ENTITIES section and is not part of another: model space, or the paper space
  /// that stands there too; kNoRecord for all others.
  dxf::RecordId blockOfEntity(dxf::RecordId entity) const;
  /// Whether `block` is the paper space whose entities stand among those of model space, marked by group 67.
  bool isPaperSpaceAmongEntities(dxf::RecordId block) const;
  /// Name of the block that a record stands for (see forEachBlockEntity()); empty when it stands for none.
  std::wstring blockName(dxf::RecordId block) const;
  /// All blocks, model space and paper spaces included. Drawings older than R13 have no BLOCK_RECORDs: there the SECTION
  /// record of ENTITIES stands for model space, and BLOCK records for the blocks.
  std::vector<dxf::RecordId> blocks() const;
  /// The TABLE record of a table by its name ("LAYER"); kNoRecord when there is none.
  dxf::RecordId findTable(std::string_view name) const;

  /// Replaces a header variable (see dxf::DrawingFile::setHeaderVariable()), to be taken back with the running step. A
  /// header that says again what it said in the file, or before the running step, has those bytes again.
  bool setHeaderVariable(std::string_view name, std::string_view groups);

  /// Distinguishes this database from all others while the program runs.
  std::uint32_t serial() const { return m_serial; }

  /// Saves; errors are those of dxf::DrawingFile::save().
  Result<void> save(const std::string& path, const dxf::SaveOptions& options);

 private:
  class TORVA_INTERNAL Structure;  // sections, tables, blocks: built on first need
  class TORVA_INTERNAL UndoLog;
  enum class Space { model, paper };
  friend class ::KdDbObject;
  friend class ::KdDbObjectImp;
  friend class ::KdDbDictionary;
  friend class ::KdDbBlockTableRecord;

  explicit Database(dxf::DrawingFile file);

  // For the objects: what happens to them.
  void noteOpened(dxf::RecordId record) { m_open.push_back(record); }
  void noteClosed(dxf::RecordId record);
  /// What was closed last is mostly opened next; of what was closed before the last few the content is let go.
  void letGoBeside(dxf::RecordId record);
  void noteDirty(dxf::RecordId record);
  void noteChanged(dxf::RecordId record);
  /// Tells those who follow the changes of one.
  void logChange(dxf::RecordId record);
  /// Takes a style into the drawing, owned by a dictionary, or a multiline into a block. The statuses are those of
  /// KdDbDictionary::setAt() and KdDbBlockTableRecord::appendEntity().
  KdStatus adoptObject(KdDbObject& object, dxf::RecordId dictionary);
  KdStatus adoptEntity(KdDbEntity& entity, dxf::RecordId block);
  /// A dictionary names this object (or kNoRecord) no longer. A style that nobody needs then is dropped at the next flush().
  void noteUnnamed(dxf::RecordId record) { m_unnamed.push_back(record); }

  const KdDbObject* loaded(dxf::RecordId record) const;
  KdDbObject& objectOf(dxf::RecordId record);
  std::unique_ptr<KdDbObject> makeObject(dxf::RecordId record) const;
  dxf::RecordId insert(dxf::RecordId previous, std::string bytes);
  void adopt(KdDbObject& object, dxf::RecordId record);
  void write(dxf::RecordId record);
  void dropUnnamedStyles();
  bool isStyleNeeded(dxf::RecordId style) const;
  void exchange(dxf::RecordId record, dxf::RecordState& state);
  /// What was changed for a while and changed back, since the file or the step began, leaves no trace, whatever its text.
  void forgetNeedlessChange(dxf::RecordId record);
  dxf::RecordId modelSpace() const;
  dxf::RecordId blockTable() const;
  void forEachEntityOf(Space space, const std::function<void(dxf::RecordId)>& visit) const;

  dxf::DrawingFile m_file;
  std::uint32_t m_serial;
  std::unordered_map<dxf::RecordId, std::unique_ptr<KdDbObject>> m_objects;
  std::vector<dxf::RecordId> m_changes;
  std::vector<dxf::Finding> m_findings;
  std::set<dxf::RecordId> m_lockedEntities;  // that were refused for write
  std::vector<dxf::RecordId> m_open;         // in the order of opening
  std::array<dxf::RecordId, 8> m_lastClosed;
  std::size_t m_newestClosed = 0;
  std::vector<dxf::RecordId> m_dirty;    // objects that are newer than their records
  std::vector<dxf::RecordId> m_unnamed;  // objects that a dictionary named until now
  std::unique_ptr<Structure> m_structure;
  mutable std::shared_ptr<const MlineIndex> m_mlines;  // built on first need
  std::unique_ptr<RecentMlines> m_recentMlines;
  std::unique_ptr<UndoLog> m_undo;
};

}  // namespace torva::db
