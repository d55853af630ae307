#include "project/NodeTypes.h"

#include <array>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr std::array<std::string_view, 11> kFlagNames = {
    "Project", "Application", "Extern",  "Path",    "IsLeaf", "Build",
    "Debug",   "AutoDebug",   "InBuild", "InDebug", "First"};

bool IsYes(const CXmlNode& record, std::string_view key) {
  const char* value = record.GetAttrValue(key);
  return value != nullptr && EqualNoCase(value, "Yes");
}

std::uint32_t FlagsOfRecord(const CXmlNode& record) {
  std::uint32_t flags = 0;
  for (std::size_t i = 0; i < kFlagNames.size(); ++i) {
    if (IsYes(record, kFlagNames[i])) flags |= 1u << i;
  }
  return flags;
}

}  // namespace

bool IsContentNode(const CXmlNode& node) {
  const std::string_view name = node.NameView();
  switch (name.size()) {
    case 4:
      return name != "Info";
    case 6:
      return name != "#CDATA";
    case 7:
      return name != "Options" && name != "Configs";
    case 9:
      return name != "PropState";
    case 12:
      return name != "Dependencies";
    default:
      return true;
  }
}

NodeTypes::NodeTypes() : root_(CXmlNode::CreateNode("Types")) {}

NodeTypes::~NodeTypes() = default;

void NodeTypes::Add(const CXmlNode& record) {
  const CXmlNode* copy = root_->AppendCopy(record);
  byName_[FoldCase(copy->NameView())] = {copy, FlagsOfRecord(*copy)};
  byAddress_.clear();
}

const CXmlNode* NodeTypes::GetNodeType(const CXmlNode& node) const {
  return Find(node.NameView()).record;
}

std::uint32_t NodeTypes::FlagsOf(const CXmlNode& node) const {
  return Find(node.NameView()).flags;
}

bool NodeTypes::HasTypeFlag(const CXmlNode& node, std::string_view key) const {
  const CXmlNode* record = GetNodeType(node);
  return record != nullptr && IsYes(*record, key);
}

const NodeTypes::Type& NodeTypes::Find(std::string_view elementName) const {
  static const Type kNoType;
  const auto known = byAddress_.find(elementName.data());
  if (known != byAddress_.end() && known->second.name == elementName) return *known->second.type;
  const auto found = byName_.find(FoldCase(elementName));
  const Type& type = found == byName_.end() ? kNoType : found->second;
  byAddress_[elementName.data()] = {std::string(elementName), &type};
  return type;
}

bool NodeTypes::CanContain(const CXmlNode* parent, const CXmlNode* child) const {
  if (parent == nullptr || child == nullptr) return false;
  const std::uint32_t above = FlagsOf(*parent);
  const std::uint32_t below = FlagsOf(*child);
  if ((above & kTypeIsLeaf) != 0) return false;
  if ((above & kTypeProject) != 0) return (below & kTypeApplication) != 0;
  const bool builds = (above & kTypeBuild) != 0;
  const bool debugs = (above & kTypeDebug) != 0;
  if (builds && (below & kTypeInBuild) == 0) return debugs && (below & kTypeInDebug) != 0;
  if (debugs && (below & kTypeDebug) == 0) return builds && (below & kTypeInBuild) != 0;
  return true;
}

}  // namespace tarn
