#pragma once

#include <string>

#include "project/ProjectModel.h"

namespace tarn {

// Access of the host to files that aren't part of the project: INI files and scripts. A project
// that isn't trusted may neither write INI files outside its folder nor run scripts from it. Main
// thread only.
class HostFileCalls {
 public:
  // The model is borrowed and must outlive this object.
  explicit HostFileCalls(CProjectModel& projectModel) : model_(projectModel) {}

  // Returns a value of an INI file, truncated to 259 bytes; an empty string if there is none.
  std::string ReadIniValue(const char* section, const char* key, const char* iniPath) const;
  // Writes a value of an INI file; a null `value` removes the key, a null `key` the section. The
  // log has the reason if the file couldn't be written.
  void WriteIniValue(const char* section, const char* key, const char* value, const char* iniPath);
  // Returns the reason why the script may not run, as its project isn't trusted; an empty string if
  // it may.
  std::string CheckScript(const std::string& path);
  // Sends the contents of a script file to the host, which runs it. Returns 0 if the file doesn't
  // exist or the script may not run.
  std::int32_t ExecuteScript(const std::string& path);

 private:
  bool RefusesIniFile(const std::string& path);
  // Resolves a path against the current folder.
  std::string WholePath(const std::string& path) const;

  CProjectModel& model_;
};

}  // namespace tarn
