#pragma once

#include <vector>

#include <kdrx/ui.h>

/// Keeps a dialog from being made smaller than it was at first. It knows the dialog's controls, too, but moves none: their
/// layouts do that.
class CDlgItemResizer {
 public:
  /// Records a control with its anchors. The first one also records the size of the dialog. A control that is missing, and
  /// one without flags, are passed over.
  void Add(CWnd* dialog, int id, unsigned flags);
  void Add(CWnd* control, unsigned flags);
  /// Records the distance of two controls in pixels; -1 measures it: from bottom to top, or with type 0 from right to left.
  void SetGap(CWnd* first, CWnd* second, int gap, int type, int behaviour);

  /// Makes a proposed rectangle as large as the dialog was at first; the edge that is not dragged stays.
  void OnSizing(CWnd* dialog, tagRECT* proposed) const;
  /// Moves nothing, deliberately: the layouts have done that.
  void Resize(CWnd* dialog) const { static_cast<void>(dialog); }
  /// Takes a size as that which the dialog had at first.
  void SetInitial(tagSIZE size);
  /// Forgets all of it.
  void ClearData();

 private:
  struct ItemRecord {
    unsigned flags;
    QWidget* control;
    tagRECT rectangle;  // in the dialog
  };
  struct GapRecord {
    QWidget *first, *second;
    int gap, type, behaviour;
  };

  std::vector<ItemRecord> m_items;
  std::vector<GapRecord> m_gaps;
  tagSIZE m_clientSize, m_windowSize;
};
