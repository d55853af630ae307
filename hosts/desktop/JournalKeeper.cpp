#include "hosts/desktop/JournalKeeper.h"

#include <QDateTime>
#include <QStatusBar>
#include <utility>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "platform/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr int kPeriodMs = 1000;
constexpr int kPeriodAfterFailureMs = 15000;
constexpr int kNoticeMs = 8000;
// A larger text would take longer to write than it takes to type the next line.
constexpr std::size_t kLargestText = std::size_t{32} << 20;

// The pointer from before if the text is the same, so that it isn't written again.
std::shared_ptr<const std::string> Share(std::string text,
                                         const std::shared_ptr<const std::string>& before) {
  if (before != nullptr && *before == text) return before;
  return std::make_shared<const std::string>(std::move(text));
}

}  // namespace

JournalKeeper::JournalKeeper(TakenJournals& taken, BuildSession& buildSession,
                             EditorTabs& editorTabs, QStatusBar& statusBar)
    : journal_(std::move(taken.own)),
      session_(buildSession),
      editors_(editorTabs),
      bar_(statusBar) {
  pool_.setMaxThreadCount(1);
  connect(&timer_, &QTimer::timeout, this, [this] { Follow(); });
  timer_.start(kPeriodMs);
  if (journal_ == nullptr) Finish(Error{ErrorCode::Io, taken.problem, {}});
}

JournalKeeper::~JournalKeeper() {
  pool_.waitForDone();
}

JournalKeeper::Signature JournalKeeper::Sign() {
  Signature now;
  now.changeCount = session_.Inspector().GetChangeCount();
  now.isModified = session_.HasProject() && session_.Inspector().IsModified() != 0;
  for (int index = 0; index < editors_.count(); ++index) {
    const CodeEditor& editor = *editors_.At(index);
    const QString path = ToQt(editor.GetPath());
    now.tabs += (index == editors_.currentIndex() ? "*" : "") + path;
    if (editor.isModified()) now.texts += QString("%1 %2").arg(editor.GetRevision()).arg(path);
  }
  return now;
}

JournalContent JournalKeeper::Collect() {
  JournalContent content;
  content.seconds = QDateTime::currentSecsSinceEpoch();
  if (session_.HasProject()) content.project = session_.GetProjectPath();
  InspectorDriver& inspector = session_.Inspector();
  if (!content.project.empty() && inspector.IsModified() != 0) {
    const std::int32_t count = inspector.GetChangeCount();
    if (count == lastCount_ && last_.projectTexts != nullptr) {
      content.projectTexts = last_.projectTexts;
      content.projectBases = last_.projectBases;
    } else {
      content.projectTexts = Share(inspector.GetFileTexts(), last_.projectTexts);
      content.projectBases = Share(inspector.GetBaseTexts(), last_.projectBases);
    }
    lastCount_ = count;
  }
  for (int index = 0; index < editors_.count(); ++index) {
    const CodeEditor& editor = *editors_.At(index);
    if (!editor.isModified()) continue;
    UnsavedText text = editor.GetUnsaved();
    if (text.text->size() > kLargestText) {
      TellTooLarge(text.path);
      continue;
    }
    for (const UnsavedText& before : last_.texts) {
      if (before.path == text.path && *before.text == *text.text) text.text = before.text;
    }
    content.texts.push_back(std::move(text));
  }
  for (const QString& each : editors_.Describe()) content.tabs.push_back(FromQt(each));
  return content;
}

void JournalKeeper::TellTooLarge(const std::string& path) {
  if (!tooLarge_.insert(path).second) return;
  bar_.showMessage(tr("%1 is too large to be kept for the case of a crash").arg(ToQt(path)),
                   kNoticeMs);
}

Status JournalKeeper::Store(const JournalContent& content) {
  return content.IsEmpty() ? journal_->Clear() : journal_->Write(content);
}

void JournalKeeper::Follow() {
  if (isWriting_) return;
  Signature now = Sign();
  if (now == signature_) return;
  if (now.tabs != signature_.tabs && onTabsChanged) onTabsChanged();
  if (journal_ == nullptr) {
    signature_ = std::move(now);
    return;
  }
  JournalContent content = Collect();
  signature_ = std::move(now);
  if (content.IsEmpty() && isEmpty_) return;
  isWriting_ = true;
  isEmpty_ = content.IsEmpty();
  last_ = content;
  pool_.start([this, content = std::move(content)] {
    const Status stored = Store(content);
    QMetaObject::invokeMethod(
        this,
        [this, stored] {
          isWriting_ = false;
          Finish(stored);
        },
        Qt::QueuedConnection);
  });
}

// One message for a failure, however often it is tried again.
void JournalKeeper::Finish(const Status& stored) {
  timer_.setInterval(stored ? kPeriodMs : kPeriodAfterFailureMs);
  if (!stored) {
    signature_ = {};
    isEmpty_ = false;
    if (!hasFailed_) {
      bar_.showMessage(
          tr("What is not saved would be lost in a crash: %1").arg(ToQt(stored.GetError().text)),
          kNoticeMs);
    }
  }
  hasFailed_ = !stored;
}

bool JournalKeeper::Flush() {
  if (journal_ == nullptr) return false;
  pool_.waitForDone();
  const JournalContent content = Collect();
  const Status stored = Store(content);
  signature_ = Sign();
  isEmpty_ = content.IsEmpty();
  last_ = content;
  Finish(stored);
  return static_cast<bool>(stored);
}

void JournalKeeper::End() {
  timer_.stop();
  pool_.waitForDone();
  if (journal_ != nullptr) static_cast<void>(journal_->Clear());
}

}  // namespace tarn::host
