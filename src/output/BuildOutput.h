#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "output/LogFile.h"
#include "output/OutputViews.h"
#include "patterns/DiagnosticPattern.h"
#include "platform/files/FileSystem.h"
#include "widgets/MessageLoop.h"

namespace tarn {

class CXmlNode;

class DiagnosticParser;

// Central sink of build messages: stores the tree of all messages since the last reset, keeps the
// log file up to date, shows each message in the log view and passes the tree to the report.
//
// Threads: every function runs on the main thread; the build worker posts its messages to that
// thread as tasks. The tree therefore needs no lock.
//
// If the log file can't be written, it moves to the spare folder, if there is one. If that fails
// too, the next save tries again; tree and views stay correct.
class CBuildOutput {
 public:
  // Bits of the flags.
  static constexpr std::uint32_t kMergeToolFiles = 2;
  static constexpr std::uint32_t kSaveEachMessage = 16;

  // `fileSystem` is borrowed and must outlive this object.
  explicit CBuildOutput(FileSystem& fileSystem);
  // Frees the strings of the process-wide message table. Doesn't remove the log file (see
  // `DeleteLogFile()`).
  ~CBuildOutput();

  CBuildOutput(const CBuildOutput&) = delete;
  CBuildOutput& operator=(const CBuildOutput&) = delete;

  // Loads the message strings from "message.xslt" in the folder of the configuration file. Loads
  // nothing if `configFilePath` is empty; if the message file is missing or damaged, some rows have
  // no string. `host` receives a window message for each row that is written; 0 for no host.
  void Initialise(const std::string& configFilePath, WindowHandle host);

  // Stops notifying the host of rows.
  void ClearHost() { hostWindow_ = 0; }

  // Reason why the file of message strings couldn't be read, as "path: reason"; empty if it was
  // read or doesn't exist.
  const std::string& GetMessageProblem() const { return messageProblem_; }
  // Sets the views; nullptr for no window. Borrowed until replaced or this object is destroyed.
  void SetViews(ILogView* log, IReportView* report);
  // Data that the views need for their windows; empty until `Initialise()` has found the files.
  const std::string& GetViewTitle() const { return viewTitle_; }
  const std::string& GetConfigFolder() const { return configFolder_; }

  // Sets the flags to kMergeToolFiles only: if there is a log file, tool files are merged, and the
  // log is saved on request instead of after each message. Doesn't access the file itself.
  void SetLogFile(const std::string& path);
  const std::string& GetLogFile() const { return logFile_; }
  // Sets the log file to a new unique name in `folder`. Returns false and changes nothing if no
  // name is available.
  bool PlaceLogFile(const std::string& folder);
  // Folder for the log file if it can't be written at its current path, or has no path.
  void SetSpareFolder(const std::string& folder) { spareFolder_ = folder; }
  // Result of the last attempt to write the log file.
  const Status& GetLogStatus() const { return logStatus_; }
  // Removes the log file from disk; the path stays set. Called before this object is destroyed.
  void DeleteLogFile();

  std::uint32_t GetFlags() const { return flags_; }
  // Sets the given bits in addition to those already set.
  void SetFlagBits(std::uint32_t bits) { flags_ |= bits; }

  // Writes a row of the message table with the arguments inserted into its string. `reason`, if
  // any, is appended after a colon. Writes nothing if the row has no string. After an error row,
  // the log file and the report are up to date.
  //
  // Sends kMsgLogLine to the host, whose handler may call back into this object; the caller must
  // not hold a node of the tree across this call.
  void WriteMessage(int index, std::initializer_list<std::string> arguments = {},
                    std::string_view reason = {});

  // Adds the children of the top element of a tool's message file. No-op without kMergeToolFiles or
  // if the file doesn't exist; from a damaged file, adds what could be read.
  void MergeToolFile(const std::string& path);

  // Adds a line that the host supplies.
  void AddOutput(const std::string& text);

  // Adds an error that didn't come from a tool. The report shows it too.
  void AddError(const std::string& text);
  // Like `AddError()`, but adds a warning.
  void AddWarning(const std::string& text);

  // Adds a message for each line of a tool's output, with kind, file and line if they are
  // recognised: first by `lineTemplate`, if there is one (see `PatternOfTemplate()`), then by the
  // built-in patterns. A template that doesn't compile is ignored. An error or a warning with a
  // number links to a page in `helpFolder`. Each argument may be null. Bytes are never converted.
  //
  // Output that contains XML rows is passed to `ParseToolRows()` from the first row on; no messages
  // are added then.
  //
  // The log view may call back into this object after each message.
  void ParseToolText(const char* text, const char* lineTemplate, const char* helpFolder);
  // Entry point for output that contains messages as XML rows. Currently a no-op.
  void ParseToolRows(const char* text);

  // Brings the log file up to date; writes only what is new, and nothing if there is nothing new.
  void SaveLog();
  // Clears the tree, the log file and the log view.
  void ResetLog();
  // Makes the report show the tree.
  void UpdateReport();

  // All messages since the last reset. The reference is invalidated by the next `ResetLog()`.
  const CXmlNode& GetRoot() const { return *root_; }

 private:
  // Adds a message of the given kind that the report shows.
  void AddProblem(LineKind kind, const std::string& text);
  void LoadMessages(const CXmlNode& messages);
  void WriteLogFile(const std::string& head);
  // Moves the log file to the spare folder. Returns false if there is none, or if it is in use
  // already.
  bool UseSpareFolder();

  FileSystem& disk_;
  std::string configFolder_;
  std::uint32_t flags_ = 33;
  std::unique_ptr<CXmlNode> root_;
  std::uint64_t generation_ = 0;  // number of resets of the tree
  std::string logFile_;
  std::string spareFolder_;  // empty if there is none or it is in use
  Status logStatus_;
  std::string viewTitle_;
  std::string messageProblem_;
  std::string stylesheet_;
  WindowHandle hostWindow_ = 0;
  ILogView* logView_ = nullptr;
  IReportView* reportView_ = nullptr;
  std::unique_ptr<DiagnosticParser> parser_;  // created for the first tool output
  LogFileWriter writer_;
};

}  // namespace tarn
