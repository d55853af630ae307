// A build state file is written by this program and read back long after: whatever became of it in
// between, reading it must end well, and what is taken must write and read back the same.

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
  // The journal goes on where its good part ends.
  const std::string good = bytes.substr(0, store.GetJournalLength());
  Append(store);
  Require(again.Load(good + store.TakeNews(), kProject) == StateVerdict::Good);
  Require(again.Save(kProject) == store.Save(kProject));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Read(bytes);
  // After a good head, so that the checksum does not keep everything out.
  const std::string head = tarn::StateHead(kProject);
  std::uint64_t chain = tarn::StateChecksum(head);
  Read(head + tarn::StateBlock(bytes, chain));
  return 0;
}
