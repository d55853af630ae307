#include "hosts/core/check/Finding.h"

#include <algorithm>
#include <array>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct KindRow {
  FindingKind kind;
  const char* identifier;
  const char* heading;
  const char* text;  // %1: subject, %2: detail
  bool namesPaths;   // subject and detail are paths
};

constexpr KindRow kKinds[] = {
    {FindingKind::Damage, "damage", "Damage", "%2", false},
    {FindingKind::MissingPath, "missing-path", "Nodes without a file", "%1 does not name a file",
     false},
    {FindingKind::MissingFile, "missing-file", "Missing files", "%1 is missing", true},
    {FindingKind::MissingFolder, "missing-folder", "Missing folders", "%1 is missing", true},
    {FindingKind::MissingLibrary, "missing-library", "Missing libraries",
     "the library %1 was found neither in the library folders nor among the compiler's libraries",
     false},
    {FindingKind::NotAFile, "not-a-file", "Not a file", "%1 is not a file", true},
    {FindingKind::NotAFolder, "not-a-folder", "Not a folder", "%1 is not a folder", true},
    {FindingKind::UnreadableFile, "unreadable-file", "Unreadable files", "%1 can't be read", true},
    {FindingKind::LetterCase, "letter-case", "Letter case", "%1 is spelled %2 on disk", true},
    {FindingKind::DuplicateFile, "duplicate-file", "Duplicate files", "%1 is listed more than once",
     true},
    {FindingKind::SameFile, "same-file", "Files with several names",
     "%1 and %2 are the same file, which is built twice", true},
    {FindingKind::DuplicateOutput, "duplicate-output", "Duplicate outputs",
     "%1 is also the output of %2", true},
    {FindingKind::DuplicateLabel, "duplicate-label", "Duplicate labels",
     "the labels of the applications %1 and %2 differ only in letter case", true},
    {FindingKind::LeftoverApplication, "leftover-application", "Leftover applications",
     "%1 is not part of the project, but may have changes that %2 lacks", true},
    {FindingKind::ApplicationCycle, "application-cycle", "Dependency cycles",
     "applications that use each other's outputs can't be built: %1", false},
    {FindingKind::UnreachableDrive, "unreachable-drive", "Unreachable drives",
     "%1 is on a drive that is not mapped", true},
    // Not shortened, because that would hide the problem.
    {FindingKind::AbsolutePath, "absolute-path", "Absolute paths", "%1 is an absolute path", false},
    {FindingKind::UnknownOption, "unknown-option", "Unknown options",
     "no definition contains the option %1", false},
    {FindingKind::UnknownConfiguration, "unknown-configuration", "Unknown configurations",
     "options are stored for the configuration %1, which the application does not have", false},
    {FindingKind::InvalidValue, "invalid-value", "Invalid values", "%1: %2", false},
    {FindingKind::UnknownType, "unknown-type", "Unknown node types",
     "%1 is not a type in the configuration file, so %2 is not built", false},
    {FindingKind::UnknownTool, "unknown-tool", "Unknown tools",
     "no definition contains the tool %1", false},
    {FindingKind::MissingProgram, "missing-program", "Missing programs",
     "%1 is not installed; it is needed by %2", false},
    {FindingKind::DefinitionError, "definition-error", "Errors in definitions", "%2", false},
};

const KindRow& RowOf(FindingKind kind) {
  return *std::find_if(std::begin(kKinds), std::end(kKinds),
                       [kind](const KindRow& row) { return row.kind == kind; });
}

}  // namespace

const char* IdentifierOf(FindingKind kind) {
  return RowOf(kind).identifier;
}

const char* HeadingOf(FindingKind kind) {
  return RowOf(kind).heading;
}

std::span<const FindingKind> AllFindingKinds() {
  static const auto kinds = [] {
    std::array<FindingKind, std::size(kKinds)> list;
    std::transform(std::begin(kKinds), std::end(kKinds), list.begin(),
                   [](const KindRow& row) { return row.kind; });
    return list;
  }();
  return kinds;
}

std::string DescribeFinding(const Finding& finding, const PathShortener& shorten) {
  return FillFinding(RowOf(finding.kind).text, finding, shorten);
}

std::string FillFinding(std::string_view sentence, const Finding& finding,
                        const PathShortener& shorten) {
  const bool namesPaths = RowOf(finding.kind).namesPaths;
  const auto show = [&](const std::string& text) {
    return namesPaths && !text.empty() ? shorten(text) : text;
  };
  std::string text;
  // Both are replaced in a single pass, because a path may contain a percent sign.
  for (std::size_t at = 0; at < sentence.size(); ++at) {
    const std::string_view placeholder = sentence.substr(at, 2);
    if (placeholder != "%1" && placeholder != "%2") {
      text += sentence[at];
      continue;
    }
    text += show(placeholder == "%1" ? finding.subject : finding.detail);
    ++at;
  }
  const bool hasMore = !finding.detail.empty() && sentence.find("%2") == sentence.npos;
  if (hasMore) text += ": " + finding.detail;
  return finding.option.empty() ? text : text + " (" + finding.option + ")";
}

}  // namespace tarn::host
