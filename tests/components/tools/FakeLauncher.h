#pragma once

#include <functional>
#include <memory>
#include <queue>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/tools/FileList.h"
#include "components/tools/ToolManager.h"
#include "components/values/OptionValues.h"
#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn::tools::testing {

// Behavior of a simulated program.
struct PlayedProgram {
  // Chunks in order of arrival; true: on the error stream.
  std::vector<std::pair<bool, std::string>> output;
  ProcessExit exit;
  std::function<void(const ProcessRequest&)> effect;  // called while it runs
  bool isMissing = false;
};

// Removes the details of the run from build information: command hash, programs and folders.
inline std::string WithoutRun(std::string information) {
  for (const char* name :
       {" Command=\"", " Programs=\"", " Search=\"", " Products=\"", " ByProducts=\""}) {
    for (std::size_t at; (at = information.find(name)) != information.npos;) {
      const std::size_t end = information.find('"', at + std::string_view(name).size());
      information.erase(at, end + 1 - at);
    }
  }
  return information;
}

// Simulates queued programs in order and records what was started. After the queue is used up,
// programs end immediately without output. Queries for the locations of helper programs are neither
// simulated nor recorded, and find nothing.
class FakeLauncher : public ProcessLauncher {
 public:
  void Queue(PlayedProgram program) { programs_.push(std::move(program)); }

  Result<std::unique_ptr<Process>> Start(const ProcessRequest& request) override {
    if (IsQuestion(request)) return std::unique_ptr<Process>(new Played({}, request));
    if (programs_.empty()) programs_.emplace();
    const PlayedProgram program = std::move(programs_.front());
    programs_.pop();
    if (program.isMissing) return Error{ErrorCode::NotFound, "no such program", request.program};
    started.push_back(request);
    return std::unique_ptr<Process>(new Played(program, request));
  }

  std::vector<ProcessRequest> started;

 private:
  class Played : public Process {
   public:
    Played(const PlayedProgram& what, const ProcessRequest& how) : program_(what), request_(how) {}

    ProcessExit WaitWithOutput(const OutputHandler& onOutput) override {
      for (const auto& [isError, text] : program_.output) onOutput(text, isError);
      if (program_.effect) program_.effect(request_);
      return program_.exit;
    }
    void Stop(std::chrono::milliseconds) override {}

   private:
    PlayedProgram program_;
    ProcessRequest request_;
  };

  static bool IsQuestion(const ProcessRequest& request) {
    return !request.arguments.empty() && request.arguments.back().starts_with("-print-");
  }

  std::queue<PlayedProgram> programs_;
};

// A tool manager with an in-memory disk, simulated programs and the shipped lists, and a node of
// a project in /p.
class ToolManagerFixture {
 public:
  explicit ToolManagerFixture(const std::string& definitions) {
    disk.AddFile("/app/config/tools/test.tools", definitions);
    for (const std::string list : {"messages", "harmless"}) {
      const std::string name = "config/tools/" + list + ".tools";
      disk.AddFile("/app/" + name,
                   tarn::testing::ReadBytes(tarn::testing::SourcePath("share/" + name)));
    }
    ToolEnvironment world{&launcher, &disk,
                          [](std::string_view name) {
                            return name.find("none") == name.npos ? "/bin/" + std::string(name)
                                                                  : "";
                          },
                          [this](const char*) { return environmentLauncher; }};
    manager = new ToolManager(std::move(world));
    manager->InitTools("/app/", "/data/", 0);
    values.Put("Application", "General", "ApplicationDir", "/p");
  }
  ~ToolManagerFixture() { manager->Release(); }

  bool Run(const char* tool, const char* files) {
    return manager->RunTool(tool, files, values.ToText().c_str(), "/tmp/m.xml") == 1;
  }
  // Returns the content of the last run's message file.
  std::string Messages() { return disk.BytesOf("/tmp/m.xml").value_or("none"); }

  // Returns the effect of a program that produces one file.
  std::function<void(const ProcessRequest&)> Makes(const std::string& path,
                                                   const std::string& bytes = "x") {
    return [this, path, bytes](const ProcessRequest&) { disk.AddFile(path, bytes); };
  }

  tarn::testing::MemoryFileSystem disk{1000};
  FakeLauncher launcher;
  std::string environmentLauncher;
  OptionValues values{"C"};
  ToolManager* manager = nullptr;
};

// Returns one line per program: "program arg arg".
inline std::string StartedLines(const FakeLauncher& launcher) {
  std::string lines;
  for (const ProcessRequest& request : launcher.started) {
    std::vector<std::string> words{request.program};
    words.insert(words.end(), request.arguments.begin(), request.arguments.end());
    lines += JoinWords(words) + '\n';
  }
  return lines;
}

}  // namespace tarn::tools::testing
