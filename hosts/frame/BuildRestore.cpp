#include "hosts/frame/BuildRestore.h"

namespace tarn::host {

namespace {

bool StillHolds(BuildInformationStore& store, std::size_t record, std::string_view application,
                const BuildInput& input, const CommandQuestion& askCommands) {
  if (store.GetSignature(record) == input.signature) return true;
  const std::vector<ToolCommand> commands = store.GetCommands(record);
  if (commands.empty() || commands != askCommands(application, input.output)) return false;
  store.SetSignature(record, input.signature);
  return true;
}

}  // namespace

RestoredRecords RestoreRecords(BuildInformationStore& store,
                               const std::vector<ApplicationInputs>& inputs,
                               const CommandQuestion& askCommands) {
  RestoredRecords result;
  for (const ApplicationInputs& each : inputs) {
    std::string xml = "<I>";
    for (const BuildInput& input : each.nodes) {
      const std::size_t record = store.Find(each.application, input.output);
      if (record == BuildInformationStore::kNone) continue;
      if (StillHolds(store, record, each.application, input, askCommands)) {
        store.AppendXml(record, xml);
      } else {
        result.dropped.push_back({std::string(each.application), std::string(input.output)});
      }
    }
    if (xml.size() == 3) continue;
    xml.append("</I>");
    result.applications.push_back({std::string(each.application), std::move(xml)});
  }
  return result;
}

}  // namespace tarn::host
