// Publishing: loading a node's option values into the property manager, and writing the values that
// other parts of the system need back to the node as attributes.
//
// The property manager holds one node at a time. A published node caches all its values as a string
// in its #CDATA child; the presence of that child marks the node as published.

#include "project/Publisher.h"

#include <tarn/commands.h>

#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr int kNodesPerTick = 10;

// Replaces "]" in the cached string, so that it can be stored in a CDATA section.
constexpr char kBracketByte = '\xA7';

std::string WithBrackets(std::string_view text) {
  std::string values(text);
  std::replace(values.begin(), values.end(), kBracketByte, ']');
  return values;
}

// Returns the path with the part below `folder` spelled as on disk.
std::string SpelledBelow(FileSystem& files, const std::string& folder, const std::string& path) {
  const std::string name = files.NameOnDisk(path);
  const bool isBelow = path.starts_with(folder) && name.size() == path.size();
  return isBelow ? folder + name.substr(folder.size()) : path;
}

}  // namespace

Publisher::Publisher(ProjectServices& projectServices, ProjectState& projectState,
                     const ProjectPaths& projectPaths, HostLink& hostLink)
    : services_(projectServices),
      files_(projectServices.files),
      types_(projectServices.types),
      views_(projectServices.views),
      state_(projectState),
      paths_(projectPaths),
      host_(hostLink) {}

Publisher::~Publisher() = default;

std::string Publisher::GetCurrentConfigName() const {
  const char* config = state_.activeApplication == nullptr
                           ? nullptr
                           : state_.activeApplication->GetAttrValue("Config");
  return config == nullptr ? kStandardConfig : config;
}

void Publisher::CollectOptionChain(std::vector<CXmlNode*>& list, CXmlNode* node) const {
  CXmlNode* parent = node->GetParent();
  const bool isOutermost = (types_.FlagsOf(*node) & (kTypeApplication | kTypeProject)) != 0;
  if (parent != nullptr && !isOutermost) CollectOptionChain(list, parent);
  list.push_back(node);
}

CXmlNode* Publisher::PublishNode(CXmlNode* node, bool force) {
  if (node == nullptr) node = state_.GetCurrentNode();
  CXmlNode* stored = FindStoredValues(*node);
  if (!force && stored != nullptr) {
    // The string has a few thousand bytes for each child of the node, so it is copied only if
    // needed.
    const char* const text = stored->ValueText();
    if (std::strchr(text, kBracketByte) == nullptr) {
      services_.propertyManager->ReadValuesFromText(text);
    } else {
      services_.propertyManager->ReadValuesFromText(WithBrackets(text));
    }
    return stored;
  }
  if (stored != nullptr) node->RemoveChild(stored);
  PublishFromParent(*node, force);

  const char* const set = node->NameText();
  const std::string config = GetCurrentConfigName();
  services_.propertyManager->ReadDefsFromFile(set, services_.configFilePath);
  for (const CXmlAttr& attribute : node->Attributes()) {
    services_.propertyManager->SetPropertyValue(set, "General", attribute.NameView(),
                                                attribute.ValueText());
  }
  PublishPath(*node);
  ApplyStoredOptions(*node, config);
  CXmlNode* values = StoreValues(*node, services_.propertyManager->GetValuesAsText("", "", ""));
  WriteMarker(*node, config);
  WriteDerivedAttributes(*node);
  services_.build.MarkPublished(*node);
  return values;
}

// A node's values start from the complete values of its parent.
void Publisher::PublishFromParent(CXmlNode& node, bool force) {
  const bool isOutermost = (types_.FlagsOf(node) & (kTypeApplication | kTypeProject)) != 0;
  if (isOutermost) return;
  // The root of a foreign file has no parent and is not necessarily a project.
  if (node.GetParent() != nullptr) PublishNode(node.GetParent(), force);
  services_.propertyManager->EndParentLevel();
  services_.propertyManager->BeginChildLevel();
}

