#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::host {

enum class FindingKind {
  Damage,
  MissingPath,
  MissingFile,
  MissingFolder,
  MissingLibrary,
  NotAFile,
  NotAFolder,
  UnreadableFile,
  LetterCase,
  DuplicateFile,
  SameFile,
  DuplicateOutput,
  DuplicateLabel,
  ApplicationCycle,
  UnreachableDrive,
  AbsolutePath,
  UnknownOption,
  UnknownConfiguration,
  InvalidValue,
  UnknownType,
  UnknownTool,
  MissingProgram,
  DefinitionError,
};

// Something in a project, or in what it is built with, that should be looked after.
struct Finding {
  FindingKind kind = FindingKind::Damage;
  std::string file;         // where it is written; empty if that is in no file
  int line = 0;             // in the file, from 1; 0 if it is not known
  std::string application;  // label; empty if it concerns the whole project
  std::string applicationPath;
  std::string node;       // label
  std::string place;      // of the node, for the inspector's SelectNodeByPlace
  bool hasPlace = false;  // false if no node is concerned
  std::string option;     // that names the subject: SECTION.PROPERTY, or empty
  std::string subject;    // path, option, type, tool or program
  std::string detail;     // the other half of the sentence
};

// Identifier of a kind in JSON, such as "missing-file".
const char* IdentifierOf(FindingKind kind);
// Heading of a group of findings in English, such as "Missing files".
const char* HeadingOf(FindingKind kind);
// All kinds, in the order in which groups are shown.
std::span<const FindingKind> AllFindingKinds();

using PathShortener = std::function<std::string(const std::string&)>;

// Returns the finding as an English sentence without its position. `shorten` makes a path fit for a
// person.
std::string DescribeFinding(const Finding& finding, const PathShortener& shorten);
// Like `DescribeFinding`, with the sentence for the kind given: %1 stands for the subject, %2 for
// the detail.
std::string FillFinding(std::string_view sentence, const Finding& finding,
                        const PathShortener& shorten);

}  // namespace tarn::host
