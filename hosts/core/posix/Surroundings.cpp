#include "hosts/core/Surroundings.h"

#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/files/FileSystem.h"

extern char** environ;

namespace tarn::host {

std::string DescribeSurroundings() {
  constexpr std::string_view kOfTheShell[] = {"_=", "SHLVL=", "OLDPWD="};
  std::vector<std::string_view> entries;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const auto isThis = [entry](std::string_view name) {
      return std::string_view(*entry).starts_with(name);
    };
    if (std::none_of(std::begin(kOfTheShell), std::end(kOfTheShell), isThis)) {
      entries.push_back(*entry);
    }
  }
  std::sort(entries.begin(), entries.end());
  std::string text = std::to_string(geteuid()) + '\0' + FileSystem::Native().CurrentFolder();
  for (const std::string_view entry : entries) text.append(1, '\0').append(entry);
  return text;
}

}  // namespace tarn::host
