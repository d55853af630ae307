#include "hosts/desktop/EditorArea.h"

#include <QStackedWidget>
#include <QVBoxLayout>

#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/FindBar.h"
#include "hosts/desktop/WelcomePage.h"

namespace tarn::host {

EditorArea::EditorArea(EditorTabs& editorTabs, WelcomePage& welcomePage, QWidget* parent)
    : QWidget(parent), pages(new QStackedWidget(this)), findBar(new FindBar(editorTabs, this)) {
  pages->addWidget(&welcomePage);
  pages->addWidget(&editorTabs);
  connect(&editorTabs, &QTabWidget::currentChanged, pages,
          [this](int index) { pages->setCurrentIndex(index < 0 ? 0 : 1); });
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(pages, 1);
  column->addWidget(findBar);
}

}  // namespace tarn::host
