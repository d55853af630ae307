#include "components/tools/Uf2.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>

namespace tarn::tools {

namespace {

constexpr std::uint32_t kPageSize = 256;
constexpr std::size_t kBlockSize = 512;
constexpr std::size_t kMostPages = 64U * 1024 * 1024 / kPageSize;

constexpr std::uint32_t kFirstMagic = 0x0A324655;
constexpr std::uint32_t kSecondMagic = 0x9E5D5157;
constexpr std::uint32_t kLastMagic = 0x0AB16F30;
constexpr std::uint32_t kFamilyIsPresent = 0x2000;

// By the address of the first byte.
using Pages = std::map<std::uint32_t, std::array<char, kPageSize>>;

// Reads little-endian numbers; those beyond the end are 0.
class ElfReader {
 public:
  explicit ElfReader(std::string_view bytes) : bytes_(bytes) {}

  std::uint32_t Word(std::size_t offset) const { return Number(offset, 4); }
  std::uint32_t Half(std::size_t offset) const { return Number(offset, 2); }

 private:
  std::uint32_t Number(std::size_t offset, std::size_t size) const {
    std::uint32_t number = 0;
    for (std::size_t i = size; i-- > 0;) {
      const std::size_t at = offset + i;
      const auto byte = at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : 0U;
      number = number << 8 | byte;
    }
    return number;
  }

  std::string_view bytes_;
};

// Returns false if there are too many pages.
bool AddContent(Pages& pages, std::uint32_t address, std::string_view content) {
  while (!content.empty()) {
    const std::uint32_t inPage = address % kPageSize;
    const std::size_t size = std::min<std::size_t>(kPageSize - inPage, content.size());
    auto& page = pages[address - inPage];
    std::copy_n(content.begin(), size, page.begin() + inPage);
    if (pages.size() > kMostPages) return false;
    content.remove_prefix(size);
    address += static_cast<std::uint32_t>(size);
  }
  return true;
}

// Returns the reason why the file can't be converted, or nullptr.
const char* CollectPages(std::string_view elf, Pages& pages) {
  constexpr std::string_view kElf32LittleEndian("\x7f\x45LF\x01\x01", 6);
  if (!elf.starts_with(kElf32LittleEndian)) return "not a 32-bit little-endian ELF file";
  const ElfReader reader(elf);
  constexpr std::uint32_t kLoadable = 1;
  const std::size_t first = reader.Word(28);
  const std::size_t entrySize = reader.Half(42);
  for (std::size_t i = 0; i < reader.Half(44); ++i) {
    const std::size_t header = first + i * entrySize;
    if (reader.Word(header) != kLoadable) continue;
    const std::size_t offset = reader.Word(header + 4);
    const std::size_t size = reader.Word(header + 16);
    if (size == 0) continue;
    if (offset > elf.size() || size > elf.size() - offset) return "the ELF file is truncated";
    if (!AddContent(pages, reader.Word(header + 12), elf.substr(offset, size))) {
      return "the program is larger than 64 MB";
    }
  }
  return pages.empty() ? "the program is empty" : nullptr;
}

void AppendWord(std::string& text, std::uint32_t word) {
  for (int i = 0; i < 4; ++i) text += static_cast<char>(word >> (8 * i) & 0xFF);
}

}  // namespace

Result<std::string> ConvertToUf2(std::string_view elf, std::uint32_t family) {
  Pages pages;
  if (const char* reason = CollectPages(elf, pages))
    return Error{ErrorCode::Unsupported, reason, {}};
  std::string text;
  text.reserve(pages.size() * kBlockSize);
  const auto count = static_cast<std::uint32_t>(pages.size());
  std::uint32_t number = 0;
  for (const auto& [address, content] : pages) {
    for (const std::uint32_t word : {kFirstMagic, kSecondMagic, kFamilyIsPresent, address,
                                     kPageSize, number++, count, family}) {
      AppendWord(text, word);
    }
    text.append(content.data(), content.size());
    text.resize(number * kBlockSize - sizeof kLastMagic);
    AppendWord(text, kLastMagic);
  }
  return text;
}

}  // namespace tarn::tools
