#pragma once

#include <set>
#include <string>
#include <vector>

#include "hosts/core/import/ImportedProject.h"

namespace tarn::host {

// A board of an installed Arduino core, from its boards.txt.
struct CoreBoard {
  std::string name;      // "Arduino Uno"
  std::string device;    // by the compiler's name
  std::string clock;     // in Hz
  std::string symbol;    // "AVR_UNO", the ending of a macro
  std::string core;      // folder with the core's sources
  std::string variant;   // folder with the header of the pins
  std::string usb;       // arguments for boards with a USB port of their own
  std::string protocol;  // of the upload
  std::string speed;
};

// The core for AVR boards that a Debian package installs.
class ArduinoCore {
 public:
  explicit ArduinoCore(FileSystem& fileSystem);

  const std::string& GetFolder() const { return folder_; }
  // Fails if the core is not installed or the board is unknown. The error lists the boards.
  Result<CoreBoard> FindBoard(const std::string& id) const;

  // Options of an application for this board. It links the library that AddCore() adds.
  ImportedOptions ApplicationOptions(const CoreBoard& board, const ImportContext& context) const;
  // The core as an application of its own, beside `other`, with one configuration for each board.
  ImportedApplication CoreApplication(const ImportedApplication& other,
                                      const std::vector<std::pair<std::string, CoreBoard>>& boards,
                                      const ImportContext& context) const;

 private:
  FileSystem& files_;
  std::string folder_;
};

// Finds the libraries whose headers sources include, and adds them to an application.
class LibraryFinder {
 public:
  // `roots` are folders of libraries; an earlier one takes precedence.
  LibraryFinder(const ImportContext& context, const std::vector<std::string>& roots);

  // Adds the libraries that the includes of these files name, and those that these libraries use.
  void AddUsed(const std::vector<std::string>& sources);
  const std::vector<std::string>& GetIncludeFolders() const { return includes_; }
  // Files of the libraries, in groups "Libraries", NAME.
  const std::vector<ImportedFile>& GetFiles() const { return files_; }

 private:
  struct Library {
    std::string name, folder, sources;
    bool isFlat = false;  // without a folder src
  };
  void AddLibrary(const Library& library, std::vector<std::string>& open);

  const ImportContext& context_;
  std::vector<Library> libraries_;
  std::set<std::string> names_;  // of the libraries in use
  std::vector<std::string> includes_;
  std::vector<ImportedFile> files_;
};

// Returns the files below a folder, sorted, without hidden ones. `depth` limits the folders.
std::vector<std::string> ListSources(FileSystem& files, const std::string& folder, int depth = 32);
// Returns true for the types C, Cpp and Assembler.
bool IsSourceType(const std::string& type);

}  // namespace tarn::host
