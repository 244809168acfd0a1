#include "dxf/drawing_file.h"

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <utility>

#include "base/text.h"
#include "dxf/file_writer.h"
#include "dxf/reader.h"

namespace torva::dxf {
namespace {

constexpr Handle kHighestSeed = Handle{1} << 62;  // beyond it a seed is damage, and handles could run out

/// Whether a record can follow; the last line of a drawing may have no end.
bool canBeFollowed(std::string_view bytes) {
  return bytes.ends_with('\n') || bytes.ends_with('\r') || bytes == kByteOrderMark;
}

/// Where in `bytes` a place in memory is; nothing when it is elsewhere.
std::optional<std::size_t> offsetIn(std::string_view bytes, const char* place) {
  const auto isBefore = std::less<const char*>();
  if (isBefore(place, bytes.data()) || !isBefore(place, bytes.data() + bytes.size())) return std::nullopt;
  return static_cast<std::size_t>(place - bytes.data());
}

}  // namespace

class DrawingFile::Imp {
 public:
  explicit Imp(OpenedDrawing drawing)
      : m_drawing(std::move(drawing)),
        m_edits(m_drawing.outline.index.size()),
        m_lineEnd(firstLineEnd(m_drawing.content.bytes())),
        m_identity(m_drawing.content.identity()) {
    m_nextHandle = m_drawing.handles.highest() + 1;
    if (m_drawing.handseed <= kHighestSeed) m_nextHandle = std::max(m_nextHandle, m_drawing.handseed);
  }

  std::string_view bytes(RecordId id) const {
    if (const RecordState* state = m_edits.changed(id); state != nullptr && state->bytes) return state->bytes->bytes();
    return m_edits.isInserted(id) ? std::string_view(m_edits.inserted(id).bytes) : m_drawing.bytes(id);
  }

  std::size_t placeAt(std::size_t offset) const {
    if (m_drawing.form == Form::binary) return offset;
    return LineCounter(m_drawing.content.bytes(), m_drawing.lineEnds).lineAt(offset);
  }
  Groups groups(std::string_view bytes) const { return Groups(bytes, m_drawing.form, m_drawing.codes, m_drawing.lineEnds); }

  /// All that is to be saved, in order. Runs of untouched records are one piece.
  std::vector<std::string_view> pieces() const;

  RecordId headerRecord() const {
    const Section* header = m_drawing.section("HEADER");
    return header == nullptr ? kNoRecord : header->first;
  }

  RecordState state(RecordId id) const {
    const RecordState* state = m_edits.changed(id);
    return state == nullptr ? RecordState{} : *state;
  }
  bool isInState(RecordId id, const RecordState& state) const {
    const RecordState* now = m_edits.changed(id);
    return now == nullptr ? !state.isErased && !state.bytes : now->isErased == state.isErased && now->bytes == state.bytes;
  }
  void setState(RecordId id, RecordState state) {
    if (m_wasSaved && !m_savedStates.contains(id)) m_savedStates.emplace(id, this->state(id));
    m_edits.setState(id, std::move(state));
  }
  /// Notes that the file last saved does not have a record.
  void noteInserted(RecordId id) {
    if (m_wasSaved) m_savedStates.emplace(id, RecordState{std::nullopt, true});
  }

  bool isModified() const;
  void noteSaved() {
    m_wasSaved = true;
    m_isOfAnotherFile = false;
    m_savedStates.clear();
  }

  /// Lets $HANDSEED follow the handles given out. Those of records that have gone again are free once more for whoever opens
  /// the file next.
  void updateHandseed(DrawingFile& file);

