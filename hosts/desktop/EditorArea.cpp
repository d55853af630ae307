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
      editors(editorTabs),
      projectBanner(new Banner(tr("Reload project"), tr("Ignore"), this)),
      damageBanner(new Banner(tr("Allow building and saving"), tr("Hide"), this)),
      trustBanner(new Banner(tr("Trust"), tr("Not now"), this)),
      journalBanner(new Banner(tr("Try again"), tr("Hide"), this)),
      saveBanner(new Banner(tr("Details..."), tr("Hide"), this)),
      fileBanner(new Banner(tr("Reload"), tr("Keep mine"), this)),
      pages(new QStackedWidget(this)),
      findBar(new FindBar(editorTabs, this)) {
  pages->addWidget(&welcomePage);
  pages->addWidget(&editorTabs);
  connect(&editorTabs, &QTabWidget::currentChanged, pages,
          [this](int index) { pages->setCurrentIndex(index < 0 ? 0 : 1); });
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(projectBanner);
  column->addWidget(damageBanner);
  column->addWidget(trustBanner);
  column->addWidget(journalBanner);
  column->addWidget(saveBanner);
  column->addWidget(fileBanner);
  column->addWidget(pages, 1);
  column->addWidget(findBar);

  connect(&editorTabs, &QTabWidget::currentChanged, this, [this] { ShowConflict(); });
  editorTabs.onConflict = [this] { ShowConflict(); };
  editorTabs.onRefused = [this](const QStringList& names) { ShowRefused(names); };
  fileBanner->onFirst = [this] {
    editors.ReloadCurrent();
    ShowConflict();
  };
  fileBanner->onSecond = [this] {
    if (CodeEditor* const editor = editors.Current()) editor->KeepMine();
    ShowConflict();
  };
}

void EditorArea::ShowConflict() {
  const CodeEditor* const editor = editors.Current();
  if (editor == nullptr || !editor->IsInConflict()) {
    fileBanner->hide();
    return;
  }
  fileBanner->Tell(tr("%1 has been changed both here and by another program.")
                       .arg(ToQt(FileNameOf(editor->GetPath()))));
}

void EditorArea::ShowRefused(const QStringList& names) {
  fileBanner->Tell(tr("%1 was not saved, because another program has changed it too.", nullptr,
                      static_cast<int>(names.size()))
                       .arg(names.join(", ")));
}

}  // namespace tarn::host
