#include "mledit/MlineEdit.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

#include "mledit/HostVariables.h"
#include "mledit/MlineTool.h"
#include "mledit/PointTable.h"

#include <kdrx/ed.h>
#include <kdrx/ut.h>

namespace {

constexpr unsigned kUndoKeywords = 4002;
constexpr std::size_t kParamListReserve = 128;

}  // namespace

CMlineEdit::CMlineEdit()
    : retCode(kKdInputNormal),
      pickPoint{0, 0, 0},
      spaceBetween(0),
      pickName{0, 0},
      spareIndex(-1),
      ptCrossing(nullptr),
      ptCrossingCount(0) {
  promptBuf[0] = 0;
  paramList.reserve(kParamListReserve);
}

CMlineEdit::~CMlineEdit() {
  freePointTable(&segFirst.ptList, &segFirst.ptListCount);
  freePointTable(&segSecond.ptList, &segSecond.ptListCount);
  freePointTable(&ptCrossing, &ptCrossingCount);
}

bool CMlineEdit::MlineCopy(KdDbMline* dst, KdDbMline* src) {
  return dst && src && dst->copyFrom(src) == KdStatus::ok;
}

bool CMlineEdit::MlineCopy(long* name, KdDbMline* copy) {
  if (!copy) return false;
  KdDbMline* mline = openMline(name, KdOpenMode::forWrite);
  if (!mline) return false;
  const bool isCopied = MlineCopy(mline, copy);
  mline->close();
  return isCopied;
}

int CMlineEdit::runTool(KdModuleHandle module, const CMlineTool& tool) {
  m_texts = module;
  kdedSetTool(tool.command);
  const auto resolve = tool.resolve ? tool.resolve : &CMlineEdit::mlineEditInitialize;
  while (pickFirst(tool)) {
    if (tool.acceptsFirst ? !(this->*tool.acceptsFirst)() : !needBreak(pickName)) continue;
    (this->*resolve)(&segFirst, pickName, nullptr);
    if (tool.acceptsSecond) {
      if (!pickSecond(tool)) break;
      (this->*resolve)(&segSecond, pickName, &segFirst);
    }
    const CMlineOpenObject open(&segFirst, &segSecond);
    renewUndoCopies(tool);
    if (undoFirst) (this->*tool.edit)();
    kdedRedraw(nullptr, kKdRedrawUnhighlight);
  }
  closePicked();
  return retCode;
}

// Asks for the first multiline, doing what is said instead of it. False when the user ends the tool.
bool CMlineEdit::pickFirst(const CMlineTool& tool) {
  const int capacity = static_cast<int>(std::size(promptBuf));
  const bool hasUndo = undoFirst != nullptr;
  if (hasUndo) LoadStringW(m_texts, kUndoKeywords, promptBuf, capacity);
  static_cast<void>(kdedInitGet(kKdInitGetNone, hasUndo ? promptBuf : nullptr));
  LoadStringW(m_texts, hasUndo ? tool.prompts.undo : tool.prompts.first, promptBuf, capacity);
  if (!tool.acceptsSecond) kdedOfferPreview(nullptr, nullptr);
  retCode = kdedEntSel(promptBuf, pickName, pickPoint);
  if (retCode == kKdInputCancel || retCode == kKdInputNone) return false;
  if (retCode == kKdInputError) return integerVariable(L"ERRNO") != kKdErrnoEmptyAnswer;
  const bool isKeyword = retCode == kKdInputKeyword && kdedGetInput(promptBuf) == kKdInputNormal;
  if (isKeyword && wcscasecmp(promptBuf, L"UNDO") == 0) undoLastEdit();
  return true;
}

// Asks for the second pick until it is one. An empty answer asks again: only a cancel ends the tool here.
bool CMlineEdit::pickSecond(const CMlineTool& tool) {
  LoadStringW(m_texts, tool.prompts.second, promptBuf, static_cast<int>(std::size(promptBuf)));
  const double first[3] = {pickPoint[0], pickPoint[1], pickPoint[2]};
  do {
    kdedOfferPreview(segFirst.name, first);
    retCode = kdedEntSel(promptBuf, pickName, pickPoint);
    if (retCode == kKdInputCancel || retCode == kKdInputNone) return false;
  } while (!(this->*tool.acceptsSecond)());
  return true;
}

bool CMlineEdit::isMlinePicked() {
  return needBreak(pickName);
}

// Tells the user when what was picked is a closed multiline.
bool CMlineEdit::isOpenMlinePicked() {
  KdDbMline* mline = needBreak(pickName) ? openMline(pickName, KdOpenMode::forRead) : nullptr;
  if (!mline) return false;
  const bool isClosed = mline->closedMline();
  mline->close();
  if (isClosed) refuse(kClosedRefusal);
  return !isClosed;
}

void CMlineEdit::refuse(unsigned textId) {
  CStdStr<wchar_t> text;
  if (text.LoadStringW(m_texts, textId)) kdutPrint(text.c_str());
}

void CMlineEdit::undoLastEdit() {
  restore(segFirst, undoFirst);
  restore(segSecond, undoSecond);
}

void CMlineEdit::restore(CMlineSegment& seg, std::unique_ptr<KdDbMline>& copy) {
  if (!copy) return;
  kdedRedraw(seg.name, kKdRedrawHide);
  MlineCopy(seg.name, copy.get());
  copy.reset();
  kdedRedraw(seg.name, kKdRedrawShow);
}

// Without all copies there is no edit, so that what UNDO would bring back is always what stood before. Nor is there one
// without both multilines: the second may be on a locked layer, or held by somebody else.
void CMlineEdit::renewUndoCopies(const CMlineTool& tool) {
  discardUndoCopies();
  if (tool.acceptsSecond && !segSecond.mline) return;
  const auto keep = [this](const CMlineSegment& seg, std::unique_ptr<KdDbMline>& copy) {
    auto taken = std::make_unique<KdDbMline>();
    if (MlineCopy(taken.get(), seg.mline)) copy = std::move(taken);
    return copy != nullptr;
  };
  const bool isSecondChanged = tool.changes == CMlineTool::Changes::both && !segSecond.isSameEntity(segFirst);
  if (!keep(segFirst, undoFirst)) return;
  if (isSecondChanged && !keep(segSecond, undoSecond)) discardUndoCopies();
}

void CMlineEdit::discardUndoCopies() {
  undoFirst.reset();
  undoSecond.reset();
}

void CMlineEdit::closePicked() {
  for (CMlineSegment* seg : {&segFirst, &segSecond}) {
    if (seg->mline) seg->mline->close();
    seg->mline = nullptr;
  }
}
