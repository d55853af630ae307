// The XML tree compared with pugixml on an application file of 10,000 files.
//
// Targets: Load at least half as fast as the peer, and still 0.8 of that after ten cycles of load
// and free; at most 0.8 of the peer's heap memory per file element; ToString and CopyFrom at most
// the peer's time. The program prints the measured ratios after the table of times.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "bench/Ratios.h"
#include "xml/XmlNode.h"

namespace {

using tarn::CXmlNode;
using tarn::CXmlParseInfo;

constexpr int kFiles = 10000;

std::string OptionsOf(int file) {
  std::string out = "\r\n\t\t\t<Options>";
  for (const char* section : {"General", "Compiler"}) {
    out += std::string("\r\n\t\t\t\t<Section Header=\"") + section + "\" >";
    for (int i = 0; i < 6; ++i) {
      out += "\r\n\t\t\t\t\t<Property Header=\"" + std::string(i % 2 ? "IncludePath" : "Level") +
             std::to_string(i) + "\" Value=\"..\\include\\part" + std::to_string(file % 100) +
             "\" />";
    }
    out += "\r\n\t\t\t\t</Section>";
  }
  return out + "\r\n\t\t\t</Options>";
}

// Returns a file with the layout of a saved application file.
std::string ApplicationFile(bool withOptions) {
  std::string out = "\r\n<Application Header=\"app\" >\r\n\t<Group Header=\"sources\" >";
  for (int i = 0; i < kFiles; ++i) {
    const std::string name = "module" + std::to_string(i);
    out += "\r\n\t\t<File Header=\"" + name + ".c\" Path=\"src\\part" + std::to_string(i % 100) +
           "\\" + name + ".c\" Marker=\"-1\" OutputFile=\"obj\\" + name + ".o\" sate=\"0\" ";
    if (withOptions) {
      out.append(1, '>').append(OptionsOf(i)).append("\r\n\t\t</File>");
    } else {
      out += "/>";
    }
  }
  return out + "\r\n\t</Group>\r\n</Application>";
}

const std::string& File() {
  static const std::string file = ApplicationFile(true);
  return file;
}

int CountElements(const CXmlNode& node) {
  int count = 1;
  for (const CXmlNode* child : node.GetChildren()) count += CountElements(*child);
  return count;
}

// --- The two sides ---

struct Own {
  CXmlNode root;
  void Load(const std::string& text) {
    if (!root.Load(text, tarn::g_xmlParseInfo)) std::abort();
  }
};

struct StringWriter : pugi::xml_writer {
  std::string out;
  void write(const void* data, std::size_t size) override {
    out.append(static_cast<const char*>(data), size);
  }
};

struct Peer {
  pugi::xml_document document;
  void Load(const std::string& text) {
    if (!document.load_buffer(text.data(), text.size())) std::abort();
  }
};

template <class Side>
void LoadAndFree(const std::string& text) {
  const auto side = std::make_unique<Side>();
  side->Load(text);
}

template <class Side>
void BM_Load(benchmark::State& state) {
  for (auto _ : state) {
    auto side = std::make_unique<Side>();
    side->Load(File());
    state.PauseTiming();
    side.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(File().size()));
}

template <class Side>
void BM_LoadAndFree(benchmark::State& state) {
  for (auto _ : state) LoadAndFree<Side>(File());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(File().size()));
}

void BM_WriteOwn(benchmark::State& state) {
  Own own;
  own.Load(File());
  for (auto _ : state) benchmark::DoNotOptimize(own.root.ToString(tarn::g_xmlDisplayOptions));
}

void BM_WritePeer(benchmark::State& state) {
  Peer peer;
  peer.Load(File());
  for (auto _ : state) {
    StringWriter writer;
    peer.document.save(writer, "\t", pugi::format_default | pugi::format_no_declaration);
    benchmark::DoNotOptimize(writer.out);
  }
}

void BM_CopyOwn(benchmark::State& state) {
  Own own;
  own.Load(File());
  for (auto _ : state) {
    auto copy = std::make_unique<CXmlNode>();
    copy->CopyFrom(own.root);
    state.PauseTiming();
    copy.reset();
    state.ResumeTiming();
  }
}

