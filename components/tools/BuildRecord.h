#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarn::tools {

// Result of a successful run: the output, the information shown for its node, and the inputs in
// addition to its sources. All paths are absolute.
struct BuildRecord {
  std::string output;
  std::string infos;
  std::int64_t date = 0;  // modification time of the output, seconds since 1970
  std::vector<std::string> dependencies;
  std::vector<std::string> programs;  // programs run, without launchers, and the files they load
  std::vector<std::string> search;    // folders searched for headers, in order
  std::uint64_t command = 0;          // hash of the command lines
  std::vector<std::string> products;  // further files produced
  std::vector<std::string> missing;   // files that would be read instead of others if they existed
  bool hasInexactNames = false;       // the command lines depend on the spelling of names on disk
  std::int64_t milliseconds = 0;      // duration of the run; 0 if unknown
  std::vector<std::string> byProducts = {};   // further files produced that nothing needs
  std::vector<std::string> definitions = {};  // macros defined by options: NAME=VALUE
};

// Returns the record as an element `F` for build information texts.
std::string BuildRecordText(const BuildRecord& record);

}  // namespace tarn::tools
