#include "dialog/row_keys.h"

#include <algorithm>

#include <QtCore/QItemSelectionModel>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractItemView>

namespace torva::dialog {
namespace {

/// The row that a key selects; -1 for another key.
int rowFor(const QAbstractItemView& list, int key) {
  switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      return std::max(list.currentIndex().row(), 0);
    case Qt::Key_Home:
      return 0;
    case Qt::Key_End:
      return list.model()->rowCount() - 1;
    default:
      return -1;
  }
}

class KeyFilter final : public QObject {
 public:
  explicit KeyFilter(QAbstractItemView& list) : QObject(&list), m_list(list) {}

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || m_list.selectionModel()->hasSelection()) return false;
    const int row = rowFor(m_list, static_cast<QKeyEvent&>(*event).key());
    const QModelIndex index = m_list.model()->index(row, 0);
    if (index.isValid()) m_list.setCurrentIndex(index);
    return index.isValid();
  }

 private:
  QAbstractItemView& m_list;
};

}  // namespace

void letKeysSelect(QAbstractItemView& list) {
  list.installEventFilter(new KeyFilter(list));
}

}  // namespace torva::dialog
