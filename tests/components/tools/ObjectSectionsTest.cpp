#include "components/tools/ObjectSections.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace tarn::tools {
namespace {

struct Form {
  bool isWide;
  bool isBigEndian;
};

std::string Number(std::uint64_t value, int size, bool isBigEndian) {
  std::string bytes(static_cast<std::size_t>(size), '\0');
  for (int i = 0; i < size; ++i, value >>= 8) {
    bytes[static_cast<std::size_t>(isBigEndian ? size - 1 - i : i)] = static_cast<char>(value);
  }
  return bytes;
}

// Returns an object with the sections ".text", with the content "code"; ".bss", without content;
// and that of the names. `changed` overwrites bytes of the second one's header.
std::string Object(Form form, std::size_t at = 0, const std::string& changed = "") {
  const std::string names("\0.text\0.bss\0.names\0", 20);
  const int word = form.isWide ? 8 : 4;
  const std::uint64_t header = form.isWide ? 64 : 52;
  const auto number = [&](std::uint64_t value, int size) {
    return Number(value, size, form.isBigEndian);
  };
  std::string file =
      "\x7f"
      "ELF";
  file += form.isWide ? '\2' : '\1';
  file += form.isBigEndian ? '\2' : '\1';
  file += '\1' + std::string(9, '\0') + number(1, 2) + number(62, 2) + number(1, 4);
  file += number(0, word) + number(0, word) + number(header + 24, word);  // sections follow names
  file += number(0, 4) + number(header, 2) + number(0, 2) + number(0, 2);
  file += number(form.isWide ? 64 : 40, 2) + number(4, 2) + number(3, 2);
  file += "code" + names;
  const auto add = [&](std::uint64_t name, std::uint64_t type, std::uint64_t start,
                       std::uint64_t size) {
    std::string text = number(name, 4) + number(type, 4) + number(0, word) + number(0, word) +
                       number(start, word) + number(size, word) + number(0, 4) + number(0, 4) +
                       number(0, word) + number(0, word);
    if (name == 7) text.replace(at, changed.size(), changed);
    file += text;
  };
  add(0, 0, 0, 0);
  add(1, 1, header, 4);
  add(7, 8, header, 999999);
  add(12, 3, header + 4, names.size());
  return file;
}

std::string Member(std::string name, const std::string& content) {
  name.resize(48, ' ');
  std::string size = std::to_string(content.size());
  size.resize(10, ' ');
  return name + size + "`\n" + content + std::string(content.size() % 2, '\n');
}

// Returns the names and contents of the sections, with "!" after them if there may be more.
std::string SectionsOf(const std::string& bytes) {
  std::string list;
  const bool isRead = ForEachSection(
      bytes, [&list](std::string_view name, std::optional<std::string_view> content) {
        if (name == ".names") return;
        list += std::string(name) + "=" + std::string(content.value_or("none")) + " ";
      });
  return isRead ? list : list + "!";
}

TEST(ObjectSections, NamesEachSectionAndAdmitsThatSomeMayBeHidden) {
  const std::string object = Object({true, false});
  const std::string both = ".text=code .bss=none ";
  const std::string archive = "!<arch>\n";
  const std::string toMember = Number(1, 4, true) + Number(archive.size() + 70, 4, true) + "a";
  const std::string beyond = Number(1, 4, true) + Number(archive.size() + 72, 4, true) + "a";
  const struct {
    const char* name;
    std::string bytes;
    std::string sections;
  } rows[] = {
      {"64 bits", object, both},
      {"64 bits, big endian", Object({true, true}), both},
      {"32 bits", Object({false, false}), both},
      {"32 bits, big endian", Object({false, true}), both},
      {"no sections", object.substr(0, 40) + std::string(24, '\0'), ""},
      {"a name outside the table", Object({true, false}, 0, "\xff"), ".text=code !"},
      {"content outside the file", Object({true, false}, 4, "\1"), ".text=code !"},
      {"a cut header", object.substr(0, object.size() - 1), "!"},
      {"nothing but the magic number", object.substr(0, 4), "!"},
      {"another format", "MZ" + object, "!"},
      {"nothing", "", "!"},
      {"an empty archive", archive, ""},
      {"an archive", archive + Member("a.o/", object) + Member("b.o/", object), both + both},
      {"a member whose name precedes it",
       archive + Member("#1/4", std::string("a.o\0", 4) + object), both},
      {"a member that is no object", archive + Member("a.o/", object) + Member("b/", "b"),
       both + "!"},
      {"a member of a wrong size", archive + Member("a.o/", object).insert(48, "9"), "!"},
      {"a table that refers to a member", archive + Member("/", toMember) + Member("a.o/", object),
       both},
      {"a table that refers into one", archive + Member("/", beyond) + Member("a.o/", object),
       both + "!"},
      {"a cut table", archive + Member("/", Number(9, 4, true)), "!"},
      {"a table in another form", archive + Member("__.SYMDEF", toMember), "!"},
      {"a thin archive", "!<thin>\n" + Member("a.o/", ""), ""},
  };
  for (const auto& row : rows) EXPECT_EQ(SectionsOf(row.bytes), row.sections) << row.name;
}

}  // namespace
}  // namespace tarn::tools
