#pragma once

#include <optional>
#include <string_view>

#include "components/tools/ToolMessage.h"

// The pieces that the shapes of tool messages are made of.
namespace tarn::tools {

// "file:12: rest" or "file:12:7: rest".
struct LocatedLine {
  std::string_view file;
  std::string_view line;
  std::string_view rest;  // without blanks in front
};

// A message word and what it announces: "error: text", "error 20: text", "Warning: text".
struct Judgement {
  Severity severity = Severity::Plain;
  std::string_view content;
};

// The word that `text` starts with, if it is one that tools use.
std::optional<Judgement> Judge(std::string_view text);

// The first place in `text` that a message word follows, else the first place at all. A drive's
// colon is part of the file.
std::optional<LocatedLine> FindLocation(std::string_view text);

// A name that stands for no file on disk, such as <built-in> or {standard input}.
bool IsPlaceholder(std::string_view file);

std::string_view SkipBlanks(std::string_view text);
bool Contains(std::string_view text, std::string_view part);
bool IsDigit(char c);

// Writes a found place and judgement into a message.
void SetPlace(ToolMessage& message, std::string_view file, std::string_view line);
void SetJudgement(ToolMessage& message, const Judgement& judgement);

}  // namespace tarn::tools
