#include "output/BuildOutput.h"

#include <span>
#include <utility>

#include "output/MessageTable.h"
#include "patterns/DiagnosticParser.h"
#include "patterns/ParseNumber.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

constexpr const char* kMessageFile = "message.xslt";
constexpr const char* kLogPrefix = "$opj";

std::unique_ptr<CXmlNode> MakeRoot(const char* name) {
  return CXmlNode::CreateNode(name);
}

// Returns the lines before the tree. `reference` is inserted between the two parts of the style
// sheet line.
std::string MakeHead(const char* before, const std::string& reference, const char* after) {
  std::string head = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n";
  head += before;
  head += reference.empty() ? kMessageFile : reference;
  head += after;
  head += "\r\n";
  return head;
}

}  // namespace

CBuildOutput::CBuildOutput(FileSystem& fileSystem)
    : disk_(fileSystem), root_(MakeRoot("Messages")), writer_(fileSystem) {}

CBuildOutput::~CBuildOutput() {
  FreeMessageTexts();
}

void CBuildOutput::Initialise(const std::string& configFilePath, WindowHandle host) {
  hostWindow_ = host;
  if (!disk_.Exists(configFilePath)) return;
  configFolder_ = FolderOf(configFilePath);
  stylesheet_ = JoinPath(configFolder_, kMessageFile);

  CXmlNode file;
  const Result<std::string> text = disk_.ReadWholeFile(stylesheet_);
  if (text) file.Load(*text, g_xmlParseInfo);
  const bool isThere = !text && text.GetError().code != ErrorCode::NotFound;
  messageProblem_ = isThere ? stylesheet_ + ": " + text.GetError().text : std::string();
  for (int i = 0; i < file.GetChildCount(); ++i) LoadMessages(*file.GetChild(i));
}

void CBuildOutput::LoadMessages(const CXmlNode& messages) {
  if (messages.NameView() != "Messages") return;
  viewTitle_ = OrEmpty(messages.GetAttrValue("Tab"));
  // A log in the same folder as its style sheet needs no path to it.
  stylesheet_.clear();
  for (int i = 0; i < messages.GetChildCount(); ++i) {
    const CXmlNode& row = *messages.GetChild(i);
    const char* id = row.GetAttrValue("Id");
    const char* text = row.GetAttrValue("String");
    const std::int64_t number = ParseNumber(id == nullptr ? "0" : id);
    const std::int64_t index = number - kFirstMessageId;
    if (index < 0 || index >= kMessageCount) continue;
    SetMessageText(static_cast<int>(index), text == nullptr ? "0" : text);
  }
}

void CBuildOutput::SetViews(ILogView* log, IReportView* report) {
  logView_ = log;
  reportView_ = report;
}

void CBuildOutput::SetLogFile(const std::string& path) {
  logFile_ = path;
  flags_ = kMergeToolFiles;
  writer_.Clear();
}

bool CBuildOutput::PlaceLogFile(const std::string& folder) {
  const Result<std::string> name = disk_.ReserveName(folder, kLogPrefix);
  if (!name) {
    logStatus_ = Error{name.GetError().code, name.GetError().text, folder};
    return false;
  }
  static_cast<void>(disk_.RemoveFile(*name));
  SetLogFile(*name + ".xml");
  return true;
}

void CBuildOutput::DeleteLogFile() {
  writer_.Clear();
  // A missing file is not an error.
  if (!logFile_.empty()) static_cast<void>(disk_.RemoveFile(logFile_));
}

void CBuildOutput::WriteMessage(int index, std::initializer_list<std::string> arguments,
                                std::string_view reason) {
  const std::optional<std::string> format = FindMessageText(index);
  if (!format) return;
  std::string text = FormatMessageText(*format, std::span(arguments.begin(), arguments.size()));
  if (!reason.empty()) {
    text = std::string(Trim(text));
    if (text.ends_with('.')) text.pop_back();
    text.append(": ").append(reason);
  }
  const int kind = GetMessageKind(index);
  const KindValues values = ValuesOfKind(kind);

  CXmlNode& message = *root_->AddChild("message", text);
  message.AddChild("link", "0");
  message.AddChild("type", values.type);
  message.AddChild("header", text);
  message.SetAttrValue("Description", text);
  message.SetAttrValue("Icon", values.icon);
  if (logView_ != nullptr) logView_->AddMessage(message);

  // The host may respond with another message or a reset, so the element isn't accessed after this
  // point.
  if (hostWindow_ != 0) {
    SendWindowMessage(hostWindow_, kMsgLogLine, reinterpret_cast<std::intptr_t>(text.c_str()), 0);
  }
  if ((flags_ & kSaveEachMessage) != 0) SaveLog();
  if (kind == kKindError) {
    SaveLog();
    UpdateReport();
  }
}

void CBuildOutput::MergeToolFile(const std::string& path) {
  if ((flags_ & kMergeToolFiles) != 0) {
    const Result<std::string> text = disk_.ReadWholeFile(path);
    CXmlNode file;
    if (text) file.Load(*text, g_xmlParseInfo);
    for (int i = 0; i < file.GetChildCount(); ++i) {
      const CXmlNode& message = *file.GetChild(i);
      root_->AppendCopy(message);
      if (logView_ != nullptr) logView_->AddMessage(message);
    }
  }
  if ((flags_ & kSaveEachMessage) != 0) SaveLog();
}

void CBuildOutput::AddOutput(const std::string& text) {
  const CXmlNode& output = *root_->AddChild("Output", text);
  if (logView_ != nullptr) logView_->AddMessage(output);
  if ((flags_ & kSaveEachMessage) != 0) SaveLog();
}

void CBuildOutput::SaveLog() {
  WriteLogFile(MakeHead("<?xml-stylesheet type=\"text/xsl\" href=\"", stylesheet_, "\"?>"));
}

void CBuildOutput::WriteLogFile(const std::string& head) {
  if (logFile_.empty() && !UseSpareFolder()) return;
  logStatus_ = writer_.Save(logFile_, head, *root_);
  if (!logStatus_ && UseSpareFolder()) logStatus_ = writer_.Save(logFile_, head, *root_);
}

// The folder for temporary files may be full while the folder for user data still has room.
bool CBuildOutput::UseSpareFolder() {
  const std::string former = logFile_;
  if (spareFolder_.empty() || !PlaceLogFile(std::exchange(spareFolder_, {}))) return false;
  if (!former.empty()) static_cast<void>(disk_.RemoveFile(former));
  return true;
}

void CBuildOutput::ResetLog() {
  root_ = MakeRoot("output");
  ++generation_;
  writer_.Clear();
  WriteLogFile(MakeHead("<?xml-stylesheet href=\"", stylesheet_, "\" type=\"text/xsl\"?>"));
  if (logView_ != nullptr) logView_->Clear();
}

void CBuildOutput::UpdateReport() {
  if (reportView_ != nullptr) reportView_->Update(*root_, generation_);
}

}  // namespace tarn
