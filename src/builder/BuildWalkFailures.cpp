// The part of a build walk that continues after failures.

#include <algorithm>

#include "builder/BuildWalk.h"
#include "builder/LinkFiles.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

// Returns true if a failure below a node doesn't end the walk.
bool BuildWalk::KeepsGoing() const {
  return mode_ != ModeClean && !failures_.HasReachedLimit() && !IsTreeStale() &&
         builder_.GetBuildState() != StateStopRequested;
}

// Finishes the top frame, whose node's tool has failed or can't run.
bool BuildWalk::FailNode(const CXmlNode& node, const std::vector<NamedOutput>& outputs) {
  std::vector<std::string> paths;
  for (const char* attribute : {"OutputFile", "ListingFile"}) {
    std::string path = OrEmpty(node.GetAttrValue(attribute));
    if (!path.empty()) paths.push_back(std::move(path));
  }
  for (const NamedOutput& each : outputs) {
    if (each.isCertain) paths.push_back(each.path);
  }
  failures_.AddNode(node, paths);
  failures_.Count();
  return Return(false, false);
}

// Returns true if an earlier failure keeps the node from being built.
bool BuildWalk::LacksInput(const Frame& frame) const {
  if (frame.isMissingInput || failures_.IsInputMissing(*frame.node)) return true;
  const bool isApplication = (model_.Types().FlagsOf(*frame.node) & kTypeApplication) != 0;
  if (!order_ || !isApplication) return false;
  const std::vector<CXmlNode*>& uses = order_->GetDirectlyUsed(*frame.node);
  return std::any_of(uses.begin(), uses.end(),
                     [this](const CXmlNode* each) { return failures_.HasFailed(*each); });
}

// Finishes the top frame, whose node can't be built because of an earlier failure.
bool BuildWalk::LeaveUnbuilt(Frame& frame, BuildAction& request) {
  CXmlNode& node = *frame.node;
  if (runsAhead_.Has(node)) DropAhead(request);
  std::string tool, files;
  if (GetToolInput(model_.Types(), node, tool, files)) {
    const std::string output = OrEmpty(node.GetAttrValue("OutputFile"));
    failures_.AddNode(node, {output});
    model_.Host().AddBuildNotice(
        LineKind::Warning, output + " is not built, because some of its inputs were not built");
    if (IsTreeStale()) return true;
  }
  return Return(false, false);
}

}  // namespace tarn
