#include "components/options/PlainOptionsWindow.h"

#include "components/options/PropertyManager.h"
#include "components/values/ValuesXml.h"
#include "platform/text/Text.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

namespace tarn::options {

namespace {

enum Column : int { kName, kValue, kSource };

constexpr int kReportId = 1;
constexpr int kNoteId = 2;
constexpr int kTimer = 1;
constexpr std::chrono::milliseconds kSoon{50};
constexpr int kNoteHeight = 56;
constexpr const char* kResetCommand = "33050";

std::string Attribute(const CXmlNode& node, const char* name) {
  return OrEmpty(node.GetAttrValue(name));
}

std::unique_ptr<CReportRecordItem> MakeItem(std::string caption) {
  auto item = std::make_unique<CReportRecordItem>();
  item->SetOwnCaption(std::move(caption));
  return item;
}

const char* OriginText(const std::string& origin) {
  if (origin == "own") return "set here";
  if (origin == "inherited") return "inherited";
  return origin == "definition" ? "default" : "";
}

}  // namespace

// Row of an option. A section is a plain record.
class PlainOptionsWindow::Record : public CReportRecord {
 public:
  Record(std::string setName, std::string sectionName, const CXmlNode& property)
      : set(std::move(setName)),
        section(std::move(sectionName)),
        name(Attribute(property, "Header")),
        help(Attribute(property, "Help")),
        command(Attribute(property, "Command")),
        isRemovable(EqualNoCase(Attribute(property, "Removable"), "Yes")),
        isEnabled(EqualNoCase(Attribute(property, "Enabled"), "Yes")) {
    for (const CXmlNode* choice : property.GetChildren()) {
      choices.emplace_back(Attribute(*choice, "Label"), Attribute(*choice, "Value"));
    }
    AddItem(MakeItem(Attribute(property, "Label")));
    AddItem(MakeItem({}));
    AddItem(MakeItem({}));
  }

  // Returns the value that the user typed; a choice may be given by its label.
  std::string ValueOf(const std::string& typed) const {
    for (const auto& [label, value] : choices) {
      if (EqualNoCase(label, typed)) return value;
    }
    return typed;
  }

  const std::string set, section, name, help, command;
  const bool isRemovable, isEnabled;
  std::vector<std::pair<std::string, std::string>> choices;  // label and value
  std::string shown;                                         // text of the value's cell
};

class PlainOptionsWindow::Report : public CReportControl {
 public:
  explicit Report(PlainOptionsWindow& optionsWindow) : window_(optionsWindow) {}

 protected:
  bool OnKeyDown(const KeyEvent& event) override {
    if (event.key != kKeyDelete) return CReportControl::OnKeyDown(event);
    window_.Reset(GetFocusedRow());
    return true;
  }