void Publisher::PublishPath(CXmlNode& node) {
  const char* const set = node.NameText();
  const std::string path = services_.propertyManager->GetPropertyValue(set, "General", "Path");
  if (path.empty()) return;
  const std::string base = paths_.PathBaseOf(node);
  std::string full;
  paths_.MakeAbsolutePath(path, full, base.empty() ? nullptr : base.c_str());
  // Settles most nodes with a single query, the same one as a build's.
  const std::optional<FileStatus> status = files_.Examine(full);
  const bool isExact = status && !status->otherSpelling;
  if (!status && !files_.Exists(full)) {
    const std::string fileName = FileNameOf(path);
    const std::string folders =
        services_.propertyManager->GetPropertyValue("", "Directories", "AddSrcPaths");
    for (const std::string_view folder : Split(folders, ';')) {
      if (folder.empty()) continue;
      std::string absoluteFolder;
      paths_.MakeAbsolutePath(std::string(folder), absoluteFolder, nullptr);
      paths_.MakeAbsolutePath(fileName, full, absoluteFolder.c_str());
      if (files_.Exists(full)) break;
    }
  }
  node.SetAttrValue("Path", full);
  if (node.GetAttr("Extern") != nullptr) node.SetAttrValue("Extern", full);

  const std::uint32_t flags = types_.FlagsOf(node);
  const std::string kind = (flags & kTypeProject) != 0       ? "Project"
                           : (flags & kTypeApplication) != 0 ? "Application"
                                                             : "Node";
  const PathParts parts = SplitPath(full);
  const auto derive = [&](const std::string& property, const std::string& value) {
    services_.propertyManager->SetPropertyValue(set, "General", property, value);
  };
  derive("Path", full);
  // Outputs are named after this value, so it must be the same however the path of a file is
  // written.
  derive(kind + "Path", isExact ? full : SpelledBelow(files_, AddSeparator(base), full));
  derive(kind + "Dir", parts.drive + parts.folder);
  derive(kind + "Filename", parts.title + parts.extension);
  derive(kind + "Name", parts.title);
  derive(kind + "Ext", parts.extension);
}

void Publisher::ApplyStoredOptions(CXmlNode& node, const std::string& config) {
  std::vector<CXmlNode*> chain;
  CollectOptionChain(chain, &node);
  for (const CXmlNode* member : chain) {
    const std::string& text = TextOfOptions(*member);
    if (!text.empty()) services_.propertyManager->ApplyOptions(config, text);
  }
}

// Returns the serialized stored options of a node, or an empty string. Cached, because many nodes
// are published with the options of the same few ancestors, which can have very many children.
const std::string& Publisher::TextOfOptions(const CXmlNode& owner) {
  static const std::string kNone;
  if (owner.GetChildCount() == 0) return kNone;
  const auto [kept, isNew] = state_.optionTexts.try_emplace(&owner);
  const CXmlNode* options = isNew ? owner.FindChild("Options") : nullptr;
  if (options != nullptr) kept->second = options->ToString(g_xmlDisplayOptions);
  return kept->second;
}

// The inherited values and the defaults follow the node's own, are the same for all files of a
// group, and take far more space.
CXmlNode* Publisher::StoreValues(CXmlNode& node, std::string_view values) {
  values = values.substr(0, values.find('\0'));
  const auto end = commonEnds_[std::string(node.NameView())].Find(values);
  if (end == nullptr) return node.AddCData(values);
  return node.AddCData(values.substr(0, values.size() - end->size()), end);
}

void Publisher::WriteMarker(CXmlNode& node, const std::string& config) const {
  if ((types_.FlagsOf(node) & (kTypeApplication | kTypeProject)) != 0) return;
  CXmlNode* ownConfig = nullptr;
  FindChildNode(config.c_str(), "Header", node.FindChild("Options"), ownConfig);
  node.SetAttrValue("Marker", ownConfig != nullptr ? "0" : "-1");
}

