#include "platform/paths/Paths.h"

#include <algorithm>
#include <vector>

#include "platform/text/Text.h"

namespace tarn {

namespace {

char SeparatorOf(std::string_view path) {
  if (IsNetworkPath(path)) return path[0];
  return HasDrive(path) ? '\\' : kSeparator;
}

std::size_t FindSeparator(std::string_view path, std::size_t from) {
  while (from < path.size() && !IsSeparator(path[from])) ++from;
  return from;
}

// Length of a drive, a leading separator, both or neither.
std::size_t PlainRootLength(std::string_view path) {
  const std::size_t drive = HasDrive(path) ? 2 : 0;
  return path.size() > drive && IsSeparator(path[drive]) ? drive + 1 : drive;
}

// Length of the root, which ".." cannot leave: a drive, a leading separator, both, neither, or the
// server and share of a network path.
std::size_t RootLength(std::string_view path) {
  if (IsNetworkPath(path)) {
    const std::size_t server = FindSeparator(path, 2);
    const std::size_t share = FindSeparator(path, std::min(server + 1, path.size()));
    return std::min(share + 1, path.size());
  }
  return PlainRootLength(path);
}

std::size_t LastComponent(std::string_view path) {
  std::size_t start = path.size();
  while (start > 0 && !IsSeparator(path[start - 1])) --start;
  return HasDrive(path) ? std::max<std::size_t>(start, 2) : start;
}

// Offset of the extension; the length of the path if there is none.
std::size_t ExtensionStart(std::string_view path) {
  const std::size_t start = LastComponent(path);
  const std::string_view last = path.substr(start);
  if (last == "." || last == "..") return path.size();
  const std::size_t dot = last.rfind('.');
  return dot == last.npos ? path.size() : start + dot;
}

// A path with "." and ".." resolved.
struct Components {
  std::string root;  // "", "/", "C:", "C:\" or "\\server\share\"
  std::vector<std::string_view> names;
  bool endsInSeparator = false;
};

Components Resolve(std::string_view path) {
  Components result;
  const std::size_t root = RootLength(path);
  if (IsNetworkPath(path)) {
    result.root.assign(path, 0, root);
  } else {
    if (HasDrive(path)) result.root.assign(path, 0, 2);
    if (root == 1 || root == 3) result.root += SeparatorOf(path);
  }
  result.names.reserve(16);
  std::string_view rest = path.substr(root);
  while (!rest.empty()) {
    const auto end = static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), IsSeparator) -
                                              rest.begin());
    const std::string_view name = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (name.empty() || name == ".") continue;
    if (name != "..") {
      result.names.push_back(name);
    } else if (!result.names.empty() && result.names.back() != "..") {
      result.names.pop_back();
    } else if (root == 0) {
      result.names.push_back(name);  // a relative path may start above its base
    }
  }
  result.endsInSeparator = !path.empty() && IsSeparator(path.back()) && !result.names.empty();
  return result;
}

// Returns true for most of the absolute paths that CanonicalPath() leaves unchanged.
bool IsPlainCanonical(std::string_view path) {
  constexpr char kOtherSeparator = kSeparator == '/' ? '\\' : '/';
  if (path.size() < 2 || path[0] != kSeparator || path.find(kOtherSeparator) != path.npos) {
    return false;
  }
  for (std::size_t at = 0; at != path.npos; at = path.find(kSeparator, at + 1)) {
    const std::string_view rest = path.substr(at + 1);
    if (rest.starts_with(kSeparator)) return false;
    if (!rest.starts_with('.')) continue;
    const std::string_view name = rest.substr(0, rest.find(kSeparator));
    if (name == "." || name == "..") return false;
  }
  return true;
}

// Returns whether a relative path can connect the two roots. The trailing separator of a share is
// optional.
bool IsSameRoot(std::string_view a, std::string_view b) {
  const auto trimmed = [](std::string_view root) {
    const bool hasEnd = IsNetworkPath(root) && IsSeparator(root.back());
    return hasEnd ? root.substr(0, root.size() - 1) : root;
  };
  return EqualNoCase(trimmed(a), trimmed(b));
}

void AppendJoined(std::string& text, const std::vector<std::string_view>& names, std::size_t first,
                  char separator) {
  for (std::size_t i = first; i < names.size(); ++i) {
    if (i > first) text += separator;
    text += names[i];
  }
}

}  // namespace

bool IsSeparator(char c) {
  return c == '/' || c == '\\';
}

bool HasDrive(std::string_view path) {
  if (path.size() < 2 || path[1] != ':') return false;
  return (path[0] >= 'a' && path[0] <= 'z') || (path[0] >= 'A' && path[0] <= 'Z');
}

