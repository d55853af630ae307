// The input is an edit record, which is stored next to its project for the project's lifetime.
// Reading it must terminate properly for any contents, and accepted records must read back the
// same.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "hosts/cli/EditRecord.h"
#include "support/MemoryFileSystem.h"

namespace {

constexpr const char* kProject = "/p/demo.tprj";
constexpr const char* kRecord = "/p/demo.undo.tstate";

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tarn::testing::MemoryFileSystem files;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  files.AddFile(kRecord, bytes.starts_with("Tarn") ? bytes : "Tarn undo 1\n" + bytes);
  tarn::host::EditRecord record(files, kProject);
  Require(bool(record.Write()));
  const std::string written = *files.BytesOf(kRecord);
  tarn::host::EditRecord again(files, kProject);
  while (again.GetUndo() != nullptr) again.MoveBack();
  while (record.GetUndo() != nullptr) record.MoveBack();
  for (; record.GetRedo() != nullptr; record.MoveOn(), again.MoveOn()) {
    Require(again.GetRedo() != nullptr && again.GetRedo()->label == record.GetRedo()->label);
  }
  Require(again.GetRedo() == nullptr);
  return 0;
}
