#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// The text of an INI file: sections in brackets, "name=value" lines, comments behind a semicolon.
//
// Names of sections and values compare without regard to case and without the blanks around them;
// of a value the blanks around it and one pair of single or double quotes around it are left out.
// What stands twice is found where it stands first. Every line that is no part of a change keeps
// its bytes and its place, whatever it is; new lines end as the first line of the text does.
class IniFile {
 public:
  IniFile() = default;
  explicit IniFile(std::string_view text);

  std::optional<std::string> Read(std::string_view section, std::string_view name) const;
  // Each name once, in the order of the text.
  std::vector<std::string> SectionNames() const;
  std::vector<std::string> ValueNames(std::string_view section) const;

  // Replaces the value where it stands, or adds it behind the last value of the section, or adds
  // the section at the end. The value is written as it is: whoever wants outer blanks or quotes
  // back puts quotes around (see Quoted). False, and nothing changes, for what a line cannot hold:
  // line breaks and zero bytes, an empty name or one that would read as something else.
  bool Write(std::string_view section, std::string_view name, std::string_view value);
  // True when there was such a value or section; all of that name go.
  bool Remove(std::string_view section, std::string_view name);
  bool RemoveSection(std::string_view section);

  std::string ToText() const;

  // The value in a form that Read gives back as it was.
  static std::string Quoted(std::string_view value);

 private:
  enum class Kind { Other, Section, Value };
  struct Line {
    std::string text;  // with its line break
    Kind kind = Kind::Other;
    std::string name;  // of the section or value
  };

  static Line ParseLine(std::string_view text);
  std::size_t FindSection(std::string_view section, std::size_t from) const;
  std::size_t EndOfSection(std::size_t header) const;
  std::size_t FindValue(std::string_view section, std::string_view name) const;
  std::string_view LineBreak() const;
  void Insert(std::size_t place, std::string text);

  std::vector<Line> lines;
};

}  // namespace tarn
