// Cost of reports per row: the build report as filled during a build, one message at a time with an
// update after each, and all at once; the globals with and without the removal of duplicates. The
// table compares a large report with a small one, per row: 1 is linear.

#include <unistd.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "bench/Ratios.h"
#include "platform/files/FileSystem.h"
#include "reports/GlobalsReportWnd.h"
#include "reports/OutputReportWnd.h"
#include "reports/ReportDefinition.h"
#include "reports/SymbolFile.h"
#include "xml/XmlNode.h"
#include "xml/XmlParseInfo.h"

namespace tarn {
namespace {

constexpr int kSmall = 10'000;
constexpr int kLarge = 100'000;

// Images have no cost per row, so columns of numbers replace them.
std::unique_ptr<CXmlNode> WithoutPictures(std::unique_ptr<CXmlNode> definition) {
  ShowPicturesAsNumbers(*definition);
  return definition;
}

void AddMessage(CXmlNode& root, int number) {
  CXmlNode& message = *root.AddChild("message");
  const std::string file = "/home/somebody/firmware/src/part" + std::to_string(number % 97) + ".c";
  const std::string line = std::to_string(number % 3001);
  message.AddAttr("Icon", number % 3 == 0 ? "2" : "1");
  message.AddAttr("ShowInReport", "yes");
  message.AddAttr("Description", file + ":" + line + ":7: warning: unused variable 'counter'");
  message.AddAttr("File", file);
  message.AddAttr("Line", line);
  message.AddChild("type", "2");
  message.AddChild("header", "unused variable");
  message.AddChild("link", "err://" + file + ":" + line);
}

// Returns the seconds per message for `count` messages, with `atOnce` of them between two updates.
double SecondsOfReport(int count, int atOnce, bool sorted) {
  COutputReportWnd window(FileSystem::Native(), 0);
  window.SetDefinition(*WithoutPictures(MakeOutputDefinition("/none")));
  window.Create(kStylePopup, {0, 0, 800, 400}, nullptr, 0);
  if (sorted) window.GetReport()->GetReportHeader().NotifyClicked(kOutputFile);
  CXmlNode root;
  double seconds = 0;
  for (int i = 0; i < count;) {
    for (int k = 0; k < atOnce; ++k) AddMessage(root, i++);
    seconds += bench::SecondsOf([&] { window.Update(root, 1); });
  }
  if (window.GetReport()->GetRows().GetCount() != count) std::printf("rows are missing\n");
  return seconds / count;
}

std::string SymbolText(int count, bool dwarf) {
  std::string text = dwarf ? "<globals dwarf='1'>" : "<globals>";
  for (int i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    text += "<variable Icon='3' Header='symbol_" + number +
            "' Desc='unsigned int' DeclFile='/src/" + std::to_string(i % 211) + ".c' DeclLine='" +
            number + "'/>\r\n";
  }
  return text + "</globals>";
}

// Returns the seconds per symbol, including the read of a cached file.
double SecondsOfGlobals(int count, bool dwarf) {
  FileSystem& disk = FileSystem::Native();
  const std::string path =
      disk.TemporaryFolder() + "/tarn-bench-" + std::to_string(getpid()) + "-Globals.xml";
  if (!disk.WriteScratchFile(path, SymbolText(count, dwarf))) std::printf("%s: no\n", path.c_str());
  CGlobalsReportWnd window(disk, 0, "/none");
  // Without its images the window has no columns, so columns are added here.
  window.GetReport().SetDefinition(*WithoutPictures(MakeGlobalsDefinition("/none")));
  const double seconds = bench::SecondsOf([&] { window.Load(path.c_str()); });
  if (window.GetReport().GetRows().GetCount() != count) std::printf("symbols are missing\n");
  static_cast<void>(disk.RemoveFile(path));
  return seconds / count;
}

// Returns the seconds per symbol for parsing the file into a tree and freeing it.
double SecondsOfReading(int count) {
  const std::string text = SymbolText(count, true);
  return bench::SecondsOf([&] {
           CXmlNode root;
           CXmlParseInfo info;
           root.Load(text, info);
         }) /
         count;
}

double MedianOf(const std::function<double()>& measure) {
  std::vector<double> numbers;
  for (int i = 0; i < 5; ++i) numbers.push_back(measure());
  return bench::Median(numbers);
}

void Compare(const char* what, double limit, const std::function<double(int count)>& measure) {
  const double small = MedianOf([&] { return measure(kSmall); });
  const double large = MedianOf([&] { return measure(kLarge); });
  std::printf("%-44s %7.0f ns a row of %d, %7.0f of %d\n", what, small * 1e9, kSmall, large * 1e9,
              kLarge);
  bench::PrintAtMost((std::string(what) + ", ratio a row").c_str(), large / small, limit);
}

void PrintRatios() {
  constexpr double kLinear = 1.5;
  Compare("report, one message at a time", kLinear,
          [](int count) { return SecondsOfReport(count, 1, false); });
  Compare("report, all messages at once", kLinear,
          [](int count) { return SecondsOfReport(count, count, false); });
  // Inserted rows move those after them.
  Compare("report, sorted, all messages at once", 2.0,
          [](int count) { return SecondsOfReport(count, count, true); });
  Compare("globals, as they are", kLinear, [](int count) { return SecondsOfGlobals(count, true); });
  // The set of seen symbols exceeds the processor's caches.
  Compare("globals, without doubles", 2.0,
          [](int count) { return SecondsOfGlobals(count, false); });
  const double sorted = MedianOf([] { return SecondsOfReport(kSmall, 1, true); });
  const double plain = MedianOf([] { return SecondsOfReport(kSmall, 1, false); });
  bench::PrintAtMost("report one at a time, sorted / in order", sorted / plain, 10.0);
  const double shown = MedianOf([] { return SecondsOfGlobals(kLarge, false); });
  bench::PrintAtMost("globals shown / their text read",
                     shown / MedianOf([] { return SecondsOfReading(kLarge); }), 6.0);
}

}  // namespace
}  // namespace tarn

int main() {
  tarn::PrintRatios();
  return 0;
}
