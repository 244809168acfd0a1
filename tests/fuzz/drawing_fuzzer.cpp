// Opens what it is given as a drawing, walks it, edits it, and holds what came out against what must hold for any input.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "dxf/drawing_file.h"

namespace {

using namespace torva::dxf;

void require(bool isTrue, const char* rule) {
  if (isTrue) return;
  std::fprintf(stderr, "broken rule: %s\n", rule);
  std::abort();
}

/// Whether a value holds what begins an escape or is written as one; such texts need not come back as they were.
bool hasEscapes(std::string_view value) {
  return value.find_first_of("\\^") != std::string_view::npos || value.find('\0') != std::string_view::npos;
}

/// Reads all that can be read of a record, and holds the index against the groups.
void walkRecord(const DrawingFile& drawing, RecordId id) {
  const std::string_view bytes = drawing.bytes(id);
  std::string copied;
  bool isFirst = true;
  for (const Group& group : drawing.groups(id)) {
    copied.append(group.source);
    const std::wstring text = drawing.text(group);
    if (!hasEscapes(group.value)) require(drawing.decode(drawing.encode(text)) == text, "a text is read as it was written");
    static_cast<void>(group.real());
    static_cast<void>(group.integer());
    static_cast<void>(group.handle());
    const bool isIndexed = drawing.type(id) != RecordType::none && drawing.type(id) != RecordType::eof;
    if (isIndexed) require((group.code == 0) == isFirst, "a record has one group 0, its first");
    isFirst = false;
  }
  require(bytes.starts_with(copied), "the groups are the record's bytes");
  const Handle handle = drawing.handle(id);
  if (handle != 0) require(drawing.handle(drawing.find(handle)) == handle, "a record is found by its handle");
  static_cast<void>(drawing.typeName(id));
}

void walk(const DrawingFile& drawing, std::string_view input) {
  std::string all;
  for (RecordId id = 0; id < drawing.recordCount(); ++id) {
    all.append(drawing.bytes(id));
    walkRecord(drawing, id);
  }
  require(all == input, "the records are the whole drawing");
  require(drawing.toBytes() == input, "an unedited drawing is saved byte for byte");
  if (drawing.recordCount() != 0) static_cast<void>(drawing.place(drawing.recordCount() - 1));
}

void edit(DrawingFile& drawing, std::string_view input) {
  const RecordId victim = drawing.recordCount() / 2;
  RecordBuilder builder(drawing);
  builder.name(0, "LINE");
  builder.handle(5, drawing.newHandle());
  builder.real(10, 1.0 / 3);
  builder.integer(70, -7);
  const std::string line = builder.take();
  const RecordId inserted = drawing.insertAfter(victim, line);
  require(drawing.next(victim) == inserted, "a new record follows its predecessor");
  require(drawing.toBytes().find(line) != std::string::npos, "a new record is saved");
  drawing.setErased(victim, true);
  drawing.setErased(victim, false);
  const RecordState former = drawing.state(victim);
  drawing.setBytes(victim, line);
  drawing.setState(victim, former);
  drawing.setErased(inserted, true);
  require(!drawing.isModified(), "edits that were taken back leave nothing");
  require(drawing.toBytes() == input, "edits that were taken back are not saved");
  drawing.setErased(inserted, false);
  builder.handle(5, 0xABC);
  drawing.setHeaderVariable("$HANDSEED", builder.take());

  std::vector<Finding> findings;
  const std::string edited = drawing.toBytes();
  const auto again = DrawingFile::fromBytes(edited, "edited", DamagePolicy::recover, findings);
  require(again.has_value(), "what was written can be read");
  require(again->toBytes() == edited, "what was written is read byte for byte");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  for (const DamagePolicy policy : {DamagePolicy::refuse, DamagePolicy::recover}) {
    std::vector<Finding> findings;
    auto drawing = DrawingFile::fromBytes(input, "input", policy, findings);
    if (!drawing) {
      require(!drawing.error().text.empty(), "a refusal says why");
      continue;
    }
    walk(*drawing, input);
    edit(*drawing, input);
  }
  return 0;
}
