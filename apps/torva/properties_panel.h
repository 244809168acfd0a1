#pragma once

#include "command/editor.h"
#include "command/selection_summary.h"
#include "window_source.h"

#include <QWidget>

class QComboBox;
class QFormLayout;
class QLabel;

/// What the selected entities have in common. Layer, color and linetype can be changed: that types the command.
class PropertiesPanel final : public QWidget {
  Q_OBJECT
 public:
  PropertiesPanel(torva::command::Editor& editor, WindowSource& source, QWidget* parent = nullptr);

  /// Shows the present selection.
  void refresh();

 private:
  QComboBox* addChoice(QFormLayout& rows, const QString& title, const char* objectName, const std::wstring& property);
  QLabel* addValue(QFormLayout& rows, const QString& title, const char* objectName);
  void fillChoices();
  void show(const torva::command::SelectionSummary& summary);
  void showMlines(const torva::command::SelectionSummary::Mlines& mlines);

  torva::command::Editor& m_editor;
  WindowSource& m_source;
  QLabel* m_entities;
  std::vector<torva::dxf::RecordId> m_changed;  // by this panel just now
  QComboBox *m_layer, *m_color, *m_linetype;
  QLabel *m_style, *m_scale, *m_justification, *m_closed, *m_length, *m_drawn;
};