void Publisher::WriteDerivedAttributes(CXmlNode& node) {
  const char* const set = node.NameText();
  const auto read = [&](const char* section, const char* property) {
    return services_.propertyManager->GetPropertyValue(set, section, property);
  };
  const std::string translateTool = read("Build", "TranslateTool");
  const std::string exclude = read("Build", "Exclude");
  const std::string linkExclude = read("Build", "LinkExclude");
  std::string outputFile = read("Build", "OutputFile");
  std::string listingFile = read("Build", "ListingFile");
  const std::string dbiFile = read("Load", "DBIFile");
  const std::string loadExclude = read("Load", "LoadExclude");

  std::string base;
  if (state_.activeApplication != nullptr)
    base = FolderOf(OrEmpty(state_.activeApplication->GetAttrValue("Path")));
  const char* baseFolder = base.empty() ? nullptr : base.c_str();
  for (std::string* const file : {&outputFile, &listingFile}) {
    // Options mix separators; tools and build records have one spelling of a path.
    if (paths_.MakeAbsolutePath(*file, *file, baseFolder) != 0) {
      *file = services_.files.Canonical(*file);
    }
  }
  node.SetAttrValue("TranslateTool", translateTool);
  node.SetAttrValue("Exclude", exclude);
  node.SetAttrValue("LinkExclude", linkExclude);
  const char* oldOutput = node.GetAttrValue("OutputFile");
  const char* oldListing = node.GetAttrValue("ListingFile");
  const bool isSame = oldOutput != nullptr && outputFile == oldOutput && oldListing != nullptr &&
                      listingFile == oldListing;
  if (!isSame) ++state_.outputGeneration;
  node.SetAttrValue("OutputFile", outputFile);
  node.SetAttrValue("ListingFile", listingFile);
  if (!dbiFile.empty()) node.SetAttrValue("DBIFile", dbiFile);
  if (!loadExclude.empty()) node.SetAttrValue("LoadExclude", loadExclude);
}

CXmlNode* Publisher::LoadNodeOptions(CXmlNode* node, bool force) {
  if (!force && node != nullptr && node == state_.currentNode) {
    if (CXmlNode* stored = FindStoredValues(*node)) return stored;
  }
  if (node == nullptr) node = state_.GetCurrentNode();
  CXmlNode* application = nullptr;
  paths_.FindEnclosingApplication(node, application);
  if (application == nullptr) {
    FindChildNode(state_.projectRoot->GetAttrValue("ActiveApp"), "Header", state_.projectRoot.get(),
                  application);
  }
  const bool isApplication =
      application != nullptr && (types_.FlagsOf(*application) & kTypeApplication) != 0;
  if (isApplication) state_.activeApplication = application;
  state_.currentNode = node;

  services_.propertyManager->BeginUpdate();
  services_.propertyManager->ClearValues();
  ReadConfigurations();
  services_.propertyManager->SetCurrentConfig(GetCurrentConfigName());
  CXmlNode* values = PublishNode(node, force);
  RestorePropState(*node);
  services_.propertyManager->EndUpdate();

  const std::uint64_t epoch = state_.treeGeneration;
  host_.SendHost(kMsgPaneCaption, OrEmpty(node->GetAttrValue("Header")) + " Local Settings",
                 kOptionsPane);
  if (state_.treeGeneration != epoch) return nullptr;
  if (state_.currentNode == node)
    LoadToolCommands(*node);  // a handler may have selected another node
  return values;
}

void Publisher::ReadConfigurations() {
  if (state_.activeApplication == nullptr) return;
  const auto [kept, isNew] = state_.configurationTexts.try_emplace(state_.activeApplication);
  const CXmlNode* configs = isNew ? state_.activeApplication->FindChild("Configs") : nullptr;
  if (configs != nullptr) {
    CXmlNode list;
    list.SetName("ProjectsConfigs");
    list.AppendCopy(*configs);
    kept->second = list.ToString(g_xmlDisplayOptions);
  }
  if (!kept->second.empty()) services_.propertyManager->ReadValuesFromText(kept->second);
}

void Publisher::LoadToolCommands(const CXmlNode& node) {
  dynamicCommands_.reset();
  const char* path = node.GetAttrValue("Path");
  if (path == nullptr) return;
  const std::string tools = services_.toolManager == nullptr
                                ? std::string()
                                : services_.toolManager->GetToolsForExtension(ExtensionOf(path));
  dynamicCommands_ = std::make_unique<CXmlNode>();
  dynamicCommands_->Load(tools, g_xmlParseInfo);
  for (int i = 0; i < dynamicCommands_->GetChildCount(); ++i) {
    dynamicCommands_->GetChild(i)->SetAttrValue("Id", ToDecimal(TARN_CMD_FIRST_TOOL + i));
  }
}

std::string Publisher::GetDynamicCommands(std::uint32_t commandId) {
  const bool hasCommands = dynamicCommands_ != nullptr && dynamicCommands_->GetChildCount() > 0;
  if (commandId != static_cast<std::uint32_t>(TARN_CMD_LIST_TOOLS) || !hasCommands) return {};
  return dynamicCommands_->ToString(g_xmlDisplayOptions);
}

void Publisher::RenewPropState(CXmlNode& node) {
  if (CXmlNode* old = node.FindChild("PropState")) node.RemoveChild(old);
  node.AddChild("PropState", services_.propertyManager->GetPropState());
}

