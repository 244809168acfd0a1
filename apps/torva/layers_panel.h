#pragma once

#include <cstdint>

#include "command/editor.h"
#include "db/layers.h"
#include "window_source.h"

#include <QTreeWidget>

/// The drawing's layers: a click on a mark types the command that changes it.
class LayersPanel final : public QTreeWidget {
  Q_OBJECT
 public:
  LayersPanel(torva::command::Editor& editor, WindowSource& source, QWidget* parent = nullptr);

  enum Column { kName, kOn, kFrozen, kLocked, kColor, kColumns };

 protected:
  /// Typing anywhere goes to the command line.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void refresh();
  void addRow(const torva::db::LayerData& layer, bool isCurrent);
  void change(QTreeWidgetItem* item, int column);
  void chooseColor(const QString& layer, std::uint32_t presentWord);
  bool isCurrent(const QString& layer) const;
  void give(const QString& option, const QString& layer, const std::wstring& more = {});

  torva::command::Editor& m_editor;
  WindowSource& m_source;
  // What is shown, so that the list is filled again only after a change.
  std::uint32_t m_shownDrawing = 0;
  std::size_t m_shownChanges = 0;
  std::wstring m_shownCurrent;
};