bool IsNetworkPath(std::string_view path) {
  if (path.size() < 3 || !IsSeparator(path[0]) || path[1] != path[0]) return false;
  const std::string_view server = path.substr(2, FindSeparator(path, 2) - 2);
  return !server.empty() && server != "." && server != "..";
}

bool IsRelativePath(std::string_view path) {
  return path.empty() || (!IsSeparator(path[0]) && !HasDrive(path));
}

std::string PathOfName(std::string_view name) {
  const bool isPlain = HasDrive(name) && (name.size() == 2 || !IsSeparator(name[2]));
  return isPlain ? std::string({'.', kSeparator}).append(name) : std::string(name);
}

bool HasNativeSeparator(std::string_view path) {
  return path.find(kSeparator) != path.npos;
}

std::string CanonicalPath(std::string_view path) {
  if (path.empty()) return {};
  if (IsPlainCanonical(path)) return std::string(path);
  const Components parts = Resolve(path);
  const char separator = SeparatorOf(path);
  std::string result = parts.root;
  if (IsNetworkPath(path) && !parts.names.empty()) result = AddSeparator(result);
  AppendJoined(result, parts.names, 0, separator);
  if (result.empty()) return ".";
  if (parts.endsInSeparator) result += separator;
  return result;
}

std::size_t FindParentStep(std::string_view path) {
  for (std::size_t at = path.find(".."); at != path.npos; at = path.find("..", at + 1)) {
    const bool startsName = at == RootLength(path) || (at > 0 && IsSeparator(path[at - 1]));
    if (startsName && (at + 2 == path.size() || IsSeparator(path[at + 2]))) return at;
  }
  return path.npos;
}

std::string RelativeDiskPath(std::string_view folder, std::string_view path) {
  if (IsRelativePath(folder) || IsRelativePath(path)) return {};
  const Components from = Resolve(folder);
  const Components to = Resolve(path);
  if (!IsSameRoot(from.root, to.root)) return {};
  const bool caseBlind = HasDrive(path) || IsNetworkPath(path);
  const auto same = [caseBlind](std::string_view a, std::string_view b) {
    return caseBlind ? EqualNoCase(a, b) : a == b;
  };
  std::size_t common = 0;
  while (common < from.names.size() && common < to.names.size() &&
         same(from.names[common], to.names[common])) {
    ++common;
  }
  std::string result = from.names.size() == common ? ".\\" : "";
  for (std::size_t i = common; i < from.names.size(); ++i) result += "..\\";
  if (common == to.names.size()) {
    result.pop_back();  // the folder itself or one above it
    return result;
  }
  AppendJoined(result, to.names, common, '\\');
  if (to.endsInSeparator) result += '\\';
  return result;
}

std::string FolderOf(std::string_view path) {
  const std::size_t root = PlainRootLength(path);
  std::size_t end = std::max(LastComponent(path), root);
  while (end > root && IsSeparator(path[end - 1])) --end;
  return std::string(path.substr(0, end));
}

std::string WithoutExtension(std::string_view path) {
  return std::string(path.substr(0, ExtensionStart(path)));
}

std::string WithExtension(std::string_view path, std::string_view extension) {
  return WithoutExtension(path).append(extension);
}

std::string WithoutStamp(std::string_view output) {
  return EqualNoCase(ExtensionOf(output), kStampExtension) ? WithoutExtension(output)
                                                           : std::string(output);
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  return AddSeparator(folder).append(name);
}

std::string AddSeparator(std::string_view folder) {
  std::string result(folder);
  if (!folder.empty() && !IsSeparator(folder.back())) result += SeparatorOf(folder);
  return result;
}

PathParts SplitPath(std::string_view path) {
  const std::size_t drive = HasDrive(path) ? 2 : 0;
  const std::size_t last = LastComponent(path);
  const std::size_t extension = ExtensionStart(path);
  return {std::string(path.substr(0, drive)), std::string(path.substr(drive, last - drive)),
          std::string(path.substr(last, extension - last)), std::string(path.substr(extension))};
}

std::string FileNameOf(std::string_view path) {
  return std::string(path.substr(LastComponent(path)));
}

std::string ExtensionOf(std::string_view path) {
  return std::string(path.substr(ExtensionStart(path)));
}

std::string ToNativeSeparators(std::string_view path) {
  std::string result(path);
  if (!HasDrive(path) && !IsNetworkPath(path))
    std::replace(result.begin(), result.end(), '\\', kSeparator);
  return result;
}

}  // namespace tarn
