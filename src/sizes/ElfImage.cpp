#include "sizes/ElfImage.h"

#include <algorithm>

namespace tarn::sizes {

namespace {

constexpr std::uint64_t kSymbolTable = 2;  // types of sections
constexpr std::uint64_t kNoBits = 8;
constexpr std::uint64_t kWrite = 1;  // flags of sections
constexpr std::uint64_t kAlloc = 2;
constexpr std::uint64_t kMachineArm = 40;
constexpr std::uint64_t kLoad = 1;  // type of program headers

// Header of a section as stored.
struct Header {
  std::uint64_t name = 0, type = 0, flags = 0, address = 0, offset = 0, size = 0, link = 0;
};

class Reader {
 public:
  explicit Reader(std::string_view elfBytes) : bytes_(elfBytes) {}

  std::optional<ElfImage> Read() {
    constexpr std::string_view kMagic =
        "\x7f"
        "ELF";
    if (!bytes_.starts_with(kMagic) || bytes_.size() < 52) return std::nullopt;
    isWide_ = bytes_[4] == 2;
    isBigEndian_ = bytes_[5] == 2;
    if ((bytes_[4] != 1 && !isWide_) || (bytes_[5] != 1 && !isBigEndian_)) return std::nullopt;
    image_.machine = static_cast<int>(Number(18, 2));
    if (!ReadHeaders() || !AddSections() || !AddSymbols()) return std::nullopt;
    SetLoadAddresses();
    return isDamaged_ ? std::nullopt : std::optional(std::move(image_));
  }

 private:
  // Returns an unsigned number; a position outside the bytes marks the file as damaged.
  std::uint64_t Number(std::uint64_t at, std::size_t size) {
    if (at > bytes_.size() || bytes_.size() - at < size) {
      isDamaged_ = true;
      return 0;
    }
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t index = at + (isBigEndian_ ? i : size - 1 - i);
      number = number << 8 | static_cast<unsigned char>(bytes_[index]);
    }
    return number;
  }
  std::uint64_t Word(std::uint64_t at) { return Number(at, isWide_ ? 8 : 4); }

  Header HeaderAt(std::uint64_t at) {
    Header header;
    header.name = Number(at, 4);
    header.type = Number(at + 4, 4);
    header.flags = Word(at + 8);
    header.address = Word(at + (isWide_ ? 16 : 12));
    header.offset = Word(at + (isWide_ ? 24 : 16));
    header.size = Word(at + (isWide_ ? 32 : 20));
    header.link = Number(at + (isWide_ ? 40 : 24), 4);
    return header;
  }

  bool ReadHeaders() {
    const std::uint64_t start = Word(isWide_ ? 40 : 32);
    const std::uint64_t entry = Number(isWide_ ? 58 : 46, 2);
    std::uint64_t count = Number(isWide_ ? 60 : 48, 2);
    names_ = Number(isWide_ ? 62 : 50, 2);
    if (isDamaged_ || start > bytes_.size() || entry != (isWide_ ? 64 : 40)) return false;
    // Numbers that are too large for the file header are in the first section header.
    constexpr std::uint64_t kElsewhere = 0xffff;
    if (count == 0) count = HeaderAt(start).size;
    if (names_ == kElsewhere) names_ = HeaderAt(start).link;
    if (isDamaged_ || count > (bytes_.size() - start) / entry || names_ >= count) return false;
    headers_.reserve(count);
    for (std::uint64_t i = 0; i < count; ++i) headers_.push_back(HeaderAt(start + i * entry));
    return !isDamaged_;
  }

  // Returns the content of a section; nullopt if it is outside the bytes.
  std::optional<std::string_view> Content(const Header& header) const {
    if (header.type == kNoBits || header.offset > bytes_.size() ||
        header.size > bytes_.size() - header.offset) {
      return std::nullopt;
    }
    return bytes_.substr(header.offset, header.size);
  }

  static std::string_view NameAt(std::string_view table, std::uint64_t at) {
    constexpr std::size_t kLongest = 4096;
    if (at >= table.size()) return {};
    const std::string_view rest = table.substr(at, kLongest);
    return rest.substr(0, rest.find('\0'));
  }