  OpenedDrawing m_drawing;
  RecordEdits m_edits;
  const std::string m_lineEnd;
  std::deque<std::string> m_typeNames;  // of inserted records
  std::string m_path;
  FileIdentity m_identity;
  Handle m_nextHandle = 1;
  bool m_hasGivenHandles = false;
  bool m_isOfAnotherFile = false;
  bool m_wasSaved = false;
  std::unordered_map<RecordId, RecordState> m_savedStates;  // as last saved, of the records touched since then
};

std::vector<std::string_view> DrawingFile::Imp::pieces() const {
  const std::string_view content = m_drawing.content.bytes();
  std::vector<std::string_view> pieces;
  std::size_t runBegin = 0;
  const auto add = [&](std::string_view piece) {
    std::string_view* const last = pieces.empty() ? nullptr : &pieces.back();
    if (last == nullptr || last->data() + last->size() != piece.data()) return pieces.push_back(piece);
    *last = {last->data(), last->size() + piece.size()};
  };
  const auto endRunAt = [&](std::size_t end) {
    if (end > runBegin) add(content.substr(runBegin, end - runBegin));
    runBegin = std::max(runBegin, end);
  };
  const auto beginRecord = [&] {
    if (m_drawing.form == Form::text && !pieces.empty() && !canBeFollowed(pieces.back())) add(m_lineEnd);
  };
  const auto put = [&](RecordId id, const RecordState* state) {
    beginRecord();
    if (state == nullptr || !state->bytes) return add(bytes(id));
    state->bytes->forEachPiece(add);
  };
  const RecordIndex& index = m_drawing.outline.index;
  for (const RecordId id : m_edits.touchedOriginals()) {
    const std::size_t end = id + 1 < index.size() ? index.offset(id + 1) : content.size();
    if (const RecordState* state = m_edits.changed(id)) {
      endRunAt(index.offset(id));
      runBegin = end;
      if (!state->isErased) put(id, state);
    }
    for (RecordId added = m_edits.firstBehind(id); added != kNoRecord; added = m_edits.inserted(added).next) {
      const RecordState* state = m_edits.changed(added);
      if (state != nullptr && state->isErased) continue;
      // Behind a code that the file ends with, a new record would become its value.
      endRunAt(std::min(end, m_drawing.incompleteGroup.value_or(end)));
      runBegin = end;
      put(added, state);
    }
  }
  endRunAt(content.size());
  return pieces;
}

void DrawingFile::Imp::updateHandseed(DrawingFile& file) {
  const bool hasHandles = file.version() >= Version::r13 || !file.headerVariable("$HANDSEED").empty();
  if (!m_hasGivenHandles || !m_edits.hasInserted() || !hasHandles) return;
  const Handle highest = std::max(m_drawing.handles.highest(), m_edits.highestInserted());
  const std::vector<Group> present = file.headerVariable("$HANDSEED");
  const Handle seed = present.empty() ? 0 : present.front().handle().value_or(0);
  if (seed > highest && seed <= kHighestSeed) return;
  RecordBuilder builder(file);
  builder.handle(5, highest + 1);
  file.setHeaderVariable("$HANDSEED", builder.take());
}

bool DrawingFile::Imp::isModified() const {
  if (m_isOfAnotherFile || !m_wasSaved) return m_isOfAnotherFile || m_edits.isAnyChanged();
  return std::ranges::any_of(m_savedStates, [this](const auto& saved) {
    const auto& [id, state] = saved;
    const RecordState* now = m_edits.changed(id);
    const bool isErasedStill = state.isErased && now != nullptr && now->isErased;
    return !isErasedStill && !isInState(id, state);
  });
}

class Snapshot::Imp {
 public:
  /// @param pieces those of the content stay where they are, all others are copied
  Imp(FileContent content, const std::vector<std::string_view>& pieces) : m_content(std::move(content)) {
    m_pieces.reserve(pieces.size());
    for (const std::string_view piece : pieces) {
      const bool isOfContent = offsetIn(m_content.bytes(), piece.data()).has_value();
      m_pieces.push_back(isOfContent ? piece : std::string_view(m_copies.emplace_back(piece)));
    }
  }

  const std::vector<std::string_view>& pieces() const { return m_pieces; }

