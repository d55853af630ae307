#pragma once

#include <optional>
#include <string>

#include "project/ProjectModel.h"

namespace tarn {

// Selection of nodes by keys of the host. Records the last key for which no node was found, since
// the calls of the host return the same result in either case. Main thread only.
class NodeSelection {
 public:
  // The model is borrowed and must outlive this object.
  explicit NodeSelection(CProjectModel& projectModel) : model_(projectModel) {}

  // Makes the node with this label current.
  void SelectByHeader(const char* header);
  // Makes the node of the active application with this path current, after publishing the
  // application's nodes if necessary.
  void SelectByPath(const char* path);
  // Drops the recorded key; called when a different project is opened.
  void Reset() { missedKey_.reset(); }
  // Returns the last key if no node was found and the node that was current then still is; nullopt
  // otherwise.
  std::optional<std::string> GetMissedKey() const;

 private:
  void Select(CXmlNode* found, const char* key);

  CProjectModel& model_;
  std::optional<std::string> missedKey_;   // search that found no node
  const CXmlNode* nodeInstead_ = nullptr;  // node current at that time; only compared
};

}  // namespace tarn
