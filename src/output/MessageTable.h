#pragma once

#include <optional>
#include <string>

// The rows that the system itself writes to the log or shows, by index. The table is one per
// process; its texts are data, loaded by the output hub and freed when a hub ends. All functions
// may be called from any thread.
namespace tarn {

inline constexpr int kMessageCount = 39;

// Identifies row 0 in the message file; row n is this plus n.
inline constexpr int kFirstMessageId = 0x20000;

// Rows that code refers to; what stands behind a name are the arguments of the row's text.
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
  kRowMalformedXml = 23,       // nothing in the log, path in a message box
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

// What kind of line a row makes.
enum MessageKind : int {
  kKindPlain = 0,
  kKindError = 1,
  kKindWarning = 2,
  kKindNote = 3,
  kKindHeading = 5,
};

// The values that a line of some kind carries in the log tree.
struct KindValues {
  const char* type;
  const char* icon;
};
// Kinds that are not in the enumeration count as notes.
KindValues ValuesOfKind(int kind);

// Note for an index outside the table.
int GetMessageKind(int index);

// Nothing when the index is no row or the row has no text yet; a text can be empty.
std::optional<std::string> FindMessageText(int index);
// The row's text, or empty when it has none. It is a format for FormatMessageText.
std::string GetMessageText(int index);

// Replaces the row's text; an index outside the table is ignored.
void SetMessageText(int index, std::string text);
// No row has a text any more.
void FreeMessageTexts();

}  // namespace tarn
