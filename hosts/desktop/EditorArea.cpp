#include "hosts/desktop/EditorArea.h"

#include <QStackedWidget>
#include <QVBoxLayout>

#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/FindBar.h"
#include "hosts/desktop/WelcomePage.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

EditorArea::EditorArea(EditorTabs& editorTabs, WelcomePage& welcomePage, QWidget* parent)
    : QWidget(parent),
      editors_(editorTabs),
      projectBanner_(new Banner(tr("Reload project"), tr("Ignore"), this)),
      damageBanner_(new Banner(tr("Allow building and saving"), tr("Hide"), this)),
      trustBanner_(new Banner(tr("Trust"), tr("Not now"), this)),
      journalBanner_(new Banner(tr("Try again"), tr("Hide"), this)),
      saveBanner_(new Banner(tr("Details..."), tr("Hide"), this)),
      fileBanner_(new Banner(tr("Reload"), tr("Keep mine"), this)),
      pages_(new QStackedWidget(this)),
      findBar_(new FindBar(editorTabs, this)) {
  pages_->addWidget(&welcomePage);
  pages_->addWidget(&editorTabs);
  connect(&editorTabs, &QTabWidget::currentChanged, pages_,
          [this](int index) { pages_->setCurrentIndex(index < 0 ? 0 : 1); });
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(projectBanner_);
  column->addWidget(damageBanner_);
  column->addWidget(trustBanner_);
  column->addWidget(journalBanner_);
  column->addWidget(saveBanner_);
  column->addWidget(fileBanner_);
  column->addWidget(pages_, 1);
  column->addWidget(findBar_);

  connect(&editorTabs, &QTabWidget::currentChanged, this, [this] { ShowConflict(); });
  editorTabs.onConflict = [this] { ShowConflict(); };
  editorTabs.onRefused = [this](const QStringList& names) { ShowRefused(names); };
  fileBanner_->onFirst = [this] {
    editors_.ReloadCurrent();
    ShowConflict();
  };
  fileBanner_->onSecond = [this] {
    if (CodeEditor* const editor = editors_.Current()) editor->KeepMine();
    ShowConflict();
  };
}

void EditorArea::ShowConflict() {
  const CodeEditor* const editor = editors_.Current();
  if (editor == nullptr || !editor->IsInConflict()) {
    fileBanner_->hide();
    return;
  }
  fileBanner_->Tell(tr("%1 has been changed both here and by another program.")
                        .arg(ToQt(FileNameOf(editor->GetPath()))));
}

void EditorArea::ShowRefused(const QStringList& names) {
  fileBanner_->Tell(tr("%1 was not saved, because another program has changed it too.", nullptr,
                       static_cast<int>(names.size()))
                        .arg(names.join(", ")));
}

}  // namespace tarn::host
