#include "drawing_opener.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QProgressDialog>
#include <QTimer>

namespace {

constexpr int kSteps = 1000, kLookMs = 40, kShowAfterMs = 300;

}  // namespace

torva::Result<torva::command::OpenedDrawing> DrawingOpener::open(const torva::command::OpeningRequest& request) {
  QEventLoop loop;
  torva::command::OpeningThread opening(
      request, [&loop] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });

  const QString name = QFileInfo(QString::fromStdString(request.path)).fileName();
  QProgressDialog progress(tr("Opening %1").arg(name), tr("Cancel"), 0, kSteps, &m_window);
  progress.setObjectName("opening");
  progress.setWindowModality(Qt::WindowModal);
  progress.setAutoClose(false);
  progress.setAutoReset(false);
  progress.setMinimumDuration(kShowAfterMs);
  connect(&progress, &QProgressDialog::canceled, &m_window, [&opening] { opening.cancel(); });
  QTimer look;
  connect(&look, &QTimer::timeout, &progress, [&] { progress.setValue(int(opening.shareDone() * kSteps)); });
  look.start(kLookMs);
  if (!opening.isDone()) loop.exec();
  return opening.take();
}
