// Parsing tool messages line by line: the built-in patterns, tried one after the other, and the
// search for a path. Compared with PCRE2 (interpreted and JIT-compiled), RE2 and std::regex on the
// same lines.
//
// Targets: at least twice the speed of RE2, five times that of interpreted PCRE2, and ideally 0.4
// of that of PCRE2 with JIT. Compilation not slower than PCRE2 without JIT.
#define PCRE2_CODE_UNIT_WIDTH 8
#include <benchmark/benchmark.h>
#include <pcre2.h>
#include <re2/re2.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "bench/Ratios.h"
#include "patterns/DiagnosticParser.h"
#include "patterns/RegularExpression.h"

namespace {

using tarn::CRegularExpression;

constexpr std::array kPatterns = {tarn::kBuiltInPatterns[0].pattern,
                                  tarn::kBuiltInPatterns[1].pattern,
                                  tarn::kBuiltInPatterns[2].pattern, tarn::kPathPattern};

struct Lines {
  const char* name;
  std::vector<std::string> lines;
};

const Lines kLines[] = {
    {"lines of row 1",
     {"*** ERROR C100 IN LINE 12 OF foo.c : bad thing",
      "*** WARNING C280 IN LINE 1204 OF src\\drivers\\uart.c : 'buffer': unreferenced local "
      "variable",
      "*** FATAL ERROR L250 IN LINE 3 OF a b.c : code size limit in restricted version exceeded"}},
    {"lines of row 2",
     {"*** WARNING L16 : UNCALLED SEGMENT, IGNORED FOR OVERLAY PROCESS",
      "*** ERROR L107 : ADDRESS SPACE OVERFLOW", "*** WARNING L1 : UNRESOLVED EXTERNAL SYMBOL"}},
    {"lines of row 3",
     {"C:\\src\\a.c:12:warning: no use of x",
      "In file included from D:/projects/firmware/board/src/main.c:3: note: expanded from here",
      "C:\\Program Files\\Tools\\include\\stdint.h:88: error: conflicting types for 'uint8_t'"}},
    {"lines of none",
     {"    SEGMENT: ?PR?PUTCHAR?UART", "src/drivers/uart.c: In function 'uart_put':",
      "avr-gcc -c -mmcu=atmega328p -Os -Wall -Iinclude -o build/Standard/main.o src/main.c",
      "  while (!(UCSR0A & (1 << UDRE0))) { /* wait: the register is still full */ }",
      "Program Size: data=9.0 xdata=0 code=127",
      "make[1]: Entering directory '/home/dev/firmware'"}},
};

// --- The engines_ ---

class Own {
 public:
  explicit Own(const char* pattern) : expression_(pattern) {}
  bool Match(const std::string& line) { return expression_.Match(line.c_str()); }

 private:
  CRegularExpression expression_;
};

class Pcre {
 public:
  static pcre2_code* Compile(const char* pattern) {
    int error = 0;
    std::size_t place = 0;
    pcre2_code* made = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED,
                                     PCRE2_DOTALL | PCRE2_DOLLAR_ENDONLY, &error, &place, nullptr);
    if (!made) std::abort();
    return made;
  }
  explicit Pcre(const char* pattern, bool withMachineCode = false) {
    code_.reset(Compile(pattern));
    if (withMachineCode) pcre2_jit_compile(code_.get(), PCRE2_JIT_COMPLETE);
    data_.reset(pcre2_match_data_create_from_pattern(code_.get(), nullptr));
  }
  bool Match(const std::string& line) {
    return pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(line.data()), line.size(), 0, 0,
                       data_.get(), nullptr) > 0;
  }

 private:
  struct Free {
    void operator()(pcre2_code* freed) const { pcre2_code_free(freed); }
    void operator()(pcre2_match_data* freed) const { pcre2_match_data_free(freed); }
  };
  std::unique_ptr<pcre2_code, Free> code_;
  std::unique_ptr<pcre2_match_data, Free> data_;
};

class PcreJit : public Pcre {
 public:
  explicit PcreJit(const char* pattern) : Pcre(pattern, true) {}
};

class Re2 {
 public:
  explicit Re2(const char* pattern) : expression_(pattern, Options()) {
    if (!expression_.ok()) std::abort();
  }
  bool Match(const std::string& line) {
    return expression_.Match(line, 0, line.size(), RE2::UNANCHORED, groups_.data(),
                             1 + expression_.NumberOfCapturingGroups());
  }

