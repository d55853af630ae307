// The input is a build state file, which is read back long after it was written. Reading it must
// terminate properly for any contents, and accepted records must read back the same.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "builder/BuildRecordStore.h"

namespace {

using tarn::BuildRecord;
using tarn::BuildRecordStore;
using tarn::StateVerdict;

constexpr const char* kProject = "p.tprj";

void Require(bool holds) {
  if (!holds) std::abort();
}

void Append(BuildRecordStore& store) {
  BuildRecord record;
  record.application = record.infos = record.date = record.search = store.Intern("a");
  record.output = store.AddVersion("o", {1, 2, 3, 4, 5, 6}, 7);
  record.inputs = {record.output};
  record.sources = 1;
  store.Put(std::move(record));
}

void Read(const std::string& bytes) {
  BuildRecordStore store;
  if (store.Load(bytes, kProject) != StateVerdict::Good) {
    Require(store.GetCount() == 0);
    return;
  }
  Require(store.GetJournalLength() <= bytes.size());
  const std::string saved = store.Save(kProject);
  BuildRecordStore again;
  Require(again.Load(saved, kProject) == StateVerdict::Good);
  Require(again.GetCount() == store.GetCount() && again.Save(kProject) == saved);
  // The journal continues after its valid part.
  const std::string good = bytes.substr(0, store.GetJournalLength());
  Append(store);
  Require(again.Load(good + store.TakeNews(), kProject) == StateVerdict::Good);
  Require(again.Save(kProject) == store.Save(kProject));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Read(bytes);
  // With a valid header, so that the checksum doesn't reject every input.
  const std::string head = tarn::StateHead(kProject);
  std::uint64_t chain = tarn::StateChecksum(head);
  Read(head + tarn::StateBlock(bytes, chain));
  return 0;
}