 private:
  PlainOptionsWindow& window_;
};

PlainOptionsWindow::PlainOptionsWindow(PropertyManager& propertyManager, WindowHandle mainFrame)
    : manager_(propertyManager), frame_(mainFrame), report_(std::make_unique<Report>(*this)) {
  const auto addColumn = [this](int index, const char* caption, int width, bool isWide) {
    return report_->AddColumn(std::make_unique<CReportColumn>(index, caption, width, isWide,
                                                              CReportColumn::kNoIcon, false, true));
  };
  addColumn(kName, "Option", 140, true)->SetTreeColumn(true);
  addColumn(kValue, "Value", 140, true)->SetEditable(true);
  addColumn(kSource, "From", 70, false);
  report_->AllowEdit(true);
}

PlainOptionsWindow::~PlainOptionsWindow() {
  DestroyWindow();
}

bool PlainOptionsWindow::OnCreate() {
  if (!report_->Create(kStyleChild | kStyleVisible, {}, this, kReportId)) return false;
  if (!note_.Create(kStyleChild | kStyleVisible, {}, this, kNoteId)) return false;
  report_->ShowWindow(true);
  note_.ShowWindow(true);
  LayOut({GetRect().Width(), GetRect().Height()});
  Refill();
  return true;
}

void PlainOptionsWindow::OnDestroy() {
  report_->RemoveAllRecords();
}

void PlainOptionsWindow::OnSize(Size size) {
  LayOut(size);
}

void PlainOptionsWindow::LayOut(Size size) {
  const int edge = size.height > 2 * kNoteHeight ? size.height - kNoteHeight : size.height;
  report_->MoveWindow({0, 0, size.width, edge});
  note_.MoveWindow({0, edge, size.width, size.height});
}

void PlainOptionsWindow::RefillSoon() {
  if (!IsCreated() || isTimerSet_) return;
  SetTimer(kTimer, kSoon);
  isTimerSet_ = true;
}

void PlainOptionsWindow::OnTimer(int) {
  KillTimer(kTimer);
  isTimerSet_ = false;
  Refill();
}

// While values are held, the current node may not be the one shown; the release calls this again.
void PlainOptionsWindow::Refill() {
  if (manager_.IsHeld()) return;
  const std::string& set = manager_.GetOwnSet();
  const std::string definitions =
      set.empty() ? std::string() : manager_.ListProperties(set.c_str());
  if (definitions != layout_) {
    layout_ = definitions;
    CXmlNode root;
    CXmlParseInfo parseInfo;
    if (!layout_.empty()) root.Load(layout_, parseInfo);
    Rebuild(root);
  }
  for (int i = 0; i < report_->GetRecords().GetCount(); ++i) {
    UpdateValues(report_->GetRecords().GetAt(i)->GetChildren());
  }
  report_->Populate();
}

void PlainOptionsWindow::Rebuild(const CXmlNode& definitions) {
  report_->RemoveAllRecords();
  note_.SetControlText({});
  for (const CXmlNode* set : definitions.GetChildren()) {
    for (const CXmlNode* section : set->GetChildren()) {
      auto record = std::make_unique<CReportRecord>();
      record->AddItem(MakeItem(Attribute(*section, "Label")));
      record->SetExpanded(true);
      for (const CXmlNode* property : section->GetChildren()) {
        if (!EqualNoCase(Attribute(*property, "Shown"), "Yes")) continue;
        record->GetChildren().Add(std::make_unique<Record>(
            Attribute(*set, "Header"), Attribute(*section, "Header"), *property));
      }
      if (record->HasChildren()) report_->AddRecord(std::move(record));
    }
  }
}

// Returns an own value as written, and any other value as displayed to users.
std::string PlainOptionsWindow::CaptionOf(const Record& record) {
  const char* const set = record.set.c_str();
  const char* const section = record.section.c_str();
  const char* const name = record.name.c_str();
  const std::string label = manager_.GetPropertyStringValue(set, section, name);
  const bool isWritten = manager_.GetOrigin(set, section, name) == "own" &&
                         label == manager_.GetPropertyValue(set, section, name);
  if (!isWritten) return label;
  CXmlNode stored;
  CXmlParseInfo parseInfo;
  stored.Load(manager_.GetConfigText("", set, section, name), parseInfo);
  const CXmlNode* const property = stored.FindDescendantByAttr("Header", name);
  return property == nullptr ? label : Unescape(Attribute(*property, "Value"));
}

void PlainOptionsWindow::UpdateValues(CReportRecords& records) {
  for (int i = 0; i < records.GetCount(); ++i) {
    auto& record = static_cast<Record&>(*records.GetAt(i));
    record.shown = CaptionOf(record);
    record.GetItem(kValue)->SetOwnCaption(record.shown);
    record.GetItem(kSource)->SetOwnCaption(OriginText(
        manager_.GetOrigin(record.set.c_str(), record.section.c_str(), record.name.c_str())));
  }
}

PlainOptionsWindow::Record* PlainOptionsWindow::RecordAt(int row) const {
  const CReportRow* const found = report_->GetRows().GetAt(row);
  return found == nullptr ? nullptr : dynamic_cast<Record*>(found->GetRecord());
}

void PlainOptionsWindow::SendCommand(const std::string& command) {
  PostWindowMessage(frame_, kMsgCommand, std::atoi(command.c_str()), 0);
  RefillSoon();
}

void PlainOptionsWindow::OnEdited(int row) {
  Record* const record = RecordAt(row);
  if (record == nullptr) return;
  CReportRecordItem& item = *record->GetItem(kValue);
  const std::string typed = item.GetOwnCaption();
  if (typed == record->shown) return;
  const std::string value = record->ValueOf(typed);
  const char* const set = record->set.c_str();
  const char* const section = record->section.c_str();
  const char* const name = record->name.c_str();
  std::string problem = manager_.CheckValue(set, section, name, value.c_str());
  if (problem.empty() && !record->isEnabled) problem = "Another option disables this one.";
  if (problem.empty() && manager_.SetChangedProperty(set, section, name, value.c_str()) == 0) {
    problem = "Options can't be changed now.";
  }
  if (problem.empty()) return SendCommand(record->command);
  item.SetOwnCaption(record->shown);
  report_->Populate();
  note_.SetControlText(problem);
}

void PlainOptionsWindow::Reset(int row) {
  const Record* const record = RecordAt(row);
  if (record == nullptr || !record->isRemovable) return;
  const char* const set = record->set.c_str();
  const char* const section = record->section.c_str();
  const char* const name = record->name.c_str();
  if (manager_.GetOrigin(set, section, name) != "own") return;
  if (manager_.ResetChangedProperty(set, section, name) != 0) return SendCommand(kResetCommand);
  note_.SetControlText("Options can't be changed now.");
}

std::intptr_t PlainOptionsWindow::OnMessage(std::uint32_t message, std::intptr_t wParam,
                                            std::intptr_t) {
  const auto* const notice = reinterpret_cast<const ReportNotice*>(wParam);
  if (message == kMsgReportEdit) {
    OnEdited(notice->row);
  } else if (message == kMsgReportSelection) {
    const Record* const record = RecordAt(report_->GetFocusedRow());
    note_.SetControlText(record == nullptr ? std::string() : record->help);
  }
  return 0;
}

}  // namespace tarn::options