 private:
  static RE2::Options Options() {
    RE2::Options options(RE2::Latin1);
    options.set_dot_nl(true);
    return options;
  }
  RE2 expression_;
  std::array<re2::StringPiece, 10> groups_;
};

class Standard {
 public:
  explicit Standard(const char* pattern) : expression_(pattern) {}
  bool Match(const std::string& line) { return std::regex_search(line, groups_, expression_); }

 private:
  std::regex expression_;
  std::smatch groups_;
};

// --- The work ---

// Finds the first pattern that a line matches.
template <class Engine>
class Parsing {
 public:
  Parsing() {
    for (const char* pattern : kPatterns) engines_.push_back(std::make_unique<Engine>(pattern));
  }
  std::size_t Parse(const std::string& line) {
    std::size_t row = 0;
    while (row < engines_.size() && !engines_[row]->Match(line)) ++row;
    return row;
  }
  std::size_t ParseAll(const std::vector<std::string>& lines) {
    std::size_t sum = 0;
    for (const std::string& line : lines) sum = 5 * sum + Parse(line);
    return sum;
  }

 private:
  std::vector<std::unique_ptr<Engine>> engines_;
};

template <class Engine>
class PathSearch {
 public:
  std::size_t ParseAll(const std::vector<std::string>& lines) {
    std::size_t count = 0;
    for (const std::string& line : lines) count += engine_.Match(line) ? 1 : 0;
    return count;
  }

 private:
  Engine engine_{kPatterns.back()};
};

template <class Engine>
void BM_Parse(benchmark::State& state) {
  Parsing<Engine> recognition;
  const Lines& lines = kLines[state.range(0)];
  for (auto _ : state) benchmark::DoNotOptimize(recognition.ParseAll(lines.lines));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.lines.size()));
  state.SetLabel(lines.name);
}

void CompileOwn(const char* pattern) {
  benchmark::DoNotOptimize(CRegularExpression(pattern));
}

void CompilePcre(const char* pattern) {
  pcre2_code_free(Pcre::Compile(pattern));
}

// Time from the pattern to the first result, including work that is deferred until the first match.
template <class Engine>
void CompileAndMatch(const char* pattern) {
  static const std::string line = "C:x";
  Engine engine(pattern);
  benchmark::DoNotOptimize(engine.Match(line));
}

// Like BM_Parse, but including all fields of a line.
void BM_ParseWhole(benchmark::State& state) {
  tarn::DiagnosticParser parser;
  const Lines& lines = kLines[state.range(0)];
  for (auto _ : state) {
    for (const std::string& line : lines.lines) {
      benchmark::DoNotOptimize(parser.Parse(line));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.lines.size()));
  state.SetLabel(lines.name);
}

template <void (*kCompile)(const char*)>
void BM_Compile(benchmark::State& state) {
  for (auto _ : state) {
    for (const char* pattern : kPatterns) kCompile(pattern);
  }
}

BENCHMARK(BM_Compile<CompileOwn>);
BENCHMARK(BM_Compile<CompilePcre>);
BENCHMARK(BM_Compile<CompileAndMatch<Own>>);
BENCHMARK(BM_Compile<CompileAndMatch<Pcre>>);
BENCHMARK(BM_Compile<CompileAndMatch<PcreJit>>);
BENCHMARK(BM_Compile<CompileAndMatch<Re2>>);
BENCHMARK(BM_Compile<CompileAndMatch<Standard>>);
BENCHMARK(BM_ParseWhole)->DenseRange(0, 3);
BENCHMARK(BM_Parse<Own>)->DenseRange(0, 3);
BENCHMARK(BM_Parse<Pcre>)->DenseRange(0, 3);
BENCHMARK(BM_Parse<PcreJit>)->DenseRange(0, 3);
BENCHMARK(BM_Parse<Re2>)->DenseRange(0, 3);
BENCHMARK(BM_Parse<Standard>)->DenseRange(0, 3);

// --- The ratios ---

