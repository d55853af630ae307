// Cost of the project tree per node in growing projects: the first fill, a fill with no change or
// one new node, saving the view state, and a selection. Measured for one group with all files,
// which has the longest possible list of children, and for groups of ten.

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/Ratios.h"
#include "views/XmlTreeCtrl.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

constexpr int kSmall = 10'000;
constexpr int kLarge = 100'000;
constexpr int kRounds = 9;
constexpr int kSelections = 10'000;

struct Times {
  std::vector<double> plain, fill, refill, refillOneMore, save, select;  // seconds per item
};

std::unique_ptr<CXmlNode> MakeProject(int fileCount, int groupSize) {
  std::string text = "<Project Header='P'>";
  for (int i = 0; i < fileCount; ++i) {
    const std::string number = std::to_string(i);
    if (i % groupSize == 0) text += "<Group Header='group " + number + "'>";
    text += "<File Header='source file " + number + ".c' Path='src\\" + number + ".c'/>";
    if (i % groupSize == groupSize - 1) text += "</Group>";
  }
  text += "</Project>";
  auto project = std::make_unique<CXmlNode>();
  project->LoadWithFullEntities(text.c_str());
  return project;
}

// The minimum work of a fill: visit each node and copy its label.
void CopyLabels(const CXmlNode& node, std::vector<std::string>& labels) {
  labels.emplace_back(node.GetAttrValue("Header"));
  for (int i = 0; i < node.GetChildCount(); ++i) CopyLabels(*node.GetChild(i), labels);
}

void Measure(int fileCount, int groupSize, Times& times) {
  const std::unique_ptr<CXmlNode> project = MakeProject(fileCount, groupSize);
  CWnd owner;
  owner.Create(kStylePopup, {0, 0, 300, 600}, nullptr, 0);
  CXmlTreeCtrl tree;
  tree.Create(2, kStyleChild, {0, 0, 300, 600}, &owner, 100);
  auto picture = std::make_shared<Bitmap>();
  picture->size = {16, 16};
  for (const char* name : {"Project", "Group", "File"}) tree.AddImage(name, picture);
  tree.SetSelectedLabel("source file 77.c");

  const auto perItem = [&](std::vector<double>& out, auto&& work) {
    out.push_back(bench::SecondsOf(work) / fileCount);
  };
  std::vector<std::string> labels;
  perItem(times.plain, [&] { CopyLabels(*project, labels); });
  perItem(times.fill, [&] { tree.SetXmlRoot(project.get()); });
  tree.SaveViewState();  // the first call adds the attribute
  perItem(times.save, [&] { tree.SaveViewState(); });
  perItem(times.refill, [&] { tree.Refill(); });
  CXmlNode* const group = project->GetChild(project->GetChildCount() / 2);
  auto file = CXmlNode::CreateNode("File");
  file->SetAttrValue("Header", "one more.c");
  group->InsertChildBefore(std::move(file), group->GetChild(group->GetChildCount() / 2));
  perItem(times.refillOneMore, [&] { tree.Refill(); });
  const int step = fileCount / kSelections;
  const double selections = bench::SecondsOf([&] {
    for (int i = 0; i < kSelections; ++i) {
      const CXmlNode& from = *project->GetChild(i * step / groupSize);
      tree.SelectNode(from.GetChild(i * step % groupSize));
    }
  });
  times.select.push_back(selections / kSelections);
}

void PrintShape(const char* shape, std::map<int, Times>& all) {
  for (auto& [count, times] : all) {
    const auto nanoseconds = [](const std::vector<double>& seconds) {
      return bench::Median(seconds) * 1e9;
    };
    std::printf(
        "%s, %6d files, ns an item: labels %.0f, fill %.0f, refill %.0f, with one more %.0f, "
        "state %.0f, a selection %.0f\n",
        shape, count, nanoseconds(times.plain), nanoseconds(times.fill), nanoseconds(times.refill),
        nanoseconds(times.refillOneMore), nanoseconds(times.save), nanoseconds(times.select));
  }
  const auto grows = [&](std::vector<double> Times::*of) {
    return bench::Median(all[kLarge].*of) / bench::Median(all[kSmall].*of);
  };
  const auto print = [&](const std::string& what, double ratio, double limit) {
    bench::PrintAtMost((std::string(shape) + ": " + what).c_str(), ratio, limit);
  };
  print("fill, an item of 100,000 / of 10,000", grows(&Times::fill), 2.0);
  print("refill, an item of 100,000 / of 10,000", grows(&Times::refill), 2.0);
  print("state, an item of 100,000 / of 10,000", grows(&Times::save), 2.0);
  const Times& large = all[kLarge];
  const double refill = bench::Median(large.refill);
  print("10,000 selections / a refill of 100,000",
        bench::Median(large.select) * kSelections / (refill * kLarge), 2.0);
  print("refill where nothing changed / fill", refill / bench::Median(large.fill), 1.0);
  print("refill with one more / without", bench::Median(large.refillOneMore) / refill, 1.5);
}

}  // namespace
}  // namespace tarn

int main() {
  using namespace tarn;
  const struct {
    const char* name;
    bool isFlat;
  } shapes[] = {{"one group", true}, {"groups of 10", false}};
  for (const auto& shape : shapes) {
    std::map<int, Times> all;
    for (int round = 0; round < kRounds; ++round) {
      for (const int count : {kSmall, kLarge}) {
        Measure(count, shape.isFlat ? count : 10, all[count]);
      }
    }
    PrintShape(shape.name, all);
  }
  return 0;
}
