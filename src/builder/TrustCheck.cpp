#include "builder/TrustCheck.h"

#include "platform/files/FileTexts.h"

namespace tarn {

std::optional<TrustRequest> FindUntrusted(const ProjectTrust& trust, const std::string& tool,
                                          const std::string& access) {
  const auto list = SplitFileTexts(access);
  if (!list || list->empty()) return TrustRequest{TrustRequestKind::Tool, tool};
  std::vector<std::string> programs, written;
  for (const auto& [kind, text] : *list) {
    if (kind == "write" || kind == "maybe") {
      written.push_back(text);
    } else if (kind == "program") {
      programs.push_back(text);
    } else if (const auto code = FindTrustRequestKind(kind)) {
      return TrustRequest{*code, text};
    }
  }
  if (const std::string* const refused = trust.FindRefusedProgram(programs)) {
    return TrustRequest{TrustRequestKind::Run, *refused};
  }
  if (const std::string* const refused = trust.FindRefusedWrite(written)) {
    return trust.RequestFor(TrustRequestKind::Write, *refused);
  }
  return std::nullopt;
}

}  // namespace tarn
