#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// The names that a definition may use beside the options: $(File) and so on.
enum class OwnName { File, Output, OutputBase, Listing, Rules, Folder, Item, LinkTime };

// What a template is filled from.
class TemplateValues {
 public:
  virtual ~TemplateValues() = default;
  virtual std::string Own(OwnName name) const = 0;
  // `macro` is the whole macro, "$(Section.Property)".
  virtual std::string Option(const std::string& macro) const = 0;
};

// A text of a definition with macros in it, taken apart once so that filling it is cheap.
class Template {
 public:
  Template() = default;
  // Nothing, with the reason in `error`, when a macro has no end or a name without a dot is none
  // of the own names. $$ is a dollar sign.
  static std::optional<Template> Parse(std::string_view text, std::string& error);
  // A template that gives exactly this text.
  static Template Literal(std::string_view text);

  // Nothing stands in it.
  bool IsEmpty() const { return pieces.empty(); }
  // `change`, when given, is applied to what each macro gives.
  using Change = std::function<std::string(const std::string&)>;
  std::string Fill(const TemplateValues& values, const Change& change = nullptr) const;
  // The macros for options in it, each as a whole: "$(Section.Property)".
  std::vector<std::string> GetOptionMacros() const;

 private:
  enum class Kind { Literal, Own, Option };
  struct Piece {
    Kind kind = Kind::Literal;
    OwnName own = OwnName::File;
    std::string text;
  };

  bool AddMacro(std::string_view macro, std::string& error);
  void AddText(std::string_view text);

  std::vector<Piece> pieces;
};

}  // namespace tarn::tools
