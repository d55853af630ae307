#include "hosts/core/RunEvents.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "hosts/core/BuildInputs.h"
#include "hosts/core/LogEntry.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

struct EventName {
  const char* name;
  RunEvent::Kind kind;
};

constexpr EventName kEventNames[] = {
    {"Started", RunEvent::Kind::Started},   {"Ended", RunEvent::Kind::Ended},
    {"Retiring", RunEvent::Kind::Retiring}, {"Retired", RunEvent::Kind::Retired},
    {"Dropped", RunEvent::Kind::Dropped},   {"Output", RunEvent::Kind::Output},
};

std::string FromHex(const std::string& digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    unsigned value = 0;
    std::from_chars(digits.data() + i, digits.data() + i + 2, value, 16);
    bytes += static_cast<char>(value);
  }
  return bytes;
}

template <class Number = int>
Number NumberOf(const CXmlNode* node, const char* name) {
  const std::string text = GetAttribute(node, name);
  Number number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

ToolStart ReadToolStart(const CXmlNode* element) {
  ToolStart start;
  start.tool = GetAttribute(element, "Name");
  start.files = SplitQuotedPaths(GetAttribute(element, "Files"));
  start.output = GetAttribute(element, "Output");
  start.command = GetAttribute(element, "Command");
  start.subject = GetAttribute(element, "Subject");
  return start;
}

std::string SubjectOf(const ToolStart& start) {
  if (!start.subject.empty()) return start.subject;
  // A tool with many inputs is identified by its single output.
  const bool isSingle = start.files.size() == 1;
  if (!isSingle && !start.output.empty()) return start.output;
  return start.files.empty() ? start.tool : start.files.front();
}

std::vector<RunEvent> ParseRunEvents(const std::string& xml) {
  std::vector<RunEvent> events;
  const auto root = ParseXml(xml);
  if (root == nullptr) return events;
  for (const CXmlNode* each : root->GetChildren()) {
    const auto* const row = std::ranges::find_if(
        kEventNames, [&](const EventName& name) { return each->NameView() == name.name; });
    if (row == std::end(kEventNames)) continue;
    RunEvent& event = events.emplace_back();
    event.kind = row->kind;
    event.run = NumberOf(each, "Run");
    event.time = RunEvent::Time(std::chrono::microseconds(NumberOf<std::int64_t>(each, "Time")));
    event.lane = NumberOf(each, "Lane");
    event.text = FromHex(GetAttribute(each, "Bytes"));
    event.isDone = GetAttribute(each, "Done") == "Yes";
    event.exitCode = NumberOf(each, "Exit");
    if (each->GetChildCount() > 0) event.start = ReadToolStart(each->GetChild(0));
  }
  return events;
}

}  // namespace tarn::host
