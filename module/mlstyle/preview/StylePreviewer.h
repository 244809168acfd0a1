#pragma once

class KdDbMlineStyle;

/// Who shows what a style looks like while it is edited.
class CStylePreviewer {
 public:
  /// Shows a style, which need not belong to the drawing and is not kept; null changes nothing.
  virtual void PaintPreview(KdDbMlineStyle* style) = 0;

 protected:
  ~CStylePreviewer() = default;
};
