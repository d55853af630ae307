#include "hosts/serve/FindingJson.h"

namespace tarn::host {

nlohmann::json ToJson(const Finding& finding, const PathShortener& shorten) {
  return {{"kind", IdentifierOf(finding.kind)},
          {"file", finding.file},
          {"line", finding.line},
          {"application", finding.application},
          {"node", finding.node},
          {"option", finding.option},
          {"subject", finding.subject},
          {"text", DescribeFinding(finding, shorten)}};
}

}  // namespace tarn::host
