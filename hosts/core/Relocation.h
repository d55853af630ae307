#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "hosts/core/FileIndex.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileTexts.h"

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

// A path in a project's files whose target file or folder has moved.
struct MovedPath {
  enum class Kind : std::uint8_t { Application, Source, Option };

  Kind kind = Kind::Source;
  std::string file;                     // project or application file that contains it; absolute
  std::string attribute;                // that stores it
  std::string written;                  // value of the attribute as stored
  std::string base;                     // folder that a relative value is resolved in
  std::string oldPath;                  // absolute
  std::string newPath;                  // absolute; empty if not found or ambiguous
  std::vector<std::string> candidates;  // absolute, most similar path first
  std::string rewritten;                // of an option: its whole value with the new path
};

// Identifier of a kind in machine-readable output: "application", "source", "option".
const char* NameOf(MovedPath::Kind kind);

// Returns `path` with its prefix `from` replaced by `to`, if it is that folder or below it;
// otherwise `path` unchanged. All paths are absolute.
std::string MapPath(const std::string& path, const std::string& from, const std::string& to);

// Finds application files, sources and folders in options that have moved, and corrects the paths
// in the project's files. Works on the text of the files only, because a project whose application
// is missing can't be opened, and changes nothing else in them.
//
// A missing file is searched for by name. Candidates are ranked by the number of trailing path
// components that agree with the old path; a tie is resolved in favour of the folder to which other
// files of the same old folder have moved. Any remaining ambiguity is left to the user.
//
// Calling sequence: Search or Move, GetFound, Choose for open paths and Search again, MakeTexts.
class Relocation {
 public:
  // `project` is the absolute path of the project file.
  Relocation(FileSystem& fileSystem, std::string project);
  Relocation(const Relocation&) = delete;
  Relocation& operator=(const Relocation&) = delete;
  ~Relocation();

  // Uses these texts instead of the files on disk, e.g. for files with unsaved changes.
  void SetTexts(std::vector<FileText> texts) { given_ = std::move(texts); }
  // Sets the user's decision: the target of `oldPath` is now at `newPath`, or does not exist if
  // that is empty. Takes effect with the next search.
  void Choose(const std::string& oldPath, const std::string& newPath);

  // Searches below a folder for everything that is missing. Fails if the folder or a file of the
  // project can't be read, if one of them is damaged, or if it is unknown whether a source is
  // missing; `place` of the error is the path.
  Status Search(const std::string& below);
  // Search() in steps, for a host with a window: ContinueSearch until it returns false, then
  // FinishSearch, and FinishSearch again after each Choose.
  void BeginSearch(const std::string& below);
  bool ContinueSearch(std::chrono::milliseconds time) { return index_.Continue(time); }
  Status FinishSearch();
  // Maps everything at or below `from` to `to`. Paths whose target does not exist there have no
  // newPath.
  Status Move(const std::string& from, const std::string& to);
  // Checks the result of Move. Fails, with the conflicting path as `place`, if a file would become
  // a folder or vice versa, a file would get a different node type, or two nodes would become the
  // same file. Node types are read from the configuration file.
  Status CheckMove(const std::string& configurationFile);

  // Returns true if the project can't be opened because the file of an application is missing.
  bool MissesApplication();

  // The folders that a search has skipped because they can't be read.
  const std::vector<Error>& GetUnread() const { return index_.GetUnread(); }

  // The result of the last search, in project order.
  const std::vector<MovedPath>& GetFound() const { return found_; }
  // Returns true if no path is left unresolved.
  bool IsComplete() const;

  // Returns the changed files of the project, with every path that has a newPath corrected; files
  // that stay the same are omitted. Fails if a path is written in a form that can't be replaced.
  Result<std::vector<FileText>> MakeTexts();
  // Returns all files passed to SetTexts, with those returned by MakeTexts replaced.
  std::vector<FileText> Complete(const std::vector<FileText>& changed) const;

 private:
  struct Document;

  Status Run();
  Result<std::string> ReadText(const std::string& oldPath, const std::string& path);
  Status Load(const std::string& oldPath, const std::string& path, Document& document);
  Status CheckApplication(const CXmlNode& reference);
  void CheckSource(const std::string& written, const Document& document);
  void CheckOption(const std::string& written, const Document& document);
  std::string Resolve(const std::string& folder, const std::string& written) const;
  bool IsFile(const std::string& path);
  void RecordUsed(const std::string& document, const std::string& path);
  bool IsUsed(const std::string& document, const std::string& path) const;
  void Locate(MovedPath& moved);
  bool IsOtherNameOf(const std::string& path, const std::vector<std::string>& list);
  void AddCandidates(MovedPath& moved);
  void Add(MovedPath moved, const std::string& base);
  void SettleRivals();
  void SettleByNeighbours();
  void LearnFolders();
  std::vector<std::string> Follow(const std::string& path);

  FileSystem& files_;
  FileIndex index_;
  std::string project_;
  std::string folder_;  // of the project
  std::vector<FileText> given_;
  std::map<std::string, std::string> chosen_;  // old path -> new path
  std::string from_;                           // arguments of Move; empty after Search
  std::string to_;
  Status unknown_;  // reason why a path of the project, the first one, can't be examined
  std::vector<std::unique_ptr<Document>> documents_;
  std::set<std::string> used_;  // document and name of each file found at its old path
  std::vector<MovedPath> found_;
  std::vector<std::pair<std::string, std::string>> moves_;  // moved folders, old and new
};

}  // namespace tarn::host
