#pragma once

#include <string>
#include <vector>

#include "hosts/cli/CreatedFiles.h"

namespace tarn::host {

class CommandContext;

// A second application of the open project. The destructor deletes its file again, unless Keep() is
// called.
class NewApplication {
 public:
  NewApplication() = default;
  NewApplication(const NewApplication&) = delete;
  NewApplication& operator=(const NewApplication&) = delete;
  ~NewApplication();

  struct Plan {
    std::string name;
    std::string similar;   // path of the application whose configurations it gets; may be empty
    std::string compiler;  // empty: that of the similar one, with the options of its target
    bool isLibrary = false;
  };

  // Creates the file NAME.tapp next to the project, and adds it. Returns 0, or an exit code after
  // printing the error.
  int Make(CommandContext& context, const Plan& plan);
  // Adds the start-up files of its target, unless it is a library or has start-up code: those that
  // the similar application uses, else copies. Appends their paths to `added`.
  int AddStartUp(CommandContext& context, const Plan& plan, std::vector<std::string>& added);
  // Path of the application; empty if none was created.
  const std::string& GetPath() const { return path_; }
  void Keep() {
    isKept_ = true;
    created_.Keep();
  }

 private:
  std::string path_;
  bool isKept_ = false;
  CreatedFiles created_;
};

}  // namespace tarn::host
