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
#include "xml/XmlNode.h"

namespace tarn::host {

// A path in a project's files that leads to a file or folder which has moved.
struct MovedPath {
  enum class Kind : std::uint8_t { Application, Source, Option };

  Kind kind = Kind::Source;
  std::string file;                     // project or application file that has it; absolute
  std::string attribute;                // in which it is stored there
  std::string written;                  // value of the attribute as stored
  std::string base;                     // folder that a relative value starts in
  std::string oldPath;                  // absolute
  std::string newPath;                  // absolute; empty if nothing was found, or several files
  std::vector<std::string> candidates;  // absolute, the most similar paths first
  std::string rewritten;                // of an option: its whole value with the new path
};

// Name of a kind in documents for programs: "application", "source", "option".
const char* NameOf(MovedPath::Kind kind);

// `path` with the folder `from` in front replaced by `to`, if it is there or below; all absolute.
std::string MapPath(const std::string& path, const std::string& from, const std::string& to);

// Finds application files, sources and folders in options that have moved, and corrects the paths
// in the project's files. It works on the text of the files alone, because a project whose
// application is missing can't be opened, and changes nothing else in them.
//
// A file that is missing is looked for by its name. Of several the one whose folders agree with the
// old path most, counted from the name upwards, is taken; if several agree equally, the one in the
// folder where its former neighbours were found. What is left open then is for the user.
class Relocation {
 public:
  // `project` is the path of the project file, absolute.
  Relocation(FileSystem& fileSystem, std::string project);
  Relocation(const Relocation&) = delete;
  Relocation& operator=(const Relocation&) = delete;
  ~Relocation();

  // Takes these instead of what is on the disk, such as files with changes that are not saved.
  void SetTexts(std::vector<FileText> texts) { given_ = std::move(texts); }
  // Decides for the user: what is missing at the first path is at the second, or nowhere for an
  // empty one. Valid from the next search on.
  void Choose(const std::string& oldPath, const std::string& newPath);

  // Searches below a folder for all that is missing. Fails if the folder or a file of the project
  // can't be read, or if one of them is damaged; `place` is the path then.
  Status Search(const std::string& below);
  // The same in pieces, for a host that has a window: Continue until it returns false, then Finish,
  // and Finish again after each Choose.
  void BeginSearch(const std::string& below);
  bool ContinueSearch(std::chrono::milliseconds time) { return index_.Continue(time); }
  Status FinishSearch();
  // Has everything at or below `from` at or below `to`. What isn't there has no newPath.
  Status Move(const std::string& from, const std::string& to);
  // After Move: fails, with the path that is in the way as `place`, if a file would become a folder
  // or a folder a file, a file one of another node type, or two nodes one file. The types of nodes
  // are those of a configuration file.
  Status CheckMove(const std::string& configurationFile);

  // Returns whether the project can't be opened because the file of an application isn't there.
  bool MissesApplication();

  // The folders that a search has passed over because they can't be read.
  const std::vector<Error>& GetUnread() const { return index_.GetUnread(); }

  // What the last search found, in the order of the project.
  const std::vector<MovedPath>& GetFound() const { return found_; }
  // Returns whether nothing is left open.
  bool IsComplete() const;

  // The files of the project with all that has a newPath corrected; those that stay the same are
  // left out. Fails if a path isn't written in a way that can be replaced.
  Result<std::vector<FileText>> MakeTexts();
  // All files that SetTexts received, with those that MakeTexts returned in their places.
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
  void NoteUsed(const std::string& document, const std::string& path);
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
  std::string from_;                           // of Move; empty for Search
  std::string to_;
  std::vector<std::unique_ptr<Document>> documents_;
  std::set<std::string> used_;  // document and name of each file that is where the project has it
  std::vector<MovedPath> found_;
  std::vector<std::pair<std::string, std::string>> moves_;  // of folders, old and new
};

}  // namespace tarn::host
