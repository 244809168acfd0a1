#include "entry/tool_dispatch.h"

#include <iterator>

#include "mledit/MlineEdit.h"

#include <kdrx/text.h>

namespace {

struct Tool {
  const wchar_t* keyword;
  int (CMlineEdit::*operation)(KdModuleHandle resources);
};

/// By tool number less one. The tees are "Tree" in the engine's names: that is how the system has always called them.
constexpr Tool kTools[] = {
    {L"CC", &CMlineEdit::cmd_mledit_ClosedCross},  {L"OC", &CMlineEdit::cmd_mledit_OpenCross},
    {L"MC", &CMlineEdit::cmd_mledit_MergedCross},  {L"CT", &CMlineEdit::cmd_mledit_ClosedTree},
    {L"OT", &CMlineEdit::cmd_mledit_OpenTree},     {L"MT", &CMlineEdit::cmd_mledit_MergedTree},
    {L"CJ", &CMlineEdit::cmd_mledit_CornerJoint},  {L"AV", &CMlineEdit::cmd_mledit_AddVertex},
    {L"DV", &CMlineEdit::cmd_mledit_DeleteVertex}, {L"CS", &CMlineEdit::cmd_mledit_CutSingle},
    {L"CA", &CMlineEdit::cmd_mledit_CutAll},       {L"WA", &CMlineEdit::cmd_mledit_WeldAll},
};
constexpr int kToolCount = static_cast<int>(std::size(kTools));

}  // namespace

int toolOfKeyword(const wchar_t* keyword) {
  for (int i = 0; i < kToolCount; ++i) {
    if (kdutEqualsIgnoringCase(keyword, kTools[i].keyword)) return i + 1;
  }
  return 0;
}

void mlineEditOperation(int tool, KdModuleHandle resources) {
  CMlineEdit engine;
  if (tool < 1 || tool > kToolCount) return;
  (engine.*kTools[tool - 1].operation)(resources);
}
