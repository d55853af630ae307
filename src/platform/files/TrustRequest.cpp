#include "platform/files/TrustRequest.h"

#include <algorithm>
#include <iterator>

#include "platform/text/Text.h"

namespace tarn {

namespace {

struct KindRow {
  TrustRequestKind kind;
  std::string_view identifier;
  std::string_view start;  // of the description, before the subject
  std::string_view end;
};

constexpr KindRow kKinds[] = {
    {TrustRequestKind::Launcher, "launcher", "run the launcher ", ""},
    {TrustRequestKind::Tool, "tool", "run the tool ", ""},
    {TrustRequestKind::Program, "own-program", "run the program ", ""},
    {TrustRequestKind::Script, "script", "run the script ", ""},
    {TrustRequestKind::CodeArgument, "code-argument", "run code with the argument ", ""},
    {TrustRequestKind::Argument, "argument", "run the tool with the argument ", ""},
    {TrustRequestKind::StrayArgument, "stray-argument", "run the tool with the argument ",
     ", which writes files of other names"},
    {TrustRequestKind::NamelessArgument, "nameless-argument", "run the tool with the argument ",
     ", which writes a file of an unknown name"},
    {TrustRequestKind::CommandFile, "command-file", "run commands from the file ", ""},
    {TrustRequestKind::Run, "code", "run ", ""},
    {TrustRequestKind::Write, "write", "write ", ""},
    {TrustRequestKind::Delete, "delete", "delete ", ""},
};

const KindRow& RowOf(TrustRequestKind kind) {
  return *std::ranges::find(kKinds, kind, &KindRow::kind);
}

}  // namespace

std::string_view IdentifierOf(TrustRequestKind kind) {
  return RowOf(kind).identifier;
}

std::optional<TrustRequestKind> FindTrustRequestKind(std::string_view identifier) {
  const auto* const found = std::ranges::find(kKinds, identifier, &KindRow::identifier);
  return found == std::end(kKinds) ? std::nullopt : std::optional(found->kind);
}

std::string Describe(const TrustRequest& request) {
  const KindRow& row = RowOf(request.kind);
  return std::string(row.start) + request.subject + std::string(row.end);
}

std::string ToLine(const TrustRequest& request) {
  return std::string(IdentifierOf(request.kind)) + " " + ReplaceAll(request.subject, "\n", "\\x0a");
}

std::optional<TrustRequest> ParseTrustRequest(std::string_view line) {
  const std::size_t space = line.find(' ');
  if (space == line.npos) return std::nullopt;
  const auto kind = FindTrustRequestKind(line.substr(0, space));
  if (!kind) return std::nullopt;
  return TrustRequest{*kind, std::string(line.substr(space + 1))};
}

}  // namespace tarn
