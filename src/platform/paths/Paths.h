#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Operations on path texts; none of them looks at the disk.
//
// In memory a path has the separator of this machine ("/"). On disk, in project and application
// files, relative paths are written with backslashes so that a file is the same bytes everywhere.
// A text that starts with a drive letter is a path of another system: it counts as absolute and
// keeps its backslashes. So does a network path, which starts with two separators and the name of a
// server: server and share are its root, and no operation rewrites any part of it that it need not
// resolve. Every operation understands both separators.
namespace tarn {

inline constexpr char kSeparator = '/';

bool IsSeparator(char c);
// A letter and a colon at the start.
bool HasDrive(std::string_view path);
// One separator twice and a name at the start: "\\server\share\x" or "//server/share/x".
bool IsNetworkPath(std::string_view path);
// Neither a separator nor a drive at the start. An empty path is relative.
bool IsRelativePath(std::string_view path);

// Resolves "." and "..", stays at the root, collapses repeated separators and writes the
// separator that the path's root calls for: backslashes after a drive, the first one of a network
// path, this machine's otherwise.
std::string CanonicalPath(std::string_view path);

// Offset of the first component "..", or npos.
std::size_t FindParentStep(std::string_view path);

// The way from `folder` to `path`, both absolute, in the form that files hold: "." and a backslash
// in front of what lies in the folder, ".." and a backslash for each level up. The common part is
// compared without regard to case only after a drive or on a network share. Empty if there is none
// (another drive or share).
std::string RelativeDiskPath(std::string_view folder, std::string_view path);

// The path without its last component and without a separator at its end, except for a root.
// Empty when the path has no folder part.
std::string FolderOf(std::string_view path);
// The path without the extension of its last component.
std::string WithoutExtension(std::string_view path);
// The path with the extension of its last component replaced; `extension` has its dot.
std::string WithExtension(std::string_view path, std::string_view extension);
// `folder`, a separator unless one is there or the folder is empty, and `name`.
std::string JoinPath(std::string_view folder, std::string_view name);
// The folder with a separator at its end; an empty folder stays empty.
std::string AddSeparator(std::string_view folder);

// A path taken apart; the parts joined in order give the path back.
struct PathParts {
  std::string drive;      // "C:" or empty
  std::string folder;     // with its final separator, or empty
  std::string title;      // the last component without its extension
  std::string extension;  // with its dot, or empty
};
PathParts SplitPath(std::string_view path);

// Title and extension of the last component.
std::string FileNameOf(std::string_view path);
std::string ExtensionOf(std::string_view path);

// Separators as this machine writes them; a path with a drive and a network path keep their own.
std::string ToNativeSeparators(std::string_view path);

}  // namespace tarn
