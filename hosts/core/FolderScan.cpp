#include "hosts/core/FolderScan.h"

#include <algorithm>

#include "hosts/core/PathPattern.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kMostFound = 200000;
constexpr int kDeepestFolder = 64;

// A line of a file .gitignore.
struct IgnoreRule {
  std::string folder;  // of the file
  std::string pattern;
  bool isFolder = false;   // only folders
  bool isNegated = false;  // takes back an earlier rule
};

class FolderScanner {
 public:
  FolderScanner(FileSystem& files, const std::string& top, const FolderScanOptions& options,
                const std::vector<std::string>& skipped)
      : files_(files), top_(top), options_(options), skipped_(skipped) {}

  Result<std::vector<std::string>> Run();

 private:
  void ReadRules(const std::string& folder);
  Status Scan(const std::string& folder, int depth);
  bool IsIgnored(const std::string& path, bool isFolder) const;
  bool Fits(const std::string& path, const std::vector<std::string>& patterns) const {
    const std::string inside = path.substr(AddSeparator(top_).size());
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const std::string& each) { return FitsPathPattern(inside, each); });
  }

  FileSystem& files_;
  const std::string& top_;
  const FolderScanOptions& options_;
  const std::vector<std::string>& skipped_;
  std::vector<IgnoreRule> rules_;
  std::vector<std::string> found_;
};

void FolderScanner::ReadRules(const std::string& folder) {
  const auto text = files_.ReadWholeFile(JoinPath(folder, ".gitignore"));
  for (const std::string& line : text ? SplitLines(*text) : std::vector<std::string>()) {
    if (line[0] == '#') continue;
    IgnoreRule rule{folder, line};
    rule.isNegated = line[0] == '!';
    if (rule.isNegated || line.starts_with("\\")) rule.pattern.erase(0, 1);
    rule.isFolder = rule.pattern.ends_with('/');
    rules_.push_back(std::move(rule));
  }
}

// The last rule that matches decides.
bool FolderScanner::IsIgnored(const std::string& path, bool isFolder) const {
  for (auto each = rules_.rbegin(); each != rules_.rend(); ++each) {
    const std::string base = AddSeparator(each->folder);
    if ((each->isFolder && !isFolder) || !path.starts_with(base)) continue;
    if (FitsPathPattern(path.substr(base.size()), each->pattern)) return !each->isNegated;
  }
  return false;
}

Status FolderScanner::Scan(const std::string& folder, int depth) {
  const auto entries = files_.ListFolder(folder);
  if (!entries) return Error{entries.GetError().code, entries.GetError().text, folder};
  const std::size_t known = rules_.size();
  ReadRules(folder);
  std::vector<std::string> folders;
  for (const FolderEntry& each : *entries) {
    const std::string path = JoinPath(folder, each.name);
    if (each.name.starts_with('.') || IsIgnored(path, each.isFolder)) continue;
    if (Fits(path, options_.exclude)) continue;
    if (each.isFolder) {
      const bool isSkipped = std::find(skipped_.begin(), skipped_.end(), path) != skipped_.end();
      if (!isSkipped && !files_.ExamineLink(path)) folders.push_back(path);
    } else if (options_.match.empty() ? options_.isWanted(path) : Fits(path, options_.match)) {
      found_.push_back(path);
    }
  }
  for (const std::string& each : folders) {
    if (depth == kDeepestFolder || found_.size() > kMostFound) {
      return Error{ErrorCode::Unsupported, "it contains too many files or folders", top_};
    }
    if (Status done = Scan(each, depth + 1); !done) return done;
  }
  rules_.resize(known);
  return {};
}

Result<std::vector<std::string>> FolderScanner::Run() {
  // Rules of the outer folders of a repository apply as well.
  std::vector<std::string> outer;
  for (std::string folder = top_; !files_.Exists(JoinPath(folder, ".git"));) {
    folder = FolderOf(folder);
    outer.insert(outer.begin(), folder);
    if (folder.empty() || FolderOf(folder) == folder) {
      outer.clear();  // not in a repository
      break;
    }
  }
  for (const std::string& each : outer) ReadRules(each);
  if (const Status done = Scan(top_, 0); !done) return done.GetError();
  return std::move(found_);
}

}  // namespace

Result<std::vector<std::string>> ScanFolder(FileSystem& files, const std::string& folder,
                                            const FolderScanOptions& options,
                                            const std::vector<std::string>& skipped) {
  return FolderScanner(files, folder, options, skipped).Run();
}

}  // namespace tarn::host
