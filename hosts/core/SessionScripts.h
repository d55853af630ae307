#pragma once

#include <functional>
#include <string>

#include "hosts/core/ProjectTree.h"
#include "hosts/core/lua/ScriptRunner.h"

namespace tarn::host {

class BuildSession;
struct BuildRequest;
struct BuildOutcome;
enum class BuildEnd;

// Scripts on the project of a session. What they print goes to the log whether shown or not.
class SessionScripts : private ScriptHost {
 public:
  explicit SessionScripts(BuildSession& buildSession);

  // How a host shows what happens; each may be empty. A build that isn't shown runs all the same.
  std::function<void(const std::string&)> onLine;
  std::function<BuildOutcome(const BuildRequest&)> runBuild;
  std::function<BuildEnd()> awaitBuild;

  // `name` is empty for a text that came in a message.
  ScriptOutcome Run(const std::string& text, const std::string& name);
  bool IsRunning() const { return runner.IsRunning(); }
  // From any thread.
  void RequestStop() { runner.RequestStop(); }
  // Takes a request back that was meant for a build.
  void ForgetStop() { runner.ForgetStop(); }

 private:
  FoundApplication Find(const std::string& application);

  void ShowLine(const std::string& line) override;
  std::string CheckCall(const std::string& method, const std::vector<Variant>& arguments) override;
  ScriptBuild Build(const std::string& work,
                    const std::optional<std::string>& application) override;
  std::string WaitForBuild() override;
  ScriptSize GetSize(const std::string& application) override;
  std::string AddConfiguration(const std::string& name,
                               const std::optional<std::string>& from) override;

  BuildSession& session;
  ScriptRunner runner{this};
};

}  // namespace tarn::host
