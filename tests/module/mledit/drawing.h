#pragma once

#include <sstream>
#include <string>

#include "command/editor.h"
#include "command/input_source.h"
#include "module/mline_sketch.h"

/// A command line with a new drawing, seen from above: 100 drawing units high on 1000 pixels, pick box 4 pixels. The pick
/// tolerance is then 0.4 x sqrt(2) = 0.5657 drawing units.
class Drawing {
 public:
  Drawing()
      : m_editor(
            m_commands, [](std::wstring_view) {}, [this](const std::string& line) { m_faults += line + '\n'; }) {
    m_editor.view().set({0, 0, 0}, 100);
    static_cast<void>(m_editor.variables().set(L"PICKBOX", 4));
  }

  torva::command::Editor& editor() { return m_editor; }
  torva::command::CommandStack& commands() { return m_commands; }
  const std::string& faults() const { return m_faults; }

  /// Adds a record to model space.
  torva::dxf::Handle add(const char* type, const char* subclass) {
    torva::db::Database& database = m_editor.database();
    torva::dxf::RecordBuilder record(database.file());
    const torva::dxf::Handle handle = database.file().newHandle();
    record.name(0, type);
    record.handle(5, handle);
    record.handle(330, database.file().handle(database.recordOf(database.modelSpaceId())));
    record.name(100, "AcDbEntity");
    record.name(8, "0");
    record.name(100, subclass);
    database.appendToModelSpace(record.take());
    return handle;
  }

  torva::dxf::Handle addMline(const MlineSketch& sketch) {
    const torva::dxf::Handle handle = add("MLINE", "AcDbMline");
    edit(handle, [&](KdDbMline& mline) { draw(mline, sketch); });
    return handle;
  }

  KdDbObjectId idOf(torva::dxf::Handle handle) { return m_editor.database().idOfHandle(handle); }

  template <class Edit>
  void edit(torva::dxf::Handle handle, Edit change) {
    KdDbMline* mline = nullptr;
    ASSERT_EQ(kddbOpenObject(mline, idOf(handle), KdOpenMode::forWrite), KdStatus::ok);
    change(*mline);
    mline->close();
  }

  /// The element lists of a multiline, element by element.
  std::vector<ElementLists> listsOf(torva::dxf::Handle handle) {
    std::vector<ElementLists> lists;
    KdDbMline* mline = nullptr;
    if (kddbOpenObject(mline, idOf(handle), KdOpenMode::forRead) != KdStatus::ok) return lists;
    int elements = 0;
    GetSegmentsSize(mline, &elements);
    for (int e = 0; e < elements; ++e) lists.push_back(::listsOf(*mline, e));
    mline->close();
    return lists;
  }

  std::size_t openCount() const { return const_cast<Drawing*>(this)->m_editor.database().openObjects().size(); }

  void run(const std::string& script) {
    const auto source = torva::command::ScriptSource::fromText(script, "test");
    m_editor.run(*source, torva::command::OnFault::goOn);
  }

  /// A pick of an entity by handle, as a script writes it.
  static std::string pick(torva::dxf::Handle handle, double x, double y) {
    std::ostringstream text;
    text.precision(17);
    text << '#' << std::uppercase << std::hex << handle << ':' << x << ',' << y << '\n';
    return text.str();
  }

 private:
  std::string m_faults;
  torva::command::CommandStack m_commands;
  torva::command::Editor m_editor;
};
