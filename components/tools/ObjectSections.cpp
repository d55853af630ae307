#include "components/tools/ObjectSections.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <vector>

namespace tarn::tools {

namespace {

constexpr std::string_view kElf =
    "\x7f"
    "ELF";
constexpr std::string_view kArchive = "!<arch>\n";
constexpr std::string_view kThinArchive = "!<thin>\n";

// Returns an unsigned number, or nullopt if it is outside the bytes.
std::optional<std::uint64_t> ReadNumber(std::string_view bytes, std::uint64_t at, std::size_t size,
                                        bool isBigEndian) {
  if (at > bytes.size() || bytes.size() - at < size) return std::nullopt;
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const std::size_t index = at + (isBigEndian ? i : size - 1 - i);
    number = number << 8 | static_cast<unsigned char>(bytes[index]);
  }
  return number;
}

// Reads the section headers of an ELF file of 32 or 64 bits in either byte order.
class ElfFile {
 public:
  explicit ElfFile(std::string_view elfBytes)
      : bytes_(elfBytes), isWide_(At(4) == 2), isBigEndian_(At(5) == 2) {}

  bool Read(const SectionReader& read) const {
    const bool isPlain = (At(4) == 1 || isWide_) && (At(5) == 1 || isBigEndian_);
    const auto start = Number(isWide_ ? 40 : 32, isWide_ ? 8 : 4);
    const auto entry = Number(isWide_ ? 58 : 46, 2);
    auto count = Number(isWide_ ? 60 : 48, 2);
    auto names = Number(isWide_ ? 62 : 50, 2);
    if (!isPlain || !start || !entry || !count || !names) return false;
    if (*start == 0) return true;
    if (*entry != (isWide_ ? 64 : 40)) return false;
    // Numbers that are too large for the file header are in the first section header.
    constexpr std::uint64_t kElsewhere = 0xffff;
    if (*count == 0) count = Number(*start + (isWide_ ? 32 : 20), isWide_ ? 8 : 4);
    if (*names == kElsewhere) names = Number(*start + (isWide_ ? 40 : 24), 4);
    if (!count || !names || *start > bytes_.size() || *names >= *count ||
        *count > (bytes_.size() - *start) / *entry) {
      return false;
    }
    const std::uint64_t namesHeader = *start + *names * *entry;
    const auto table = Content(namesHeader);
    if (!table || HasNoContent(namesHeader)) return false;
    for (std::uint64_t i = 1; i < *count; ++i) {
      const std::uint64_t header = *start + i * *entry;
      const auto name = Number(header, 4);
      if (!name || *name > table->size()) return false;
      const std::string_view text = table->substr(*name);
      const bool isEmpty = HasNoContent(header);
      const auto content = isEmpty ? std::nullopt : Content(header);
      if (!content && !isEmpty) return false;
      read(text.substr(0, text.find('\0')), content);
    }
    return true;
  }

 private:
  int At(std::size_t index) const { return index < bytes_.size() ? bytes_[index] : 0; }
  std::optional<std::uint64_t> Number(std::uint64_t at, std::size_t size) const {
    return ReadNumber(bytes_, at, size, isBigEndian_);
  }
  bool HasNoContent(std::uint64_t header) const {
    constexpr std::uint64_t kNoBits = 8;
    return Number(header + 4, 4) == kNoBits;
  }
  // Returns the content of a section, or nullopt if it is outside the bytes.
  std::optional<std::string_view> Content(std::uint64_t header) const {
    const auto offset = Number(header + (isWide_ ? 24 : 16), isWide_ ? 8 : 4);
    const auto size = Number(header + (isWide_ ? 32 : 20), isWide_ ? 8 : 4);
    if (!offset || !size) return std::nullopt;
    if (*offset > bytes_.size() || *size > bytes_.size() - *offset) return std::nullopt;
    return bytes_.substr(*offset, *size);
  }

  std::string_view bytes_;
  bool isWide_;
  bool isBigEndian_;
};

std::optional<std::size_t> ToNumber(std::string_view digits) {
  digits = digits.substr(0, digits.find_last_not_of(' ') + 1);
  std::size_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

// Each member has a header of 60 bytes with its name, in 16 bytes, and its size, in 10 bytes at
// offset 48. A thin archive has only the content of its tables.
class Archive {
 public:
  explicit Archive(std::string_view archiveBytes)
      : bytes_(archiveBytes), isThin_(archiveBytes.starts_with(kThinArchive)) {}

  bool Read(const SectionReader& read) {
    constexpr std::size_t kHeader = 60;
    for (std::size_t at = kArchive.size(); at < bytes_.size();) {
      const std::string_view header = bytes_.substr(at, kHeader);
      const auto size = header.size() < kHeader ? std::nullopt : ToNumber(header.substr(48, 10));
      if (!size || !header.ends_with("`\n")) return false;
      const std::string_view name = header.substr(0, header.find(' '));
      const bool isTable = name == "/" || name == "/SYM64/" || name == "//";
      if (!isTable) starts_.insert(at);
      at += kHeader;
      if (isThin_ && !isTable) continue;
      if (*size > bytes_.size() - at) return false;
      const std::string_view content = bytes_.substr(at, *size);
      at += *size + *size % 2;
      const bool isRead = isTable ? AddTable(name, content) : ReadMember(name, content, read);
      if (!isRead) return false;
    }
    for (const std::uint64_t each : references_) {
      if (!starts_.contains(each)) return false;
    }
    return true;
  }

 private:
  // The symbol table begins with the number of references, each from a symbol to a member.
  bool AddTable(std::string_view name, std::string_view content) {
    if (name == "//") return true;
    const std::size_t width = name == "/" ? 4 : 8;
    const auto count = ReadNumber(content, 0, width, true);
    if (!count || *count > content.size() / width) return false;
    for (std::uint64_t i = 1; i <= *count; ++i) {
      const auto reference = ReadNumber(content, i * width, width, true);
      if (!reference) return false;
      references_.push_back(*reference);
    }
    return true;
  }

  static bool ReadMember(std::string_view name, std::string_view content,
                         const SectionReader& read) {
    if (name.starts_with("__.SYMDEF")) return false;
    if (name.starts_with("#1/")) {  // the name precedes the content
      const auto length = ToNumber(name.substr(3));
      if (!length || *length > content.size()) return false;
      content.remove_prefix(*length);
      if (content.find("SYMDEF") != content.npos) return false;
    }
    return content.starts_with(kElf) && ElfFile(content).Read(read);
  }

  std::string_view bytes_;
  bool isThin_;
  std::unordered_set<std::uint64_t> starts_;
  std::vector<std::uint64_t> references_;
};

}  // namespace

bool IsArchive(std::string_view bytes) {
  return bytes.starts_with(kArchive) || bytes.starts_with(kThinArchive);
}

bool IsThinArchive(std::string_view bytes) {
  return bytes.starts_with(kThinArchive);
}

bool ForEachSection(std::string_view bytes, const SectionReader& read) {
  if (IsArchive(bytes)) return Archive(bytes).Read(read);
  return bytes.starts_with(kElf) && ElfFile(bytes).Read(read);
}

bool IsCutElf(std::string_view bytes) {
  const auto ignore = [](std::string_view, std::optional<std::string_view>) {};
  return bytes.starts_with(kElf) && !ElfFile(bytes).Read(ignore);
}

}  // namespace tarn::tools
