#pragma once

#include <string>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn::host {

enum class LogKind { Plain, Error, Warning, Heading };

// One message of a build, as people and editors see it.
struct LogEntry {
  LogKind kind = LogKind::Plain;
  std::string text;     // the whole line
  std::string message;  // what an error or warning says, without place and kind; else the line
  std::string file;     // what it is about, or empty
  int line = 0;         // 1 for the first; 0 when none is known
  // Messages that this one stands for: a tool that reports too many has some of them counted only.
  int count = 1;
  bool isReported = false;  // the build report shows it
  // Of an error that is about no file: the lines in front of it that the report shows too, which
  // are the last ones of a tool that failed without saying why.
  std::vector<std::string> lastLines = {};
};

// A message of a log or of a tool's records, where texts are encoded (see DecodeStrict); in a log
// that is kept beside its project paths are as well.
LogEntry ToLogEntry(const CXmlNode& message);
// A row of the report of a kept log, whose text is readable already.
LogEntry ReportRowToLogEntry(const CXmlNode& row);
// Hands plain lines that the report shows to the error that follows them; see LogEntry::lastLines.
void AttachLastLines(std::vector<LogEntry>& entries);
// The messages below the top element of a log or of a tool's message records.
std::vector<LogEntry> ReadLogEntries(const std::string& xml);

// Where a log breaks off, or stops making sense, as "LINE: what"; empty if it is whole.
std::string FindLogDamage(const std::string& xml);

// The first element of a text; null when there is none. What was read before an error counts.
std::unique_ptr<CXmlNode> ParseXml(const std::string& text);
// An attribute's value; empty when the node or the attribute isn't there.
std::string AttributeOf(const CXmlNode* node, const char* name);

}  // namespace tarn::host
