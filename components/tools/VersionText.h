#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// What version control says about the sources. The defaults are for sources without it.
struct VersionValues {
  std::string description = "unknown";  // the last tag, commits since, hash, "-dirty"
  std::string commit = "unknown";       // its hash
  std::string date = "unknown";         // of the commit: 2026-01-31
  std::string buildNumber = "0";
  bool isDirty = false;  // a tracked file is modified
};

// Returns the template with the values in place of their names, such as @GIT_COMMIT@.
std::string FillVersion(std::string_view text, const VersionValues& values);

// Returns a makefile rule. Files whose name has a line break are left out.
std::string DependencyRule(const std::string& target, const std::vector<std::string>& files);

}  // namespace tarn::tools
