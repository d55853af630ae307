#pragma once

#include <string>
#include <vector>

#include "components/values/OptionValues.h"
#include "hosts/core/BuildSession.h"
#include "hosts/core/OptionTable.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Type of the nodes whose tool makes another file, mostly a source, from theirs.
inline constexpr const char* kGeneratorType = "Generator";

// Sets the tool of the current node, a generator. Returns why it can't be set; an empty string on
// success.
std::string SetGeneratorTool(BuildSession& session, const std::string& tool);

struct GeneratorTool {
  std::string name;
  std::string label;
};

// A generator as a user specifies it.
struct GeneratorRequest {
  std::string input;  // absolute path of a file that exists or that another node makes
  std::string tool;
  std::string output;       // may be relative to the application's folder; empty for the default
  std::string commands;     // command lines, for a tool that runs those of the project
  bool addsOutput = false;  // the output becomes a file of the project, too, so that it is compiled
};

// Reasons why a request can't be fulfilled.
enum class GeneratorProblem {
  None,
  NoInput,
  InputMissing,
  InputIsFolder,
  InputUnstorable,  // a project can't store the path
  InputIsUsed,      // it is in the application already
  NoCommands,
  OutputIsInput,
  OutputIsFolder,
  OutputIsMade,  // by another node
  OutputExists,  // where a generator may only replace what it made itself
};

// Adds a generator at the current node of the open project; if that is the project itself, to its
// active application. Borrows the arguments. Main thread only.
class NewGenerator {
 public:
  // Publishes the project, and reads the definitions.
  NewGenerator(BuildSession& buildSession, FileSystem& fileSystem);

  // Returns false if the project has no application.
  bool HasApplication() const { return !application_.empty(); }
  // Folder of the application, with a separator at its end.
  const std::string& GetFolder() const { return folder_; }
  // Returns the tools that the definitions offer for generators.
  const std::vector<GeneratorTool>& GetTools() const { return tools_; }
  // Returns the tool that is used for a file unless the user specifies another.
  std::string GetDefaultTool(const std::string& input) const;
  // Returns true if the tool runs commands that the user has to specify.
  bool NeedsCommands(const std::string& tool) const;
  // Returns the absolute path of the file that is made.
  std::string GetOutput(const GeneratorRequest& request) const;

  GeneratorProblem FindProblem(const GeneratorRequest& request) const;
  // Adds the node, which becomes the current one. Requires that there is no problem. Returns why
  // the server refused it; an empty string on success.
  std::string Add(const GeneratorRequest& request);

 private:
  OptionValues MakeValues(const std::string& input, const std::string& tool) const;
  std::string GetDefault(const OptionValues& values, const char* option,
                         std::string* missing = nullptr) const;
  bool MayReplace(const std::string& path) const;
  std::string SetOptions(const GeneratorRequest& request);

  BuildSession& session_;
  FileSystem& files_;
  OptionTable options_;
  std::vector<GeneratorTool> tools_;
  std::string tree_;         // when this was constructed
  std::string application_;  // path; empty if there is none
  std::string folder_;
};

}  // namespace tarn::host
