// What opening, reading and saving a drawing cost inside the process.
#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "dxf/drawing_file.h"

namespace {

using namespace torva;
using namespace torva::dxf;

constexpr unsigned kSeed = 1;

/// A drawing of multilines of two elements, as CAD programs write them.
const std::string& plan(std::size_t multilines) {
  static std::string bytes;
  static std::size_t made = 0;
  if (made == multilines) return bytes;
  made = multilines;
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> place(0, 1e6);
  bytes = "  0\nSECTION\n  2\nENTITIES\n";
  const auto put = [&](const char* code, const std::string& value) {
    bytes.append(code).append("\n").append(value).append("\n");
  };
  for (std::size_t i = 1; i <= multilines; ++i) {
    put("  0", "MLINE");
    put("  5", formatHandle(i));
    put("100", "AcDbMline");
    put("  2", "STANDARD");
    for (int vertex = 0; vertex < 4; ++vertex) {
      for (const char* code : {" 11", " 21", " 31", " 12", " 22", " 32", " 13", " 23", " 33"})
        put(code, formatReal(place(random)));
      for (int element = 0; element < 2; ++element) {
        put(" 74", "     2");
        put(" 41", formatReal(place(random)));
        put(" 41", "0.0");
        put(" 75", "     0");
      }
    }
  }
  bytes += "  0\nENDSEC\n  0\nEOF\n";
  return bytes;
}

DrawingFile opened(const std::string& bytes) {
  std::vector<Finding> findings;
  return std::move(*DrawingFile::fromBytes(bytes, "plan", DamagePolicy::refuse, findings));
}

void openDrawing(benchmark::State& state) {
  const std::string& bytes = plan(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(opened(bytes));
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
}
BENCHMARK(openDrawing)->Arg(1'000)->Arg(30'000)->Unit(benchmark::kMillisecond);

void readAllNumbers(benchmark::State& state) {
  const DrawingFile drawing = opened(plan(10'000));
  std::int64_t numbers = 0;
  for (auto _ : state) {
    double sum = 0;
    for (RecordId id = 0; id < drawing.recordCount(); ++id) {
      for (const Group& group : drawing.groups(id)) {
        if (valueKind(group.code) != ValueKind::real) continue;
        sum += group.realOr(0);
        ++numbers;
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(numbers);
}
BENCHMARK(readAllNumbers)->Unit(benchmark::kMillisecond);

void writeReals(benchmark::State& state) {
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> place(0, 1e6);
  std::vector<double> values(1000);
  for (double& value : values) value = place(random);
  for (auto _ : state) {
    for (const double value : values) benchmark::DoNotOptimize(formatReal(value));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(values.size()) * state.iterations());
}
BENCHMARK(writeReals);

void findByHandle(benchmark::State& state) {
  const DrawingFile drawing = opened(plan(30'000));
  std::mt19937 random(kSeed);
  for (auto _ : state) benchmark::DoNotOptimize(drawing.find(random() % 30'000 + 1));
}
BENCHMARK(findByHandle);

void putTogetherAfterEdits(benchmark::State& state) {
  DrawingFile drawing = opened(plan(30'000));
  for (Handle handle = 1; handle <= 30'000; handle += 30) {
    const RecordId id = drawing.find(handle);
    drawing.setBytes(id, std::string(drawing.bytes(id)));
  }
  for (auto _ : state) benchmark::DoNotOptimize(drawing.toBytes());
}
BENCHMARK(putTogetherAfterEdits)->Unit(benchmark::kMillisecond);

}  // namespace
