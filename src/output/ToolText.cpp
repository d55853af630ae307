#include <algorithm>
#include <optional>

#include "output/BuildOutput.h"
#include "patterns/DiagnosticParser.h"
#include "patterns/DiagnosticTemplate.h"
#include "patterns/Parser.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlEscape.h"
#include "xml/XmlNode.h"

// Conversion of unparsed tool output into log messages.
namespace tarn {
namespace {

struct Look {
  const char* type;
  const char* icon;
};

Look LookOf(LineKind kind) {
  return kind == LineKind::Error ? Look{"1", "2"} : Look{"2", "1"};
}

// Returns the line as the log shows it: without leading white space, and with spaces in place of
// other white space. Trailing space stays.
std::string PrepareLine(std::string_view text) {
  std::string line(text.substr(std::min(text.find_first_not_of("\t\r\n "), text.size())));
  for (char& c : line) {
    if (c == '\t' || c == '\r' || c == '\n') c = ' ';
  }
  return line;
}

std::string LinkOf(const Diagnostic& found) {
  if (found.file.empty() || found.line.empty()) return "lnk://";
  return "err://" + found.file + ":" + found.line;
}

CXmlNode& AppendLine(CXmlNode& root, const std::string& line, const Diagnostic& found,
                     const std::string& helpFolder) {
  CXmlNode& message = *root.AddChild("message");
  if (found.kind != LineKind::Plain) {
    const Look look = LookOf(found.kind);
    message.AddChild("type", look.type);
    message.SetAttrValue("Icon", look.icon);
    message.SetAttrValue("ShowInReport", "yes");
    message.SetAttrValue("Contain", found.message);
    if (!helpFolder.empty() && !found.help.empty()) {
      message.SetAttrValue("Help", helpFolder + kSeparator + found.help + ".htm");
    }
  }
  message.AddChild("header", line);
  message.AddChild("link", LinkOf(found));
  message.SetAttrValue("Description", line);
  message.SetAttrValue("File", found.file);
  message.SetAttrValue("Line", found.line);
  return message;
}

}  // namespace

void CBuildOutput::ParseToolText(const char* text, const char* lineTemplate,
                                 const char* helpFolder) {
  const std::string_view whole = text == nullptr ? std::string_view() : text;
  if (const std::size_t rows = whole.find("<Row"); rows != whole.npos) {
    ParseToolRows(text + rows);
    return;
  }
  const std::string help = OrEmpty(helpFolder);
  std::optional<DiagnosticPattern> special;
  if (lineTemplate != nullptr) special = PatternOfTemplate(lineTemplate, kToolTextTemplates);
  if (special && !special->IsCompiled()) special.reset();
  if (!parser_) parser_ = std::make_unique<DiagnosticParser>();

  const CParser lines(whole, "\n");
  for (int i = 0; i < lines.GetCount(); ++i) {
    const std::string line = PrepareLine(lines.TokenView(i));
    if (line.empty()) continue;
    const Diagnostic found = parser_->Parse(line, special ? &*special : nullptr);
    // The view may reset the log, so `root` is read again for each message.
    const CXmlNode& message = AppendLine(*root_, line, found, help);
    if (logView_ != nullptr) logView_->AddMessage(message);
  }
  if ((flags_ & kSaveEachMessage) != 0) SaveLog();
}

void CBuildOutput::AddError(const std::string& text) {
  AddProblem(LineKind::Error, text);
}

void CBuildOutput::AddWarning(const std::string& text) {
  AddProblem(LineKind::Warning, text);
}

void CBuildOutput::AddProblem(LineKind kind, const std::string& text) {
  Diagnostic found;
  found.kind = kind;
  found.message = EscapeXml(text);
  const CXmlNode& message = AppendLine(*root_, found.message, found, {});
  if (logView_ != nullptr) logView_->AddMessage(message);
  if ((flags_ & kSaveEachMessage) != 0) SaveLog();
}

void CBuildOutput::ParseToolRows(const char* /*text*/) {}

}  // namespace tarn