void Publisher::RestorePropState(const CXmlNode& node) {
  if (const CXmlNode* stored = node.FindChild("PropState")) {
    services_.propertyManager->SetPropState(stored->ValueText());
  }
}

void Publisher::RunAutoDebugStep() {
  if (state_.creatingProject != 0 || state_.activeApplication == nullptr) return;
  if ((types_.FlagsOf(*state_.activeApplication) & kTypeAutoDebug) != 0)
    host_.PostHostCommand(TARN_CMD_AUTO_DEBUG);
}

void Publisher::SendActiveApplication() {
  if (state_.activeApplication == nullptr) return;
  host_.SendHost(kMsgApplicationActivated, OrEmpty(state_.activeApplication->GetAttrValue("Path")),
                 GetCurrentConfigName());
}

void Publisher::SetCurrentNode(CXmlNode* node) {
  if (node == nullptr) return;
  services_.build.MarkSelected(node);
  const CXmlNode* savedApplication = state_.activeApplication;
  const CXmlNode* savedNode = state_.currentNode;
  if (state_.currentNode != nullptr) RenewPropState(*state_.currentNode);
  const std::uint64_t epoch = state_.treeGeneration;
  LoadNodeOptions(node, false);
  if (state_.treeGeneration != epoch) return;
  if (state_.activeApplication != nullptr && state_.activeApplication != savedApplication) {
    SendActiveApplication();
    if (state_.treeGeneration != epoch) return;
    views_.SetGlobalsFile(paths_.GlobalsFileOf(*state_.activeApplication));
    RunAutoDebugStep();
  }
  if (state_.currentNode != nullptr && state_.currentNode != savedNode) {
    host_.SendHost(kMsgCurrentNodeChanged, OrEmpty(state_.currentNode->GetAttrValue("Path")), 0);
    if (state_.treeGeneration != epoch) return;
  }
  if (views_.GetSelectedNode() != node) views_.SelectTreeNode(node);
}

std::int32_t Publisher::SetActiveApplication(CXmlNode* application) {
  if (!services_.build.CanStartOperation()) return 0;
  if (application == nullptr || (types_.FlagsOf(*application) & kTypeApplication) == 0) return 0;
  CXmlNode* present = nullptr;
  FindChildNode(state_.projectRoot->GetAttrValue("ActiveApp"), "Header", state_.projectRoot.get(),
                present);
  if (present != nullptr) {
    if (CXmlAttr* highlight = present->GetAttr("highlight")) present->RemoveAttr(highlight);
    if (present != application) state_.MarkModified();
  }
  application->SetAttrValue("highlight", "yes");
  state_.projectRoot->SetAttrValue("ActiveApp", OrEmpty(application->GetAttrValue("Header")));
  views_.RepaintTree();
  return 1;
}

std::int32_t Publisher::PublishNextNode(CXmlNode* node) {
  if (node == nullptr) return 0;
  CXmlNode* next = publishCursor_.Next(
      *node, state_.publishGeneration,
      [](const CXmlNode& each) { return FindStoredValues(each) != nullptr; }, IsContentNode);
  if (next == nullptr) return 0;
  paths_.FindEnclosingApplication(next, state_.activeApplication);
  state_.currentNode = next;
  services_.propertyManager->ClearValues();
  ReadConfigurations();
  services_.propertyManager->SetCurrentConfig(GetCurrentConfigName());
  PublishNode(state_.currentNode, false);
  return 1;
}

