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

// Runs scripts on a session's project. Script output is written to the log even if it isn't
// displayed.
class SessionScripts : private ScriptHost {
 public:
  explicit SessionScripts(BuildSession& buildSession);

  // Callbacks with which a host shows what happens; each may be empty. Builds run even without a
  // callback.
  std::function<void(const std::string&)> onLine;
  std::function<BuildOutcome(const BuildRequest&)> runBuild;
  std::function<BuildEnd()> awaitBuild;

  // Runs a script. `name` is empty if the text was received in a message.
  ScriptOutcome Run(const std::string& text, const std::string& name);
  bool IsRunning() const { return runner_.IsRunning(); }
  // May be called from any thread.
  void RequestStop() { runner_.RequestStop(); }
  // Withdraws a stop request that was meant for a build.
  void ClearStop() { runner_.ClearStop(); }
  // Returns true if a script's changes could not be saved, and a later save did not include them.
  bool HasFailedSave() const { return hasFailedSave_; }

 private:
  FoundApplication Find(const std::string& application);
  void ResolvePath(Variant& argument);

  void ShowLine(const std::string& line) override;
  std::string PrepareCall(const std::string& method, std::vector<Variant>& arguments) override;
  void OnCalled(const std::string& method) override;
  ScriptBuild Build(const std::string& work,
                    const std::optional<std::string>& application) override;
  std::string WaitForBuild() override;
  ScriptSize GetSize(const std::string& application) override;
  std::string AddConfiguration(const std::string& name,
                               const std::optional<std::string>& from) override;

  BuildSession& session_;
  ScriptRunner runner_{this};
  bool hasFailedSave_ = false;
  bool hasLocked_ = false;  // the call that is being made has taken the build lock
};

}  // namespace tarn::host
