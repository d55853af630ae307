// tarn-checksum: stores the checksum of a section in a linked program.
//
//   tarn-checksum [--vectors] [--optional] SECTION PROGRAM.elf
//
// The section's last four bytes become the CRC-32 of those before them. With --vectors, it is a
// vector table, and word 7 becomes what makes the sum of the first eight words 0. With --optional,
// a program without the section stays as it is. Started by the linkers of the included definitions,
// directly after the link; exit code 0, or 1 after printing the reason.

#include <string>

#include "components/tools/SectionChecksum.h"
#include "components/tools/StepProgram.h"

namespace {

int Fail(const std::string& file, const char* reason) {
  return tarn::tools::FailStep("tarn-checksum", file, reason);
}

}  // namespace

int main(int count, char** arguments) {
  int next = 1;
  const auto take = [&](const char* flag) {
    const bool isThere = next < count && std::string(arguments[next]) == flag;
    next += isThere ? 1 : 0;
    return isThere;
  };
  const bool isOfVectors = take("--vectors");
  const bool isOptional = take("--optional");
  if (count - next != 2) {
    return Fail("usage", "tarn-checksum [--vectors] [--optional] SECTION PROGRAM.elf");
  }
  const std::string section = arguments[next];
  const std::string path = arguments[next + 1];
  std::string program;
  if (!tarn::tools::ReadBytes(path, program)) return Fail(path, "can't be read");
  const tarn::Status stored = isOfVectors ? tarn::tools::StoreVectorChecksum(program, section)
                                          : tarn::tools::StoreSectionChecksum(program, section);
  if (!stored && isOptional && stored.GetError().code == tarn::ErrorCode::NotFound) return 0;
  if (!stored) return Fail(path, stored.GetError().text.c_str());
  return tarn::tools::WriteBytes(path, program) ? 0 : Fail(path, "can't be written");
}
