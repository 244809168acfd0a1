// What it costs to find out whether a style is used by any multiline of a drawing: style_usage DRAWING.dxf...
#include <cstdio>
#include <ctime>
#include <vector>

#include "base/current.h"
#include "db/database.h"
#include "mlstyle/usage.h"

namespace {

double cpuSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

int measure(const char* path) {
  using namespace torva;
  std::vector<dxf::Finding> findings;
  const auto drawing = db::Database::open(path, dxf::DamagePolicy::recover, findings);
  if (!drawing) {
    std::fprintf(stderr, "%s\n", drawing.error().message().c_str());
    return 1;
  }
  const Current<db::Database> current(**drawing);
  // The first scan looks at all multilines; later ones, until a multiline is changed, know them.
  for (const char* turn : {"first", "next"}) {
    const double begin = cpuSeconds();
    const bool isUsed = isStyleUsed(drawing->get(), L"no style has this name");
    std::printf("%s: %s scan %.1f ms of CPU time%s\n", path, turn, (cpuSeconds() - begin) * 1e3, isUsed ? ", found" : "");
  }
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  int failed = 0;
  for (int i = 1; i < count; ++i) failed |= measure(arguments[i]);
  return failed;
}
