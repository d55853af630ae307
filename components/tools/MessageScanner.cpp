#include "components/tools/MessageScanner.h"

#include <array>

#include "components/tools/Scanners.h"
#include "platform/paths/Paths.h"

namespace tarn::tools {

namespace {

struct NamedScanner {
  std::string_view name;
  const MessageScanner& (*get)();
};

constexpr std::array<NamedScanner, 3> kScanners{{
    {"gcc", GccScanner},
    {"gnu-ld", LinkerScanner},
    {"sdcc", SdccScanner},
}};

}  // namespace

const MessageScanner* FindScanner(std::string_view name) {
  for (const NamedScanner& entry : kScanners) {
    if (entry.name == name) return &entry.get();
  }
  return nullptr;
}

ToolMessage MessageRecogniser::Recognise(std::string_view line, const std::string& folder) const {
  ToolMessage best;
  bool found = false;
  for (const MessageScanner* scanner : scanners) {
    ToolMessage seen;
    if (!scanner->Scan(line, seen)) continue;
    const bool decides = seen.severity != Severity::Plain;
    if (decides || !found) best = std::move(seen);
    found = true;
    if (decides) break;
  }
  best.text = line;
  if (!best.file.empty()) {
    best.file = CanonicalPath(IsRelativePath(best.file) ? JoinPath(folder, best.file) : best.file);
  }
  return best;
}

}  // namespace tarn::tools
