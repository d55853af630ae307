#include "hosts/desktop/JournalManager.h"

#include <QDateTime>
#include <utility>

#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr int kPeriodMs = 1000;
constexpr int kPeriodAfterFailureMs = 15000;
// A larger text would take longer to write than the user takes to type the next line.
constexpr std::size_t kLargestText = std::size_t{32} << 20;

// Returns the previous pointer if the text is unchanged, so that it isn't written again.
std::shared_ptr<const std::string> Share(std::string text,
                                         const std::shared_ptr<const std::string>& before) {
  if (before != nullptr && *before == text) return before;
  return std::make_shared<const std::string>(std::move(text));
}

}  // namespace

JournalManager::JournalManager(FileSystem& fileSystem, std::string rootFolder, TakenJournals& taken,
                               BuildSession& buildSession, EditorTabs& editorTabs,
                               Banner& journalBanner)
    : files_(fileSystem),
      root_(std::move(rootFolder)),
      journal_(std::move(taken.own)),
      session_(buildSession),
      editors_(editorTabs),
      banner_(journalBanner) {
  banner_.onFirst = [this] { Flush(); };
  banner_.onSecond = [this] { banner_.hide(); };
  pool_.setMaxThreadCount(1);
  connect(&timer_, &QTimer::timeout, this, [this] { Follow(); });
  timer_.start(kPeriodMs);
  if (journal_ == nullptr) Finish(taken.problem);
}

JournalManager::~JournalManager() {
  pool_.waitForDone();
}

JournalManager::Signature JournalManager::Sign() {
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

JournalContent JournalManager::Collect() {
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
  tooLarge_.clear();
  for (int index = 0; index < editors_.count(); ++index) {
    const CodeEditor& editor = *editors_.At(index);
    if (!editor.isModified()) continue;
    UnsavedText text = editor.GetUnsaved();
    if (text.text->size() > kLargestText) {
      tooLarge_ += ToQt(text.path);
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

// Returns true if there is a journal now, and takes a new one if its folder was removed. Journals
// of other processes are left for the next start.
bool JournalManager::Retake() {
  if (journal_ != nullptr && files_.IsFolder(journal_->GetFolder())) return true;
  journal_.reset();
  TakenJournals taken = TakeJournals(files_, root_);
  journal_ = std::move(taken.own);
  if (journal_ == nullptr) Finish(taken.problem);
  return journal_ != nullptr;
}

// A message that the user has hidden is shown again only if it changes.
void JournalManager::Show(const QString& problem) {
  if (std::exchange(problem_, problem) == problem) return;
  if (problem.isEmpty()) {
    banner_.hide();
  } else {
    banner_.Tell(problem);
  }
}

Status JournalManager::Store(const JournalContent& content) {
  return content.IsEmpty() ? journal_->Clear() : journal_->Write(content);
}

void JournalManager::Follow() {
  if (isWriting_) return;
  Signature now = Sign();
  if (now == signature_) return;
  if (now.tabs != tabs_ && onTabsChanged) onTabsChanged();
  tabs_ = now.tabs;
  if (!Retake()) return;
  JournalContent content = Collect();
  signature_ = std::move(now);
  if (content.IsEmpty() && isEmpty_) {
    Finish({});
    return;
  }
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

void JournalManager::Finish(const Status& stored) {
  timer_.setInterval(stored ? kPeriodMs : kPeriodAfterFailureMs);
  if (!stored) {
    signature_ = {};
    isEmpty_ = false;
    const Error& error = stored.GetError();
    const std::string& path = journal_ == nullptr ? error.place : journal_->GetFolder();
    Show(tr("Unsaved changes would be lost in a crash: %1 can't be written (%2).")
             .arg(ToQt(path), ToQt(error.text)));
  } else if (!tooLarge_.isEmpty()) {
    Show(tr("Too large for crash recovery: %1.").arg(tooLarge_.join(", ")));
  } else {
    Show({});
  }
}

bool JournalManager::Flush() {
  pool_.waitForDone();
  if (!Retake()) return false;
  const JournalContent content = Collect();
  const Status stored = Store(content);
  signature_ = Sign();
  isEmpty_ = content.IsEmpty();
  last_ = content;
  Finish(stored);
  return static_cast<bool>(stored);
}

void JournalManager::End() {
  timer_.stop();
  pool_.waitForDone();
  if (journal_ != nullptr) static_cast<void>(journal_->Clear());
}

}  // namespace tarn::host
