#include "components/tools/Template.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarn::tools {

namespace {

constexpr std::array<std::pair<std::string_view, OwnName>, 9> kOwnNames{{
    {"File", OwnName::File},
    {"Output", OwnName::Output},
    {"OutputBase", OwnName::OutputBase},
    {"Listing", OwnName::Listing},
    {"Rules", OwnName::Rules},
    {"Folder", OwnName::Folder},
    {"Item", OwnName::Item},
    {"ItemName", OwnName::ItemName},
    {"LinkTime", OwnName::LinkTime},
}};

// Returns the position after the parenthesis that matches the one at `open`, or npos.
std::size_t EndOfMacro(std::string_view text, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')' && --depth == 0) return i + 1;
  }
  return std::string_view::npos;
}

}  // namespace

std::optional<Template> Template::Parse(std::string_view text, std::string& error) {
  Template result;
  for (std::size_t at = 0; at < text.size();) {
    const char next = at + 1 < text.size() ? text[at + 1] : '\0';
    if (text[at] != '$' || (next != '$' && next != '(')) {
      const std::size_t dollar = text.find('$', at + 1);
      result.AddText(text.substr(at, dollar - at));
      at = dollar == std::string_view::npos ? text.size() : dollar;
    } else if (next == '$') {
      result.AddText("$");
      at += 2;
    } else {
      const std::size_t end = EndOfMacro(text, at + 1);
      if (end == std::string_view::npos) {
        error = "unterminated macro: " + std::string(text.substr(at));
        return std::nullopt;
      }
      if (!result.AddMacro(text.substr(at, end - at), error)) return std::nullopt;
      at = end;
    }
  }
  return result;
}

Template Template::Literal(std::string_view text) {
  Template result;
  result.AddText(text);
  return result;
}

bool Template::Has(OwnName name) const {
  return std::ranges::any_of(
      pieces_, [name](const Piece& each) { return each.kind == Kind::Own && each.own == name; });
}

bool Template::HasOwnMacros() const {
  return std::any_of(pieces_.begin(), pieces_.end(),
                     [](const Piece& each) { return each.kind == Kind::Own; });
}

std::vector<std::string> Template::GetOptionMacros() const {
  std::vector<std::string> macros;
  for (const Piece& piece : pieces_) {
    if (piece.kind == Kind::Option) macros.push_back(piece.text);
  }
  return macros;
}

bool Template::AddMacro(std::string_view macro, std::string& error) {
  const std::string_view name = macro.substr(2, macro.size() - 3);
  if (name.find('.') != std::string_view::npos) {
    pieces_.push_back({Kind::Option, OwnName::File, std::string(macro)});
    return true;
  }
  for (const auto& [ownName, value] : kOwnNames) {
    if (ownName != name) continue;
    pieces_.push_back({Kind::Own, value, {}});
    return true;
  }
  error = "unknown name " + std::string(macro);
  return false;
}

void Template::AddText(std::string_view text) {
  if (text.empty()) return;
  if (pieces_.empty() || pieces_.back().kind != Kind::Literal) pieces_.emplace_back();
  pieces_.back().text.append(text);
}

std::string Template::Fill(const TemplateValues& values, const Change& change) const {
  std::string text;
  for (const Piece& piece : pieces_) {
    if (piece.kind == Kind::Literal) {
      text += piece.text;
      continue;
    }
    const std::string value =
        piece.kind == Kind::Own ? values.Own(piece.own) : values.Option(piece.text);
    text += change ? change(value) : value;
  }
  return text;
}

}  // namespace tarn::tools
