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
};

// A message of a log or of a tool's records, where texts are encoded (see DecodeStrict); in a log
// that is kept beside its project paths are as well.
LogEntry ToLogEntry(const CXmlNode& message);
// A row of the report of a kept log, whose text is readable already.
LogEntry ReportRowToLogEntry(const CXmlNode& row);
// The messages below the top element of a log or of a tool's message records.
std::vector<LogEntry> ReadLogEntries(const std::string& xml);

// The first element of a text; null when there is none. What was read before an error counts.
std::unique_ptr<CXmlNode> ParseXml(const std::string& text);
// An attribute's value; empty when the node or the attribute isn't there.
std::string AttributeOf(const CXmlNode* node, const char* name);

}  // namespace tarn::host
