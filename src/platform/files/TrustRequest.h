#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// Kinds of actions for which a project must be trusted.
enum class TrustRequestKind {
  Launcher,
  Tool,
  Program,
  Script,
  CodeArgument,      // an argument that makes a tool run code
  Argument,          // an argument with unknown effects
  StrayArgument,     // one that makes a tool write files of other names
  NamelessArgument,  // one that makes a tool write a file of an unknown name
  CommandFile,
  Run,  // any other program or code
  Write,
  Delete,
};

// Action that a project has requested.
struct TrustRequest {
  TrustRequestKind kind = TrustRequestKind::Run;
  std::string subject;  // file, program or argument

  bool operator==(const TrustRequest&) const = default;
};

// Returns the identifier of a kind, such as "launcher". Neither it nor the kind's meaning may
// change, since components and hosts exchange them.
std::string_view IdentifierOf(TrustRequestKind kind);
// Returns nullopt if no kind has this identifier.
std::optional<TrustRequestKind> FindTrustRequestKind(std::string_view identifier);

// Returns words that follow "the project wants to ": "run the launcher ./x.sh".
std::string Describe(const TrustRequest& request);

// Conversion to and from one line: identifier, space, subject. In the line, the subject has "\x0a"
// in place of each line feed.
std::string ToLine(const TrustRequest& request);
// Returns nullopt if the line isn't a request.
std::optional<TrustRequest> ParseTrustRequest(std::string_view line);

}  // namespace tarn
