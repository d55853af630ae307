#pragma once

#include <string>

#include "project/ProjectModel.h"

namespace tarn {

template <class OnApplication>
void ForEachApplication(CProjectModel& model, OnApplication&& onApplication) {
  CXmlNode& root = model.GetProjectRoot();
  for (int i = 0; i < root.GetChildCount(); ++i) {
    CXmlNode& child = *root.GetChild(i);
    if ((model.types.FlagsOf(child) & kTypeApplication) != 0) onApplication(child);
  }
}

// The first application with this label or absolute path, or null.
CXmlNode* FindApplication(CProjectModel& model, const std::string& key);

}  // namespace tarn
