#include "mledit/MlineEdit.h"
#include "mledit/MlineTool.h"

namespace {

constexpr unsigned kUndoPrompt = 4010, kFirstPrompt = 4011, kSecondPrompt = 4012;

}  // namespace

int CMlineEdit::cmd_mledit_CutSingle(KdModuleHandle module) {
  return runTool(
      module, {L"-MLEDIT CS", kUndoPrompt, kFirstPrompt, kSecondPrompt, &CMlineEdit::isPickedAgain, &CMlineEdit::cutSingle});
}

int CMlineEdit::cmd_mledit_CutAll(KdModuleHandle module) {
  return runTool(module,
                 {L"-MLEDIT CA", kUndoPrompt, kFirstPrompt, kSecondPrompt, &CMlineEdit::isPickedAgain, &CMlineEdit::cutAll});
}

bool CMlineEdit::isPickedAgain() {
  return isSameName(pickName, segFirst.name);
}

void CMlineEdit::cutSingle() {
  const bool isOnSameElement = segSecond.element == segFirst.element;
  if (isOnSameElement || mappingToSpecifyMongline(&segSecond, segFirst.element)) cutBetweenPicks();
}

void CMlineEdit::cutAll() {
  for (int element = 0; element < segFirst.numElements; ++element) {
    const bool isFirstMapped = mappingToSpecifyMongline(&segFirst, element);
    if (isFirstMapped && mappingToSpecifyMongline(&segSecond, element)) cutBetweenPicks();
  }
}

void CMlineEdit::cutBetweenPicks() {
  Cut_Mongline(&segFirst, segFirst.origElement, segFirst.origPoint, segFirst.origSegment, segSecond.origPoint,
               segSecond.origSegment);
}
