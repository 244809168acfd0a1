#include "dialog/color_palette.h"

#include <algorithm>
#include <iterator>

#include "dialog/color_swatch.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>

namespace torva::dialog {
namespace {

constexpr int kHues = 24, kShades = 10;
/// What is added to a hue's first index: the full colors from dark to bright, then the pale ones from bright to dark.
constexpr int kShadeOfRow[kShades] = {8, 6, 4, 2, 0, 1, 3, 5, 7, 9};

/// Rows of colors with the same height, which share the width of the palette.
struct Band {
  int rows, columns, firstIndex, topPx, rowHeightPx;
};
constexpr int kWidthPx = 432, kHeightPx = 220;
constexpr Band kBands[] = {{kShades, kHues, 10, 0, 16}, {1, 9, 1, 168, 22}, {1, 6, 250, 198, 22}};
constexpr int kRows = kShades + 2;
constexpr int kMarkPx = 3;

/// The band of a row, and the row's number in it.
std::pair<const Band&, int> bandOf(int row) {
  return row < kShades ? std::pair<const Band&, int>(kBands[0], row)
                       : std::pair<const Band&, int>(kBands[row - kShades + 1], 0);
}

}  // namespace

ColorPalette::ColorPalette(QWidget* parent, Told onSelected, Told onChosen)
    : QWidget(parent), m_onSelected(std::move(onSelected)), m_onChosen(std::move(onChosen)) {
  setFixedSize(kWidthPx, kHeightPx);
  setFocusPolicy(Qt::StrongFocus);
}

int ColorPalette::indexOf(const Cell& cell) {
  const auto& [band, row] = bandOf(cell.row);
  return band.rows > 1 ? band.firstIndex + cell.column * kShades + kShadeOfRow[row] : band.firstIndex + cell.column;
}

QRect ColorPalette::areaOf(const Cell& cell) {
  const auto& [band, row] = bandOf(cell.row);
  const int width = kWidthPx / band.columns;
  return {cell.column * width, band.topPx + row * band.rowHeightPx, width, band.rowHeightPx};
}

std::optional<ColorPalette::Cell> ColorPalette::cellOf(int index) {
  for (Cell cell{0, 0}; cell.row < kRows; ++cell.row) {
    for (cell.column = 0; cell.column < bandOf(cell.row).first.columns; ++cell.column) {
      if (indexOf(cell) == index) return cell;
    }
  }
  return std::nullopt;
}

std::optional<ColorPalette::Cell> ColorPalette::cellAt(const QPoint& place) {
  for (int row = 0; row < kRows; ++row) {
    const Cell cell{row, std::clamp(place.x(), 0, kWidthPx - 1) * bandOf(row).first.columns / kWidthPx};
    if (areaOf(cell).contains(place)) return cell;
  }
  return std::nullopt;
}

std::optional<ColorPalette::Cell> ColorPalette::cellFor(int key) const {
  const auto [row, column] = m_selected.value_or(Cell{kShades, 0});
  const int last = bandOf(row).first.columns - 1;
  const auto inRow = [centre = areaOf({row, column}).center().x()](int other) {
    return Cell{std::clamp(other, 0, kRows - 1), centre * bandOf(std::clamp(other, 0, kRows - 1)).first.columns / kWidthPx};
  };
  switch (key) {
    case Qt::Key_Left:
      return Cell{row, std::max(column - 1, 0)};
    case Qt::Key_Right:
      return Cell{row, std::min(column + 1, last)};
    case Qt::Key_Up:
      return inRow(row - 1);
    case Qt::Key_Down:
      return inRow(row + 1);
    case Qt::Key_Home:
      return Cell{row, 0};
    case Qt::Key_End:
      return Cell{row, last};
    default:
      return std::nullopt;
  }
}

void ColorPalette::select(int index) {
  m_selected = cellOf(index);
  update();
}

void ColorPalette::selectByUser(const std::optional<Cell>& cell) {
  if (!cell || cell == m_selected) return;
  m_selected = cell;
  update();
  m_onSelected(indexOf(*cell));
}

bool ColorPalette::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = static_cast<const QHelpEvent&>(*event);
  const auto cell = cellAt(help.pos());
  const QString text = cell ? QString::number(indexOf(*cell)) : QString();
  QToolTip::showText(help.globalPos(), text, this, cell ? areaOf(*cell) : QRect());
  return true;
}

void ColorPalette::keyPressEvent(QKeyEvent* event) {
  const auto cell = cellFor(event->key());
  if (!cell) return QWidget::keyPressEvent(event);
  // The first key shows where the walk begins.
  selectByUser(m_selected ? cell : Cell{kShades, 0});
}

void ColorPalette::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) selectByUser(cellAt(event->pos()));
}

void ColorPalette::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) selectByUser(cellAt(event->pos()));
}

void ColorPalette::mouseDoubleClickEvent(QMouseEvent* event) {
  const auto cell = cellAt(event->pos());
  if (event->button() != Qt::LeftButton || !cell) return;
  selectByUser(cell);
  m_onChosen(indexOf(*cell));
}

void ColorPalette::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < bandOf(row).first.columns; ++column) {
      const Cell cell{row, column};
      paintSwatch(painter, areaOf(cell).adjusted(1, 1, -1, -1), KdCmColor::byIndex(indexOf(cell)));
    }
  }
  if (!m_selected) return;
  // Two colors, so that one of them is seen beside whatever is selected.
  const QRectF area = QRectF(areaOf(*m_selected)).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(QPen(palette().color(QPalette::Base), kMarkPx));
  painter.drawRect(area.adjusted(1, 1, -1, -1));
  painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::WindowText), kMarkPx - 1));
  painter.drawRect(area);
}

}  // namespace torva::dialog
