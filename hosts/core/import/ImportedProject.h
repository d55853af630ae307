#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "hosts/core/StagingFolder.h"
#include "platform/Result.h"
#include "platform/files/FileSystem.h"

// A project of another build system, converted into the elements of this one. The converters read
// files only: none of them runs anything that the foreign project contains.
namespace tarn::host {

// Raw values by "Set.Section.Property".
using ImportedOptions = std::map<std::string, std::string>;

struct ImportedFile {
  std::string path;                 // absolute
  std::vector<std::string> groups;  // outermost first
  std::string type;                 // node type; empty: the one of the extension
  // By configuration. Those under an empty name apply to all configurations.
  std::map<std::string, ImportedOptions> options = {};
};

struct ImportedConfiguration {
  std::string name;
  ImportedOptions options;
};

struct ImportedApplication {
  std::string label;
  // At least one. If none is called "Standard", that configuration gets the options of the first.
  std::vector<ImportedConfiguration> configurations;
  std::vector<ImportedFile> files;
};

struct ImportedProject {
  std::string folder;                             // absolute
  std::string name;                               // of the project file, without extension
  std::vector<ImportedApplication> applications;  // the first one is active
  std::vector<NewFile> sources;                   // files that the conversion creates
  std::vector<std::string> remarks;               // what was not carried over
};

// What a converter needs of the installation.
struct ImportContext {
  FileSystem& files;
  // Returns true if a definition has the option "Set.Section.Property" and the value is valid.
  std::function<bool(const std::string& key, const std::string& value)> accepts;
  // Returns the node type of a file by its extension.
  std::function<std::string(const std::string& path)> typeOf;
  // Returns the options of the catalogue's target or board with this name, which may be written
  // with other separators and in other letter case. Empty if there is none.
  std::function<ImportedOptions(const std::string& name)> target;
  // Returns the rest of a remark about a target that isn't in the catalogue: "NAME is not in ...".
  std::function<std::string(const std::string& name)> describeUnknown;
  // Returns the installation's start-up files for a program with these options. Empty if its
  // toolchain needs none.
  std::function<std::vector<std::string>(const ImportedOptions& options)> startUp;
};

// The largest file that a converter reads, in bytes.
inline constexpr std::size_t kLargestImport = std::size_t{64} << 20;

// Reads a file of at most `limit` bytes.
Result<std::string> ReadForImport(FileSystem& files, const std::string& path,
                                  std::size_t limit = kLargestImport);

// Returns the files of the project: sources first, then applications, the project file last.
std::vector<NewFile> WriteImportedProject(const ImportedProject& project,
                                          const ImportContext& context);

// Returns the path as it is stored in options: relative to the folder if it is inside, with plain
// slashes; "." for the folder itself.
std::string PathInOption(const std::string& folder, const std::string& path);
// Returns the names of the folders between `folder` and the file; empty if the file is elsewhere.
std::vector<std::string> GroupsBelow(const std::string& folder, const std::string& path);
// Returns the folder that contains all of these absolute paths.
std::string CommonFolder(const std::vector<std::string>& paths);
// Returns the text with dollar signs doubled, so that it contains no macro.
std::string LiteralValue(const std::string& text);
// Joins list entries with semicolons, without repetitions.
std::string ListValue(const std::vector<std::string>& entries);
// Joins the arguments like a command line, as options of the type "words" are written.
std::string WordsValue(const std::vector<std::string>& words);
// Splits a command line like a POSIX shell, without expanding anything. An unclosed quote ends at
// the end of the text.
std::vector<std::string> SplitShellWords(const std::string& line);
// Returns a name that can be used for files and labels: other characters become "_".
std::string SafeName(const std::string& name, const std::string& fallback);
// Returns the name, with a number after it if it is among `taken`, and adds it there. Upper and
// lower case don't matter.
std::string UniqueName(const std::string& name, std::set<std::string>& taken);

}  // namespace tarn::host
