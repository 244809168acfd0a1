#include "command/commands/line_command.h"

#include <vector>

#include "command/editor.h"
#include "command/variable_access.h"
#include "db/new_entity.h"

namespace torva::command {

namespace {

/// The lines of one run of the command, with the points between them in user coordinates.
class LineRun {
 public:
  LineRun(Editor& editor, const KdGePoint3d& start) : m_editor(editor), m_points{start} {}

  void ask() {
    KdGePoint3d point;
    for (;;) {
      const bool canClose = m_lines.size() > 1;
      if (m_editor.initGet(kKdInitGetNone, canClose ? L"Close Undo" : L"Undo") != kKdInputNormal) return;
      const std::wstring prompt = canClose ? L"Specify next point or [Close/Undo]: " : L"Specify next point or [Undo]: ";
      const int status = m_editor.getPoint(&m_points.back(), prompt, point);
      if (status == kKdInputNormal) {
        if (!drawTo(point)) return;
      } else if (status != kKdInputKeyword) {
        return;
      } else if (m_editor.lastKeyword() == L"Undo") {
        undo();
      } else {
        drawTo(m_points.front());
        return;
      }
    }
  }

 private:
  /// False when the drawing has no place for lines.
  bool drawTo(const KdGePoint3d& point) {
    if (point.isEqualTo(m_points.back())) {
      m_editor.print(L"The last point again: nothing is drawn.");
      return true;
    }
    db::Database& drawing = m_editor.database();
    db::NewEntity line(drawing, drawing.recordOf(drawing.modelSpaceId()), "LINE",
                       db::currentProperties(m_editor.variables()));
    line.beginPart("AcDbLine");
    line.point(10, m_editor.toWorld(m_points.back()));
    line.point(11, m_editor.toWorld(point));
    const auto record = line.append();
    if (!record) {
      m_editor.report(record.error(), Fault::script);
      return false;
    }
    m_lines.push_back(*record);
    m_points.push_back(point);
    return true;
  }

  void undo() {
    if (m_lines.empty()) return m_editor.print(L"All segments are undone already.");
    m_editor.database().setErased(m_lines.back(), true);
    m_lines.pop_back();
    m_points.pop_back();
  }

  Editor& m_editor;
  std::vector<KdGePoint3d> m_points;
  std::vector<dxf::RecordId> m_lines;
};

}  // namespace

void lineCommand(Editor& editor) {
  KdGePoint3d start = variableOr(editor.variables(), L"LASTPOINT", KdGePoint3d());
  const int status = editor.getPoint(nullptr, L"Specify first point: ", start);
  if (status == kKdInputNormal || status == kKdInputNone) LineRun(editor, start).ask();
}

}  // namespace torva::command
