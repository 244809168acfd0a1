// How alive the window is while it opens a large drawing, and how soon it shows it.
//
//     window_bench LARGE_DRAWING [PICTURE.png]
//
// The drawing is opened as a user opens it, cancelled halfway, and opened again. A heartbeat of the event loop tells how
// long the window did not answer: by the clock, and by what the window's own thread worked in that time, which other
// programs on the machine do not disturb.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <stdlib.h>
#include <string>
#include <sys/resource.h>

#include "answers.h"
#include "command_line.h"
#include "main_window.h"
#include "runtime/host.h"
#include "window_source.h"

#include <QApplication>
#include <QFileInfo>
#include <QProgressDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

namespace {

using std::chrono::steady_clock;

constexpr int kBeatMs = 2;
constexpr QSize kWindow(1600, 1000);

double clockMs(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The longest time between two turns of the event loop since it was last asked.
class Heartbeat {
 public:
  Heartbeat() {
    QObject::connect(&m_beat, &QTimer::timeout, [this] { beat(); });
    m_beat.setTimerType(Qt::PreciseTimer);
    m_beat.start(kBeatMs);
  }

  struct Longest {
    double wallMs = 0, workMs = 0;
  };
  Longest take() { return std::exchange(m_longest, {}); }

 private:
  void beat() {
    const double wall = clockMs(CLOCK_MONOTONIC), work = clockMs(CLOCK_THREAD_CPUTIME_ID);
    m_longest.wallMs = std::max(m_longest.wallMs, wall - std::exchange(m_wall, wall));
    m_longest.workMs = std::max(m_longest.workMs, work - std::exchange(m_work, work));
  }

  QTimer m_beat;
  double m_wall = clockMs(CLOCK_MONOTONIC), m_work = clockMs(CLOCK_THREAD_CPUTIME_ID);
  Longest m_longest;
};

class Bench {
 public:
  Bench(MainWindow& window, WindowSource& source, torva::command::Editor& editor, std::string path)
      : m_window(window), m_source(source), m_editor(editor), m_path(std::move(path)) {
    QObject::connect(&m_look, &QTimer::timeout, [this] { look(); });
    m_look.start(1);
    open();
  }

 private:
  enum class Phase { cancelled, opened };

  void open() {
    m_start = clockMs(CLOCK_PROCESS_CPUTIME_ID);
    m_heartbeat.take();
    m_source.answer(L"OPEN " + quoted(QString::fromStdString(m_path).toStdWString()));
    m_source.answer(L"ZOOM E");
  }

  void look() {
    if (m_phase == Phase::cancelled) return cancelHalfway();
    if (m_source.isIdle() && m_editor.database().file().path() == m_path && m_window.canvas().isComplete()) finish();
  }

  void cancelHalfway() {
    auto* progress = m_window.findChild<QProgressDialog*>("opening");
    if (progress && !m_isCancelling && progress->value() > progress->maximum() / 2) {
      m_isCancelling = true;
      m_cancelledAt = clockMs(CLOCK_MONOTONIC);
      progress->findChild<QPushButton*>()->click();
    }
    if (!m_isCancelling || !m_source.isIdle()) return;
    print("cancelled halfway");
    std::printf("%-20s the prompt is back after %.0f ms\n", "", clockMs(CLOCK_MONOTONIC) - m_cancelledAt);
    if (m_editor.database().file().path() == m_path) std::printf("%-20s THE DRAWING WAS OPENED\n", "");
    m_phase = Phase::opened;
    open();
  }

  void finish() {
    print("opened");
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const double fileMb = static_cast<double>(QFileInfo(QString::fromStdString(m_path)).size()) / (1 << 20);
    const double peakMb = static_cast<double>(usage.ru_maxrss) / 1024;
    std::printf("%-20s whole picture after %.2f s of CPU; memory %.0f MB, %.2f x file\n", "",
                (clockMs(CLOCK_PROCESS_CPUTIME_ID) - m_start) / 1e3, peakMb, peakMb / fileMb);
    m_look.stop();
    m_source.close();
  }

  void print(const char* what) {
    const auto longest = m_heartbeat.take();
    std::printf("%-20s longest stall %.0f ms by the clock, %.0f ms of work\n", what, longest.wallMs, longest.workMs);
  }

  MainWindow& m_window;
  WindowSource& m_source;
  torva::command::Editor& m_editor;
  const std::string m_path;
  Phase m_phase = Phase::cancelled;
  bool m_isCancelling = false;
  double m_start = 0, m_cancelledAt = 0;
  Heartbeat m_heartbeat;
  QTimer m_look;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: window_bench LARGE_DRAWING [PICTURE.png]\n");
    return 2;
  }
  QApplication application(argc, argv);
  application.setQuitOnLastWindowClosed(false);
  const QTemporaryDir settings;
  ::setenv("XDG_STATE_HOME", settings.path().toStdString().c_str(), 1);

  WindowSource source;
  auto* commandLine = new CommandLine(source);
  torva::runtime::HostOptions options;
  options.profileFolder = settings.path().toStdString();
  options.dialogUse = torva::runtime::DialogUse::shown;
  options.print = [commandLine](std::wstring_view text) { commandLine->print(text); };
  options.report = [](const std::string& line) { std::printf("%s\n", line.c_str()); };
  auto host = torva::runtime::Host::create(options);
  if (!host) {
    std::fprintf(stderr, "%s\n", host.error().message().c_str());
    return 1;
  }
  MainWindow window(**host, source, commandLine);
  window.resize(kWindow);
  window.show();
  Bench bench(window, source, (*host)->editor(), argv[1]);
  (*host)->editor().run(source, torva::command::OnFault::goOn);
  if (argc > 2) window.grab().save(QString::fromLocal8Bit(argv[2]));
  return 0;
}
