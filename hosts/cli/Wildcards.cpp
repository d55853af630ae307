#include "hosts/cli/Wildcards.h"

#include <string>

#include "platform/text/Text.h"

namespace tarn::host {

bool FitsPattern(std::string_view text, std::string_view pattern) {
  const std::string own = FoldCase(text);
  const std::string wanted = FoldCase(pattern);
  if (wanted.find_first_of("*?") == std::string::npos) return own.find(wanted) != std::string::npos;
  std::size_t at = 0;
  std::size_t next = 0;                  // in the pattern
  std::size_t star = std::string::npos;  // the last * so far
  std::size_t behindStar = 0;            // where the text continues after its match
  while (at < own.size()) {
    if (next < wanted.size() && wanted[next] == '*') {
      star = next++;
      behindStar = at;
    } else if (next < wanted.size() && (wanted[next] == '?' || wanted[next] == own[at])) {
      ++next;
      ++at;
    } else if (star != std::string::npos) {
      next = star + 1;
      at = ++behindStar;
    } else {
      return false;
    }
  }
  return wanted.find_first_not_of('*', next) == std::string::npos;
}

}  // namespace tarn::host
