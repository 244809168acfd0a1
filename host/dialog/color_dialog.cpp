#include "dialog/color_dialog.h"

#include "command/color_text.h"
#include "dialog/color_palette.h"
#include "dialog/color_swatch.h"
#include "runtime/host_texts.h"

#include <QtWidgets/QColorDialog>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

namespace torva::dialog {
namespace {

using runtime::HostText;

QString textOf(HostText text) {
  return QString::fromStdWString(runtime::hostText(text));
}

/// The palette and a field, which show the same color. The field holds the choice: it takes all that the palette lacks.
class ColorDialog final : public QDialog {
 public:
  ColorDialog(QWidget* parent, const KdCmColor& present, const QString& title);

  /// What the field says; nothing when that is no color.
  std::optional<KdCmColor> color() const;

 private:
  QLayout* fieldRow();
  void showColor();
  void chooseTrueColor();

  const KdCmColor m_present;
  const QString m_presentText;
  ColorPalette* const m_palette;
  QLineEdit* const m_field;
  QLabel* const m_swatch;
  QDialogButtonBox* const m_buttons;
};

ColorDialog::ColorDialog(QWidget* parent, const KdCmColor& present, const QString& title)
    : QDialog(parent),
      m_present(present),
      m_presentText(QString::fromStdWString(present.displayName())),
      m_palette(new ColorPalette(
          this, [this](int index) { m_field->setText(QString::number(index)); }, [this](int) { accept(); })),
      m_field(new QLineEdit(this)),
      m_swatch(new QLabel(this)),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
  setWindowTitle(title);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  m_palette->setObjectName("palette");
  m_palette->setAccessibleName(title);
  m_field->setObjectName("color");
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(m_palette, 0, Qt::AlignHCenter);
  rows->addLayout(fieldRow());
  rows->addWidget(m_buttons);
  rows->setSizeConstraint(QLayout::SetFixedSize);
  // As the dialogs have them that it stands over.
  for (QAbstractButton* button : m_buttons->buttons()) button->setIcon({});
  connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_field, &QLineEdit::textChanged, this, &ColorDialog::showColor);
  m_field->setText(m_presentText);
}

QLayout* ColorDialog::fieldRow() {
  auto* label = new QLabel(textOf(HostText::color), this);
  label->setBuddy(m_field);
  auto* trueColor = new QPushButton(textOf(HostText::trueColor), this);
  trueColor->setObjectName("trueColor");
  trueColor->setAutoDefault(false);
  connect(trueColor, &QPushButton::clicked, this, &ColorDialog::chooseTrueColor);
  auto* row = new QHBoxLayout;
  for (QWidget* widget : {static_cast<QWidget*>(label), static_cast<QWidget*>(m_swatch)}) row->addWidget(widget);
  row->addWidget(m_field, 1);
  row->addWidget(trueColor);
  return row;
}

std::optional<KdCmColor> ColorDialog::color() const {
  if (m_field->text() == m_presentText) return m_present;
  const auto typed = command::colorOf(m_field->text().toStdWString());
  return typed && (typed->isByLayer() || typed->isByBlock()) ? std::nullopt : typed;
}

void ColorDialog::showColor() {
  const auto shown = color();
  m_palette->select(shown && !shown->isTrueColor() ? shown->colorIndex() : 0);
  m_swatch->setPixmap(swatchIcon(shown.value_or(KdCmColor())).pixmap(windowHandle(), {kSwatchPx, kSwatchPx}));
  m_buttons->button(QDialogButtonBox::Ok)->setEnabled(shown.has_value());
}

void ColorDialog::chooseTrueColor() {
  const QColor chosen = QColorDialog::getColor(QColor(QRgb(color().value_or(m_present).rgb())), this, windowTitle());
  if (!chosen.isValid()) return;
  m_field->setText(QString::fromStdWString(KdCmColor::trueColor(chosen.rgb() & 0xFFFFFFu).displayName()));
}

}  // namespace

std::optional<KdCmColor> chooseColor(QWidget* parent, const KdCmColor& present, const QString& title) {
  ColorDialog dialog(parent, present, title);
  return dialog.exec() == QDialog::Accepted ? dialog.color() : std::nullopt;
}

}  // namespace torva::dialog