void BM_CopyPeer(benchmark::State& state) {
  Peer peer;
  peer.Load(File());
  for (auto _ : state) {
    auto copy = std::make_unique<pugi::xml_document>();
    copy->append_copy(peer.document.document_element());
    state.PauseTiming();
    copy.reset();
    state.ResumeTiming();
  }
}

BENCHMARK(BM_Load<Own>)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);
BENCHMARK(BM_Load<Peer>)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);
BENCHMARK(BM_LoadAndFree<Own>)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);
BENCHMARK(BM_LoadAndFree<Peer>)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);
BENCHMARK(BM_WriteOwn)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);
BENCHMARK(BM_WritePeer)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);
BENCHMARK(BM_CopyOwn)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);
BENCHMARK(BM_CopyPeer)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);

// --- The ratios ---

// Measures both sides in turn, in processor time, since the system may be busy, and returns the
// median ratio.
template <class OwnWork, class PeerWork>
double Ratio(OwnWork own, PeerWork peer, int runs = 15) {
  std::vector<double> ratios;
  const auto seconds = [](auto& work) {
    const std::clock_t start = std::clock();
    const auto kept = work();
    return static_cast<double>(std::clock() - start);
  };
  for (int i = 0; i < runs; ++i) {
    const double ownTime = seconds(own);
    ratios.push_back(ownTime / seconds(peer));
  }
  std::nth_element(ratios.begin(), ratios.begin() + runs / 2, ratios.end());
  return ratios[static_cast<std::size_t>(runs) / 2];
}

template <class Side>
auto Loading() {
  return [] {
    auto side = std::make_unique<Side>();
    side->Load(File());
    return side;
  };
}

// Returns the heap bytes per file element, including the heap's own overhead and, for the peer, the
// copied input.
template <class Side>
double HeapForOneFile() {
  const std::string text = ApplicationFile(false);
  const auto inUse = [] {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
  };
  LoadAndFree<Side>(text);
  const double before = inUse();
  const auto side = std::make_unique<Side>();
  side->Load(text);
  return (inUse() - before) / kFiles;
}

using tarn::bench::PrintRow;

void PrintRatios() {
  Own own;
  own.Load(File());
  Peer peer;
  peer.Load(File());
  std::printf("\n%d files, %.1f MB, %d elements\n", kFiles,
              static_cast<double>(File().size()) / 1e6, CountElements(own.root));

  const double speed = 1 / Ratio(Loading<Own>(), Loading<Peer>());
  PrintRow("load, speed / peer's", speed, ">= 0.50", speed >= 0.5);
  for (int i = 0; i < 10; ++i) LoadAndFree<Own>(File());
  const double later = 1 / Ratio(Loading<Own>(), Loading<Peer>());
  PrintRow("load after ten cycles, speed / first speed", later / speed, ">= 0.80",
           later / speed >= 0.8);
  const double heap = HeapForOneFile<Own>() / HeapForOneFile<Peer>();
  PrintRow("heap for a file element / peer's", heap, "<= 0.80", heap <= 0.8);
  const double write =
      Ratio([&] { return own.root.ToString(tarn::g_xmlDisplayOptions); },
            [&] {
              StringWriter writer;
              peer.document.save(writer, "\t", pugi::format_default | pugi::format_no_declaration);
              return writer.out;
            });
  PrintRow("ToString, time / peer's", write, "<= 1.00", write <= 1);
  const double copy = Ratio(
      [&] {
        auto node = std::make_unique<CXmlNode>();
        node->CopyFrom(own.root);
        return node;
      },
      [&] {
        auto document = std::make_unique<pugi::xml_document>();
        document->append_copy(peer.document.document_element());
        return document;
      });
  PrintRow("CopyFrom, time / peer's", copy, "<= 1.00", copy <= 1);
  std::printf("heap for a file element: %.0f bytes, peer %.0f\n", HeapForOneFile<Own>(),
              HeapForOneFile<Peer>());
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  File();  // created before measuring
  benchmark::RunSpecifiedBenchmarks();
  PrintRatios();
  return 0;
}
