#pragma once

#include <functional>
#include <optional>

#include <QtWidgets/QWidget>

namespace torva::dialog {

/// The 255 colors that have an index, one of which at most is selected: on top 24 hues, each from dark to bright and on to
/// pale and back to dark, below them the colors 1 to 9, then the greys. The arrow keys, Home and End walk over them.
class ColorPalette final : public QWidget {
 public:
  /// Is told the index of a color.
  using Told = std::function<void(int index)>;

  /// @param onSelected told what the user selects
  /// @param onChosen told what the user double-clicks
  ColorPalette(QWidget* parent, Told onSelected, Told onChosen);

  /// Selects a color, of which nobody is told; an index that no color has selects none.
  void select(int index);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Cell {
    int row, column;
    bool operator==(const Cell&) const = default;
  };
  static int indexOf(const Cell& cell);
  static QRect areaOf(const Cell& cell);
  static std::optional<Cell> cellOf(int index);
  static std::optional<Cell> cellAt(const QPoint& place);
  /// The cell that a key goes to; nothing for another key.
  std::optional<Cell> cellFor(int key) const;
  void selectByUser(const std::optional<Cell>& cell);

  const Told m_onSelected, m_onChosen;
  std::optional<Cell> m_selected;
};

}  // namespace torva::dialog
