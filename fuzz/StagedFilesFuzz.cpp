// Changes of a project come from a journal, which may be damaged: reading any two lists ends well,
// and nothing is read that isn't in them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "project/StagedFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t middle = bytes.find('\0') == std::string::npos ? size / 2 : bytes.find('\0');
  const std::string texts = bytes.substr(0, middle);
  const std::string bases = bytes.substr(middle);
  std::size_t total = 0;
  for (const auto& [path, file] : tarn::ReadStagedFiles(texts, bases)) {
    if (texts.find(file.text) == std::string::npos) std::abort();
    if (file.base && bases.find(*file.base) == std::string::npos) std::abort();
    total += path.size() + file.text.size();
  }
  if (total > texts.size()) std::abort();
  return 0;
}
