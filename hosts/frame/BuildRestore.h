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

// Hands the records of a store that may be given to the project to a sink, and gives those that may
// not. A record counts while its signature is the one of the inputs; when that differs, while the
// commands are exactly those that the tool was run with, and the new signature is noted then. A
// record of an output that no node has now stays in the store untouched: it may belong to another
// configuration. It goes in pieces, each the text of one call: the whole text of a large
// application would be memory that is touched for this once, and a host has other things to do in
// between.
class RecordRestorer {
 public:
  // `inputLines` is the inspector's text. Borrows the store, which may change between two steps.
  RecordRestorer(BuildInformationStore& recordStore, std::string inputLines,
                 CommandQuestion commandQuestion, RecordSink recordSink);
  RecordRestorer(const RecordRestorer&) = delete;
  RecordRestorer& operator=(const RecordRestorer&) = delete;

  // Does the next piece. False when there was none left.
  bool Step();
  const std::vector<DroppedRecord>& GetDropped() const { return dropped; }

 private:
  BuildInformationStore& store;
  const std::string lines;
  const std::vector<ApplicationInputs> inputs;
  const CommandQuestion askCommands;
  const RecordSink restore;
  std::size_t application = 0;
  std::size_t node = 0;  // of that application
  std::vector<DroppedRecord> dropped;
};

}  // namespace tarn::host
