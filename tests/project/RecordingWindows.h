#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/text/Text.h"
#include "project/ProjectViews.h"
#include "xml/XmlNode.h"

namespace tarn::test {

// A project window that records the calls it receives, one per line.
class RecordingProjectWindow : public IProjectWindow {
 public:
  std::vector<std::string> TakeCalls() { return std::exchange(calls_, {}); }

  bool SetProjectRoot(CXmlNode*) override {
    calls_.emplace_back("SetProjectRoot");
    return true;
  }
  void RepaintWindow() override { calls_.emplace_back("RepaintWindow"); }
  void RepaintTree() override { calls_.emplace_back("RepaintTree"); }
  void StartStepTimer() override { calls_.emplace_back("StartStepTimer"); }
  void StopStepTimer() override { calls_.emplace_back("StopStepTimer"); }
  bool IsStepping() const override { return false; }
  void BeginTreeUpdate(UpdateScope) override { calls_.emplace_back("BeginTreeUpdate"); }
  void EndTreeUpdate() override { calls_.emplace_back("EndTreeUpdate"); }
  void ClearTree() override { calls_.emplace_back("ClearTree"); }
  CXmlNode* GetSelectedNode() override { return nullptr; }
  void InvalidateNode(const CXmlNode&) override {}
  void NotifyNodeUpdated(const CXmlNode&) override {}
  void SelectTreeNode(CXmlNode* node) override {
    calls_.push_back("SelectTreeNode " + OrEmpty(node->GetAttrValue("Header")));
  }

 private:
  std::vector<std::string> calls_;
};

}  // namespace tarn::test
