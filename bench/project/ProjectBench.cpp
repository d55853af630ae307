// Scaling of the project manager with the size of the project: publishing, a build with nothing to
// do, processing of reports, and the overhead per tool run. Driven like by a host, with the shipped
// definitions; the tool is a fake that writes the output and a message.
//
// All files are in one folder, the worst case for code that lists folders.

#include <tarn/commands.h>
#include <tarn/methods.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Ratios.h"
#include "hosts/core/BuildInputs.h"
#include "hosts/core/HostWindow.h"
#include "hosts/core/ServerDrivers.h"
#include "platform/automation/ClassRegistry.h"
#include "platform/automation/DispatchTable.h"

namespace {

namespace fs = std::filesystem;
using tarn::bench::Median;
using tarn::bench::SecondsOf;

constexpr int kCounts[] = {1000, 10'000, 50'000};  // files
constexpr int kRounds = 5;
constexpr int kWalks = 3;  // per round
constexpr int kHeaders = 100;
constexpr int kHeadersPerFile = 3;

void Write(const std::string& path, std::string_view text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error(path + " can't be written");
}

// Tool manager whose tool takes negligible time, and measures that time.
class StandInTools : public tarn::DispatchObject<StandInTools> {
 public:
  static const tarn::DispatchTable<StandInTools>& Table() {
    using tarn::Method;
    static const tarn::DispatchTable<StandInTools> table({
        Method<&StandInTools::RunTool>("RunTool", TARN_TOOL_RUN_TOOL,
                                       {"tool", "files", "options", "messageFile"}),
        Method<&StandInTools::GetTools>("GetToolsForExtension", TARN_TOOL_GET_TOOLS_FOR_EXTENSION,
                                        {"extension"}),
    });
    return table;
  }

  std::int32_t RunTool(const char*, const char* files, const char*, const char* messageFile) {
    seconds += SecondsOf([&] {
      // The application's list is long; its first file identifies it.
      const std::string_view list(files);
      const auto output = outputs.find(std::string(list.substr(1, list.find('"', 1) - 1)));
      if (output != outputs.end()) Write(output->second, "made");
      Write(messageFile,
            "<Messages><message Icon=\"0\"><header>made</header></message></Messages>");
    });
    return 1;
  }
  std::string GetTools(const char*) { return {}; }

  std::map<std::string, std::string> outputs;  // by the first input file
  double seconds = 0;

 protected:
  void OnFinalRelease() override {}
};

// Project of `size` files on disk.
class Project {
 public:
  explicit Project(int size) : count(size) {
    folder = (fs::temp_directory_path() /
              ("tarn-bench-" + std::to_string(getpid()) + "-" + std::to_string(size)))
                 .string();
    fs::create_directories(folder + "/src");
    for (int i = 0; i < kHeaders; ++i) Write(HeaderAt(i), "");
    std::string files;
    for (int i = 0; i < count; ++i) {
      const std::string name = "file" + std::to_string(i) + ".c";
      Write(folder + "/src/" + name, "");
      files += "<C Header=\"" + name + "\" Path=\".\\src\\" + name + "\" sate=\"0\" />";
    }
    Write(Path(),
          "<Project Header=\"big\" Path=\".\\big.tprj\" ActiveApp=\"big\" sate=\"32\" >"
          "<Application Header=\"big\" Extern=\".\\big.tapp\" Path=\".\\big.tapp\" sate=\"32\" />"
          "</Project>");
    Write(folder + "/big.tapp",
          "<Application Header=\"big\" Extern=\".\\big.tapp\" Path=\".\\big.tapp\" sate=\"32\" >"
          "<Options ><Config Header=\"Standard\" ><Set Header=\"Application\" >"
          "<Section Header=\"Target\" ><Property Header=\"Toolchain\" Value=\"host-gcc\" />"
          "</Section></Set></Config></Options><Group Header=\"all\" sate=\"32\" >" +
              files + "</Group></Application>");
  }
  Project(const Project&) = delete;
  Project& operator=(const Project&) = delete;
  ~Project() {
    std::error_code ignored;
    fs::current_path("/", ignored);
    fs::remove_all(folder, ignored);
  }

