// What painting the canvas costs: frames while panning and zooming, and the first picture of a large drawing.
//
//     canvas_bench FRAMES_DRAWING LARGE_DRAWING [PICTURE.png]
//
// Each drawing may be "-" to leave its part out. The last picture of the large drawing is written where the third argument
// says.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "paint/canvas_picture.h"

#include <QFileInfo>
#include <QGuiApplication>

namespace {

using namespace torva;
using std::chrono::milliseconds;

constexpr int kWidth = 1600, kHeight = 900;
constexpr milliseconds kSlice{8};
constexpr std::size_t kVisible = 2000;
constexpr int kFrames = 300;

double cpuSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double wallMs() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double peakMb() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

struct Drawing {
  explicit Drawing(const std::string& path) {
    std::vector<dxf::Finding> findings;
    auto opened = db::Database::open(path, dxf::DamagePolicy::refuse, findings);
    if (!opened) {
      std::fprintf(stderr, "%s\n", opened.error().message().c_str());
      std::exit(1);
    }
    database = std::move(*opened);
    picker = std::make_unique<view::Picker>(*database);
  }
  std::unique_ptr<db::Database> database;
  std::unique_ptr<view::Picker> picker;
};

std::size_t visibleCount(view::Picker& picker, const view::View& view) {
  const KdGeVector3d half{view.width() / 2, view.height() / 2, 0};
  std::vector<view::BoxedEntity> found;
  (void)picker.query({view.centerDcs() - half, view.centerDcs() + half}, view, 10 * kVisible, found);
  return found.size();
}

/// A view about the middle of the drawing that shows about kVisible entities.
view::View busyView(view::Picker& picker) {
  const geom::Box3 extents = picker.extents();
  view::View view;
  view.resize(kWidth, kHeight);
  view.fit(extents);
  const KdGePoint3d center = view.centerDcs();
  double low = view.height() * 1e-6, high = view.height();
  for (int i = 0; i < 60; ++i) {
    const double middle = std::sqrt(low * high);
    view.set(center, middle);
    (visibleCount(picker, view) > kVisible ? high : low) = middle;
  }
  return view;
}

void paintAll(paint::CanvasPicture& picture) {
  while (!picture.advance(kSlice)) {
  }
}

/// Shows one view after the other, each painted in full, and prints how long the frames took.
void measureFrames(const char* name, paint::CanvasPicture& picture, const std::function<view::View(int)>& viewOf) {
  std::vector<double> frames;
  for (int i = 0; i < kFrames; ++i) {
    const view::View view = viewOf(i);
    const double start = wallMs();
    picture.show(view);
    paintAll(picture);
    (void)picture.image();
    frames.push_back(wallMs() - start);
  }
  std::sort(frames.begin(), frames.end());
  std::printf("%-28s median %6.2f ms   99 %% %6.2f ms   longest %6.2f ms\n", name, frames[kFrames / 2],
              frames[kFrames * 99 / 100], frames.back());
}

void benchFrames(const std::string& path) {
  const Drawing drawing(path);
  const view::View start = busyView(*drawing.picker);
  std::printf("%s: %zu entities in sight\n", path.c_str(), visibleCount(*drawing.picker, start));
  paint::CanvasPicture picture(*drawing.picker);
  picture.show(start);
  paintAll(picture);
  const double pixel = start.unitsPerPixel(1);
  measureFrames("pan", picture, [&](int i) {
    view::View view = start;
    view.set(start.centerDcs() + KdGeVector3d{(i + 1) * 7 * pixel, (i + 1) * 4 * pixel, 0}, start.height());
    return view;
  });
  measureFrames("zoom out and in", picture, [&](int i) {
    view::View view = start;
    view.set(start.centerDcs(), start.height() * (1 + 0.2 * std::sin((i + 1) * 0.1)));
    return view;
  });
}

/// From opening the drawing to its finished picture at the extents.
void benchFirstPicture(const std::string& path, const char* pictureFile) {
  const double start = cpuSeconds();
  const Drawing drawing(path);
  const double opened = cpuSeconds();
  view::View view;
  view.resize(kWidth, kHeight);
  view.fit(drawing.picker->extents());
  const double indexed = cpuSeconds();
  paint::CanvasPicture picture(*drawing.picker);
  picture.show(view);
  double longest = 0;
  int slices = 0;
  for (bool isComplete = false; !isComplete; ++slices) {
    const double begin = wallMs();
    isComplete = picture.advance(kSlice);
    (void)picture.image();
    longest = std::max(longest, wallMs() - begin);
  }
  const double painted = cpuSeconds();
  const double fileMb = static_cast<double>(QFileInfo(QString::fromStdString(path)).size()) / (1 << 20);
  std::printf("%s: first picture %.2f s CPU (open %.2f, index %.2f, picture %.2f)\n", path.c_str(), painted - start,
              opened - start, indexed - opened, painted - indexed);
  std::printf("%-28s %d slices of %d ms, longest %.2f ms; memory %.0f MB, %.2f x file\n", "", slices,
              static_cast<int>(kSlice.count()), longest, peakMb(), peakMb() / fileMb);
  if (pictureFile) picture.image().save(QString::fromLocal8Bit(pictureFile));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: canvas_bench FRAMES_DRAWING LARGE_DRAWING [PICTURE.png]\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  // The large one first: the peak of memory is its own.
  if (std::string(argv[2]) != "-") benchFirstPicture(argv[2], argc > 3 ? argv[3] : nullptr);
  if (std::string(argv[1]) != "-") benchFrames(argv[1]);
  return 0;
}
