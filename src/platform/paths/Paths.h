#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Operations on path strings; none of them accesses the disk.
//
// In memory a path uses the separator of this platform ("/"). On disk, in project and application
// files, relative paths use backslashes so that a file has the same bytes on every platform. A path
// that starts with a drive letter comes from another system: it is treated as absolute and keeps
// its backslashes. The same holds for a network path, which starts with two separators and the name
// of a server: server and share form its root, and every operation preserves the parts that it need
// not resolve. All operations accept both separators.
namespace tarn {

inline constexpr char kSeparator = '/';

bool IsSeparator(char c);
// Starts with a letter and a colon.
bool HasDrive(std::string_view path);
// Starts with the same separator twice and a name: "\\server\share\x" or "//server/share/x".
bool IsNetworkPath(std::string_view path);
// Starts with neither a separator nor a drive. An empty path is relative.
bool IsRelativePath(std::string_view path);

// Returns a name in a source, or of a tool, as a path: with "./" before a letter and a colon that
// no separator follows, since in such a name they aren't a drive.
std::string PathOfName(std::string_view name);

// Contains the separator of this platform: the string is a path rather than a bare name, such as
// that of a program on PATH.
bool HasNativeSeparator(std::string_view path);

// Resolves "." and ".." without leaving the root, collapses repeated separators and normalises them
// to the one that the path's root requires: a backslash after a drive, the path's first separator
// for a network path, otherwise that of this platform.
std::string CanonicalPath(std::string_view path);

// Offset of the first component "..", or npos.
std::size_t FindParentStep(std::string_view path);

// Relative path from `folder` to `path`, both absolute, in the form stored in files: "." and a
// backslash before a path inside the folder, ".." and a backslash for each level up. The common
// part is compared case-insensitively only after a drive or on a network share. Returns an empty
// string if there is no relative path (different drive or share).
std::string RelativeDiskPath(std::string_view folder, std::string_view path);

// The path without its last component and without a trailing separator, except for a root. Empty if
// the path has no folder part.
std::string FolderOf(std::string_view path);
// The path without the extension of its last component.
std::string WithoutExtension(std::string_view path);
// The path with the extension of its last component replaced; `extension` includes the dot.
std::string WithExtension(std::string_view path, std::string_view extension);
inline constexpr std::string_view kStampExtension = ".stamp";
// The file that a tool with this output makes for others: the one for which the output is only a
// stamp (`version.h.stamp`), else the output itself.
std::string WithoutStamp(std::string_view output);
// Joins `folder` and `name`, with a separator between them unless `folder` is empty or ends in one.
std::string JoinPath(std::string_view folder, std::string_view name);
// The folder with a trailing separator; an empty folder stays empty.
std::string AddSeparator(std::string_view folder);

// Parts of a path; joined in order they yield the path again.
struct PathParts {
  std::string drive;      // "C:" or empty
  std::string folder;     // with a trailing separator, or empty
  std::string title;      // the last component without its extension
  std::string extension;  // with its dot, or empty
};
PathParts SplitPath(std::string_view path);

// Title and extension of the last component.
std::string FileNameOf(std::string_view path);
std::string ExtensionOf(std::string_view path);

// Converts separators to those of this platform; a network path and a path with a drive keep
// theirs.
std::string ToNativeSeparators(std::string_view path);

}  // namespace tarn
