#include "project/SaveReport.h"

#include "xml/XmlNode.h"

namespace tarn {

std::vector<std::string> SavedFile::ToLines() const {
  if (!problem.empty()) {
    return {path + " can't be saved: " + problem +
            (copy.empty() ? "" : "; the unsaved content is in " + copy)};
  }
  std::vector<std::string> lines;
  for (const TreeConflict& each : conflicts) {
    lines.push_back(path + ": conflict with another program in " +
                    (each.place.empty() ? "the file itself" : each.place) + ": " + each.what);
  }
  if (copyReason == CopyReason::Damaged) {
    lines.push_back(path + " contained more than was read from it; a copy of it is " + copy);
  } else if (copyReason == CopyReason::ChangedByOthers) {
    lines.push_back(path + " was changed by another program; a copy of its version is " + copy);
  } else if (isMerged) {
    lines.push_back(path + " was changed by another program; its changes are kept");
  } else if (wasRemoved) {
    lines.push_back(path + " was missing; it has been written again");
  }
  return lines;
}

void SavedFile::AddTo(CXmlNode& list) const {
  constexpr const char* kReasons[] = {"", "damaged", "changed"};
  CXmlNode& file = *list.AddChild("File");
  file.AddAttr("Path", path);
  file.AddAttr("Problem", problem);
  file.AddAttr("Copy", copy);
  file.AddAttr("CopyReason", kReasons[static_cast<std::size_t>(copyReason)]);
  file.AddAttr("Outside", isOutside ? "Yes" : "No");
  file.AddAttr("Merged", isMerged ? "Yes" : "No");
  file.AddAttr("Missing", wasRemoved ? "Yes" : "No");
  for (const std::string& line : ToLines()) file.AddChild("Line")->AddAttr("Text", line);
  for (const TreeConflict& each : conflicts) {
    CXmlNode& conflict = *file.AddChild("Conflict");
    conflict.AddAttr("Place", each.place);
    conflict.AddAttr("Text", each.what);
  }
}

}  // namespace tarn
