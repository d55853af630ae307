#include "builder/TrustCheck.h"

#include "platform/files/FileTexts.h"

namespace tarn {

std::optional<TrustRequest> FindUntrusted(const ProjectTrust& trust, const std::string& tool,
                                          const std::string& access) {
  const auto list = SplitFileTexts(access);
  if (!list || list->empty()) return TrustRequest{TrustRequestKind::Tool, tool};
  for (const auto& [kind, text] : *list) {
    if (kind == "write" || kind == "maybe") {
      if (trust.RefusesWrite(text)) return trust.RequestFor(TrustRequestKind::Write, text);
    } else if (kind == "program") {
      if (trust.RefusesProgram(text)) return TrustRequest{TrustRequestKind::Run, text};
    } else if (const auto code = FindTrustRequestKind(kind)) {
      return TrustRequest{*code, text};
    }
  }
  return std::nullopt;
}

}  // namespace tarn
