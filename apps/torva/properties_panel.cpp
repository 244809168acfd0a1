#include "properties_panel.h"

#include "answers.h"
#include "command/color_text.h"
#include "command/selection.h"
#include "db/layers.h"
#include "db/record_groups.h"

#include <QComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QWheelEvent>

using torva::command::SelectionSummary;

namespace {

const QString kVaries = QStringLiteral("(varies)");
constexpr const char* kColors[] = {"BYLAYER",  "BYBLOCK",  "1 (red)",     "2 (yellow)", "3 (green)",
                                   "4 (cyan)", "5 (blue)", "6 (magenta)", "7 (white)"};
constexpr const char* kJustifications[] = {"Top", "Zero", "Bottom"};

QString fromWide(const std::optional<std::wstring>& text) {
  return text ? QString::fromStdWString(*text) : kVaries;
}

QString number(double value) {
  return QString::number(value, 'g', 10);
}

/// A choice by the mouse: keys go on to the command line, and the wheel scrolls nothing.
class MouseChoice final : public QComboBox {
 public:
  explicit MouseChoice(QWidget* parent) : QComboBox(parent) { setFocusPolicy(Qt::ClickFocus); }

 protected:
  void keyPressEvent(QKeyEvent* event) override { event->ignore(); }
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

/// A color is shown with its name, and typed by the number in front of it.
std::wstring typed(const QString& shown) {
  return shown.section(' ', 0, 0).toStdWString();
}

}  // namespace

PropertiesPanel::PropertiesPanel(torva::command::Editor& editor, WindowSource& source, QWidget* parent)
    : QWidget(parent), m_editor(editor), m_source(source) {
  setObjectName("properties");
  auto* rows = new QFormLayout(this);
  m_entities = addValue(*rows, tr("Entities"), "entities");
  m_layer = addChoice(*rows, tr("Layer"), "layer", L"LAyer");
  m_color = addChoice(*rows, tr("Color"), "color", L"Color");
  m_linetype = addChoice(*rows, tr("Linetype"), "linetype", L"LType");
  m_style = addValue(*rows, tr("Style"), "style");
  m_scale = addValue(*rows, tr("Scale"), "scale");
  m_justification = addValue(*rows, tr("Justification"), "justification");
  m_closed = addValue(*rows, tr("Closed"), "closed");
  m_length = addValue(*rows, tr("Path length"), "pathLength");
  m_drawn = addValue(*rows, tr("Drawn"), "drawnLengths");
  connect(&m_source, &WindowSource::asked, this, &PropertiesPanel::refresh);
}

QComboBox* PropertiesPanel::addChoice(QFormLayout& rows, const QString& title, const char* objectName,
                                      const std::wstring& property) {
  auto* choice = new MouseChoice(this);
  choice->setObjectName(objectName);
  rows.addRow(title, choice);
  connect(choice, &QComboBox::textActivated, this, [this, property, isColor = property == L"Color"](const QString& value) {
    const std::wstring answer = isColor ? typed(value) : value.toStdWString();
    if (value == kVaries) return;
    m_changed = m_editor.pickedFirst();
    m_source.giveCommand(L"CHPROP " + property + L" " + quoted(answer) + L" \"\"", Repeat::former);
  });
  return choice;
}

QLabel* PropertiesPanel::addValue(QFormLayout& rows, const QString& title, const char* objectName) {
  auto* value = new QLabel(this);
  value->setObjectName(objectName);
  value->setTextInteractionFlags(Qt::TextSelectableByMouse);
  rows.addRow(title, value);
  return value;
}

void PropertiesPanel::refresh() {
  if (!m_source.isAtCommandPrompt()) return;
  // The command has used the selection up; the user goes on with the same entities.
  torva::command::pickFirst(m_editor, std::exchange(m_changed, {}), torva::command::Choice::add);
  const std::vector<torva::dxf::RecordId> chosen = m_editor.pickedFirst();
  setEnabled(!chosen.empty());
  fillChoices();
  show(torva::command::summaryOf(m_editor.database(), chosen));
}

void PropertiesPanel::fillChoices() {
  const torva::db::Database& drawing = m_editor.database();
  for (QComboBox* choice : {m_layer, m_color, m_linetype}) choice->clear();
  for (const auto& layer : torva::db::readLayers(drawing)) m_layer->addItem(QString::fromStdWString(layer.name));
  for (const char* color : kColors) m_color->addItem(color);
  for (const torva::dxf::RecordId record : drawing.symbols(torva::dxf::RecordType::ltype)) {
    m_linetype->addItem(QString::fromStdWString(torva::db::firstText(drawing.file(), record, 2)));
  }
}

void PropertiesPanel::show(const SelectionSummary& summary) {
  QStringList types;
  for (const auto& [type, count] : summary.types) types << QString("%1 %2").arg(count).arg(QString::fromStdWString(type));
  m_entities->setText(types.isEmpty() ? tr("none") : types.join(", "));
  const auto choose = [&](QComboBox& choice, const QString& value) {
    const QString shown = types.isEmpty() ? QString() : value;
    if (choice.findText(shown, Qt::MatchFixedString) < 0) choice.addItem(shown);
    choice.setCurrentIndex(choice.findText(shown, Qt::MatchFixedString));
  };
  choose(*m_layer, fromWide(summary.layer));
  choose(*m_color, summary.color ? QString::fromStdWString(torva::command::shown(*summary.color)) : kVaries);
  choose(*m_linetype, fromWide(summary.linetype));
  showMlines(summary.mlines);
}

void PropertiesPanel::showMlines(const SelectionSummary::Mlines& mlines) {
  const bool hasAny = mlines.count > 0;
  const auto show = [&](QLabel& label, const QString& text) { label.setText(hasAny ? text : QString()); };
  show(*m_style, fromWide(mlines.style));
  show(*m_scale, mlines.scale ? number(*mlines.scale) : kVaries);
  show(*m_justification, mlines.justification ? kJustifications[static_cast<int>(*mlines.justification)] : kVaries);
  show(*m_closed, mlines.isClosed ? (*mlines.isClosed ? tr("yes") : tr("no")) : kVaries);
  show(*m_length, number(mlines.pathLength));
  QStringList drawn;
  for (const double length : mlines.drawnLengths) drawn << number(length);
  show(*m_drawn, drawn.join("\n"));
}
