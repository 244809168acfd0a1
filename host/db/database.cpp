#include "db/database.h"

#include <algorithm>
#include <atomic>

#include "db/dictionary_imp.h"
#include "db/layers.h"
#include "db/mline_imp.h"
#include "db/mline_style_imp.h"
#include "db/object_imp.h"
#include "db/recent_mlines.h"
#include "db/record_groups.h"
#include "db/structure.h"
#include "db/undo_log.h"

namespace torva::db {

namespace {

/// Numbers are never given twice, so that an id of a drawing that was closed is recognised.
std::uint32_t nextSerial() {
  static std::atomic<std::uint32_t> last = 0;
  return ++last;
}

}  // namespace

Result<std::unique_ptr<Database>> Database::open(const std::string& path, dxf::DamagePolicy policy,
                                                 std::vector<dxf::Finding>& findings, const Progress& progress) {
  auto file = dxf::DrawingFile::open(path, policy, findings, progress);
  if (!file) return tl::unexpected(std::move(file.error()));
  return std::unique_ptr<Database>(new Database(std::move(*file)));
}

Result<std::unique_ptr<Database>> Database::fromBytes(std::string bytes, const std::string& name, dxf::DamagePolicy policy,
                                                      std::vector<dxf::Finding>& findings) {
  auto file = dxf::DrawingFile::fromBytes(std::move(bytes), name, policy, findings);
  if (!file) return tl::unexpected(std::move(file.error()));
  return std::unique_ptr<Database>(new Database(std::move(*file)));
}

std::unique_ptr<Database> Database::create() {
  std::vector<dxf::Finding> findings;
  return std::move(fromBytes(dxf::newDrawing(), "", dxf::DamagePolicy::refuse, findings).value());
}

Database::Database(dxf::DrawingFile file)
    : m_file(std::move(file)),
      m_serial(nextSerial()),
      m_structure(std::make_unique<Structure>(m_file)),
      m_recentMlines(std::make_unique<RecentMlines>(m_file)),
      m_undo(std::make_unique<UndoLog>()) {
  m_lastClosed.fill(dxf::kNoRecord);
}

Database::~Database() = default;

KdDbObjectId Database::idOf(dxf::RecordId record) const {
  return record == dxf::kNoRecord ? KdDbObjectId() : KdDbObjectId(std::uint64_t{m_serial} << 32 | (record + 1));
}

dxf::RecordId Database::recordOf(KdDbObjectId id) const {
  const auto number = static_cast<std::uint32_t>(id.word());
  const bool isOwn = id.word() >> 32 == m_serial && number != 0 && number <= m_file.recordCount();
  return isOwn ? number - 1 : dxf::kNoRecord;
}

KdDbObjectId Database::idOfHandle(dxf::Handle handle) const {
  return handle == 0 ? KdDbObjectId() : idOf(m_file.find(handle));
}

// --- objects ---

KdStatus Database::openObject(KdDbObject*& object, KdDbObjectId id, KdOpenMode mode, bool openErased) {
  if (id.isNull()) return KdStatus::nullObjectId;
  const dxf::RecordId record = recordOf(id);
  if (record == dxf::kNoRecord) return KdStatus::unknownObjectId;
  if (m_file.isErased(record) && !openErased) return KdStatus::wasErased;
  KdDbObject& found = objectOf(record);
  const KdStatus status = KdDbSystemInternals::getImpObject(&found)->open(mode);
  if (status == KdStatus::ok) object = &found;
  return status;
}

KdStatus Database::openUnlessLocked(KdDbObject*& object, KdDbObjectId id, KdOpenMode mode, bool openErased) {
  const dxf::RecordId record = recordOf(id);
  const bool isThere = record != dxf::kNoRecord && (openErased || !m_file.isErased(record));
  const bool isChecked = mode == KdOpenMode::forWrite && isThere && objectOf(record).isKindOf(KdDbEntity::desc());
  if (!isChecked || !isOnLockedLayer(*this, record)) return openObject(object, id, mode, openErased);
  m_lockedEntities.insert(record);
  return KdStatus::onLockedLayer;
}

const KdDbObject* Database::loaded(dxf::RecordId record) const {
  const auto found = m_objects.find(record);
  return found == m_objects.end() ? nullptr : found->second.get();
}

KdDbObject& Database::objectOf(dxf::RecordId record) {
  std::unique_ptr<KdDbObject>& object = m_objects[record];
  if (!object) {
    object = makeObject(record);
    KdDbObjectImp& imp = *KdDbSystemInternals::getImpObject(object.get());
    imp.attach(*this, record);
    imp.read();
  }
  return *object;
}

std::vector<OpenObject> Database::openObjects() const {
  std::vector<OpenObject> result;
  for (const dxf::RecordId record : m_open) {
    const KdDbObjectImp& imp = *KdDbSystemInternals::getImpObject(loaded(record));
    result.push_back({idOf(record), imp.readers(), imp.hasWriter()});
  }
  return result;
}

void Database::closeAll() {
  while (!m_open.empty()) KdDbSystemInternals::getImpObject(loaded(m_open.back()))->close();
}

void Database::noteClosed(dxf::RecordId record) {
  // What was opened last is closed first as a rule.
  const auto found = std::find(m_open.rbegin(), m_open.rend(), record);
  m_open.erase(std::next(found).base());
  letGoBeside(record);
}

void Database::letGoBeside(dxf::RecordId record) {
  if (m_lastClosed[m_newestClosed] == record) return;
  m_newestClosed = (m_newestClosed + 1) % m_lastClosed.size();
  const dxf::RecordId former = std::exchange(m_lastClosed[m_newestClosed], record);
  if (former == dxf::kNoRecord || std::ranges::find(m_lastClosed, former) != m_lastClosed.end()) return;
  KdDbObjectImp& imp = *KdDbSystemInternals::getImpObject(loaded(former));
  if (!imp.isOpen() && !imp.isDirty()) imp.letGo();
}

void Database::noteDirty(dxf::RecordId record) {
  m_undo->keep(m_file, record);
  m_dirty.push_back(record);
}

void Database::noteChanged(dxf::RecordId record) {
  m_structure->forget(record);
  logChange(record);
}

void Database::logChange(dxf::RecordId record) {
  if (m_file.type(record) == dxf::RecordType::mline) m_mlines.reset();
  m_changes.push_back(record);
}

void Database::setErased(dxf::RecordId record, bool isErased) {
  const auto change = [&](dxf::RecordId part) {
    m_undo->keep(m_file, part);
    m_file.setErased(part, isErased);
  };
  if (m_file.isErased(record) == isErased) return;
  change(record);
  for (dxf::RecordId part = m_file.next(record); part != dxf::kNoRecord; part = m_file.next(part)) {
    if (!isPartOfEntityBefore(m_file.type(part))) break;
    change(part);
  }
  noteChanged(record);
}

const MlineData& Database::mline(dxf::RecordId record) const {
  const MlineData* const known = knownMline(record);
  return known ? *known : m_recentMlines->source(record)->data;
}

const MlineData* Database::knownMline(dxf::RecordId record) const {
  if (const KdDbObject* object = loaded(record)) {
    return &static_cast<const MlineImp*>(KdDbSystemInternals::getImpObject(object))->data();
  }
  return m_recentMlines->known(record);
}

MlineStyleData Database::mlineStyle(dxf::RecordId record) const {
  if (const KdDbObject* object = loaded(record)) {
    return static_cast<const MlineStyleImp*>(KdDbSystemInternals::getImpObject(object))->data();
  }
  return readMlineStyle(m_file, m_file.groups(record));
}

std::shared_ptr<const MlineIndex> Database::mlines() const {
  if (!m_mlines) m_mlines = std::make_shared<const MlineIndex>(*this);
  return m_mlines;
}

// --- changes ---

void Database::flush() {
  for (const dxf::RecordId record : std::exchange(m_dirty, {})) write(record);
  dropUnnamedStyles();
}

void Database::dropUnnamedStyles() {
  for (const dxf::RecordId record : std::exchange(m_unnamed, {})) {
    const bool isStyle = record != dxf::kNoRecord && m_file.type(record) == dxf::RecordType::mlineStyle;
    if (isStyle && !isStyleNeeded(record)) setErased(record, true);
  }
}

bool Database::isStyleNeeded(dxf::RecordId style) const {
  const dxf::Handle handle = m_file.handle(style);
  std::vector<DictionaryEntry> storage;
  const dxf::RecordId owner = m_file.find(ownerHandle(m_file.groups(style)));
  if (owner == dxf::kNoRecord) return true;
  const bool isNamed =
      std::ranges::any_of(dictionary(owner, storage), [&](const auto& entry) { return entry.handle == handle; });
  return isNamed || std::ranges::any_of(mlines()->all(), [&](const auto& entry) { return entry.styleHandle == handle; });
}

void Database::write(dxf::RecordId record) {
  // Written over what the file has, a value that has come back to what it was has its former text again: an edit that was
  // taken back by hand leaves no trace.
  if (record < m_file.originalCount() && m_file.isChanged(record)) {
    m_file.setState(record, {std::nullopt, m_file.isErased(record)});
  }
  dxf::RecordText bytes = KdDbSystemInternals::getImpObject(loaded(record))->takeBytes();
  if (!bytes.says(m_file.bytes(record))) m_file.setBytes(record, std::move(bytes));
}

void Database::beginUndoStep(std::wstring name) {
  if (m_undo->isRecording()) return;
  flush();
  m_undo->begin(std::move(name));
}

void Database::endUndoStep() {
  flush();
  m_undo->end(m_file);
}

void Database::nextUndoStep() {
  if (!m_undo->isRecording()) return;
  std::wstring name = m_undo->name();
  endUndoStep();
  beginUndoStep(std::move(name));
}

std::optional<std::wstring> Database::undo() {
  endUndoStep();
  UndoLog::Step* step = m_undo->takeBack();
  if (!step) return std::nullopt;
  for (UndoLog::Entry& entry : step->entries) exchange(entry.record, entry.state);
  return step->name;
}

std::optional<std::wstring> Database::redo() {
  endUndoStep();
  UndoLog::Step* step = m_undo->bringAgain();
  if (!step) return std::nullopt;
  for (UndoLog::Entry& entry : step->entries) exchange(entry.record, entry.state);
  return step->name;
}

void Database::exchange(dxf::RecordId record, dxf::RecordState& state) {
  dxf::RecordState now = m_file.state(record);
  m_file.setState(record, std::exchange(state, std::move(now)));
  if (const KdDbObject* object = loaded(record)) KdDbSystemInternals::getImpObject(object)->read();
  noteChanged(record);
}

dxf::RecordId Database::insert(dxf::RecordId previous, std::string bytes) {
  const dxf::RecordId record = m_file.insertAfter(previous, std::move(bytes));
  m_undo->keepNew(m_file, record);
  m_structure->add(record);
  logChange(record);
  return record;
}

void Database::adopt(KdDbObject& object, dxf::RecordId record) {
  KdDbObjectImp& imp = *KdDbSystemInternals::getImpObject(&object);
  m_objects[record].reset(&object);
  imp.attach(*this, record);
  imp.enter();
  // The record holds the object's content from the start; nothing else may be seen in it.
  m_file.setBytes(record, imp.takeBytes());
  (void)imp.open(KdOpenMode::forWrite);
}

void Database::setBytes(dxf::RecordId record, std::string bytes) {
  m_undo->keep(m_file, record);
  m_file.setBytes(record, std::move(bytes));
  forgetNeedlessChange(record);
  if (const KdDbObject* object = loaded(record)) KdDbSystemInternals::getImpObject(object)->read();
  noteChanged(record);
}

bool Database::setHeaderVariable(std::string_view name, std::string_view groups) {
  const dxf::RecordId header = m_file.section("HEADER");
  if (header == dxf::kNoRecord) return false;
  m_undo->keep(m_file, header);
  if (!m_file.setHeaderVariable(name, groups)) return false;
  forgetNeedlessChange(header);
  m_changes.push_back(header);
  return true;
}

void Database::forgetNeedlessChange(dxf::RecordId record) {
  const dxf::RecordState now = m_file.state(record);
  if (!now.bytes) return;
  std::vector<dxf::RecordState> formers = {{std::nullopt, now.isErased}};
  if (const dxf::RecordState* kept = m_undo->kept(record); kept && kept->bytes) {
    formers.push_back({kept->bytes, now.isErased});
  }
  for (dxf::RecordState& former : formers) {
    m_file.setState(record, std::move(former));
    if (saySame(m_file.groups(record), m_file.groupsOf(now.bytes->bytes()))) return;
  }
  m_file.setState(record, now);
}

Result<void> Database::save(const std::string& path, const dxf::SaveOptions& options) {
  flush();
  return m_file.save(path, options);
}

}  // namespace torva::db
