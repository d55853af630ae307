#pragma once

#include <string>

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

  // Creates the file NAME.tapp next to the project, and adds it. The application is for the same
  // target and has the same configurations as the one with the path `similar`, unless that is
  // empty; it becomes a library if `isLibrary`. Returns 0, or an exit code after printing the
  // error.
  int Make(CommandContext& context, const std::string& name, const std::string& similar,
           bool isLibrary);
  // Path of the application; empty if none was created.
  const std::string& GetPath() const { return path_; }
  void Keep() { isKept_ = true; }

 private:
  std::string path_;
  bool isKept_ = false;
};

}  // namespace tarn::host
