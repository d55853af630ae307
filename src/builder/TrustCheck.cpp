#include "builder/TrustCheck.h"

#include "platform/files/FileTexts.h"

namespace tarn {

std::string FindUntrusted(const ProjectTrust& trust, const std::string& tool,
                          const std::string& access) {
  const auto list = SplitFileTexts(access);
  if (!list || list->empty()) return "run the tool " + tool;
  for (const auto& [kind, text] : *list) {
    if (kind == "code") return "run " + text;
    if (kind == "program" && trust.RefusesProgram(text)) return "run " + text;
    if ((kind == "write" || kind == "maybe") && trust.RefusesWrite(text))
      return trust.WishFor("write", text);
  }
  return {};
}

}  // namespace tarn
