#pragma once

#include <string>

#include "project/ProjectModel.h"
#include "xml/XmlNode.h"

namespace tarn {

// Calls `onApplication(CXmlNode&)` for each application of the project in document order.
template <class OnApplication>
void ForEachApplication(CProjectModel& model, OnApplication&& onApplication) {
  CXmlNode& root = model.GetProjectRoot();
  for (int i = 0; i < root.GetChildCount(); ++i) {
    CXmlNode& child = *root.GetChild(i);
    if ((model.Types().FlagsOf(child) & kTypeApplication) != 0) onApplication(child);
  }
}

// Returns the application with this absolute path, else the one with this label, else the one whose
// label differs from `key` in letter case only. Returns nullptr if there is none or more than one.
CXmlNode* FindApplication(CProjectModel& model, const std::string& key);

}  // namespace tarn
