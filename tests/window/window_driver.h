#pragma once

#include <functional>
#include <stdlib.h>
#include <string>
#include <vector>

#include "command_line.h"
#include "main_window.h"
#include "support/dialog_driver.h"
#include "support/host_driver.h"
#include "window_source.h"

#include <QLineEdit>
#include <QPlainTextEdit>

/// Drives the real window: each step does what a user would while a question waits.
class WindowTest : public DialogTest, protected HostDriver {
 protected:
  using Step = std::function<void()>;

  WindowTest() {
    ::setenv("XDG_STATE_HOME", folder.path("state").c_str(), 1);
    startHost(torva::runtime::DialogUse::shown);
    window = std::make_unique<MainWindow>(*host, source, commandLine);
    window->resize(1000, 800);
    window->show();
  }

  void print(std::wstring_view text) override { commandLine->print(text); }
  torva::command::Editor& editor() { return host->editor(); }

  /// Opens a sample drawing and shows all of it.
  void openSample(const std::string& name) {
    ASSERT_TRUE(editor().openDrawing(TORVA_SOURCE_DIR "/samples/" + name));
    before = drawing().file().toBytes();
  }

  /// Does the steps one after the other, whenever a question waits, then closes the input.
  void run(std::vector<Step> steps) {
    m_steps = std::move(steps);
    m_next = 0;
    QObject context;
    QObject::connect(&source, &WindowSource::asked, &context, [this, &context] { schedule(context); });
    editor().run(source, torva::command::OnFault::goOn);
    EXPECT_EQ(m_next, m_steps.size()) << "steps were left over";
  }

  // Steps.
  Step keys(const QString& text) {
    return [=, this] { QTest::keyClicks(&window->canvas(), text); };
  }
  Step key(Qt::Key code, Qt::KeyboardModifiers modifiers = {}) {
    return [=, this] { QTest::keyClick(&window->canvas(), code, modifiers); };
  }
  Step hover(double x, double y) {
    return [=, this] { QTest::mouseMove(&window->canvas(), pixelOf(x, y)); };
  }
  Step click(double x, double y, Qt::KeyboardModifiers modifiers = {}) {
    return [=, this] {
      QTest::mouseMove(&window->canvas(), pixelOf(x, y));
      QTest::mouseClick(&window->canvas(), Qt::LeftButton, modifiers, pixelOf(x, y));
    };
  }
  Step rightClick() {
    return [this] { QTest::mouseClick(&window->canvas(), Qt::RightButton); };
  }
  Step drag(double fromX, double fromY, double toX, double toY) {
    return [=, this] {
      QTest::mousePress(&window->canvas(), Qt::LeftButton, {}, pixelOf(fromX, fromY));
      QMouseEvent move(QEvent::MouseMove, pixelOf(toX, toY), Qt::NoButton, Qt::LeftButton, {});
      QApplication::sendEvent(&window->canvas(), &move);
      QTest::mouseRelease(&window->canvas(), Qt::LeftButton, {}, pixelOf(toX, toY));
    };
  }

  /// Of a point of the world, as a drawing seen from above shows it.
  QPoint pixelOf(double x, double y) {
    const auto& view = editor().view();
    const double pixelsPerUnit = view.heightPx() / view.height();
    return {qRound((x - view.centerDcs().x) * pixelsPerUnit + view.widthPx() / 2.0),
            qRound(view.heightPx() / 2.0 - (y - view.centerDcs().y) * pixelsPerUnit)};
  }
  QString transcript() { return window->findChild<QPlainTextEdit*>("transcript")->toPlainText(); }
  bool isChanged() { return drawing().file().toBytes() != before; }

  std::string before;
  WindowSource source;
  CommandLine* commandLine = new CommandLine(source);
  std::unique_ptr<MainWindow> window;

 private:
  void schedule(QObject& context) {
    if (m_isDue) return;
    m_isDue = true;
    QTimer::singleShot(0, &context, [this, &context] {
      m_isDue = false;
      if (!source.question()) return;
      if (m_next == m_steps.size()) return source.close();
      m_steps[m_next++]();
      schedule(context);
    });
  }

  std::vector<Step> m_steps;
  std::size_t m_next = 0;
  bool m_isDue = false;
};
