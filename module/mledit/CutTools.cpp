#include "mledit/MlineEdit.h"
#include "mledit/MlineTool.h"

int CMlineEdit::cmd_mledit_CutSingle(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT CS",
                          .prompts = kStretchPrompts,
                          .acceptsSecond = &CMlineEdit::isPickedAgain,
                          .edit = &CMlineEdit::cutSingle});
}

int CMlineEdit::cmd_mledit_CutAll(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT CA",
                          .prompts = kStretchPrompts,
                          .acceptsSecond = &CMlineEdit::isPickedAgain,
                          .edit = &CMlineEdit::cutAll});
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
