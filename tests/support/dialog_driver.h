#pragma once

#include <functional>
#include <gtest/gtest.h>

#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

/// Runs dialogs without a display.
class DialogTest : public testing::Test {
 protected:
  /// Does `act` with the dialog that is shown next. One that is still open then is closed, so that no test waits.
  void withNextDialog(const std::function<void(QDialog&)>& act) {
    QTimer::singleShot(0, &m_application, [=, this] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog || !QTest::qWaitForWindowActive(dialog)) return;
      const QPointer<QDialog> guard(dialog);
      act(*dialog);
      if (!guard || !guard->isVisible()) return;
      ++stillOpen;
      guard->done(-100);
    });
  }

  int stillOpen = 0;

 private:
  char m_program[5] = "test", m_option[10] = "-platform", m_platform[10] = "offscreen";
  char* m_arguments[4] = {m_program, m_option, m_platform, nullptr};
  int m_argumentCount = 3;
  QApplication m_application{m_argumentCount, m_arguments};
};
