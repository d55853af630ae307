// Cost per line in the log view, in logs of growing length. Showing a line must not depend on the
// number of existing lines.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/Ratios.h"
#include "output/OutputEdit.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

constexpr int kShortLog = 10'000;
constexpr int kLongLog = 100'000;

// Returns a typical mix of build messages.
std::vector<std::unique_ptr<CXmlNode>> MakeLines() {
  std::vector<std::unique_ptr<CXmlNode>> lines;
  for (
      const char* element :
      {R"(<message Icon="5" Description="Building /home/u/demo/src/ring_buffer.c"/>)",
       R"(<message Icon="0" Description="avr-gcc -c -mmcu=atmega328p -Os -Wall -o ring_buffer.o"/>)",
       R"(<message Icon="1" File="/home/u/demo/src/ring_buffer.c" Line="12")"
       R"( Description="src/ring_buffer.c:12:7: warning: unused variable 'n'"/>)",
       R"(<message Icon="0" Description="   int n = { 0 };"/>)"}) {
    lines.push_back(std::make_unique<CXmlNode>());
    lines.back()->Load(element, g_xmlParseInfo);
  }
  return lines;
}

void Fill(COutputEdit& view, int count) {
  static const std::vector<std::unique_ptr<CXmlNode>> lines = MakeLines();
  for (int i = 0; i < count; ++i) {
    view.AddMessage(*lines[static_cast<std::size_t>(i) % lines.size()]);
  }
}

std::unique_ptr<COutputEdit> MakeView() {
  auto view = std::make_unique<COutputEdit>(FileSystem::Native(), 0);
  view->Create(kStyleChild, {0, 0, 800, 600}, nullptr, 0);
  return view;
}

void ShowLines(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    const auto view = MakeView();
    Fill(*view, count);
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(ShowLines)->Arg(kShortLog)->Arg(kLongLog)->Unit(benchmark::kMillisecond);

double SecondsPerLine(int count) {
  const auto view = MakeView();
  return bench::SecondsOf([&] { Fill(*view, count); }) / count;
}

void PrintRatios() {
  std::vector<double> ratios;
  for (int i = 0; i < 7; ++i) {
    const double inLong = SecondsPerLine(kLongLog);
    double inShort = 0;
    for (int part = 0; part < 10; ++part) inShort += SecondsPerLine(kShortLog) / 10;
    ratios.push_back(inLong / inShort);
  }
  bench::PrintAtMost("a line in a log of 100,000 / in one of 10,000", bench::Median(ratios), 1.5);
}

}  // namespace
}  // namespace tarn

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  tarn::PrintRatios();
  return 0;
}
