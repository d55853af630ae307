#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "hosts/core/LogEntry.h"

namespace tarn::host {

// Input of the report: a finished build.
struct LoggedBuild {
  std::string projectFolder;  // absolute
  std::vector<LogEntry> entries;
  bool succeeded = false;
  std::int64_t endSeconds = 0;  // since 1970; 0 if unknown
};

// Returns the errors, warnings and notes of a build as a SARIF 2.1.0 document. Paths below the
// project's folder are relative to it, others are absolute.
nlohmann::json MakeSarifReport(const LoggedBuild& build, const std::string& toolVersion);

// Returns the column that a message specifies after its line, counted from 1; 0 if there is none.
int ColumnOf(const LogEntry& entry);

// Returns `path` as the path of a URI: spaces and reserved characters are escaped.
std::string UriPathOf(const std::string& path);

}  // namespace tarn::host
