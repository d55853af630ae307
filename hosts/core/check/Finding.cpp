#include "hosts/core/check/Finding.h"

#include <algorithm>
#include <array>

#include "platform/text/Text.h"

// Marks a text for lupdate, which recognises the macro by its name. The desktop host translates
// these texts; everything else shows them as they are.
#define QT_TRANSLATE_NOOP(context, text) text

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
    {FindingKind::Damage, "damage", QT_TRANSLATE_NOOP("Findings", "Damage"), "%2", false},
    {FindingKind::MissingPath, "missing-path",
     QT_TRANSLATE_NOOP("Findings", "Nodes without a file"),
     QT_TRANSLATE_NOOP("Findings", "%1 does not name a file"), false},
    {FindingKind::MissingFile, "missing-file", QT_TRANSLATE_NOOP("Findings", "Missing files"),
     QT_TRANSLATE_NOOP("Findings", "%1 is missing"), true},
    {FindingKind::MissingFolder, "missing-folder", QT_TRANSLATE_NOOP("Findings", "Missing folders"),
     QT_TRANSLATE_NOOP("Findings", "%1 is missing"), true},
    {FindingKind::MissingLibrary, "missing-library",
     QT_TRANSLATE_NOOP("Findings", "Missing libraries"),
     QT_TRANSLATE_NOOP("Findings",
                       "the library %1 was found neither in the library folders nor among the "
                       "compiler's libraries"),
     false},
    {FindingKind::NotAFile, "not-a-file", QT_TRANSLATE_NOOP("Findings", "Not a file"),
     QT_TRANSLATE_NOOP("Findings", "%1 is not a file"), true},
    {FindingKind::NotAFolder, "not-a-folder", QT_TRANSLATE_NOOP("Findings", "Not a folder"),
     QT_TRANSLATE_NOOP("Findings", "%1 is not a folder"), true},
    {FindingKind::UnreadableFile, "unreadable-file",
     QT_TRANSLATE_NOOP("Findings", "Unreadable files"),
     QT_TRANSLATE_NOOP("Findings", "%1 can't be read"), true},
    {FindingKind::LetterCase, "letter-case", QT_TRANSLATE_NOOP("Findings", "Letter case"),
     QT_TRANSLATE_NOOP("Findings", "%1 is spelled %2 on disk"), true},
    {FindingKind::DuplicateFile, "duplicate-file", QT_TRANSLATE_NOOP("Findings", "Duplicate files"),
     QT_TRANSLATE_NOOP("Findings", "%1 is listed more than once"), true},
    {FindingKind::SameFile, "same-file", QT_TRANSLATE_NOOP("Findings", "Files with several names"),
     QT_TRANSLATE_NOOP("Findings", "%1 and %2 are the same file, which is built twice"), true},
    {FindingKind::DuplicateOutput, "duplicate-output",
     QT_TRANSLATE_NOOP("Findings", "Duplicate outputs"),
     QT_TRANSLATE_NOOP("Findings", "%1 is also the output of %2"), true},
    {FindingKind::DuplicateLabel, "duplicate-label",
     QT_TRANSLATE_NOOP("Findings", "Duplicate labels"),
     QT_TRANSLATE_NOOP("Findings",
                       "the labels of the applications %1 and %2 differ only in letter case"),
     true},
    {FindingKind::LeftoverApplication, "leftover-application",
     QT_TRANSLATE_NOOP("Findings", "Leftover applications"),
     QT_TRANSLATE_NOOP("Findings",
                       "%1 is not part of the project, but may have changes that %2 lacks"),
     true},
    {FindingKind::ApplicationCycle, "application-cycle",
     QT_TRANSLATE_NOOP("Findings", "Dependency cycles"),
     QT_TRANSLATE_NOOP("Findings", "applications that use each other's outputs can't be built: %1"),
     false},
    {FindingKind::UnreachableDrive, "unreachable-drive",
     QT_TRANSLATE_NOOP("Findings", "Unreachable drives"),
     QT_TRANSLATE_NOOP("Findings", "%1 is on a drive that is not mapped"), true},
    // Not shortened, because that would hide the problem.
    {FindingKind::AbsolutePath, "absolute-path", QT_TRANSLATE_NOOP("Findings", "Absolute paths"),
     QT_TRANSLATE_NOOP("Findings", "%1 is an absolute path"), false},
    {FindingKind::UnknownOption, "unknown-option", QT_TRANSLATE_NOOP("Findings", "Unknown options"),
     QT_TRANSLATE_NOOP("Findings", "no definition contains the option %1"), false},
    {FindingKind::UnknownConfiguration, "unknown-configuration",
     QT_TRANSLATE_NOOP("Findings", "Unknown configurations"),
     QT_TRANSLATE_NOOP(
         "Findings",
         "options are stored for the configuration %1, which the application does not have"),
     false},
    {FindingKind::InvalidValue, "invalid-value", QT_TRANSLATE_NOOP("Findings", "Invalid values"),
     "%1: %2", false},
    {FindingKind::UnknownType, "unknown-type", QT_TRANSLATE_NOOP("Findings", "Unknown node types"),
     QT_TRANSLATE_NOOP("Findings",
                       "%1 is not a type in the configuration file, so %2 is not built"),
     false},
    {FindingKind::UnknownTool, "unknown-tool", QT_TRANSLATE_NOOP("Findings", "Unknown tools"),
     QT_TRANSLATE_NOOP("Findings", "no definition contains the tool %1"), false},
    {FindingKind::MissingProgram, "missing-program",
     QT_TRANSLATE_NOOP("Findings", "Missing programs"),
     QT_TRANSLATE_NOOP("Findings", "%1 is not installed; it is needed by %2"), false},
    {FindingKind::DefinitionError, "definition-error",
     QT_TRANSLATE_NOOP("Findings", "Errors in definitions"), "%2", false},
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

const char* SentenceOf(FindingKind kind) {
  return RowOf(kind).text;
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
