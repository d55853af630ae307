#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "hosts/cli/OpenedProject.h"
#include "hosts/core/SizeHistory.h"
#include "sizes/Treemap.h"

namespace tarn::host {

// Sizes of one application, for display.
struct SizeReport {
  ApplicationEntry application;
  sizes::ProgramSizes sizes;
  std::string comparedWith;             // "last build" or the name of a baseline; may be empty
  std::optional<SizeSnapshot> earlier;  // sizes to compare with
};

// Prints a table: of "region" and the other kinds that --by accepts. At most `most` rows; 0: all.
void PrintSizes(CommandContext& context, const SizeReport& report, const std::string& by,
                std::size_t most);

// Returns everything in the report.
nlohmann::json ToJson(CommandContext& context, const SizeReport& report);

// Adds the maps of the regions to a page, each of files and their symbols.
void AddTreemaps(CommandContext& context, const SizeReport& report, sizes::TreemapPage& page);

}  // namespace tarn::host
