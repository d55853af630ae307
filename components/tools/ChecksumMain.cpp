// tarn-checksum: stores the checksum of a section in a linked program.
//
//   tarn-checksum SECTION PROGRAM.elf
//
// The section's last four bytes become the CRC-32 of those before them. Started by the linkers of
// the included definitions, directly after the link; exit code 0, or 1 after printing the reason.

#include <string>

#include "components/tools/SectionChecksum.h"
#include "components/tools/StepProgram.h"

namespace {

int Fail(const std::string& file, const char* reason) {
  return tarn::tools::FailStep("tarn-checksum", file, reason);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return Fail("usage", "tarn-checksum SECTION PROGRAM.elf");
  const std::string path = arguments[2];
  std::string program;
  if (!tarn::tools::ReadBytes(path, program)) return Fail(path, "can't be read");
  const tarn::Status stored = tarn::tools::StoreSectionChecksum(program, arguments[1]);
  if (!stored) return Fail(path, stored.GetError().text.c_str());
  return tarn::tools::WriteBytes(path, program) ? 0 : Fail(path, "can't be written");
}