  bool AddSections() {
    const auto names = Content(headers_[names_]);
    if (!names) return false;
    image_.sections.reserve(headers_.size());
    for (const Header& header : headers_) {
      image_.sections.push_back({NameAt(*names, header.name), header.address, header.address,
                                 header.size, (header.flags & kAlloc) != 0,
                                 (header.flags & kWrite) != 0, header.type != kNoBits});
    }
    image_.sections.front() = {};
    return true;
  }

  // A file has one symbol table. Reading no second one keeps the memory linear: several sections
  // may claim the same bytes.
  bool AddSymbols() {
    const auto table = std::ranges::find(headers_, kSymbolTable, &Header::type);
    if (table == headers_.end()) return true;
    const auto content = Content(*table);
    if (!content || table->link >= headers_.size()) return false;
    const auto names = Content(headers_[table->link]);
    if (!names) return false;
    const std::uint64_t entry = isWide_ ? 24 : 16;
    for (std::uint64_t i = 0; i + entry <= content->size(); i += entry) {
      AddSymbol(table->offset + i, *names);
    }
    return !isDamaged_;
  }

  void AddSymbol(std::uint64_t at, std::string_view names) {
    constexpr std::uint64_t kFunction = 2, kSectionSymbol = 3, kFile = 4;
    ElfSymbol symbol;
    symbol.address = Word(at + (isWide_ ? 8 : 4));
    symbol.size = Word(at + (isWide_ ? 16 : 8));
    const std::uint64_t type = Number(at + (isWide_ ? 4 : 12), 1) & 0xf;
    symbol.section = Number(at + (isWide_ ? 6 : 14), 2);
    const bool isDefined = symbol.section != 0 && symbol.section < headers_.size();
    if (!isDefined || symbol.size == 0 || type == kSectionSymbol || type == kFile) return;
    symbol.name = NameAt(names, Number(at, 4));
    symbol.isFunction = type == kFunction;
    if (symbol.isFunction && image_.machine == kMachineArm) symbol.address &= ~std::uint64_t{1};
    image_.symbols.push_back(symbol);
  }

  // The program headers have the addresses at which a loader or programmer stores the contents.
  void SetLoadAddresses() {
    const std::uint64_t start = Word(isWide_ ? 32 : 28);
    const std::uint64_t count = start == 0 ? 0 : Number(isWide_ ? 56 : 44, 2);
    const std::uint64_t entry = isWide_ ? 56 : 32;
    // A linker writes a few of them; the limit keeps a malformed file linear.
    constexpr std::uint64_t kMost = 256;
    for (std::uint64_t i = 0; i < std::min(count, kMost) && !isDamaged_; ++i) {
      const std::uint64_t at = start + i * entry;
      if (Number(at, 4) != kLoad) continue;
      const std::uint64_t offset = Word(at + (isWide_ ? 8 : 4));
      const std::uint64_t address = Word(at + (isWide_ ? 16 : 8));
      const std::uint64_t physical = Word(at + (isWide_ ? 24 : 12));
      const std::uint64_t size = Word(at + (isWide_ ? 32 : 16));
      MoveSections(offset, size, address, physical);
    }
  }

  // Sets the load addresses of the sections whose content is in a segment.
  void MoveSections(std::uint64_t offset, std::uint64_t size, std::uint64_t address,
                    std::uint64_t physical) {
    for (std::size_t i = 1; i < headers_.size(); ++i) {
      ElfSection& section = image_.sections[i];
      const bool isInside = section.isAllocated && section.hasContent && section.size > 0 &&
                            headers_[i].offset >= offset && headers_[i].offset - offset < size;
      if (isInside && section.address >= address) {
        section.loadAddress = section.address - address + physical;
      }
    }
  }

  std::string_view bytes_;
  bool isWide_ = false;
  bool isBigEndian_ = false;
  bool isDamaged_ = false;
  std::uint64_t names_ = 0;
  std::vector<Header> headers_;
  ElfImage image_;
};

}  // namespace

std::optional<ElfImage> ReadElf(std::string_view bytes) {
  return Reader(bytes).Read();
}

}  // namespace tarn::sizes
