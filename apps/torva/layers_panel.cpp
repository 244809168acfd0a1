#include "layers_panel.h"

#include "answers.h"
#include "command/variable_access.h"
#include "dialog/color_dialog.h"
#include "dialog/color_swatch.h"

#include <QHeaderView>
#include <QKeyEvent>

namespace {

constexpr int kLeastWidthChars = 46;

QString mark(bool isSet) {
  return isSet ? QStringLiteral("\u2713") : QString();
}

}  // namespace

LayersPanel::LayersPanel(torva::command::Editor& editor, WindowSource& source, QWidget* parent)
    : QTreeWidget(parent), m_editor(editor), m_source(source) {
  setObjectName("layers");
  setColumnCount(kColumns);
  setHeaderLabels({tr("Layer"), tr("On"), tr("Frozen"), tr("Locked"), tr("Color")});
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setFocusPolicy(Qt::ClickFocus);
  setMinimumWidth(kLeastWidthChars * fontMetrics().averageCharWidth());
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setSectionResizeMode(kName, QHeaderView::Stretch);
  setToolTip(tr("Click a mark to change it, double-click a name to make the layer current"));
  connect(this, &QTreeWidget::itemClicked, this, &LayersPanel::change);
  connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item, int column) {
    if (column == kName) give("Set", item->text(kName));
  });
  connect(&m_source, &WindowSource::asked, this, &LayersPanel::refresh);
}

void LayersPanel::keyPressEvent(QKeyEvent* event) {
  event->ignore();
}

void LayersPanel::refresh() {
  const torva::db::Database& drawing = m_editor.database();
  const auto current = torva::command::variableOr(m_editor.variables(), L"CLAYER", std::wstring(L"0"));
  if (m_shownDrawing == drawing.serial() && m_shownChanges == drawing.changeCount() && m_shownCurrent == current) return;
  m_shownDrawing = drawing.serial();
  m_shownChanges = drawing.changeCount();
  m_shownCurrent = current;
  clear();
  for (const torva::db::LayerData& layer : torva::db::readLayers(drawing)) addRow(layer, layer.name == current);
  sortItems(kName, Qt::AscendingOrder);
}

void LayersPanel::addRow(const torva::db::LayerData& layer, bool isCurrent) {
  auto* item = new QTreeWidgetItem(this);
  item->setText(kName, QString::fromStdWString(layer.name));
  QFont font = this->font();
  font.setBold(isCurrent);
  item->setFont(kName, font);
  item->setText(kOn, mark(!layer.isOff));
  item->setText(kFrozen, mark(layer.isFrozen));
  item->setText(kLocked, mark(layer.isLocked));
  item->setIcon(kColor, torva::dialog::swatchIcon(layer.color));
  item->setData(kColor, Qt::UserRole, layer.color.color());
}

void LayersPanel::change(QTreeWidgetItem* item, int column) {
  const QString layer = item->text(kName);
  const bool isSet = !item->text(column).isEmpty();
  switch (column) {
    case kOn:
      // The current layer is turned off only when that is said twice.
      return give(isSet ? "OFf" : "ON", layer, isSet && isCurrent(layer) ? L" Yes" : L"");
    case kFrozen:
      return give(isSet ? "Thaw" : "Freeze", layer);
    case kLocked:
      return give(isSet ? "Unlock" : "LOck", layer);
    case kColor:
      return chooseColor(layer, item->data(kColor, Qt::UserRole).toUInt());
    default:
      return;
  }
}

void LayersPanel::chooseColor(const QString& layer, std::uint32_t presentWord) {
  KdCmColor present;
  present.setColor(presentWord);
  const auto color = torva::dialog::chooseColor(this, present, tr("Color of layer %1").arg(layer));
  // Of a true color the index nearest to it: layers have no others at the command line.
  if (color && *color != present) give("Color " + QString::number(color->colorIndex()), layer);
}

bool LayersPanel::isCurrent(const QString& layer) const {
  return m_shownCurrent == layer.toStdWString();
}

void LayersPanel::give(const QString& option, const QString& layer, const std::wstring& more) {
  m_source.giveCommand(L"-LAYER " + option.toStdWString() + L" " + quoted(layer.toStdWString()) + more + L" \"\"",
                       Repeat::former);
}
