#include "hosts/core/LogEntry.h"

#include <algorithm>

#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlEscape.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

LogKind KindOfIcon(std::string_view icon) {
  if (icon == "2") return LogKind::Error;
  if (icon == "1") return LogKind::Warning;
  if (icon == "5") return LogKind::Heading;
  return LogKind::Plain;
}

LogEntry WithoutText(const CXmlNode& message) {
  LogEntry entry;
  entry.kind = KindOfIcon(GetAttribute(&message, "Icon"));
  entry.file = UnescapeXml(GetAttribute(&message, "File"));
  entry.line = ParseDecimal(message.GetAttrValue("Line"));
  entry.count = std::max(1, ParseDecimal(message.GetAttrValue("Count")));
  entry.isReported = EqualNoCase(GetAttribute(&message, "ShowInReport"), "yes");
  return entry;
}

// Records the first position after which messages may be missing.
class BreakFinder : public XmlLossListener {
 public:
  explicit BreakFinder(const std::string& xml) : text_(xml) {}

  void OnLoss(XmlLoss loss, const char* position, std::string_view name,
              const CXmlNode* /*element*/) override {
    constexpr XmlLoss kBreaks[] = {
        XmlLoss::OpenElement, XmlLoss::BrokenTag, XmlLoss::OpenMarkup, XmlLoss::ForeignCloseTag,
        XmlLoss::TooDeep,     XmlLoss::NoElement, XmlLoss::Trailing};
    const bool isBreak =
        std::find(std::begin(kBreaks), std::end(kBreaks), loss) != std::end(kBreaks);
    if (!isBreak || !damage.empty()) return;
    const auto offset = static_cast<std::size_t>(position - text_.data());
    damage = std::to_string(1 + CountLineEnds(text_, 0, offset)) + ": " +
             DescribeLoss(text_, loss, offset, name);
  }

  std::string damage;

 private:
  const std::string& text_;
};

}  // namespace

LogEntry ToLogEntry(const CXmlNode& message) {
  LogEntry entry = WithoutText(message);
  const char* description = message.GetAttrValue("Description");
  entry.text = UnescapeXml(description != nullptr ? description : message.GetValue());
  entry.message = UnescapeXml(GetAttribute(&message, "Contain"));
  if (entry.message.empty()) entry.message = entry.text;
  return entry;
}

LogEntry ReportRowToLogEntry(const CXmlNode& row) {
  LogEntry entry = WithoutText(row);
  entry.text = entry.message = GetAttribute(&row, "Description");
  entry.isReported = true;
  return entry;
}

std::vector<LogEntry> ReadLogEntries(const std::string& xml) {
  std::vector<LogEntry> entries;
  const auto root = ParseXml(xml);
  if (root == nullptr) return entries;
  for (const CXmlNode* child : root->GetChildren()) {
    if (child->GetType() == XmlElement) entries.push_back(ToLogEntry(*child));
  }
  AttachLastLines(entries);
  return entries;
}

void AttachLastLines(std::vector<LogEntry>& entries) {
  std::vector<std::string> lines;
  for (LogEntry& entry : entries) {
    if (entry.kind == LogKind::Plain && entry.isReported) {
      lines.push_back(entry.text);
    } else {
      if (entry.kind == LogKind::Error && entry.file.empty()) entry.lastLines = std::move(lines);
      lines.clear();
    }
  }
}

std::string FindLogDamage(const std::string& xml) {
  BreakFinder finder(xml);
  CXmlNode root;
  CXmlParseInfo parseInfo;
  root.Load(xml.c_str(), parseInfo, finder);
  return finder.damage;
}

std::unique_ptr<CXmlNode> ParseXml(const std::string& text) {
  auto root = std::make_unique<CXmlNode>();
  CXmlParseInfo parseInfo;
  const bool complete = root->Load(text, parseInfo) != nullptr;
  return complete || !root->NameView().empty() ? std::move(root) : nullptr;
}

std::string GetAttribute(const CXmlNode* node, const char* name) {
  return node == nullptr ? std::string() : OrEmpty(node->GetAttrValue(name));
}

}  // namespace tarn::host
