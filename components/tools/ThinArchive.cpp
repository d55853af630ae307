#include "components/tools/ThinArchive.h"

#include <algorithm>
#include <charconv>

namespace tarn::tools {

namespace {

constexpr std::string_view kMagic = "!<thin>\n";
constexpr std::size_t kHeaderSize = 60;
constexpr std::size_t kNameSize = 16;
constexpr std::size_t kSizeOffset = 48;
constexpr std::size_t kSizeSize = 10;

std::size_t ToNumber(std::string_view digits) {
  std::size_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

std::string_view WithoutSpaces(std::string_view field) {
  return field.substr(0, field.find_last_not_of(' ') + 1);
}

}  // namespace

// Each member has a header of fixed size; only the symbol tables and the table of long names are
// followed by content. "/17" refers to the name at offset 17 of that table, terminated by a slash
// and a line feed; "/17:640" refers to a member of the archive with that name.
std::vector<std::string> ReadThinArchive(std::string_view bytes) {
  std::vector<std::string> names;
  if (!bytes.starts_with(kMagic)) return names;
  bytes.remove_prefix(kMagic.size());
  std::string_view table;
  while (bytes.size() >= kHeaderSize) {
    const std::string_view field = WithoutSpaces(bytes.substr(0, kNameSize));
    std::size_t size = ToNumber(bytes.substr(kSizeOffset, kSizeSize));
    bytes.remove_prefix(kHeaderSize);
    const bool isTable = field == "/" || field == "//" || field == "/SYM64/";
    if (isTable) {
      size = std::min(size, bytes.size());
      if (field == "//") table = bytes.substr(0, size);
      bytes.remove_prefix(std::min(size + size % 2, bytes.size()));
      continue;
    }
    std::string_view name = field;
    if (field.starts_with('/')) {
      name = table.substr(std::min(ToNumber(field.substr(1)), table.size()));
      name = name.substr(0, name.find('\n'));
    }
    if (name.ends_with('/')) name.remove_suffix(1);
    const bool isKnown = std::find(names.begin(), names.end(), name) != names.end();
    if (!name.empty() && !isKnown) names.emplace_back(name);
  }
  return names;
}

}  // namespace tarn::tools
