#include "command/opening.h"

#include <chrono>
#include <utility>

namespace torva::command {

Result<OpenedDrawing> openDatabase(const OpeningRequest& request, const Progress& progress) {
  OpenedDrawing opened;
  auto database = db::Database::open(request.path, request.damagePolicy, opened.findings, progress);
  if (!database) return tl::unexpected(std::move(database.error()));
  opened.database = std::move(*database);
  if (request.original) opened.database->file().setOrigin(*request.original);
  return opened;
}

Result<OpenedDrawing> openWithPicker(const OpeningRequest& request, const Progress& progress) {
  constexpr double kOpeningShare = 0.3;  // measured on large plans
  auto opened = openDatabase(request, progress.upTo(kOpeningShare));
  if (!opened) return opened;
  opened->picker = std::make_unique<view::Picker>(*opened->database);
  if (opened->picker->prepare(progress.upTo(1))) return opened;
  return fail(ErrorCode::cancelled, "opening was cancelled", request.path);
}

OpeningThread::OpeningThread(OpeningRequest request, std::function<void()> onDone) {
  std::packaged_task<Result<OpenedDrawing>()> task(
      [this, request = std::move(request)] { return openWithPicker(request, m_watch); });
  m_result = task.get_future();
  m_thread = std::thread([task = std::move(task), onDone = std::move(onDone)]() mutable {
    task();
    onDone();
  });
}

OpeningThread::~OpeningThread() {
  cancel();
  m_thread.join();
}

bool OpeningThread::isDone() const {
  return !m_result.valid() || m_result.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

}  // namespace torva::command
