// tarn-uf2: converts a linked program for boot loaders that appear as a drive.
//
//   tarn-uf2 FAMILY PROGRAM.elf OUTPUT.uf2
//
// FAMILY is the number of the family of devices, decimal or hexadecimal after 0x. Started by the
// linkers of the included definitions; exit code 0, or 1 after printing the reason.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "components/tools/Uf2.h"

namespace {

int Fail(const char* file, const char* reason) {
  std::fprintf(stderr, "tarn-uf2: error: %s: %s\n", file, reason);
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) return Fail("usage", "tarn-uf2 FAMILY PROGRAM.elf OUTPUT.uf2");
  char* end = nullptr;
  const unsigned long family = std::strtoul(arguments[1], &end, 0);
  if (end == arguments[1] || *end != '\0' || family > 0xFFFFFFFFUL) {
    return Fail(arguments[1], "not the number of a family (32 bits)");
  }
  std::ifstream input(arguments[2], std::ios::binary);
  const std::string program(std::istreambuf_iterator<char>(input), {});
  if (!input) return Fail(arguments[2], "can't be read");
  const auto converted = tarn::tools::ConvertToUf2(program, static_cast<std::uint32_t>(family));
  if (!converted) return Fail(arguments[2], converted.GetError().text.c_str());
  std::ofstream output(arguments[3], std::ios::binary);
  output << *converted << std::flush;
  return output ? 0 : Fail(arguments[3], "can't be written");
}
