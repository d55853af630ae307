#pragma once

#include <QCoreApplication>
#include <QWidget>

class QStackedWidget;

namespace tarn::host {

class Banner;
class EditorTabs;
class FindBar;
class WelcomePage;

// The middle of the window: the editors with a bar that finds below them, and while no file is open
// the page of ways to one.
class EditorArea : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(EditorArea)

 public:
  // Takes both as its own.
  EditorArea(EditorTabs& editorTabs, WelcomePage& welcomePage, QWidget* parent);

  FindBar& Finder() { return *findBar; }

  // Above everything else, for what concerns the whole project.
  Banner& ProjectBanner() { return *projectBanner; }
  // For what was lost of the project when it was read.
  Banner& DamageBanner() { return *damageBanner; }
  // For what a build was refused since the project is not trusted.
  Banner& TrustBanner() { return *trustBanner; }
  // For a journal that can't be written.
  Banner& JournalBanner() { return *journalBanner; }
  // For what a save made of other programs' changes.
  Banner& SaveBanner() { return *saveBanner; }

 private:
  // The banner over an editor that is in conflict with its file.
  void ShowConflict();
  void ShowRefused(const QStringList& names);

  EditorTabs& editors;
  Banner* projectBanner = nullptr;
  Banner* damageBanner = nullptr;
  Banner* trustBanner = nullptr;
  Banner* journalBanner = nullptr;
  Banner* saveBanner = nullptr;
  Banner* fileBanner = nullptr;
  QStackedWidget* pages = nullptr;
  FindBar* findBar = nullptr;
};

}  // namespace tarn::host
