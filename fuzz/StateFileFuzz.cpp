// A state file is written by this program and read back long after: whatever became of it in
// between, reading it must end well, and what is taken must write and read back the same.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "hosts/frame/BuildInformationStore.h"

namespace {

using tarn::host::BuildInformationStore;
using tarn::host::StateVerdict;

constexpr const char* kProject = "p.tprj";

void UseEverything(BuildInformationStore& store) {
  std::string xml;
  for (std::size_t record = 0; record < store.GetCount(); ++record) {
    store.AppendXml(record, xml);
    static_cast<void>(store.GetCommands(record));
    static_cast<void>(store.GetInfos(record));
  }
}

void Read(const std::string& bytes) {
  BuildInformationStore store;
  if (store.Load(bytes, kProject) != StateVerdict::Good) {
    if (store.GetCount() != 0) std::abort();
    return;
  }
  UseEverything(store);
  const std::string saved = store.Save(kProject);
  BuildInformationStore again;
  if (again.Load(saved, kProject) != StateVerdict::Good) std::abort();
  if (again.GetCount() != store.GetCount() || again.Save(kProject) != saved) std::abort();
  again.Put("a", {"o", "i", "1", 2, {"d"}, {{"p", "f", {"x"}}}});
  UseEverything(again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Read(bytes);
  // Behind a good first line, so that the checksum does not keep everything out.
  Read(tarn::host::WrapState(kProject, bytes));
  return 0;
}
