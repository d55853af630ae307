#include "hosts/core/FirstSource.h"

#include <tarn/commands.h>

#include <algorithm>

#include "components/values/OptionValues.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr const char* kFirstGroup = "Sources";

std::string TargetOption(BuildSession& session, const char* name) {
  return session.Manager().GetPropertyValue("Application", "Target", name);
}

bool HasFiles(BuildSession& session, const std::string& application) {
  const ProjectTree tree(session.Inspector().GetTree());
  if (tree.GetRoot() == nullptr) return true;
  for (const CXmlNode* each : tree.GetRoot()->GetChildren()) {
    if (GetAttribute(each, "Path") != application) continue;
    const auto children = each->GetChildren();
    return std::any_of(children.begin(), children.end(),
                       [](const CXmlNode* child) { return ProjectTree::IsShown(*child); });
  }
  return true;
}

// Returns the path of the first source. If the folder has one of another application, the new one
// is named after its own.
std::string SourceOf(BuildSession& session, FileSystem& files,
                     const ApplicationEntry& application) {
  const std::string folder = JoinPath(FolderOf(application.path), "src");
  const std::string main = JoinPath(folder, "main.c");
  const bool isOnly = ListApplications(session.Inspector()).size() == 1;
  return isOnly || !files.Exists(main) ? main : JoinPath(folder, application.label + ".c");
}

// Writes a copy of `original` to the folder, and returns its path. An existing file stays as it is:
// if it differs, the copy gets a number.
Result<std::string> WriteCopy(FileSystem& files, const std::string& folder,
                              const std::string& original, const std::string& text,
                              std::vector<std::string>& copies) {
  const std::string plain = JoinPath(folder, FileNameOf(original));
  std::string copy = plain;
  for (int count = 2;; ++count) {
    const auto present = files.ReadWholeFile(copy);
    if (present && *present == text) return copy;
    if (!present) {
      if (present.GetError().code == ErrorCode::NotFound) break;
      return Error{present.GetError().code, present.GetError().text, copy};
    }
    copy = WithExtension(plain, "") + ToDecimal(count) + ExtensionOf(plain);
  }
  if (const Status written = files.WriteOwnFile(copy, text); !written) {
    return Error{written.GetError().code, written.GetError().text, copy};
  }
  copies.push_back(copy);
  return copy;
}

}  // namespace

Result<std::string> AddFirstSource(BuildSession& session, FileSystem& files,
                                   const std::string& application) {
  session.Inspector().PublishAll();
  for (const ApplicationEntry& each : ListApplications(session.Inspector())) {
    // An application that only downloads a finished program has no output.
    if (each.path != application || each.output.empty() || HasFiles(session, application)) continue;
    const std::string source = SourceOf(session, files, each);
    const Result<bool> exists = files.CheckExists(source);
    if (!exists) return exists.GetError();
    session.Inspector().SelectApplication(application);
    if (!*exists) {
      const std::string original = TargetOption(session, "FirstSource");
      if (const Status written = WriteFirstSource(files, source, original); !written) {
        return Error{written.GetError().code, written.GetError().text, source};
      }
    }
    session.Manager().Command(TARN_CMD_NEW_GROUP);
    const std::string values = session.Options().GetValuesAsText();
    const std::string set = OptionValues::FromText(values).GetOwnSet();
    session.Manager().SavePropertyValue(set, "General", "Header", kFirstGroup);
    session.Manager().AddExistingItem(source);
    const std::string folder = FolderOf(application);
    std::vector<std::string> written;
    if (const Status added = AddTemplateSources(session, files, folder, written); !added) {
      return added.GetError();
    }
    session.Inspector().SelectNodeByKey(source, application);
    return source;
  }
  return std::string();
}

Status AddTemplateSources(BuildSession& session, FileSystem& files, const std::string& folder,
                          std::vector<std::string>& written) {
  for (const char* option : kTemplateOptions) {
    const std::string original = TargetOption(session, option);
    if (original.empty()) continue;
    const auto text = files.ReadWholeFile(original);
    if (!text) return Error{text.GetError().code, text.GetError().text, original};
    const Result<std::string> copy =
        WriteCopy(files, JoinPath(folder, "src"), original, *text, written);
    if (!copy) return copy.GetError();
    session.Manager().AddExistingItem(*copy);
  }
  return {};
}

}  // namespace tarn::host
