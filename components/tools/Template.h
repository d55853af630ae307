#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// Names that a definition may use in addition to options: $(File) and so on.
enum class OwnName { File, Output, OutputBase, Listing, Rules, Folder, Item, ItemName, LinkTime };

// Source of the values for a template's macros.
class TemplateValues {
 public:
  virtual ~TemplateValues() = default;
  virtual std::string Own(OwnName name) const = 0;
  // `macro` is the complete macro, "$(Section.Property)".
  virtual std::string Option(const std::string& macro) const = 0;
};

// A string of a definition with macros, parsed once so that expanding it is cheap.
class Template {
 public:
  Template() = default;
  // Parses a template. Returns nullopt, and the reason in `error`, if a macro is not closed or a
  // name without a dot is not an OwnName. $$ is a dollar sign.
  static std::optional<Template> Parse(std::string_view text, std::string& error);
  // Returns a template that expands to exactly this text.
  static Template Literal(std::string_view text);

  // Returns true for the empty template.
  bool IsEmpty() const { return pieces_.empty(); }
  // Expands the template; `change`, if set, is applied to the value of each macro.
  using Change = std::function<std::string(const std::string&)>;
  std::string Fill(const TemplateValues& values, const Change& change = nullptr) const;
  // Returns the option macros in the template, each complete: "$(Section.Property)".
  std::vector<std::string> GetOptionMacros() const;
  // Returns true if it uses this name.
  bool Has(OwnName name) const;
  // Returns true if it uses an OwnName, such as $(Output).
  bool HasOwnMacros() const;

 private:
  enum class Kind { Literal, Own, Option };
  struct Piece {
    Kind kind = Kind::Literal;
    OwnName own = OwnName::File;
    std::string text;
  };

  bool AddMacro(std::string_view macro, std::string& error);
  void AddText(std::string_view text);

  std::vector<Piece> pieces_;
};

}  // namespace tarn::tools
