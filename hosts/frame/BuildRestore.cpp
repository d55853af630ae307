#include "hosts/frame/BuildRestore.h"

namespace tarn::host {

namespace {

constexpr std::size_t kPiece = 64 << 10;

bool StillHolds(BuildInformationStore& store, std::size_t record, std::string_view application,
                const BuildInput& input, const CommandQuestion& askCommands) {
  if (store.GetSignature(record) == input.signature) return true;
  const std::vector<ToolCommand> commands = store.GetCommands(record);
  if (commands.empty() || commands != askCommands(application, input.output)) return false;
  store.SetSignature(record, input.signature);
  return true;
}

}  // namespace

std::vector<DroppedRecord> RestoreRecords(BuildInformationStore& store,
                                          const std::vector<ApplicationInputs>& inputs,
                                          const CommandQuestion& askCommands,
                                          const RecordSink& restore) {
  constexpr std::string_view kStart = "<I>";
  std::vector<DroppedRecord> dropped;
  std::string xml;
  for (const ApplicationInputs& each : inputs) {
    const std::string application(each.application);
    xml = kStart;
    const auto flush = [&] {
      if (xml.size() == kStart.size()) return;
      restore(application, xml.append("</I>"));
      xml = kStart;
    };
    for (const BuildInput& input : each.nodes) {
      const std::size_t record = store.Find(each.application, input.output);
      if (record == BuildInformationStore::kNone) continue;
      if (!StillHolds(store, record, each.application, input, askCommands)) {
        dropped.push_back({application, std::string(input.output)});
        continue;
      }
      store.AppendXml(record, xml);
      if (xml.size() >= kPiece) flush();
    }
    flush();
  }
  return dropped;
}

}  // namespace tarn::host
