#include "hosts/frame/BuildRestore.h"

#include <utility>

namespace tarn::host {

namespace {

// A piece ends with the record that makes it this long, or behind this many nodes whose inputs have
// changed: each costs a question to the tool manager.
constexpr std::size_t kPiece = 64 << 10;
constexpr int kMostChanged = 100;

bool StillHolds(BuildInformationStore& store, std::size_t record, std::string_view application,
                const BuildInput& input, const CommandQuestion& askCommands) {
  if (store.GetSignature(record) == input.signature) return true;
  const std::vector<ToolCommand> commands = store.GetCommands(record);
  if (commands.empty() || commands != askCommands(application, input.output)) return false;
  store.SetSignature(record, input.signature);
  return true;
}

}  // namespace

RecordRestorer::RecordRestorer(BuildInformationStore& recordStore, std::string inputLines,
                               CommandQuestion commandQuestion, RecordSink recordSink)
    : store(recordStore),
      lines(std::move(inputLines)),
      inputs(ParseBuildInputs(lines)),
      askCommands(std::move(commandQuestion)),
      restore(std::move(recordSink)) {}

bool RecordRestorer::Step() {
  constexpr std::string_view kStart = "<I>";
  if (application == inputs.size()) return false;
  const ApplicationInputs& current = inputs[application];
  std::string xml(kStart);
  int changed = 0;
  while (node < current.nodes.size() && xml.size() < kPiece && changed < kMostChanged) {
    const BuildInput& input = current.nodes[node++];
    const std::size_t record = store.Find(current.application, input.output);
    if (record == BuildInformationStore::kNone) continue;
    changed += store.GetSignature(record) == input.signature ? 0 : 1;
    if (StillHolds(store, record, current.application, input, askCommands)) {
      store.AppendXml(record, xml);
    } else {
      dropped.push_back({std::string(current.application), std::string(input.output)});
    }
  }
  if (node == current.nodes.size()) {
    ++application;
    node = 0;
  }
  if (xml.size() > kStart.size()) restore(std::string(current.application), xml.append("</I>"));
  return true;
}

}  // namespace tarn::host
