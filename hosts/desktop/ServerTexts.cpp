#include "hosts/desktop/ServerTexts.h"

#include <QtGlobal>
#include <algorithm>
#include <iterator>

namespace tarn::host {

namespace {

// The menus of the installation, the titles of its actions, and what the server's windows and the
// wizard show.
constexpr const char* kTexts[] = {
    QT_TRANSLATE_NOOP("Server", "Project"),
    QT_TRANSLATE_NOOP("Server", "Add files"),
    QT_TRANSLATE_NOOP("Server", "New folder"),
    QT_TRANSLATE_NOOP("Server", "Build all"),
    QT_TRANSLATE_NOOP("Server", "Build the active application"),
    QT_TRANSLATE_NOOP("Server", "Rebuild all"),
    QT_TRANSLATE_NOOP("Server", "Stop"),
    QT_TRANSLATE_NOOP("Server", "Options"),
    QT_TRANSLATE_NOOP("Server", "&Project"),
    QT_TRANSLATE_NOOP("Server", "Add files..."),
    QT_TRANSLATE_NOOP("Server", "Add generated file..."),
    QT_TRANSLATE_NOOP("Server", "Array of the file's bytes"),
    QT_TRANSLATE_NOOP("Server", "Template for the version of the sources"),
    QT_TRANSLATE_NOOP("Server", "Commands of the project"),
    QT_TRANSLATE_NOOP("Server", "New application..."),
    QT_TRANSLATE_NOOP("Server", "Copy"),
    QT_TRANSLATE_NOOP("Server", "Paste"),
    QT_TRANSLATE_NOOP("Server", "Remove"),
    QT_TRANSLATE_NOOP("Server", "Set as active application"),
    QT_TRANSLATE_NOOP("Server", "Configuration"),
    QT_TRANSLATE_NOOP("Server", "Select"),
    QT_TRANSLATE_NOOP("Server", "Add"),
    QT_TRANSLATE_NOOP("Server", "Options..."),
    QT_TRANSLATE_NOOP("Server", "Options of the active application..."),
    QT_TRANSLATE_NOOP("Server", "Reset to defaults"),
    QT_TRANSLATE_NOOP("Server", "B&uild"),
    QT_TRANSLATE_NOOP("Server", "Clean all"),
    QT_TRANSLATE_NOOP("Server", "Build the selection"),
    QT_TRANSLATE_NOOP("Server", "Rebuild the selection"),
    QT_TRANSLATE_NOOP("Server", "Clean the selection"),
    QT_TRANSLATE_NOOP("Server", "Translate the file"),
    QT_TRANSLATE_NOOP("Server", "Listing of the selection"),
    QT_TRANSLATE_NOOP("Server", "Listing of the active application"),
    QT_TRANSLATE_NOOP("Server", "Add applications..."),
    QT_TRANSLATE_NOOP("Server", "Build"),
    QT_TRANSLATE_NOOP("Server", "Rebuild"),
    QT_TRANSLATE_NOOP("Server", "Clean"),
    QT_TRANSLATE_NOOP("Server", "Run tool"),
    QT_TRANSLATE_NOOP("Server", "Listing"),
    QT_TRANSLATE_NOOP("Server", "Open"),
    QT_TRANSLATE_NOOP("Server", "Translate"),
    QT_TRANSLATE_NOOP("Server", "Clear the log"),
    QT_TRANSLATE_NOOP("Server", "Run in simulator"),
    QT_TRANSLATE_NOOP("Server", "Upload"),
    QT_TRANSLATE_NOOP("Server", "Disassemble"),
    QT_TRANSLATE_NOOP("Server", "List symbols"),
    QT_TRANSLATE_NOOP("Server", "Write a copy without debug information"),
    QT_TRANSLATE_NOOP("Server", "Put the object files into an archive"),
    QT_TRANSLATE_NOOP("Server", "Globals"),
    QT_TRANSLATE_NOOP("Server", "Build Report"),
    QT_TRANSLATE_NOOP("Server", "Build Log"),
    QT_TRANSLATE_NOOP("Server", "Properties"),
    QT_TRANSLATE_NOOP("Server", "Info"),
    QT_TRANSLATE_NOOP("Server", "Show"),
    QT_TRANSLATE_NOOP("Server", "Build information"),
    QT_TRANSLATE_NOOP("Server", "Dependencies"),
    QT_TRANSLATE_NOOP("Server", "Description"),
    QT_TRANSLATE_NOOP("Server", "File"),
    QT_TRANSLATE_NOOP("Server", "Line"),
    QT_TRANSLATE_NOOP("Server", "Name"),
    QT_TRANSLATE_NOOP("Server", "Definition"),
    QT_TRANSLATE_NOOP("Server", "Columns"),
    QT_TRANSLATE_NOOP("Server", "Arrange by"),
    QT_TRANSLATE_NOOP("Server", "Sort &Ascending"),
    QT_TRANSLATE_NOOP("Server", "Sort &Descending"),
    QT_TRANSLATE_NOOP("Server", "Group by Field"),
    QT_TRANSLATE_NOOP("Server", "Group by box"),
    QT_TRANSLATE_NOOP("Server", "Remove Column"),
    QT_TRANSLATE_NOOP("Server", "Best Fit"),
    QT_TRANSLATE_NOOP("Server", "Alignment"),
    QT_TRANSLATE_NOOP("Server", "Align Left"),
    QT_TRANSLATE_NOOP("Server", "Align Right"),
    QT_TRANSLATE_NOOP("Server", "Align Center"),
    QT_TRANSLATE_NOOP("Server", "Create a new project"),
    QT_TRANSLATE_NOOP("Server", "Add an application to the open project"),
    QT_TRANSLATE_NOOP(
        "Server", "Choose the microcontroller, the kind of application, its name and its folder."),
    QT_TRANSLATE_NOOP("Server", "Type:"),
    QT_TRANSLATE_NOOP("Server", "Processor:"),
    QT_TRANSLATE_NOOP("Server", "Description:"),
    QT_TRANSLATE_NOOP("Server", "DataSheet"),
    QT_TRANSLATE_NOOP("Server", "Name:"),
    QT_TRANSLATE_NOOP("Server", "Location:"),
    QT_TRANSLATE_NOOP("Server", "Launch Cobbler to generate source files"),
    QT_TRANSLATE_NOOP("Server", "Insert to the current project"),
    QT_TRANSLATE_NOOP("Server", "Application"),
    QT_TRANSLATE_NOOP("Server", "Debug session"),
    QT_TRANSLATE_NOOP("Server", "Live debug session"),
    QT_TRANSLATE_NOOP("Server", "The application needs a name."),
    QT_TRANSLATE_NOOP(
        "Server",
        "A name can't contain a slash, a backslash or a control character, or start with a drive."),
    QT_TRANSLATE_NOOP("Server", "The name is too long."),
    QT_TRANSLATE_NOOP("Server", "The application needs a folder."),
    QT_TRANSLATE_NOOP("Server", "Enter the full path of the folder."),
};

}  // namespace

bool IsServerText(std::string_view text) {
  return std::ranges::find(kTexts, text) != std::end(kTexts);
}

}  // namespace tarn::host
