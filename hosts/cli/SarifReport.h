#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "hosts/core/LogEntry.h"

namespace tarn::host {

// A finished build, as the report of it needs to know it.
struct LoggedBuild {
  std::string projectFolder;  // absolute
  std::vector<LogEntry> entries;
  bool succeeded = false;
  std::int64_t endSeconds = 0;  // since 1970; 0 when it isn't known
};

// The errors, warnings and notes of a build as a SARIF 2.1.0 document. Places below the project's
// folder are written relative to it, others by their full path.
nlohmann::json MakeSarifReport(const LoggedBuild& build, const std::string& toolVersion);

// The column that a message names behind its line, 1 for the first; 0 when it names none.
int ColumnOf(const LogEntry& entry);

// `path` as the path of an URI: blanks and whatever else has a meaning there are escaped.
std::string UriPathOf(const std::string& path);

}  // namespace tarn::host
