#pragma once

#include <kdrx/cm_color.h>
#include <kdrx/export.h>
#include <kdrx/ui/controls.h>

#include <QtWidgets/QComboBox>

/// The widget of a CKdUiTrueColorComboBox, for layouts: ByLayer, ByBlock, the seven colors that have names, what was used
/// lately, and a last row that lets the user choose any color in a dialog. Its signal activated(int) tells of what the user
/// chose.
class KDRX_API QKdUiTrueColorComboBox : public QComboBox {
 public:
  explicit QKdUiTrueColorComboBox(QWidget* parent = nullptr);
  ~QKdUiTrueColorComboBox() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void OnActivated(int row);
  void OnCurrentIndexChanged(int row);

  int m_colorRow = 0;  // the last selected row that has a color
};

/// A box of colors. Its widget is a QKdUiTrueColorComboBox.
class KDRX_API CKdUiTrueColorComboBox : public CComboBox {
 public:
  ~CKdUiTrueColorComboBox() override;

  /// What the box calls a color: the names of the colors 1 to 7, ByLayer and ByBlock in the user's language, else the
  /// color's display name.
  static CStdStr<wchar_t> NameOf(const KdCmColor& color);

  /// The row of a color; -1 when it has none.
  int FindColor(const KdCmColor& color) const;
  /// Selects the row of a color. @return false when it has none; nothing changes then
  bool SelectColor(const KdCmColor& color);
  /// Puts a color in front of those used lately and selects it. The oldest of more than eight goes.
  void AddRecentColor(const KdCmColor& color);
  /// The color of the selected row; by layer when none is selected.
  KdCmColor GetColor() const;
};

/// A box of the linetypes of the working drawing: ByLayer, ByBlock and Continuous in the user's language, then the others in
/// the order of the drawing. Its widget is a QComboBox, which is filled when it is bound.
class KDRX_API CKdUiLineTypeComboBox : public CComboBox {
 public:
  ~CKdUiLineTypeComboBox() override;

 protected:
  void PreSubclassWindow() override;
};