std::int32_t Publisher::PublishTick() {
  // The worker publishes what it needs, and a nested tick would lose the search position.
  if (inPublishTick_ || services_.build.IsWorkerAlive() ||
      services_.build.IsBuildingSynchronously())
    return 0;
  inPublishTick_ = true;
  const std::uint64_t opened = state_.projectGeneration;
  CXmlNode* const savedNode = state_.currentNode;
  CXmlNode* const savedApplication = state_.activeApplication;
  if (savedNode != nullptr) {
    services_.propertyManager->BeginUpdate();
    RenewPropState(*savedNode);
  }
  std::int32_t remains = 1;
  int published = 0;
  while (published < kNodesPerTick && (remains = PublishNextNode(state_.projectRoot.get())) != 0) {
    ++published;
  }

  const std::uint64_t epoch = state_.treeGeneration;
  // Restores even if the tree is finished: the user's next change belongs to the node that was
  // current.
  if (published > 0) RestoreCurrent(savedApplication, savedNode);
  if (state_.projectGeneration == opened) inPublishTick_ = false;
  if (state_.treeGeneration != epoch) {
    if (savedNode != nullptr) services_.propertyManager->EndUpdate();
    return 0;
  }
  if (remains == 0) views_.StopStepTimer();
  if (state_.currentNode != nullptr) RestorePropState(*state_.currentNode);
  services_.propertyManager->EndUpdate();
  if (remains != 0) return 1;

  host_.PostHostCommand(TARN_CMD_OPTIONS_LOADED);
  if (state_.activeApplication != nullptr) {
    host_.SendHost(kMsgApplicationKnown, OrEmpty(state_.activeApplication->GetAttrValue("Path")),
                   GetCurrentConfigName());
    if (state_.treeGeneration != epoch) return 0;
  }
  RunAutoDebugStep();
  return 0;
}

bool Publisher::HasUnpublished() {
  return publishCursor_.Next(
             *state_.projectRoot, state_.publishGeneration,
             [](const CXmlNode& each) { return FindStoredValues(each) != nullptr; },
             IsContentNode) != nullptr;
}

bool Publisher::PublishFor(std::chrono::milliseconds time) {
  return PublishPiece(time, 0);
}

// Publishes at least `least` nodes, and more until the time is over.
bool Publisher::PublishPiece(std::chrono::milliseconds time, int least) {
  using Clock = std::chrono::steady_clock;
  if (!CanPublishAside()) return true;
  const Clock::time_point start = Clock::now();
  bool remains = true;
  PublishAside([&] {
    int published = 0;
    while (remains && (published < least || Clock::now() - start < time)) {
      remains = PublishNextNode(state_.projectRoot.get()) != 0;
      if (remains) ++published;
    }
    return published > 0;
  });
  return !remains;
}

Publisher::Progress Publisher::ContinueFor(std::chrono::milliseconds time) {
  if (!CanPublishAside()) return Progress::Stopped;
  if (views_.IsStepping() && !publishingSuspended_) {
    // The host is notified of each piece, and should not be more often than by the timer.
    return PublishPiece(time, kNodesPerTick) ? Progress::Done : Progress::More;
  }
  return HasUnpublished() ? Progress::Stopped : Progress::Done;
}

bool Publisher::PublishChildren(CXmlNode* parent) {
  if (parent == nullptr || services_.build.IsBuildingSynchronously() || !CanPublishAside())
    return false;
  std::vector<CXmlNode*> unpublished;
  for (CXmlNode* const child : parent->GetChildren()) {
    const bool isDue = IsContentNode(*child) && FindStoredValues(*child) == nullptr;
    if (isDue) unpublished.push_back(child);
  }
  if (unpublished.empty()) return false;
  PublishAside([&] {
    for (CXmlNode* const child : unpublished) PublishNextNode(child);
    return true;
  });
  return true;
}

bool Publisher::CanPublishAside() const {
  return state_.isOpen && !services_.build.IsWorkerAlive() && !inPublishTick_;
}

// Runs `publish`, which returns true if it published anything, and then restores the current node.
void Publisher::PublishAside(const std::function<bool()>& publish) {
  CXmlNode* const savedNode = state_.currentNode;
  CXmlNode* const savedApplication = state_.activeApplication;
  services_.propertyManager->BeginUpdate();
  if (savedNode != nullptr) RenewPropState(*savedNode);
  const bool published = publish();
  const std::uint64_t epoch = state_.treeGeneration;
  if (published) RestoreCurrent(savedApplication, savedNode);
  if (state_.treeGeneration == epoch && state_.currentNode != nullptr)
    RestorePropState(*state_.currentNode);
  services_.propertyManager->EndUpdate();
}

void Publisher::PublishSubtree(CXmlNode& node) {
  CXmlNode* const savedApplication = state_.activeApplication;
  bool published = false;
  while (PublishNextNode(&node)) published = true;
  if (!published) return;
  state_.activeApplication = savedApplication;
  state_.currentNode = nullptr;
}

// Loads `node` into the property manager again after other nodes were published.
void Publisher::RestoreCurrent(CXmlNode* application, CXmlNode* node) {
  state_.activeApplication = application;
  state_.currentNode = nullptr;
  SetCurrentNode(node);
}

}  // namespace tarn
