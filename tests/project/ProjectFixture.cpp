#include "project/ProjectFixture.h"

#include "output/MessageTable.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn::test {

namespace {

// Types as in a real configuration, and one of each special kind.
constexpr const char* kTypes =
    "<Types>"
    "<Project Project='Yes' Path='Yes' Build='Yes' />"
    "<Application Application='Yes' Extern='Yes' Path='Yes' Build='Yes' Debug='Yes' "
    "Extension='tapp' Header='Application' />"
    "<AutoApp Application='Yes' Extern='Yes' Path='Yes' Build='Yes' AutoDebug='Yes' />"
    "<Group Build='Yes' InBuild='Yes' />"
    "<C Path='Yes' Build='Yes' InBuild='Yes' IsLeaf='Yes' Extension='c' />"
    "<Header Path='Yes' InBuild='Yes' IsLeaf='Yes' Extension='h;hpp' />"
    "</Types>";

}  // namespace

ProjectFixture::ProjectFixture() {
  disk.AddFolder("/p");
  components.RegisterWith(classes);
  propertyManager.CreateDispatch(classes, CPropertyManagerDriver::kProgId);
  toolManager.CreateDispatch(classes, CToolManagerDriver::kProgId);
  output.Initialise("", host.Handle());
  output.SetLogFile("/tmp/log.xml");
  for (int row = 0; row < kMessageCount; ++row) {
    SetMessageText(
        row, row == kRowProjectWord ? "Tarn Project" : "row " + std::to_string(row) + " %s %s %s");
  }
  model = std::make_unique<CProjectModel>(disk);
  builder = std::make_unique<Builder>(*model);
  model->Services().output = &output;
  model->Services().propertyManager = &propertyManager;
  model->Services().toolManager = &toolManager;
  model->Services().mainframeHandle = host.Handle();
  model->Services().configFilePath = "/app/config/projectmanager.config";
  model->Services().configFolder = "/app/config/";
  model->Services().examplesFolder = "/app/examples/";
  model->Services().dataPath = "/data";
  CXmlNode types;
  types.Load(kTypes, g_xmlParseInfo);
  for (int i = 0; i < types.GetChildCount(); ++i) model->Services().types.Add(*types.GetChild(i));
}

void ProjectFixture::AddFile(const std::string& path, std::string_view text) {
  disk.AddFile(path, ReplaceAll(text, "\n", "\r\n"));
}

std::string ProjectFixture::FileText(const std::string& path) const {
  const std::optional<std::string> bytes = disk.BytesOf(path);
  return bytes ? ReplaceAll(*bytes, "\r\n", "\n") : "(none)";
}

void ProjectFixture::AddDemo(std::string_view content) {
  AddFile("/p/demo.tprj",
          "\n<Project Header=\"Tarn Project 'demo'\" Path=\".\\demo.tprj\" Project=\"Yes\" "
          "ActiveApp=\"demo\" >\n\t<Application Header=\"demo\" Extern=\".\\demo.tapp\" "
          "Path=\".\\demo.tapp\" />\n</Project>");
  AddFile("/p/demo.tapp",
          "\n<Application Header=\"demo\" Extern=\".\\demo.tapp\" Path=\".\\demo.tapp\" >" +
              std::string(content) + "</Application>");
}

void ProjectFixture::Touch() {
  // The type does not exist, so the change is refused.
  model->Options().StoreChangedProperty("General.Type");
}

CXmlNode* ProjectFixture::Application(int index) {
  for (CXmlNode* child : model->GetProjectRoot().GetChildren()) {
    if (IsContentNode(*child) && index-- == 0) return child;
  }
  return nullptr;
}

CXmlNode* ProjectFixture::Node(const char* header) {
  CXmlNode* found = nullptr;
  FindTreeNode(header, "Header", &model->GetProjectRoot(), found);
  return found;
}

std::string ProjectFixture::LogText() const {
  std::string text;
  const CXmlNode& root = output.GetRoot();
  for (int i = 0; i < root.GetChildCount(); ++i) {
    text += std::string(Trim(root.GetChild(i)->ValueText())) + "\n";
  }
  return text;
}

std::string ProjectFixture::Labels(const CXmlNode& node) {
  std::string text;
  for (const CXmlNode* child : node.GetChildren()) {
    if (!IsContentNode(*child)) continue;
    const std::string below = Labels(*child);
    text += (text.empty() ? "" : " ") + OrEmpty(child->GetAttrValue("Header"));
    if (!below.empty()) text += "[" + below + "]";
  }
  return text;
}

std::string ProjectFixture::Show(const CXmlNode& node,
                                 std::initializer_list<const char*> attributes) {
  std::string text = node.GetName();
  std::string list;
  for (const char* name : attributes) {
    const char* value = node.GetAttrValue(name);
    if (value != nullptr) list += (list.empty() ? "" : " ") + std::string(name) + "=" + value;
  }
  if (!list.empty()) text += "(" + list + ")";
  std::string children;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (!IsContentNode(child)) continue;
    children += (children.empty() ? "" : " ") + Show(child, attributes);
  }
  return children.empty() ? text : text + "[" + children + "]";
}

}  // namespace tarn::test