  std::string Path() const { return folder + "/big.tprj"; }
  std::string SourceAt(int i) const { return folder + "/src/file" + std::to_string(i) + ".c"; }
  std::string HeaderAt(int i) const {
    return folder + "/src/header" + std::to_string(i % kHeaders) + ".h";
  }

  int count;
  std::string folder;
};

tarn::DispatchPtr Create(const char* name) {
  std::string reason;
  tarn::DispatchPtr object = tarn::ClassRegistry::Native().CreateInstance(name, &reason);
  if (!object) throw std::runtime_error(reason);
  return object;
}

// One host with the project open.
class Host {
 public:
  explicit Host(const Project& opened) : project_(opened) {
    manager_.AttachDispatch(Create("TarnProjectManager.ProjectManager").Get(), true);
    inspector_.AttachDispatch(Create("TarnProjectManager.ProjectInspector").Get(), true);
    frame_.SetHandler(tarn::kMsgWorkerEnded, [this](const tarn::host::HostMessageEvent& event) {
      ended_ = true;
      succeeded_ = event.wParam != 0;
      return std::intptr_t{1};
    });
    manager_.Init(TARN_SOURCE_DIR "/share/", project_.folder + "/", frame_.GetHandle());
    manager_.InitToolManager(&tools);
    inspector_.Attach(manager_.GetDispatch());
    if (manager_.ProjectOpen(project_.Path()) == 0) throw std::runtime_error("can't open");
  }
  ~Host() {
    inspector_.ReleaseDispatch();
    manager_.Clean();
  }

  double Publish() {
    const double seconds = SecondsOf([&] { inspector_.PublishAll(); });
    lines_ = inspector_.GetBuildInputs();
    const auto inputs = tarn::host::ParseBuildInputs(lines_);
    for (const std::string_view each : inputs.at(0).outputs) outputs_.emplace_back(each);
    const auto expected = static_cast<std::size_t>(project_.count) + 1;
    if (outputs_.size() != expected) throw std::runtime_error("not all is published");
    fs::create_directories(fs::path(outputs_.front()).parent_path());
    for (int i = 0; i < project_.count; ++i) {
      tools.outputs[project_.SourceAt(i)] = outputs_[static_cast<std::size_t>(i)];
    }
    tools.outputs[outputs_.front()] = outputs_.back();  // the link
    return seconds;
  }

  // Returns a tool's report on an output.
  std::string RecordOf(std::size_t i) const {
    struct stat info {};
    if (stat(outputs_[i].c_str(), &info) != 0)
      throw std::runtime_error(outputs_[i] + " is missing");
    std::string xml = "<I><F Header=\"" + outputs_[i] + "\" Infos=\"\" Date=\"" +
                      std::to_string(info.st_mtim.tv_sec) + "\" >";
    const bool isFile = i + 1 < outputs_.size();
    for (int each = 0; isFile && each < kHeadersPerFile; ++each) {
      xml += "<D Header=\"" + project_.HeaderAt(static_cast<int>(i) * 7 + each) + "\" />";
    }
    return xml + "</F></I>";
  }

  double Report() {
    std::vector<std::string> records;
    for (std::size_t i = 0; i < outputs_.size(); ++i) {
      if (!fs::exists(outputs_[i])) Write(outputs_[i], "made");
      records.push_back(RecordOf(i));
    }
    return SecondsOf([&] {
      for (const std::string& record : records) manager_.SetBuildInfo(record);
    });
  }

  double Run(std::uint32_t command) {
    const auto loop = tarn::MessageLoop::ForCurrentThread();
    ended_ = false;
    if (manager_.PrologCommand(command) == 0) throw std::runtime_error("refused");
    const double seconds = SecondsOf([&] {
      manager_.Command(command);
      while (!ended_) loop->PumpUntil([this] { return ended_; }, std::chrono::seconds(1));
    });
    manager_.EpilogCommand(command);
    if (!succeeded_) throw std::runtime_error("the build failed");
    return seconds;
  }