 private:
  FileContent m_content;
  std::deque<std::string> m_copies;
  std::vector<std::string_view> m_pieces;
};

Snapshot::Snapshot(std::unique_ptr<Imp> imp) : m_imp(std::move(imp)) {}
Snapshot::Snapshot(Snapshot&&) noexcept = default;
Snapshot::~Snapshot() = default;

const std::vector<std::string_view>& Snapshot::pieces() const {
  return m_imp->pieces();
}

Result<DrawingFile> DrawingFile::open(const std::string& path, DamagePolicy policy, std::vector<Finding>& findings,
                                      const Progress& progress) {
  constexpr double kReadingShare = 0.5;  // where the file cannot be mapped
  auto content = FileContent::open(path, progress.upTo(kReadingShare));
  if (!content) return tl::unexpected(content.error());
  auto drawing = readDrawing(std::move(*content), path, policy, findings, progress.upTo(1));
  if (!drawing) return tl::unexpected(drawing.error());
  DrawingFile file(std::make_unique<Imp>(std::move(*drawing)));
  file.m_imp->m_path = path;
  return file;
}

Result<DrawingFile> DrawingFile::fromBytes(std::string bytes, const std::string& name, DamagePolicy policy,
                                           std::vector<Finding>& findings) {
  auto drawing = readDrawing(FileContent::fromBytes(std::move(bytes)), name, policy, findings);
  if (!drawing) return tl::unexpected(drawing.error());
  return DrawingFile(std::make_unique<Imp>(std::move(*drawing)));
}

DrawingFile::DrawingFile(std::unique_ptr<Imp> imp) : m_imp(std::move(imp)) {}
DrawingFile::DrawingFile(DrawingFile&&) noexcept = default;
DrawingFile& DrawingFile::operator=(DrawingFile&&) noexcept = default;
DrawingFile::~DrawingFile() = default;

Form DrawingFile::form() const {
  return m_imp->m_drawing.form;
}
BinaryCodes DrawingFile::binaryCodes() const {
  return m_imp->m_drawing.codes;
}
LineEnds DrawingFile::lineEnds() const {
  return m_imp->m_drawing.lineEnds;
}
std::string_view DrawingFile::lineEnd() const {
  return m_imp->m_lineEnd;
}
Version DrawingFile::version() const {
  return m_imp->m_drawing.version;
}
const std::string& DrawingFile::path() const {
  return m_imp->m_path;
}

RecordId DrawingFile::recordCount() const {
  return m_imp->m_edits.recordCount();
}
RecordId DrawingFile::originalCount() const {
  return m_imp->m_edits.originalCount();
}

RecordType DrawingFile::type(RecordId id) const {
  const RecordEdits& edits = m_imp->m_edits;
  return edits.isInserted(id) ? edits.inserted(id).type : m_imp->m_drawing.outline.index.type(id);
}

std::string_view DrawingFile::typeName(RecordId id) const {
  if (type(id) == RecordType::none) return {};
  const Groups all = groups(id);
  const auto first = all.begin();
  return first == all.end() ? std::string_view() : withoutBlanks(first->value);
}

RecordType DrawingFile::typeOf(std::string_view name) const {
  return m_imp->m_drawing.outline.names.find(name);
}

Handle DrawingFile::handle(RecordId id) const {
  const RecordEdits& edits = m_imp->m_edits;
  return edits.isInserted(id) ? edits.inserted(id).handle : m_imp->m_drawing.outline.index.handle(id);
}

bool DrawingFile::isErased(RecordId id) const {
  const RecordState* state = m_imp->m_edits.changed(id);
  return state != nullptr && state->isErased;
}

bool DrawingFile::isChanged(RecordId id) const {
  return m_imp->m_edits.isInserted(id) || m_imp->m_edits.changed(id) != nullptr;
}

std::string_view DrawingFile::bytes(RecordId id) const {
  return m_imp->bytes(id);
}

RecordId DrawingFile::find(Handle handle) const {
  const RecordId original = m_imp->m_drawing.handles.find(m_imp->m_drawing.outline.index, handle);
  return original != kNoRecord ? original : m_imp->m_edits.findInserted(handle);
}

RecordId DrawingFile::next(RecordId id) const {
  return m_imp->m_edits.next(id);
}

std::vector<RecordId> DrawingFile::recordsOf(RecordType wanted) const {
  std::vector<RecordId> records;
  const RecordIndex& index = m_imp->m_drawing.outline.index;
  for (RecordId id = 0; id < index.size(); ++id) {
    if (index.type(id) == wanted) records.push_back(id);
  }
  if (recordCount() == index.size()) return records;
  for (RecordId id = index.size(); id < recordCount(); ++id) {
    if (type(id) == wanted) records.push_back(id);
  }
  std::ranges::sort(records, {}, [this](RecordId id) { return std::pair(anchor(id), id); });
  return records;
}

RecordId DrawingFile::anchor(RecordId id) const {
  const RecordEdits& edits = m_imp->m_edits;
  return edits.isInserted(id) ? edits.inserted(id).anchor : id;
}

RecordId DrawingFile::section(std::string_view name) const {
  const Section* section = m_imp->m_drawing.section(name);
  return section == nullptr ? kNoRecord : section->first;
}

RecordId DrawingFile::sectionEnd(std::string_view name) const {
  const Section* section = m_imp->m_drawing.section(name);
  return section == nullptr ? kNoRecord : section->end;
}

std::size_t DrawingFile::place(RecordId id) const {
  return m_imp->m_edits.isInserted(id) ? 0 : m_imp->placeAt(m_imp->m_drawing.outline.index.offset(id));
}

std::size_t DrawingFile::place(const Group& group) const {
  const auto offset = offsetIn(m_imp->m_drawing.content.bytes(), group.value.data());
  return offset ? m_imp->placeAt(*offset) : 0;
}

std::wstring DrawingFile::text(const Group& group) const {
  return decode(group.value);
}
std::wstring DrawingFile::decode(std::string_view value) const {
  return m_imp->m_drawing.codec.decode(value);
}
std::string DrawingFile::encode(std::wstring_view text) const {
  return m_imp->m_drawing.codec.encode(text);
}

bool DrawingFile::usesHandles() const {
  if (version() >= Version::r13) return true;
  const std::vector<Group> handling = headerVariable("$HANDLING");
  return handling.empty() ? m_imp->m_drawing.handles.highest() != 0 : handling.front().integerOr(0) != 0;
}

Handle DrawingFile::newHandle() {
  m_imp->m_hasGivenHandles = true;
  return m_imp->m_nextHandle++;
}

RecordState DrawingFile::state(RecordId id) const {
  return m_imp->state(id);
}

bool DrawingFile::isInState(RecordId id, const RecordState& state) const {
  return m_imp->isInState(id, state);
}

void DrawingFile::setState(RecordId id, RecordState state) {
  m_imp->setState(id, std::move(state));
}

void DrawingFile::setBytes(RecordId id, RecordText bytes) {
  m_imp->setState(id, {std::move(bytes), isErased(id)});
}

void DrawingFile::setErased(RecordId id, bool isErased) {
  RecordState changed = state(id);
  changed.isErased = isErased;
  m_imp->setState(id, std::move(changed));
}

RecordId DrawingFile::insertAfter(RecordId previous, std::string bytes) {
  InsertedRecord record{.bytes = std::move(bytes)};
  int awaited = kUnreadableCode;
  for (const Group& group : m_imp->groups(record.bytes)) {
    if (group.code == 0 && record.type == RecordType::none) {
      record.type = typeOf(withoutBlanks(group.value));
      if (record.type == RecordType::none) {
        record.type = m_imp->m_drawing.outline.names.intern(m_imp->m_typeNames.emplace_back(withoutBlanks(group.value)));
      }
      awaited = handleCode(record.type);
    } else if (awaited != kUnreadableCode && group.code == awaited) {
      record.handle = group.handle().value_or(0);
      break;
    }
  }
  if (record.handle < kHighestSeed) m_imp->m_nextHandle = std::max(m_imp->m_nextHandle, record.handle + 1);
  const RecordId id = m_imp->m_edits.insertAfter(previous, std::move(record));
  m_imp->noteInserted(id);
  return id;
}

std::vector<Group> DrawingFile::headerVariable(std::string_view name) const {
  std::vector<Group> found;
  const RecordId header = m_imp->headerRecord();
  if (header == kNoRecord) return found;
  bool isInside = false;
  for (const Group& group : groups(header)) {
    if (isInside && group.code == 9) break;
    if (isInside) found.push_back(group);
    isInside = isInside || (group.code == 9 && group.value == name);
  }
  return found;
}

bool DrawingFile::setHeaderVariable(std::string_view name, std::string_view groupBytes) {
  const RecordId header = m_imp->headerRecord();
  if (header == kNoRecord) return false;
  std::string changed;
  bool isInside = false;
  bool isFound = false;
  for (const Group& group : groups(header)) {
    if (isInside && group.code != 9) continue;
    isInside = !isFound && group.code == 9 && group.value == name;
    isFound = isFound || isInside;
    if (isInside && groupBytes.empty()) continue;
    changed.append(group.source);
    if (isInside) changed.append(groupBytes);
  }
  if (!isFound && !groupBytes.empty()) {
    RecordBuilder builder(*this);
    builder.name(9, name);
    changed.append(builder.take()).append(groupBytes);
  }
  if (changed != bytes(header)) setBytes(header, std::move(changed));
  return true;
}

std::string DrawingFile::toBytes() const {
  std::string all;
  for (const std::string_view piece : m_imp->pieces()) all.append(piece);
  return all;
}

bool DrawingFile::isModified() const {
  return m_imp->isModified();
}

bool DrawingFile::isUnchangedOnDisk() const {
  return path().empty() || identityOf(path()) == m_imp->m_identity;
}

FileOrigin DrawingFile::origin() const {
  return {path(), m_imp->m_identity};
}

void DrawingFile::setOrigin(FileOrigin origin) {
  m_imp->m_path = std::move(origin.path);
  m_imp->m_identity = origin.identity;
  m_imp->m_isOfAnotherFile = true;
}

Snapshot DrawingFile::snapshot() {
  const RecordId header = m_imp->headerRecord();
  RecordState former = header == kNoRecord ? RecordState{} : state(header);
  m_imp->updateHandseed(*this);
  Snapshot taken(std::make_unique<Snapshot::Imp>(m_imp->m_drawing.content.shared(), m_imp->pieces()));
  if (header != kNoRecord) setState(header, std::move(former));
  return taken;
}

Result<void> DrawingFile::save(const std::string& path, const SaveOptions& options) {
  const bool isOwnPath = !m_imp->m_path.empty() && resolvedPath(path) == resolvedPath(m_imp->m_path);
  if (isOwnPath && !options.replacesChangedFile) {
    // A file that is gone loses nothing by being written anew.
    const auto onDisk = identityOf(path);
    if (onDisk && *onDisk != m_imp->m_identity) {
      return fail(ErrorCode::fileChangedOnDisk, "another program has changed the file since it was opened", path);
    }
  }
  m_imp->updateHandseed(*this);
  const auto identity = replaceFile(path, m_imp->pieces(), options.keepsBackup ? Backup::keep : Backup::none);
  if (!identity) return tl::unexpected(identity.error());
  m_imp->m_path = path;
  m_imp->m_identity = *identity;
  m_imp->noteSaved();
  return {};
}

}  // namespace torva::dxf
