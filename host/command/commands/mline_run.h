#pragma once

#include <memory>
#include <vector>

#include "db/database.h"
#include "draw/display_list.h"

#include <kdrx/db_mline.h>
#include <kdrx/ge.h>

namespace torva::command {

class Editor;

/// The multiline that a run of MLINE draws: its path so far, and the entity, which is in the drawing from the second point
/// on. Points are in user coordinates; the path stays at the height of its first point.
class MlineRun {
 public:
  MlineRun(Editor& editor, const KdGePoint3d& start);

  /// What a step did. Refusals say why to the user and change nothing.
  enum class Step { taken, refused, failed };

  /// The last segments as they would be with one more point; empty when they cannot be.
  draw::DisplayList preview(const KdGePoint3d& point) const;

  const KdGePoint3d& lastPoint() const { return m_path.back(); }
  bool canClose() const;
  Step append(KdGePoint3d point);
  void undo();
  Step close();

 private:
  KdGePoint3d onPathLevel(const KdGePoint3d& point) const { return {point.x, point.y, m_path.front().z}; }
  bool runsBackAt(const KdGePoint3d& point) const;
  Step begin();
  /// A multiline with the current settings along points, in no drawing; null when they do not make one.
  std::unique_ptr<KdDbMline> make(dxf::RecordId style, const std::vector<KdGePoint3d>& path) const;
  /// The style of new multilines, made where the drawing has none.
  Result<dxf::RecordId> currentStyle();
  Step refuse(const wchar_t* reason);
  Step fail();

  Editor& m_editor;
  std::vector<KdGePoint3d> m_path;
  KdDbObjectId m_mline;  // null as long as there is no segment
};

}  // namespace torva::command
