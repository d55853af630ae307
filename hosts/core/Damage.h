#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/automation/Variant.h"

namespace tarn::host {

// A position in a project file whose content was lost when the file was read.
struct DamageEntry {
  std::string file;
  int line = 0;  // from 1; 0 for the file as a whole
  std::string text;
  // True if reading the file failed, so that its content is unknown. The user can't accept this
  // kind of damage.
  bool isUnread = false;
};

bool HasUnread(const std::vector<DamageEntry>& damage);

// Parses the inspector's list.
std::vector<DamageEntry> ParseDamage(const std::string& xml);

// Returns a line like "app.tapp:12: stray text "x"", in which `file` is shown as the path.
std::string DescribeDamage(const DamageEntry& entry, const std::string& file);

// Returns true if the command builds, cleans, or changes the content of the project's files.
bool ChangesProject(std::uint32_t command);
// Like the overload above, but for a call of a server method. Closing a project returns false: the
// server leaves the files of a damaged project unchanged.
bool ChangesProject(std::string_view method, std::span<const Variant> arguments);

// Reasons shown when such an operation is refused for a damaged project.
inline constexpr const char* kUnreadRefusal =
    "A file of the project could not be read, so the project is left untouched.";
inline constexpr const char* kDamageRefusal =
    "The project was read only in part, so it is not built, cleaned or changed.";

}  // namespace tarn::host
