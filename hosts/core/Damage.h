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
  // Reading the file failed, so that its content is not known at all. No one can agree to that.
  bool isUnread = false;
};

bool HasUnread(const std::vector<DamageEntry>& damage);

// Reads the inspector's list.
std::vector<DamageEntry> ParseDamage(const std::string& xml);

// "app.tapp:12: stray text "x"", with the path as `file` says.
std::string DescribeDamage(const DamageEntry& entry, const std::string& file);

// Returns whether the command builds, cleans, or changes what the project's files hold.
bool ChangesProject(std::uint32_t command);
// The same for a call of one of the server's methods. Closing a project doesn't count: the server
// leaves a project with damage as it is on disk.
bool ChangesProject(std::string_view method, std::span<const Variant> arguments);

// Why nothing of that is done with a project that has damage.
inline constexpr const char* kUnreadRefusal =
    "A file of the project could not be read, so nothing is done with the project.";
inline constexpr const char* kDamageRefusal =
    "The project was read only in part, so it is not built, cleaned or changed.";

}  // namespace tarn::host
