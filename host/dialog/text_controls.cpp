#include <kdrx/ui.h>

#include <QtGui/QImage>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTextEdit>

CStatic::~CStatic() = default;

void CStatic::SetBitmap(const QImage& picture) {
  const bool isCentred = m_style & SS_CENTERIMAGE;
  if ((m_style & SS_BITMAP) != SS_BITMAP) return;
  if (auto* label = qobject_cast<QLabel*>(GetWidget())) {
    label->setAlignment(isCentred ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignTop);
    label->setPixmap(QPixmap::fromImage(picture));
  }
  auto* area = qobject_cast<QTextEdit*>(GetWidget());
  if (!area) return;
  area->clear();
  area->document()->setDocumentMargin(0);
  area->setAlignment(isCentred ? Qt::AlignHCenter : Qt::AlignLeft);
  if (!picture.isNull()) area->textCursor().insertImage(picture);
}

CEdit::~CEdit() = default;

void CEdit::SetLimitText(int characters) {
  if (auto* edit = qobject_cast<QLineEdit*>(GetWidget())) edit->setMaxLength(characters);
}

void CEdit::SelectAll() {
  if (auto* edit = qobject_cast<QLineEdit*>(GetWidget())) edit->selectAll();
}
