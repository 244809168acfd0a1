#include <utility>

#include <kdrx/ui.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLayout>
#include <QtWidgets/QLineEdit>

namespace {

constexpr const char* kControlId = "controlId";

unsigned long keyOf(const QKeyEvent& event) {
  constexpr int kFirstSpecialKey = 0x01000000;
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return '\r';
    case Qt::Key_Escape:
      return 27;
    default:
      return event.key() < kFirstSpecialKey ? static_cast<unsigned long>(event.key()) : 0;
  }
}

}  // namespace

QBaseDialog::QBaseDialog(CDialog* logic, QWidget* parent)
    : QDialog(parent ? parent : QApplication::activeWindow()), m_logic(logic) {
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  // Else pictures are drawn at the size of a plain screen and blown up on a finer one.
  QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}

QBaseDialog::~QBaseDialog() = default;

QWidget* QBaseDialog::GetControl(int id) const {
  for (QWidget* control : findChildren<QWidget*>()) {
    if (control->property(kControlId) == id) return control;
  }
  return nullptr;
}

void QBaseDialog::Prepare() {
  ensurePolished();
  if (layout()) layout()->activate();
  if (std::exchange(m_isPrepared, true) || !m_logic) return;
  qApp->installEventFilter(this);
  for (auto* button : findChildren<QAbstractButton*>()) {
    connect(button, &QAbstractButton::clicked, this, [this, button] { Notify(button, BN_CLICKED); });
  }
  for (auto* edit : findChildren<QLineEdit*>()) {
    connect(edit, &QLineEdit::textChanged, this, [this, edit] { Notify(edit, EN_CHANGE); });
  }
}

void QBaseDialog::Notify(QWidget* control, unsigned code) {
  const int id = control->property(kControlId).toInt();
  if (id == 0) return;
  CWnd* object = CWnd::FromWidget(control);
  if (!object || !object->OnChildNotify(code)) m_logic->OnCommand(id, code);
}

bool QBaseDialog::eventFilter(QObject* receiver, QEvent* event) {
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
  // What the control with the focus lets pass comes to its parents, too.
  if (!isKey || receiver != (focusWidget() ? focusWidget() : this)) return false;
  tagMSG message{kFirstKeyMessage + (event->type() == QEvent::KeyRelease), keyOf(static_cast<QKeyEvent&>(*event))};
  return m_logic->PreTranslateMessage(&message);
}

void QBaseDialog::accept() {
  m_logic ? m_logic->OnOK() : QDialog::accept();
}

void QBaseDialog::reject() {
  m_logic ? m_logic->OnCancel() : QDialog::reject();
}

void QBaseDialog::moveEvent(QMoveEvent* event) {
  QDialog::moveEvent(event);
  // A new size that belongs to the new place is told of separately.
  if (size() == m_windowRect.size()) m_windowRect = geometry();
}

void QBaseDialog::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  if (!m_logic || m_isProposing) return;
  if (event->spontaneous()) ProposeRect();
  m_windowRect = geometry();
  m_logic->OnSize(0, width(), height());
}

/// Qt tells of a size when the dialog has it: what the logic makes of it is taken instead.
void QBaseDialog::ProposeRect() {
  m_isProposing = true;
  const QPoint place = geometry().topLeft();
  tagRECT proposed{place.x(), place.y(), place.x() + width(), place.y() + height()};
  m_logic->OnSizing(0, &proposed);
  setGeometry(proposed.left, proposed.top, proposed.Width(), proposed.Height());
  m_isProposing = false;
}
