#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Content of an INI file: sections in brackets, "name=value" lines, comments after a semicolon.
//
// Names of sections and values are case-insensitive, and whitespace around them is ignored.
// Whitespace around a value and one pair of single or double quotes around it are stripped. The
// first of several definitions wins. Every line that is not part of a change keeps its bytes and
// its position, even if it is malformed; new lines use the line ending of the first line. Lookups
// are linear in the number of lines.
class IniFile {
 public:
  IniFile() = default;
  // Parses any text; malformed lines are preserved but never found.
  explicit IniFile(std::string_view text);

  // Returns nullopt if there is no such value.
  std::optional<std::string> Read(std::string_view section, std::string_view name) const;
  // Each name once, in file order.
  std::vector<std::string> SectionNames() const;
  std::vector<std::string> ValueNames(std::string_view section) const;

  // Replaces the value in place, or adds it after the last value of the section, or adds the
  // section at the end. The value is written verbatim; a caller that needs surrounding spaces or
  // quotes preserved has to quote it (see Quoted()). Returns false without any change if a line
  // cannot hold it: line breaks and zero bytes, an empty name, or one that would be parsed
  // differently.
  bool Write(std::string_view section, std::string_view name, std::string_view value);
  // Remove all entries of that name. Return false if there was none.
  bool Remove(std::string_view section, std::string_view name);
  bool RemoveSection(std::string_view section);

  // The content of the file after all changes.
  std::string ToText() const;

  // Returns the value quoted such that Read() returns it unchanged.
  static std::string Quoted(std::string_view value);

 private:
  enum class Kind { Other, Section, Value };
  struct Line {
    std::string text;  // including its line break
    Kind kind = Kind::Other;
    std::string name;  // name of the section or value
  };

  static Line ParseLine(std::string_view text);
  std::size_t FindSection(std::string_view section, std::size_t from) const;
  std::size_t EndOfSection(std::size_t header) const;
  std::size_t FindValue(std::string_view section, std::string_view name) const;
  std::string_view LineBreak() const;
  void Insert(std::size_t place, std::string text);

  std::vector<Line> lines_;
};

}  // namespace tarn
