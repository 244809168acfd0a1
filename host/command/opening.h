#pragma once

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/export.h"
#include "base/result.h"
#include "base/watch.h"
#include "db/database.h"
#include "view/picker.h"

namespace torva::command {

/// A drawing that is wanted.
struct OpeningRequest {
  std::string path;
  dxf::DamagePolicy damagePolicy = dxf::DamagePolicy::refuse;
  /// What the file is a copy of: the drawing counts as that file's, modified.
  std::optional<dxf::FileOrigin> original = {};
};

/// A drawing as it is handed to the editor.
struct OpenedDrawing {
  std::unique_ptr<db::Database> database;
  std::unique_ptr<view::Picker> picker = {};  ///< In that drawing; null: the editor makes one when it needs it.
  std::vector<dxf::Finding> findings = {};    ///< What was mended.
};

/// How the editor gets its drawings; errors are those of dxf::DrawingFile::open().
using DrawingOpener = std::function<Result<OpenedDrawing>(const OpeningRequest&)>;

/// Opens the drawing alone: what needs no picker is spared its cost.
TORVA_API Result<OpenedDrawing> openDatabase(const OpeningRequest& request, const Progress& progress = {});

/// Opens the drawing and builds the picker's tree.
TORVA_API Result<OpenedDrawing> openWithPicker(const OpeningRequest& request, const Progress& progress = {});

/// Opens a drawing with its picker on a thread of its own, which touches nothing of the host besides.
class TORVA_API OpeningThread {
 public:
  /// Begins at once.
  /// @param onDone called on that thread when the result can be taken; may not throw
  OpeningThread(OpeningRequest request, std::function<void()> onDone);
  /// Cancels what is not done and waits for its end.
  ~OpeningThread();
  OpeningThread(const OpeningThread&) = delete;
  OpeningThread& operator=(const OpeningThread&) = delete;

  double shareDone() const { return m_watch.share(); }
  void cancel() { m_watch.cancel(); }
  bool isDone() const;
  /// The result, for which it waits; throws what opening threw. To be called once.
  Result<OpenedDrawing> take() { return m_result.get(); }

 private:
  Watch m_watch;
  std::future<Result<OpenedDrawing>> m_result;
  std::thread m_thread;
};

}  // namespace torva::command
