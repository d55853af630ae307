#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/frame/BuildInformationStore.h"
#include "hosts/frame/BuildInputs.h"

namespace tarn::host {

// The records of one application that still hold, as the text of one SetBuildInfo call.
struct RestoredApplication {
  std::string application;
  std::string xml;
};

// A record that does not hold any more, since the tool would be run in another way now.
struct DroppedRecord {
  std::string application;
  std::string output;
};

struct RestoredRecords {
  std::vector<RestoredApplication> applications;  // those with records only
  std::vector<DroppedRecord> dropped;
};

// Which commands would make an output now; empty when nobody knows.
using CommandQuestion =
    std::function<std::vector<ToolCommand>(std::string_view application, std::string_view output)>;

// Chooses the records of `store` that may be handed to the project. A record counts while its
// signature is the one of the inputs; when that differs, while the commands are exactly those that
// the tool was run with, and the new signature is noted then. A record of an output that no node
// has now stays in the store untouched: it may belong to another configuration.
RestoredRecords RestoreRecords(BuildInformationStore& store,
                               const std::vector<ApplicationInputs>& inputs,
                               const CommandQuestion& askCommands);

}  // namespace tarn::host