// Measures both in turn, since the system may be busy, and returns the median.
template <class OwnWork, class PeerWork>
double SpeedRatio(OwnWork own, PeerWork peer, int times) {
  const auto repeat = [times](auto& work) {
    return tarn::bench::SecondsOf([&] {
      for (int i = 0; i < times; ++i) work();
    });
  };
  std::vector<double> ratios;
  for (int run = 0; run < 21; ++run) {
    const double ownTime = repeat(own);
    ratios.push_back(repeat(peer) / ownTime);
  }
  return tarn::bench::Median(ratios);
}

void PrintAtLeast(const std::string& what, double ratio, double limit) {
  char wanted[32];
  std::snprintf(wanted, sizeof wanted, ">= %.2f", limit);
  tarn::bench::PrintRow(what.c_str(), ratio, wanted, ratio >= limit);
}

template <template <class> class Work, class Engine>
void PrintSpeed(const Lines& lines, const char* peerName, double limit) {
  Work<Own> own;
  Work<Engine> peer;
  if (own.ParseAll(lines.lines) != peer.ParseAll(lines.lines)) std::abort();
  const double ratio =
      SpeedRatio([&] { benchmark::DoNotOptimize(own.ParseAll(lines.lines)); },
                 [&] { benchmark::DoNotOptimize(peer.ParseAll(lines.lines)); }, 2000);
  PrintAtLeast(std::string(lines.name) + ", speed / " + peerName, ratio, limit);
}

template <template <class> class Work>
void PrintSpeeds(const Lines& lines) {
  PrintSpeed<Work, Re2>(lines, "RE2's", 2);
  PrintSpeed<Work, Pcre>(lines, "PCRE2's", 5);
  PrintSpeed<Work, PcreJit>(lines, "PCRE2's machine code's", 0.4);
  PrintSpeed<Work, Standard>(lines, "std::regex's", 5);
}

void PrintCompiling() {
  const auto each = [](void (*compile)(const char*)) {
    return [compile] {
      for (const char* pattern : kPatterns) compile(pattern);
    };
  };
  const double compile = SpeedRatio(each(CompileOwn), each(CompilePcre), 2000);
  tarn::bench::PrintAtMost("compiling, time / PCRE2's", 1 / compile, 1);
  const double answer = SpeedRatio(each(CompileAndMatch<Own>), each(CompileAndMatch<Pcre>), 2000);
  std::printf("compiling and the first match, time / PCRE2's: %.2f\n", 1 / answer);
}

std::string Repeat(int count, const std::string& text) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

// Cases that take exponential time in a matcher without limits.
void PrintBlowUps() {
  const std::pair<const char*, std::string> cases[] = {
      {"(a+)+b", Repeat(100'000, "a")},
      {"(.*)(.*)(.*)(.*)x", Repeat(100'000, "a")},
      {kPatterns[3], "c:" + Repeat(100'000, "\\a")},
      {kPatterns[2], "c:" + Repeat(100'000, "\\a")},
      {kPatterns[3], "c:" + Repeat(100'000, "\\")},
      {kPatterns[2], "c:" + Repeat(100'000, "\\")},
      {kPatterns[0], "*** ERROR" + Repeat(16'000, " ")},
      {kPatterns[0], "*** ERROR" + Repeat(2'000, " IN LINE 1 OF x")},
  };
  double slowest = 0;
  for (const auto& [pattern, subject] : cases) {
    CRegularExpression expression(pattern);
    const double seconds = tarn::bench::SecondsOf(
        [&] { benchmark::DoNotOptimize(expression.Match(subject.c_str())); });
    slowest = std::max(slowest, seconds);
  }
  tarn::DiagnosticParser parser;
  for (const auto& [pattern, subject] : cases) {
    const double seconds =
        tarn::bench::SecondsOf([&] { benchmark::DoNotOptimize(parser.Parse(subject)); });
    slowest = std::max(slowest, seconds);
  }
  tarn::bench::PrintAtMost("slowest of the blow-ups, ms", 1000 * slowest, 50);
}

void PrintRatios() {
  std::printf("\n");
  Lines all{"path search in all lines", {}};
  for (const Lines& lines : kLines) {
    PrintSpeeds<Parsing>(lines);
    all.lines.insert(all.lines.end(), lines.lines.begin(), lines.lines.end());
  }
  PrintSpeeds<PathSearch>(all);
  all.name = "all lines";
  PrintSpeeds<Parsing>(all);
  PrintCompiling();
  PrintBlowUps();
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  PrintRatios();
  return 0;
}
