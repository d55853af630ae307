#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarn::tools {

// What a run that succeeded left: the output, what to show behind its node, and what it was made
// from beside its sources. Paths are absolute.
struct BuildRecord {
  std::string output;
  std::string infos;
  std::int64_t date = 0;  // modification time of the output, seconds since 1970
  std::vector<std::string> dependencies;
  std::vector<std::string> programs;  // that were run, launchers left out, and what they take
  std::vector<std::string> search;    // folders that headers were searched in, in order
  std::uint64_t command = 0;          // hash of the command lines
  std::vector<std::string> products;  // further files that were made
  std::vector<std::string> missing;   // files that would be read in place of others if they came
  bool hasInexactNames = false;       // the command lines depend on how the disk spells names
  std::vector<std::string> byProducts = {};  // further files that were left, and that nothing needs
  std::vector<std::string> definitions = {};  // macros as options define them: NAME=VALUE
};

// The element `F` of the record, as build information texts hold it.
std::string BuildRecordText(const BuildRecord& record);

}  // namespace tarn::tools
