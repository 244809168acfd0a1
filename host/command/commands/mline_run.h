#pragma once

#include <vector>

#include "db/database.h"

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

  const KdGePoint3d& lastPoint() const { return m_path.back(); }
  bool canClose() const;
  Step append(KdGePoint3d point);
  void undo();
  Step close();

 private:
  Step begin();
  Result<dxf::RecordId> currentStyle();
  Step refuse(const wchar_t* reason);
  Step fail();

  Editor& m_editor;
  std::vector<KdGePoint3d> m_path;
  KdDbObjectId m_mline;  // null as long as there is no segment
};

}  // namespace torva::command
