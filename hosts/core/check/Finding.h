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
  LeftoverApplication,
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

// A problem of a project, or of the installation that it is built with.
struct Finding {
  FindingKind kind = FindingKind::Damage;
  std::string file;         // file that contains it; empty if none
  int line = 0;             // in the file, from 1; 0 if unknown
  std::string application;  // label; empty if the whole project is concerned
  std::string applicationPath;
  std::string node;       // label
  std::string place;      // argument for the inspector's SelectNodeByPlace
  bool hasPlace = false;  // false if no node is concerned
  std::string option;     // option that names the subject: SECTION.PROPERTY, or empty
  std::string subject;    // path, option, type, tool or program
  std::string detail;     // second part of the sentence
};

// Returns the identifier of a kind in JSON, such as "missing-file".
const char* IdentifierOf(FindingKind kind);
// Returns the English heading of a group of findings, such as "Missing files".
const char* HeadingOf(FindingKind kind);
// Returns the English sentence of a kind, in which %1 stands for the subject and %2 for the detail.
// It begins with a small letter.
const char* SentenceOf(FindingKind kind);
// Returns all kinds in display order.
std::span<const FindingKind> AllFindingKinds();

using PathShortener = std::function<std::string(const std::string&)>;

// Returns the finding as an English sentence without its position. `shorten` abbreviates a path for
// display.
std::string DescribeFinding(const Finding& finding, const PathShortener& shorten);
// Like DescribeFinding(), but with a given sentence for the kind, in which %1 is replaced by the
// subject and %2 by the detail.
std::string FillFinding(std::string_view sentence, const Finding& finding,
                        const PathShortener& shorten);

}  // namespace tarn::host
