// Copies of the tree, and selection of its nodes.

#include <charconv>
#include <string_view>
#include <vector>

#include "automation/ApplicationSearch.h"
#include "automation/NodeSearch.h"
#include "automation/ProjectInspector.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

bool IsOptionCache(const CXmlNode& node) {
  const std::string_view name = node.NameView();
  return name == "PropState" || name == "#CDATA" || name == "Info";
}

// Copies the node without its children.
void CopyNode(const CXmlNode& from, CXmlNode& to) {
  to.SetName(from.NameView());
  to.SetValue(Trim(from.ValueText()));
  to.CopyAttrs(from);
}

bool IsCopied(const CXmlNode& node) {
  return node.GetType() == XmlElement && !IsOptionCache(node);
}

void CopyShown(const CXmlNode& from, CXmlNode& to) {
  CopyNode(from, to);
  for (const CXmlNode* child : from.GetChildren()) {
    if (IsCopied(*child)) CopyShown(*child, *to.AddChild(child->NameView()));
  }
}

// Copies the project with its direct children and their configurations.
void CopyApplications(const CXmlNode& project, CXmlNode& to) {
  CopyNode(project, to);
  for (const CXmlNode* child : project.GetChildren()) {
    if (!IsCopied(*child)) continue;
    CXmlNode& application = *to.AddChild(child->NameView());
    CopyNode(*child, application);
    const CXmlNode* const configurations = child->FindChild("Configs");
    if (configurations != nullptr) CopyShown(*configurations, *application.AddChild("Configs"));
  }
}

bool IsShown(const CXmlNode& node) {
  return node.GetType() == XmlElement && IsContentNode(node);
}

CXmlNode* ShownChild(CXmlNode& node, int number) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode* const child = node.GetChild(i);
    if (IsShown(*child) && number-- == 0) return child;
  }
  return nullptr;
}

}  // namespace

std::string ProjectInspector::GetTree() {
  return CopyOfTree(CopyShown);
}

std::string ProjectInspector::GetApplications() {
  return CopyOfTree(CopyApplications);
}

std::string ProjectInspector::CopyOfTree(void (*fill)(const CXmlNode& root, CXmlNode& copy)) {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  CXmlNode copy;
  fill(model->GetProjectRoot(), copy);
  // The absolute path is the key of an application: it is the same before and after publishing.
  for (CXmlNode* child : copy.GetChildren()) {
    if ((model->Types().FlagsOf(*child) & kTypeApplication) == 0) continue;
    std::string path;
    if (model->Paths().MakeAbsolutePath(OrEmpty(child->GetAttrValue("Path")), path, nullptr)) {
      child->SetAttrValue("Path", path);
    }
  }
  return copy.ToString(g_xmlDisplayOptions);
}

std::int32_t ProjectInspector::SelectNodeByKey(const char* key, const char* application) {
  CProjectModel* model = Model();
  const std::string scope = OrEmpty(application);
  if (model == nullptr || key == nullptr || (*key == '\0' && scope.empty())) return 0;
  CXmlNode* start = scope.empty() ? &model->GetProjectRoot() : FindApplication(*model, scope);
  if (start == nullptr) return 0;
  if (*key == '\0') return model->SetCurrentNode(start), 1;
  const NodeSearch search(*model, model->GetFiles().CurrentFolder());
  const std::vector<CXmlNode*> found = search.FindNumbered(*start, key);
  if (found.size() == 1) model->SetCurrentNode(found.front());
  return static_cast<std::int32_t>(found.size());
}

std::int32_t ProjectInspector::SelectNodeByPlace(const char* place) {
  CProjectModel* model = Model();
  if (model == nullptr || !model->IsOpen() || place == nullptr) return 0;
  CXmlNode* node = &model->GetProjectRoot();
  for (const std::string_view number : Split(place, '/')) {
    if (number.empty()) continue;
    int value = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    const bool isNumber = read.ec == std::errc() && read.ptr == number.data() + number.size();
    node = isNumber ? ShownChild(*node, value) : nullptr;
    if (node == nullptr) return 0;
  }
  model->SetCurrentNode(node);
  return model->GetCurrentNode() == node ? 1 : 0;
}

std::string ProjectInspector::GetMissedSelection() {
  if (Model() == nullptr) return {};
  const auto key = static_cast<CProjectManager*>(manager_.Get())->GetSelection()->GetMissedKey();
  return key ? "\"" + *key + "\"" : std::string();
}

std::int32_t ProjectInspector::NoteCurrentNode() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  savedNode_ = model->GetCurrentNode();
  savedGeneration_ = model->GetTreeGeneration();
  return 1;
}

std::int32_t ProjectInspector::SelectNotedNode() {
  CProjectModel* model = Model();
  if (model == nullptr || savedNode_ == nullptr || model->GetTreeGeneration() != savedGeneration_)
    return 0;
  if (model->GetCurrentNode() != savedNode_) model->SetCurrentNode(savedNode_);
  return model->GetCurrentNode() == savedNode_ ? 1 : 0;
}

}  // namespace tarn
