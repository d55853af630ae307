#pragma once

#include <QCoreApplication>
#include <QWidget>

class QStackedWidget;

namespace tarn::host {

class Banner;
class EditorTabs;
class FindBar;
class WelcomePage;

// The central part of the window: the editors with a find bar below them, or the welcome page while
// no file is open.
class EditorArea : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(EditorArea)

 public:
  // Takes ownership of both widgets.
  EditorArea(EditorTabs& editorTabs, WelcomePage& welcomePage, QWidget* parent);

  FindBar& Finder() { return *findBar_; }

  // Banner above the editors, for messages about the whole project.
  Banner& ProjectBanner() { return *projectBanner_; }
  // Banner for damage of the project.
  Banner& DamageBanner() { return *damageBanner_; }
  // Banner for operations that were refused because the project is not trusted.
  Banner& TrustBanner() { return *trustBanner_; }
  // Banner for a journal that can't be written.
  Banner& JournalBanner() { return *journalBanner_; }
  // Banner for the result of a save that merged other programs' changes.
  Banner& SaveBanner() { return *saveBanner_; }

 private:
  // Shows the banner for an editor that is in conflict with its file.
  void ShowConflict();
  void ShowRefused(const QStringList& names);

  EditorTabs& editors_;
  Banner* projectBanner_ = nullptr;
  Banner* damageBanner_ = nullptr;
  Banner* trustBanner_ = nullptr;
  Banner* journalBanner_ = nullptr;
  Banner* saveBanner_ = nullptr;
  Banner* fileBanner_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  FindBar* findBar_ = nullptr;
};

}  // namespace tarn::host