  // The minimum work to determine that nothing has changed.
  double StatEachFile() const {
    std::vector<std::string> files = outputs_;
    for (int i = 0; i < project_.count; ++i) files.push_back(project_.SourceAt(i));
    for (int i = 0; i < kHeaders; ++i) files.push_back(project_.HeaderAt(i));
    int found = 0;
    const double seconds = SecondsOf([&] {
      struct stat info {};
      for (const std::string& file : files) found += stat(file.c_str(), &info) == 0 ? 1 : 0;
    });
    if (found != static_cast<int>(files.size())) throw std::runtime_error("a file is missing");
    return seconds;
  }

  StandInTools tools;

 private:
  const Project& project_;
  tarn::host::HostWindow frame_;
  tarn::host::ProjectManagerDriver manager_;
  tarn::host::InspectorDriver inspector_;
  std::string lines_;
  std::vector<std::string> outputs_;  // of all files; the last one is the application's
  bool ended_ = false;
  bool succeeded_ = false;
};

struct Times {
  std::vector<double> publish, report, walkRatio, tool;  // seconds per node; traversal / plain loop
};

void Measure(const Project& project, bool withTools, Times& times) {
  Host host(project);
  const auto count = static_cast<double>(project.count);
  times.publish.push_back(host.Publish() / count);
  times.report.push_back(host.Report() / count);
  for (int i = 0; i < kWalks; ++i) {
    const double floor = host.StatEachFile();
    times.walkRatio.push_back(host.Run(TARN_CMD_BUILD_ALL) / floor);
  }
  if (host.tools.seconds > 0) throw std::runtime_error("a tool ran");
  if (!withTools) return;
  const double seconds = host.Run(TARN_CMD_REBUILD_ALL);
  times.tool.push_back((seconds - host.tools.seconds) / count);
}

void Print(std::map<int, Times>& all) {
  for (auto& [count, times] : all) {
    std::printf("%6d files: publish %.1f us, report %.1f us, around a tool %.1f us, walk %.2f\n",
                count, Median(times.publish) * 1e6, Median(times.report) * 1e6,
                times.tool.empty() ? 0 : Median(times.tool) * 1e6, Median(times.walkRatio));
  }
  if (all.size() < std::size(kCounts)) return;
  const auto grows = [&](std::vector<double> Times::*of, int count) {
    return Median(all[count].*of) / Median(all[1000].*of);
  };
  using tarn::bench::PrintAtMost;
  PrintAtMost("publish, a node of 10,000 / of 1,000", grows(&Times::publish, 10'000), 1.3);
  PrintAtMost("publish, a node of 50,000 / of 1,000", grows(&Times::publish, 50'000), 1.3);
  PrintAtMost("walk with nothing to do / stat loop, 1,000", Median(all[1000].walkRatio), 1.3);
  PrintAtMost("walk with nothing to do / stat loop, 10,000", Median(all[10'000].walkRatio), 1.3);
  PrintAtMost("walk with nothing to do / stat loop, 50,000", Median(all[50'000].walkRatio), 1.3);
  PrintAtMost("SetBuildInfo, a record of 10,000 / of 1,000", grows(&Times::report, 10'000), 1.3);
  PrintAtMost("own work around a tool run / 0.1 ms", Median(all[10'000].tool) / 1e-4, 1.0);
  PrintAtMost("own work around a tool run, 10,000 / 1,000", grows(&Times::tool, 10'000), 1.3);
}

}  // namespace

// Argument: a single number of files to measure, without ratios.
int main(int argc, char** argv) {
  const int only = argc > 1 ? std::atoi(argv[1]) : 0;
  try {
    std::map<int, Times> all;
    std::vector<std::unique_ptr<Project>> projects;
    for (const int count : kCounts) {
      if (only == 0 || count == only) projects.push_back(std::make_unique<Project>(count));
    }
    // Alternate the projects, so that other load on the system affects all of them.
    for (int round = 0; round < kRounds; ++round) {
      for (const auto& project : projects) {
        Measure(*project, project->count < 50'000, all[project->count]);
      }
    }
    Print(all);
  } catch (const std::exception& failure) {
    std::cerr << "project_bench: " << failure.what() << std::endl;
    return 1;
  }
  return 0;
}
