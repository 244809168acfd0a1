#include "dxf/extract.h"

namespace torva::dxf {
namespace {

/// Puts a drawing together record by record.
class Extract {
 public:
  explicit Extract(const DrawingFile& file) : m_file(file), m_builder(file) {
    constexpr RecordId kFirst = 0;  // what stands in front of the first section
    if (file.recordCount() > 0 && file.type(kFirst) == RecordType::none) m_bytes += file.bytes(kFirst);
  }

  void section(std::string_view name, std::span<const RecordId> records) {
    const RecordId mark = m_file.section(name);
    if (mark == kNoRecord) return;
    put(mark);
    for (const RecordId record : records) put(record);
    end("ENDSEC");
  }

  std::string take() {
    end("EOF");
    return std::move(m_bytes);
  }

 private:
  void put(RecordId record) {
    m_bytes += m_file.bytes(record);
    // The last line of a drawing may have no end.
    if (m_file.form() == Form::text && !m_bytes.ends_with(m_file.lineEnd())) m_bytes += m_file.lineEnd();
  }
  void end(std::string_view mark) {
    m_builder.name(0, mark);
    m_bytes += m_builder.take();
  }

  const DrawingFile& m_file;
  RecordBuilder m_builder;
  std::string m_bytes;
};

}  // namespace

std::string extract(const DrawingFile& file, std::span<const RecordId> entities, std::span<const RecordId> objects) {
  Extract drawing(file);
  drawing.section("HEADER", {});
  drawing.section("ENTITIES", entities);
  drawing.section("OBJECTS", objects);
  return drawing.take();
}

}  // namespace torva::dxf
