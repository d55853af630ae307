#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/ProjectTree.h"
#include "platform/files/FileSystem.h"
#include "sizes/ProgramSizes.h"

namespace tarn::host {

// Sizes of a program at some time, by name.
struct SizeSnapshot {
  std::map<std::string, std::uint64_t> regions, sections, files, symbols;
};

SizeSnapshot TakeSnapshot(const sizes::ProgramSizes& sizes);
// Key of a symbol in a snapshot: several files may have one of the same name.
std::string SymbolKey(const sizes::SymbolSize& symbol);

// The sizes of the last builds of a project's programs and named baselines, in a file next to the
// project. A file that is damaged counts as empty. Loading and saving are linear in the file; of
// each program the 20,000 largest symbols are stored. The caller holds the build lock when it
// changes and saves.
class SizeHistory {
 public:
  SizeHistory(FileSystem& fileSystem, const std::string& projectPath);
  SizeHistory(const SizeHistory&) = delete;
  SizeHistory& operator=(const SizeHistory&) = delete;
  ~SizeHistory();

  void Load();
  Status Save() const;

  // Records the result of a build: the former last one becomes the one before.
  void RecordBuild(const ApplicationEntry& application, const FileStatus& output,
                   const SizeSnapshot& snapshot);
  // Returns the sizes to compare with: those of the build before the one that made this output.
  // Returns nullopt if there is none.
  std::optional<SizeSnapshot> FindEarlier(const ApplicationEntry& application,
                                          const FileStatus& output) const;
  void SaveBaseline(const ApplicationEntry& application, const std::string& name,
                    const SizeSnapshot& snapshot);
  std::optional<SizeSnapshot> FindBaseline(const ApplicationEntry& application,
                                           const std::string& name) const;
  std::vector<std::string> ListBaselines(const ApplicationEntry& application) const;
  const std::string& GetPath() const { return path_; }

 private:
  struct Document;

  std::string KeyOf(const ApplicationEntry& application) const;

  FileSystem& files_;
  std::string path_;
  std::string folder_;
  std::unique_ptr<Document> document_;
};

}  // namespace tarn::host
