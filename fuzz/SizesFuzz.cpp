#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "sizes/ProgramSizes.h"
#include "sizes/SizeLimit.h"
#include "sizes/Treemap.h"

namespace {

// The bytes of files never exceed those of their memory.
void Check(const tarn::sizes::ProgramSizes& sizes) {
  for (std::size_t i = 0; i < sizes.regions.size(); ++i) {
    std::uint64_t sum = 0;
    for (const auto& file : sizes.files) sum += file.byRegion.at(i);
    if (!sizes.files.empty() && sum != sizes.regions[i].used) std::abort();
  }
  for (const auto& symbol : sizes.symbols) {
    if (symbol.region >= sizes.regions.size()) std::abort();
  }
  for (const auto& section : sizes.sections) {
    for (const std::size_t region : section.regions) {
      if (region >= sizes.regions.size()) std::abort();
    }
  }
}

}  // namespace

// Reads any program, map, stack usage and limit. The first byte is the length of the program in
// units of 64 bytes; the map follows it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarn::sizes;
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string_view program = bytes.substr(0, std::size_t{data[0]} * 64);
  const std::string_view text = bytes.substr(program.size());
  const LinkerMap map = ReadLinkerMap(text);
  if (const auto image = ReadElf(program)) Check(MeasureProgram(*image, map, {}));
  const ProgramSizes sdcc = MeasureSdcc(text, {0, 1000, 0, 100, 0});
  Check(sdcc);
  TreemapPage page{"", {{"", {std::string(text.substr(0, 50)), 10, {}}}}};
  for (const auto& each : sdcc.symbols)
    page.parts[0].root.children.push_back({each.name, each.size});
  RenderTreemap(page);
  ReadStackUsage(text);
  ReadOverflow(text);
  ReadSizeLimit(text, 1000);
  return 0;
}
