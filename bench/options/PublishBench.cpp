// Cost of the options component per published node: the calls made for publishing, in order and
// through the dispatch interface, with the shipped definitions. Excludes the caller's own work
// (paths, tree, files).
#include <tarn/methods.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "components/options/PropertyManager.h"
#include "platform/automation/DispatchDriver.h"

namespace {

using tarn::Variant;

constexpr int kFilesPerGroup = 25;

const char kConfigs[] =
    "\r\n<ProjectsConfigs>\r\n\t<Configs>\r\n\t\t<Config Header=\"Debug\" />\r\n\t\t"
    "<Config Header=\"Release\" />\r\n\t</Configs>\r\n</ProjectsConfigs>";
const char kApplicationOptions[] =
    "\r\n<Options>\r\n\t<Config Header=\"Debug\" >\r\n\t\t<Set Header=\"Application\" >\r\n"
    "\t\t\t<Section Header=\"Target\" >\r\n"
    "\t\t\t\t<Property Header=\"Device\" Removable=\"Yes\" Value=\"atmega1284p\" />\r\n"
    "\t\t\t</Section>\r\n\t\t</Set>\r\n\t\t<Set Header=\"C\" >\r\n"
    "\t\t\t<Section Header=\"Compiler\" >\r\n"
    "\t\t\t\t<Property Header=\"Optimize\" Removable=\"Yes\" Value=\"2\" />\r\n"
    "\t\t\t\t<Property Header=\"Defines\" Removable=\"Yes\" Value=\"NDEBUG;A=1\" />\r\n"
    "\t\t\t</Section>\r\n\t\t</Set>\r\n\t</Config>\r\n</Options>";
const char kGroupOptions[] =
    "\r\n<Options>\r\n\t<Config Header=\"Debug\" >\r\n\t\t<Set Header=\"C\" >\r\n"
    "\t\t\t<Section Header=\"Directories\" >\r\n"
    "\t\t\t\t<Property Header=\"Include\" Removable=\"Yes\" Value=\"$(Inherited);inc\" />\r\n"
    "\t\t\t</Section>\r\n\t\t</Set>\r\n\t</Config>\r\n</Options>";

struct Node {
  const char* type;
  std::string name;  // title of the file
  std::string path;  // empty for a group
};

class Publisher {
 public:
  Publisher() : configFile_(std::string(TARN_SOURCE_DIR) + "/share/config/projectmanager.config") {
    driver_.AttachDispatch(&manager_, false);
    driver_.InvokeLong(TARN_OPT_INIT_OPTIONS, {"/usr/share/tarn/", "/tmp/", 0, 1});
    driver_.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"", configFile_});
  }

  std::string Publish(const Node& node, const std::string* parentText,
                      std::initializer_list<const char*> options) {
    Prepare(parentText);
    Describe(node);
    for (const char* text : options) driver_.InvokeLong(TARN_OPT_APPLY_OPTIONS, {"Debug", text});
    std::string text = driver_.InvokeText(TARN_OPT_GET_VALUES_AS_TEXT, {"", "", ""});
    for (const auto& [section, property] : kRead) {
      benchmark::DoNotOptimize(
          driver_.InvokeText(TARN_OPT_GET_PROPERTY_VALUE, {node.type, section, property}));
    }
    return text;
  }

 private:
  static constexpr std::pair<const char*, const char*> kRead[] = {
      {"Build", "TranslateTool"}, {"Build", "Exclude"},     {"Build", "LinkExclude"},
      {"Build", "OutputFile"},    {"Build", "ListingFile"}, {"Load", "DBIFile"},
      {"Load", "LoadExclude"}};

  void Prepare(const std::string* parentText) {
    driver_.InvokeHelper(TARN_OPT_CLEAR_VALUES, {});
    driver_.InvokeLong(TARN_OPT_READ_VALUES_FROM_TEXT, {kConfigs});
    driver_.InvokeHelper(TARN_OPT_SET_CURRENT_CONFIG, {"Debug"});
    if (parentText == nullptr) return;
    driver_.InvokeLong(TARN_OPT_READ_VALUES_FROM_TEXT, {*parentText});
    driver_.InvokeHelper(TARN_OPT_END_PARENT_LEVEL, {});
    driver_.InvokeHelper(TARN_OPT_BEGIN_CHILD_LEVEL, {});
  }

  void Set(const Node& node, const std::string& property, const std::string& value) {
    driver_.InvokeLong(TARN_OPT_SET_PROPERTY_VALUE, {node.type, "General", property, value});
  }

  void Describe(const Node& node) {
    driver_.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {node.type, configFile_});
    Set(node, "Header", node.name + ".c");
    if (!node.path.empty()) Set(node, "Path", ".\\src\\" + node.name + ".c");
    Set(node, "Marker", "-1");
    Set(node, "OutputFile", ".\\build\\Debug\\" + node.name + ".o");
    Set(node, "sate", "32");
    if (driver_.InvokeText(TARN_OPT_GET_PROPERTY_VALUE, {node.type, "General", "Path"}).empty())
      return;
    const std::string kind = std::string_view(node.type) == "C" ? "Node" : "Application";
    Set(node, "Path", node.path);
    Set(node, kind + "Path", node.path);
    Set(node, kind + "Dir", node.path.substr(0, node.path.rfind('/') + 1));
    Set(node, kind + "Filename", node.name + ".c");
    Set(node, kind + "Name", node.name);
    Set(node, kind + "Ext", ".c");
  }

  std::string configFile_;
  tarn::options::PropertyManager manager_;
  tarn::COleDispatchDriver driver_;
};

void PublishProject(benchmark::State& state) {
  std::vector<Node> nodes;
  for (int i = 0; i < state.range(0); ++i) {
    const std::string name = "source_file_" + std::to_string(i);
    nodes.push_back({"C", name, "/home/user/project/firmware/src/" + name + ".c"});
  }
  Publisher publisher;
  std::size_t bytes = 0;
  for (auto _ : state) {
    const Node application{"Application", "firmware", "/home/user/project/firmware/firmware.tapp"};
    const std::string applicationText =
        publisher.Publish(application, nullptr, {kApplicationOptions});
    std::string groupText;
    bytes = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      if (i % kFilesPerGroup == 0) {
        const Node group{"Group", "group " + std::to_string(i), ""};
        groupText =
            publisher.Publish(group, &applicationText, {kApplicationOptions, kGroupOptions});
      }
      bytes += publisher.Publish(nodes[i], &groupText, {kApplicationOptions, kGroupOptions}).size();
    }
  }
  const auto count = static_cast<double>(nodes.size());
  state.counters["us/node"] = benchmark::Counter(
      count / 1e6, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.counters["bytes/node"] = static_cast<double>(bytes) / count;
}
BENCHMARK(PublishProject)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
