#pragma once

#include <optional>
#include <string>

// Messages that the project manager itself writes to the log or shows, by index. There is one table
// per process; its strings are loaded by CBuildOutput and freed when a CBuildOutput is destroyed.
// All functions may be called on any thread.
namespace tarn {

inline constexpr int kMessageCount = 39;

// Id of row 0 in the message file; the id of row n is this plus n.
inline constexpr int kFirstMessageId = 0x20000;

// Rows that are used in code. The trailing comments list the arguments of the row's string.
enum MessageRow : int {
  kRowProjectWord = 0,  // caption of message boxes, the word for a project
  kRowApplicationInformation = 1,
  kRowWizardTitleAdd = 2,
  kRowWizardSubtitle = 3,
  kRowFilterFiles = 4,
  kRowFilterApplications = 5,
  kRowFileMissing = 6,         // path
  kRowFolderMissing = 7,       // path
  kRowCannotRead = 8,          // path
  kRowCannotSave = 9,          // path
  kRowApplicationStarts = 10,  // operation text, header, configuration name
  kRowBuildSucceeded = 11,
  kRowBuildFailed = 12,
  kRowTranslateStarts = 13,     // path
  kRowReadOnly = 17,            // path
  kRowCannotCreateFolder = 18,  // path
  kRowOperationRebuild = 19,
  kRowOperationClean = 20,
  kRowOperationBuild = 21,
  kRowMalformedXml = 23,       // no arguments in the log, path in a message box
  kRowBusyQuestion = 24,       // operation text
  kRowOverwriteQuestion = 25,  // path
  kRowWizardTitleNew = 26,
  kRowLabelInformation = 28,
  kRowLabelDate = 29,
  kRowLabelConfiguration = 30,
  kRowLabelPath = 31,
  kRowLabelOutputFile = 32,
  kRowFilterPrj = 33,
  kRowImportExit3 = 34,  // path
  kRowImportExit5 = 35,  // path
  kRowImportExit6 = 36,  // path
  kRowFilterStw = 37,
  kRowImportExit7 = 38,  // path
};

// Kind of the line that a row produces.
enum MessageKind : int {
  kKindPlain = 0,
  kKindError = 1,
  kKindWarning = 2,
  kKindNote = 3,
  kKindHeading = 5,
};

// Attribute values of a line of some kind in the log tree.
struct KindValues {
  const char* type;
  const char* icon;
};
// Kinds that aren't in the enumeration are treated as notes.
KindValues ValuesOfKind(int kind);

// Returns kKindNote if `index` is outside the table.
int GetMessageKind(int index);

// Returns nullopt if the index is outside the table or the row has no string yet; a string may be
// empty.
std::optional<std::string> FindMessageText(int index);
// Returns the row's string, or an empty string if it has none. The string is a format for
// FormatMessageText.
std::string GetMessageText(int index);

// Replaces the row's string. No-op if the index is outside the table.
void SetMessageText(int index, std::string text);
// Removes the strings of all rows.
void FreeMessageTexts();

}  // namespace tarn
