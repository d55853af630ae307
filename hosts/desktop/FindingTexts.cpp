#include "hosts/desktop/FindingTexts.h"

#include <QCoreApplication>
#include <algorithm>
#include <iterator>

#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

struct TextRow {
  FindingKind kind;
  const char* heading;
  const char* sentence;  // %1: subject, %2: detail
};

constexpr TextRow kTexts[] = {
    {FindingKind::Damage, QT_TRANSLATE_NOOP("Findings", "Damage"), "%2"},
    {FindingKind::MissingPath, QT_TRANSLATE_NOOP("Findings", "Nodes without a file"),
     QT_TRANSLATE_NOOP("Findings", "%1 does not name a file")},
    {FindingKind::MissingFile, QT_TRANSLATE_NOOP("Findings", "Missing files"),
     QT_TRANSLATE_NOOP("Findings", "%1 is missing")},
    {FindingKind::MissingFolder, QT_TRANSLATE_NOOP("Findings", "Missing folders"),
     QT_TRANSLATE_NOOP("Findings", "%1 is missing")},
    {FindingKind::MissingLibrary, QT_TRANSLATE_NOOP("Findings", "Missing libraries"),
     QT_TRANSLATE_NOOP("Findings",
                       "The library %1 was found neither in the library folders nor among the "
                       "compiler's libraries")},
    {FindingKind::NotAFile, QT_TRANSLATE_NOOP("Findings", "Not a file"),
     QT_TRANSLATE_NOOP("Findings", "%1 is not a file")},
    {FindingKind::NotAFolder, QT_TRANSLATE_NOOP("Findings", "Not a folder"),
     QT_TRANSLATE_NOOP("Findings", "%1 is not a folder")},
    {FindingKind::UnreadableFile, QT_TRANSLATE_NOOP("Findings", "Unreadable files"),
     QT_TRANSLATE_NOOP("Findings", "%1 can't be read")},
    {FindingKind::LetterCase, QT_TRANSLATE_NOOP("Findings", "Letter case"),
     QT_TRANSLATE_NOOP("Findings", "%1 is spelled %2 on disk")},
    {FindingKind::DuplicateFile, QT_TRANSLATE_NOOP("Findings", "Duplicate files"),
     QT_TRANSLATE_NOOP("Findings", "%1 is listed more than once")},
    {FindingKind::SameFile, QT_TRANSLATE_NOOP("Findings", "Files with several names"),
     QT_TRANSLATE_NOOP("Findings", "%1 and %2 are the same file, which is built twice")},
    {FindingKind::DuplicateOutput, QT_TRANSLATE_NOOP("Findings", "Duplicate outputs"),
     QT_TRANSLATE_NOOP("Findings", "%1 is also the output of %2")},
    {FindingKind::DuplicateLabel, QT_TRANSLATE_NOOP("Findings", "Duplicate labels"),
     QT_TRANSLATE_NOOP("Findings",
                       "The labels of the applications %1 and %2 differ only in letter case")},
    {FindingKind::LeftoverApplication, QT_TRANSLATE_NOOP("Findings", "Leftover applications"),
     QT_TRANSLATE_NOOP("Findings",
                       "%1 is not part of the project, but may have changes that %2 lacks")},
    {FindingKind::ApplicationCycle, QT_TRANSLATE_NOOP("Findings", "Dependency cycles"),
     QT_TRANSLATE_NOOP("Findings",
                       "Applications that use each other's outputs can't be built: %1")},
    {FindingKind::UnreachableDrive, QT_TRANSLATE_NOOP("Findings", "Unreachable drives"),
     QT_TRANSLATE_NOOP("Findings", "%1 is on a drive that is not mapped")},
    {FindingKind::AbsolutePath, QT_TRANSLATE_NOOP("Findings", "Absolute paths"),
     QT_TRANSLATE_NOOP("Findings", "%1 is an absolute path")},
    {FindingKind::UnknownOption, QT_TRANSLATE_NOOP("Findings", "Unknown options"),
     QT_TRANSLATE_NOOP("Findings", "No definition contains the option %1")},
    {FindingKind::UnknownConfiguration, QT_TRANSLATE_NOOP("Findings", "Unknown configurations"),
     QT_TRANSLATE_NOOP(
         "Findings",
         "Options are stored for the configuration %1, which the application does not have")},
    {FindingKind::InvalidValue, QT_TRANSLATE_NOOP("Findings", "Invalid values"), "%1: %2"},
    {FindingKind::UnknownType, QT_TRANSLATE_NOOP("Findings", "Unknown node types"),
     QT_TRANSLATE_NOOP("Findings",
                       "%1 is not a type in the configuration file, so %2 is not built")},
    {FindingKind::UnknownTool, QT_TRANSLATE_NOOP("Findings", "Unknown tools"),
     QT_TRANSLATE_NOOP("Findings", "No definition contains the tool %1")},
    {FindingKind::MissingProgram, QT_TRANSLATE_NOOP("Findings", "Missing programs"),
     QT_TRANSLATE_NOOP("Findings", "%1 is not installed; it is needed by %2")},
    {FindingKind::DefinitionError, QT_TRANSLATE_NOOP("Findings", "Errors in definitions"), "%2"},
};

const TextRow& RowOf(FindingKind kind) {
  return *std::find_if(std::begin(kTexts), std::end(kTexts),
                       [kind](const TextRow& row) { return row.kind == kind; });
}

QString Translate(const char* text) {
  return QCoreApplication::translate("Findings", text);
}

}  // namespace

QString FindingHeading(FindingKind kind) {
  return Translate(RowOf(kind).heading);
}

QString FindingSentence(const Finding& finding, const std::string& folder) {
  const auto shorten = [&folder](const std::string& path) {
    const bool isBelow = path.size() > folder.size() && path.starts_with(folder);
    return isBelow ? path.substr(folder.size()) : path;
  };
  return ToQt(FillFinding(FromQt(Translate(RowOf(finding.kind).sentence)), finding, shorten));
}

}  // namespace tarn::host
