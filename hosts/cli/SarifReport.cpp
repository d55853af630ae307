#include "hosts/cli/SarifReport.h"

#include <algorithm>
#include <cctype>
#include <ctime>
#include <nlohmann/json.hpp>

#include "platform/files/FileSystem.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "platform/time/CivilTime.h"

namespace tarn::host {

namespace {

constexpr const char* kProjectRoot = "PROJECTROOT";
constexpr const char* kSchema =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";
constexpr std::string_view kNoteWord = ": note: ";

// Returns the text after the position at the start of the message; empty unless it is the position
// of the entry.
std::string_view TextAfterPlace(const LogEntry& entry) {
  const std::string place = ":" + std::to_string(entry.line) + ":";
  const std::size_t at = entry.text.find(place);
  if (entry.line <= 0 || at == std::string::npos) return {};
  const std::string_view text = entry.text;
  const bool namesFile = EndsWithNoCase(text.substr(0, at), FileNameOf(entry.file));
  return namesFile ? text.substr(at + place.size()) : std::string_view();
}

// Returns "error", "warning", "note", or nullptr for a line that is not a diagnostic.
const char* LevelOf(const LogEntry& entry) {
  if (entry.kind == LogKind::Error) return "error";
  if (entry.kind == LogKind::Warning) return "warning";
  const bool isNote = entry.kind == LogKind::Plain && !entry.file.empty() &&
                      entry.text.find(kNoteWord) != std::string::npos;
  return isNote ? "note" : nullptr;
}

std::string MessageOf(const LogEntry& entry) {
  const std::size_t note = entry.kind == LogKind::Plain ? entry.text.find(kNoteWord)  //
                                                        : std::string::npos;
  return note == std::string::npos ? entry.message : entry.text.substr(note + kNoteWord.size());
}

// Returns the option that a compiler names at the end of a warning: "-Wunused-variable".
std::string RuleOf(const std::string& message) {
  const std::size_t open = message.rfind(" [-W");
  if (open == std::string::npos || !message.ends_with("]")) return {};
  return message.substr(open + 2, message.size() - open - 3);
}

nlohmann::json LocationOf(const LogEntry& entry, const std::string& projectFolder) {
  nlohmann::json artifact;
  const std::string root = AddSeparator(projectFolder);
  // Consumers of a URI resolve ".." lexically.
  FileSystem& files = FileSystem::Native();
  std::string path = files.Canonical(entry.file);
  if (FindParentStep(path) != std::string::npos) path = CanonicalPath(files.ResolveLinks(path));
  if (path.starts_with(root)) {
    artifact = {{"uri", UriPathOf(path.substr(root.size()))}, {"uriBaseId", kProjectRoot}};
  } else {
    artifact = {{"uri", "file://" + UriPathOf(path)}};
  }
  nlohmann::json place = {{"artifactLocation", artifact}};
  if (entry.line > 0) {
    place["region"] = {{"startLine", entry.line}};
    if (const int column = ColumnOf(entry); column > 0) place["region"]["startColumn"] = column;
  }
  return {{"physicalLocation", place}};
}

// The results of a run, and the set of rules that they refer to.
class ResultList {
 public:
  explicit ResultList(std::string folder) : projectFolder_(std::move(folder)) {}

  void Add(const LogEntry& entry) {
    const char* level = LevelOf(entry);
    if (level == nullptr) return;
    const std::string message = MessageOf(entry);
    nlohmann::json result = {{"level", level}, {"message", {{"text", message}}}};
    if (const std::string rule = RuleOf(message); !rule.empty()) {
      result["ruleId"] = rule;
      result["ruleIndex"] = IndexOf(rule);
    }
    if (!entry.file.empty()) {
      result["locations"] = nlohmann::json::array({LocationOf(entry, projectFolder_)});
    }
    results.push_back(std::move(result));
  }

  nlohmann::json results = nlohmann::json::array();
  nlohmann::json rules = nlohmann::json::array();

 private:
  std::size_t IndexOf(const std::string& rule) {
    const auto known = std::find_if(rules.begin(), rules.end(),
                                    [&rule](const auto& each) { return each["id"] == rule; });
    if (known != rules.end()) return static_cast<std::size_t>(known - rules.begin());
    rules.push_back({{"id", rule}});
    return rules.size() - 1;
  }

  std::string projectFolder_;
};

std::string UtcText(std::int64_t seconds) {
  const std::optional<std::tm> parts = ToUtcTime(seconds);
  char text[32] = "";
  if (parts) std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &*parts);
  return text;
}

}  // namespace

int ColumnOf(const LogEntry& entry) {
  const std::string_view rest = TextAfterPlace(entry);
  const std::size_t end = rest.find_first_not_of("0123456789");
  if (end == 0 || end == std::string_view::npos || rest[end] != ':') return 0;
  return ParseDecimal(std::string(rest.substr(0, end)).c_str());
}

std::string UriPathOf(const std::string& path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uri;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain =
        byte < 0x80 && (std::isalnum(byte) != 0 ||
                        std::string_view("/-._~!$&'()*+,;=@").find(c) != std::string_view::npos);
    if (isPlain) {
      uri += c;
    } else {
      uri += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return uri;
}

nlohmann::json MakeSarifReport(const LoggedBuild& build, const std::string& toolVersion) {
  ResultList list(build.projectFolder);
  for (const LogEntry& entry : build.entries) list.Add(entry);
  const std::string root = "file://" + UriPathOf(AddSeparator(build.projectFolder));
  nlohmann::json invocation = {{"executionSuccessful", build.succeeded}};
  invocation["workingDirectory"] = {{"uri", root}};
  if (build.endSeconds > 0) invocation["endTimeUtc"] = UtcText(build.endSeconds);
  nlohmann::json run;
  run["tool"]["driver"] = {{"name", "tarn"}, {"version", toolVersion}, {"rules", list.rules}};
  run["invocations"] = nlohmann::json::array({invocation});
  run["originalUriBaseIds"][kProjectRoot] = {{"uri", root}};
  // Moved, because there may be a large number of them.
  run["results"] = std::move(list.results);
  nlohmann::json document = {{"$schema", kSchema}, {"version", "2.1.0"}};
  document["runs"].push_back(std::move(run));
  return document;
}

}  // namespace tarn::host
