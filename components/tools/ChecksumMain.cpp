// tarn-checksum: stores the checksum of a section in a linked program.
//
//   tarn-checksum [--optional] SECTION PROGRAM.elf
//
// The section's last four bytes become the CRC-32 of those before them. With --optional, a program
// without the section stays as it is. Started by the linkers of
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
  const bool isOptional = count == 4 && std::string(arguments[1]) == "--optional";
  if (count != 3 && !isOptional) {
    return Fail("usage", "tarn-checksum [--optional] SECTION PROGRAM.elf");
  }
  const std::string path = arguments[count - 1];
  std::string program;
  if (!tarn::tools::ReadBytes(path, program)) return Fail(path, "can't be read");
  const tarn::Status stored = tarn::tools::StoreSectionChecksum(program, arguments[count - 2]);
  if (!stored && isOptional && stored.GetError().code == tarn::ErrorCode::NotFound) return 0;
  if (!stored) return Fail(path, stored.GetError().text.c_str());
  return tarn::tools::WriteBytes(path, program) ? 0 : Fail(path, "can't be written");
}
