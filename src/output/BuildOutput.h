#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>

#include "output/LogFile.h"
#include "output/OutputViews.h"
#include "patterns/LineShape.h"
#include "platform/files/FileSystem.h"
#include "widgets/MessageLoop.h"
#include "xml/XmlNode.h"

namespace tarn {

class LineRecogniser;

// The hub through which everything that a build has to say passes: it holds the tree of all
// messages since the last reset, keeps the log file current, shows each message in the log view
// and hands the tree to the report.
//
// Threads: every operation runs on the host's thread; a build's worker hands its messages over as
// steps on that thread. That is why no lock guards the tree.
//
// A log file that cannot be written moves to the spare folder, if there is one. What can be written
// neither way is tried again at the next save; tree and views stay correct.
class CBuildOutput {
 public:
  // Bits of the flags.
  static constexpr std::uint32_t kMergeToolFiles = 2;
  static constexpr std::uint32_t kSaveEachMessage = 16;

  // `fileSystem` is borrowed for the hub's life.
  explicit CBuildOutput(FileSystem& fileSystem);
  // Frees the texts of the process's message table. Leaves the log file (see DeleteLogFile).
  ~CBuildOutput();

  CBuildOutput(const CBuildOutput&) = delete;
  CBuildOutput& operator=(const CBuildOutput&) = delete;

  // Loads the message texts from "message.xslt" in the folder of the configuration file. Without a
  // configuration file nothing is loaded; a missing or damaged message file leaves rows without a
  // text. `host` gets a message for each row written; 0 for none.
  void Initialise(const std::string& configFilePath, WindowHandle host);

  // Rows are no longer told to the host.
  void ForgetHost() { hostWindow = 0; }

  // Borrowed until replaced or the hub's end; null for no window.
  // Why the file of message texts could not be read, as "path: reason"; empty if it was, or isn't
  // there.
  const std::string& GetMessageProblem() const { return messageProblem; }
  void SetViews(ILogView* log, IReportView* report);
  // What the views need for their windows; empty until Initialise has found the files.
  const std::string& GetViewTitle() const { return viewTitle; }
  const std::string& GetConfigFolder() const { return configFolder; }

  // Sets the flags to kMergeToolFiles alone: with a log file, tool files are merged and the log
  // is saved when asked, not after each message. The file itself is not touched.
  void SetLogFile(const std::string& path);
  const std::string& GetLogFile() const { return logFile; }
  // Makes a new name in the folder the log file. Returns false, and changes nothing, if there is
  // none.
  bool PlaceLogFile(const std::string& folder);
  // Where the log file goes if it can't be written where it is, or has no name.
  void SetSpareFolder(const std::string& folder) { spareFolder = folder; }
  // Why the log file could not be written last.
  const Status& GetLogStatus() const { return logStatus; }
  // Removes the log file from the disk; the path stays. For the end of the hub's life.
  void DeleteLogFile();

  std::uint32_t GetFlags() const { return flags; }
  // Adds the bits to those that are set.
  void SetFlagBits(std::uint32_t bits) { flags |= bits; }

  // Writes a row of the message table with its text's arguments filled in. A row without a text
  // writes nothing. After an error row, log file and report are current.
  //
  // Sends kMsgLogLine to the host, whose handler may call back into the hub; the caller must not
  // hold a node of the tree across this call.
  // `reason`, if any, follows the row's text after a colon.
  void WriteMessage(int index, std::initializer_list<std::string> arguments = {},
                    std::string_view reason = {});

  // Adds the elements below the top element of a tool's message file. Nothing without
  // kMergeToolFiles or without the file; a damaged file adds what could be read.
  void MergeToolFile(const std::string& path);

  // Adds a line of the host's own.
  void AddOutput(const std::string& text);

  // Adds an error of the system's own, which the report shows, too.
  void AddError(const std::string& text);
  // The same for a warning.
  void AddWarning(const std::string& text);

  // Adds a message for each line of a tool's text, with its kind, file and line as far as they are
  // recognised: after the template if there is one (see ShapeOfTemplate), then after the shapes
  // that are always known. A template that doesn't compile counts as absent. An error or a warning
  // with a number leads to a page in `helpFolder`. Each argument may be null. Bytes are never
  // converted.
  //
  // A text with rows in it goes to ParseToolRows from there on, and gives no message at all.
  //
  // The log view may lead back into the hub after each message.
  void ParseToolText(const char* text, const char* lineTemplate, const char* helpFolder);
  // The way in for texts that carry messages as rows of XML. Does nothing yet with any.
  void ParseToolRows(const char* text);

  // Makes the log file current; writes only what is new, and nothing when nothing is.
  void SaveLog();
  // Empties tree, log file and log view.
  void ResetLog();
  // Has the report show the tree.
  void UpdateReport();

  // All messages since the last reset. The reference dies with the next ResetLog.
  const CXmlNode& GetRoot() const { return *root; }

 private:
  void AddProblem(LineKind kind, const std::string& text);
  void LoadMessages(const CXmlNode& messages);
  void WriteLogFile(const std::string& head);
  bool UseSpareFolder();

  FileSystem& disk;
  std::string configFolder;
  std::uint32_t flags = 33;
  std::unique_ptr<CXmlNode> root;
  std::uint64_t generation = 0;  // of the tree: how often it was reset
  std::string logFile;
  std::string spareFolder;  // empty: none, or in use
  Status logStatus;
  std::string viewTitle;
  std::string messageProblem;
  std::string stylesheet;
  WindowHandle hostWindow = 0;
  ILogView* logView = nullptr;
  IReportView* reportView = nullptr;
  std::unique_ptr<LineRecogniser> recogniser;  // from the first text of a tool on
  LogFileWriter writer;
};

}  // namespace tarn
