#include "components/tools/HelperFinder.h"

#include <algorithm>

#include "components/tools/GivenArguments.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

constexpr std::size_t kMaxAnswer = 4096;

// Returns the arguments that affect the results, with their values if these are separate.
std::vector<std::string> PassedOn(const ToolCommand& command,
                                  const std::vector<std::string>& flags) {
  std::vector<std::string> passed;
  for (std::size_t i = command.launched; i < command.arguments.size(); ++i) {
    const std::string& word = command.arguments[i];
    for (const std::string& flag : flags) {
      if (!word.starts_with(flag)) continue;
      passed.push_back(word);
      if (word == flag && i + 1 < command.arguments.size())
        passed.push_back(command.arguments[++i]);
      break;
    }
  }
  return passed;
}

}  // namespace

std::vector<std::string> HelperFinder::Find(const ToolEnvironment& world,
                                            const ToolDefinition& tool, const ToolPlan& plan) {
  std::vector<std::string> found;
  if (plan.commands.empty()) return found;
  const ToolCommand& command = plan.commands.front();
  const std::vector<std::string> passed = PassedOn(command, tool.helpers.with);
  const auto add = [&](const std::string& flag, const std::string& name, bool isProgram) {
    std::string answer = name;
    if (!flag.empty()) {
      std::vector<std::string> arguments = passed;
      arguments.push_back(flag + name);
      answer = Ask(world, command, std::move(arguments));
    }
    // A name without a folder was not found by the driver, which leaves it to PATH.
    if (!HasNativeSeparator(answer)) answer = isProgram ? world.findProgram(answer) : "";
    if (answer.empty()) return;
    std::string path = AbsolutePath(world.files, command.folder, answer);
    const bool isKnown = std::find(found.begin(), found.end(), path) != found.end();
    if (!isKnown && world.files->ExamineExactly(path)) found.push_back(std::move(path));
  };
  for (const std::string& name : plan.helpers) add(tool.helpers.programFlag, name, true);
  for (const std::string& name : plan.helperFiles) add(tool.helpers.fileFlag, name, false);
  return found;
}

void HelperFinder::Clear() {
  const std::lock_guard guard(lock_);
  answers_.clear();
}

// Two threads may run the same query concurrently, which is harmless.
std::string HelperFinder::Ask(const ToolEnvironment& world, const ToolCommand& command,
                              std::vector<std::string> arguments) {
  const std::string program =
      command.launched > 0 ? command.arguments[command.launched - 1] : command.program;
  std::vector<std::string> key{program, command.folder};
  key.insert(key.end(), arguments.begin(), arguments.end());
  {
    const std::lock_guard guard(lock_);
    if (const auto known = answers_.find(key); known != answers_.end()) return known->second;
  }
  std::string answer;
  const auto started =
      world.launcher->Start({program, std::move(arguments), command.environment, command.folder});
  if (started) {
    const ProcessExit exit = (*started)->WaitWithOutput([&](std::string_view text, bool isError) {
      if (!isError && answer.size() < kMaxAnswer) answer += text;
    });
    if (exit.code != 0) answer.clear();
  }
  answer = Trim(std::string_view(answer).substr(0, answer.find('\n')));
  const std::lock_guard guard(lock_);
  answers_[std::move(key)] = answer;
  return answer;
}

}  // namespace tarn::tools
