#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/frame/BuildInformationStore.h"
#include "hosts/frame/BuildInputs.h"

namespace tarn::host {

// A record that does not hold any more, since the tool would be run in another way now.
struct DroppedRecord {
  std::string application;
  std::string output;
};

// Which commands would make an output now; empty when nobody knows.
using CommandQuestion =
    std::function<std::vector<ToolCommand>(std::string_view application, std::string_view output)>;

// Takes records of one application that still hold, as the text of one SetBuildInfo call.
using RecordSink = std::function<void(const std::string& application, const std::string& xml)>;

// Hands the records of `store` that may be given to the project to `restore`, and gives those that
// may not. A record counts while its signature is the one of the inputs; when that differs, while
// the commands are exactly those that the tool was run with, and the new signature is noted then. A
// record of an output that no node has now stays in the store untouched: it may belong to another
// configuration. The records of an application come in pieces, since the whole text of a large one
// would be memory that is touched for this once.
std::vector<DroppedRecord> RestoreRecords(BuildInformationStore& store,
                                          const std::vector<ApplicationInputs>& inputs,
                                          const CommandQuestion& askCommands,
                                          const RecordSink& restore);

}  // namespace tarn::host
