#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

enum class LogKind { Plain, Error, Warning, Heading };

// One message of a build, as displayed to users and in editors.
struct LogEntry {
  LogKind kind = LogKind::Plain;
  std::string text;     // the whole line
  std::string message;  // message without position and severity if error or warning; else the line
  std::string file;     // file concerned, or empty
  int line = 0;         // from 1; 0 if unknown
  // Number of messages that this entry represents: if a tool reports too many, some are only
  // counted.
  int count = 1;
  bool isReported = false;  // the build report shows it
  // For an error without a file: the preceding lines that the build report shows too, i.e. the last
  // output of a tool that failed without an error message.
  std::vector<std::string> lastLines = {};
};

// Converts a message of a log or of a tool's records, in which strings are encoded (see
// UnescapeXml); in a log stored next to its project, paths are encoded as well.
LogEntry ToLogEntry(const CXmlNode& message);
// Converts a report row of a stored log. Its text is already decoded.
LogEntry ReportRowToLogEntry(const CXmlNode& row);
// Moves plain lines that the report shows into the error that follows them; see
// LogEntry::lastLines.
void AttachLastLines(std::vector<LogEntry>& entries);
// Reads the messages below the top element of a log or of a tool's message records.
std::vector<LogEntry> ReadLogEntries(const std::string& xml);

// Returns the position at which a log is truncated or malformed as "LINE: what"; an empty string if
// it is well-formed.
std::string FindLogDamage(const std::string& xml);

// Parses `text` and returns its first element; nullptr if there is none. If an error occurs later,
// the part before it is returned.
std::unique_ptr<CXmlNode> ParseXml(const std::string& text);
// Returns the attribute's value; an empty string if the node is null or has no such attribute.
std::string GetAttribute(const CXmlNode* node, const char* name);

}  // namespace tarn::host
