#include "components/options/OptionDefinitionReader.h"

#include <algorithm>

#include "components/options/ValueCheck.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn::options {

namespace {

constexpr std::size_t kMaxDepth = 16;
constexpr std::size_t kMaxFiles = 500;
constexpr std::size_t kMaxErrors = 200;

std::string GetAttribute(const CXmlNode& node, std::string_view name) {
  return OrEmpty(node.GetAttrValue(name));
}

bool IsYes(std::string_view text) {
  return EqualNoCase(text, "Yes");
}

// Returns true if the text can be embedded in the macro that encodes a conditional default.
bool FitsIntoChoice(std::string_view text) {
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i).starts_with("$(")) ++depth;
    if (text[i] == ')' && --depth < 0) return false;
    if (text[i] == ';' && depth == 0) return false;
  }
  return depth == 0;
}

// Returns true if the value can be used as a case label in that macro without a special meaning.
bool CanChoose(std::string_view value) {
  return value != "*" && value.find_first_of(";=()") == std::string_view::npos;
}

// Removes the last property of a truncated text, which may lack what followed the fault.
bool DropLastProperty(CXmlNode& node) {
  for (int i = node.GetChildCount(); i-- > 0;) {
    CXmlNode* child = node.GetChild(i);
    if (child->NameView() == "Property") return node.RemoveChild(child);
    if (DropLastProperty(*child)) return true;
  }
  return false;
}

std::uint64_t AddToDigest(std::uint64_t digest, const std::string& path,
                          const Result<std::string>& text) {
  return HashBytes(text ? *text : text.GetError().text, HashBytes(path, digest));
}

}  // namespace

void OptionDefinitionReader::ReportFor(const std::string& path, std::string_view what) {
  if (errors_.size() < kMaxErrors) errors_.push_back(path + ": " + std::string(what));
}

void OptionDefinitionReader::Report(std::string_view what) {
  ReportFor(chain_.empty() ? std::string() : chain_.back(),
            place_.empty() ? std::string(what) : place_ + ": " + std::string(what));
}

void OptionDefinitionReader::ReportLoss(const std::string& fault) {
  if (errors_.size() < kMaxErrors) errors_.push_back(fault);
  if (lostFile_.empty()) lostFile_ = fault;
}

std::uint64_t OptionDefinitionReader::DigestOf(FileSystem& files,
                                               const std::vector<std::string>& paths) {
  std::uint64_t digest = 0;
  for (const std::string& path : paths) {
    digest = AddToDigest(digest, path, files.ReadWholeFile(path));
  }
  return digest;
}

bool OptionDefinitionReader::ReadFile(const std::string& path) {
  const Result<std::string> text = files_.ReadWholeFile(path);
  paths_.push_back(path);
  digest_ = AddToDigest(digest_, path, text);
  if (!text) {
    ReportLoss(path + ": can't be read: " + text.GetError().text);
    return false;
  }
  ReadText(*text, path);
  return true;
}

void OptionDefinitionReader::ReadText(const std::string& text, const std::string& path) {
  chain_.push_back(path);
  CXmlNode root;
  const std::string fault = LoadWhole(root, text, XmlTexts::None, path);
  if (!fault.empty()) {
    ReportLoss(fault);
    DropLastProperty(root);
  }
  if (root.NameView() == "OptionSets") {
    ReadSets(root);
  } else {
    for (const CXmlNode* child : root.GetChildren()) {
      if (child->NameView() == "OptionSets") ReadSets(*child);
    }
  }
  chain_.pop_back();
}

void OptionDefinitionReader::ReadSets(const CXmlNode& node) {
  for (const CXmlNode* child : node.GetChildren()) {
    place_.clear();
    if (child->GetType() != XmlElement) continue;
    if (child->NameView() == "Include") {
      ReadInclude(*child);
    } else if (child->NameView() == "Set") {
      ReadSet(*child);
    } else {
      Report("<" + child->GetName() + "> is not allowed here; expected Include or Set");
    }
  }
  place_.clear();
}

void OptionDefinitionReader::ReadInclude(const CXmlNode& node) {
  CheckAttributes(node, "File");
  const std::string name = GetAttribute(node, "File");
  if (name.empty()) return Report("Include without File");
  std::string path = ToNativeSeparators(name);
  if (IsRelativePath(path)) path = JoinPath(FolderOf(chain_.back()), path);
  path = files_.Canonical(path);
  if (std::find(chain_.begin(), chain_.end(), path) != chain_.end()) {
    return Report("includes itself via " + name);
  }
  if (chain_.size() >= kMaxDepth || ++filesRead_ > kMaxFiles) {
    return Report("too many files include each other; " + name + " is skipped");
  }
  ReadFile(path);
}

void OptionDefinitionReader::ReadSet(const CXmlNode& node) {
  const std::string header = GetAttribute(node, "Header");
  place_ = "set " + header;
  CheckAttributes(node, "Header Label Help");
  std::vector<std::string> sets;
  for (const std::string_view name : Split(header, ';')) {
    if (!Trim(name).empty()) sets.emplace_back(Trim(name));
  }
  if (sets.empty()) return Report("Set without Header");
  for (const std::string& name : sets) {
    SetDefinition& set = definitions_.Set(name);
    if (node.GetAttr("Label") != nullptr) set.label = GetAttribute(node, "Label");
    if (node.GetAttr("Help") != nullptr) set.help = GetAttribute(node, "Help");
  }
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->GetType() != XmlElement) continue;
    place_ = "set " + header;
    if (child->NameView() == "Section") {
      ReadSection(*child, sets);
    } else {
      Report("<" + child->GetName() + "> is not allowed here; expected Section");
    }
  }
}

void OptionDefinitionReader::ReadSection(const CXmlNode& node,
                                         const std::vector<std::string>& sets) {
  const std::string header = GetAttribute(node, "Header");
  CheckAttributes(node, "Header Label Help");
  if (header.empty()) return Report("Section without Header");
  const std::string setPlace = place_;
  for (const std::string& name : sets) {
    SectionDefinition& section = Definitions::Section(definitions_.Set(name), header);
    if (node.GetAttr("Label") != nullptr) section.label = GetAttribute(node, "Label");
    if (node.GetAttr("Help") != nullptr) section.help = GetAttribute(node, "Help");
  }
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->GetType() != XmlElement) continue;
    place_ = setPlace + ", " + header;
    if (child->NameView() == "Property") {
      ReadProperty(*child, sets, header);
    } else {
      Report("<" + child->GetName() + "> is not allowed here; expected Property");
    }
  }
}

void OptionDefinitionReader::ReadProperty(const CXmlNode& node,
                                          const std::vector<std::string>& sets,
                                          const std::string& section) {
  const std::string header = GetAttribute(node, "Header");
  if (header.empty()) return Report("Property without Header");
  place_ += "." + header;
  if (header.find('.') != std::string::npos || section.find('.') != std::string::npos) {
    return Report("a name must not contain a full stop; the property is skipped");
  }
  CheckAttributes(node,
                  "Header Type Default Label Help Removable KeepsOutputs Shown Enabled Min Max");
  const std::size_t errorsBefore = errors_.size();
  for (const std::string& name : sets) {
    SectionDefinition& part = Definitions::Section(definitions_.Set(name), section);
    FillProperty(node, definitions_.Property(part, header));
    // Reports a fault once instead of once for each set the property belongs to.
    if (errors_.size() > errorsBefore && name != sets.back()) errors_.resize(errorsBefore);
  }
}

void OptionDefinitionReader::FillProperty(const CXmlNode& node, PropertyDefinition& property) {
  property.origin = chain_.back();
  const auto take = [&node](std::string_view name, std::string& to) {
    if (node.GetAttr(name) != nullptr) to = GetAttribute(node, name);
  };
  take("Default", property.defaultText);
  take("Label", property.label);
  take("Help", property.help);
  take("Min", property.minimum);
  take("Max", property.maximum);
  const std::string type = GetAttribute(node, "Type");
  if (!type.empty() && !TypeFromName(type, property.type)) {
    Report("Type \"" + type + "\" is not known, treated as text");
    property.type = ValueType::Text;
  }
  if (node.GetAttr("Removable") != nullptr) {
    property.removable = IsYes(GetAttribute(node, "Removable"));
  }
  if (node.GetAttr("KeepsOutputs") != nullptr) {
    property.keepsOutputs = IsYes(GetAttribute(node, "KeepsOutputs"));
  }
  ReadCondition(node, "Shown", property.shown);
  ReadCondition(node, "Enabled", property.enabled);
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->GetType() != XmlElement) continue;
    if (child->NameView() == "Choice") {
      ReadChoice(*child, property);
    } else if (child->NameView() == "Default") {
      ReadDefault(*child, property);
    } else {
      Report("<" + child->GetName() + "> is not allowed here; expected Choice or Default");
    }
  }
}

void OptionDefinitionReader::ReadCondition(const CXmlNode& node, std::string_view attribute,
                                           Condition& condition) {
  const std::string text = GetAttribute(node, attribute);
  if (text.empty() || ParseCondition(text, condition)) return;
  Report(std::string(attribute) + " \"" + text + "\" is not a condition (Section.Property=value)");
}

void OptionDefinitionReader::ReadDefault(const CXmlNode& node, PropertyDefinition& property) {
  CheckAttributes(node, "When Value");
  ConditionalDefault chosen;
  const std::string when = GetAttribute(node, "When");
  if (!ParseCondition(when, chosen.when) || chosen.when.negated) {
    return Report("Default with When \"" + when + "\": expected Section.Property=value");
  }
  if (!std::all_of(chosen.when.values.begin(), chosen.when.values.end(), CanChoose)) {
    return Report("Default with When \"" + when +
                  "\": its values must not be * or contain a semicolon, equal sign or parenthesis");
  }
  chosen.value = GetAttribute(node, "Value");
  if (!FitsIntoChoice(chosen.value)) {
    return Report("Default \"" + chosen.value +
                  "\" under a condition must not contain a semicolon or an unbalanced parenthesis");
  }
  // Inserted first, so that later definitions take precedence, as everywhere.
  property.conditionalDefaults.insert(property.conditionalDefaults.begin(), std::move(chosen));
}

void OptionDefinitionReader::ReadChoice(const CXmlNode& node, PropertyDefinition& property) {
  CheckAttributes(node, "Value Label");
  if (node.GetAttr("Value") == nullptr) return Report("Choice without Value");
  const std::string value = GetAttribute(node, "Value");
  auto known = std::find_if(property.choices.begin(), property.choices.end(),
                            [&](const Choice& each) { return EqualNoCase(each.value, value); });
  if (known == property.choices.end()) {
    known = property.choices.insert(known, {value, value});
  }
  if (node.GetAttr("Label") != nullptr) known->label = GetAttribute(node, "Label");
}

void OptionDefinitionReader::CheckAttributes(const CXmlNode& node, std::string_view known) {
  for (const CXmlAttr& attr : node.Attributes()) {
    const std::vector<std::string_view> names = Split(known, ' ');
    if (std::find(names.begin(), names.end(), attr.NameView()) != names.end()) continue;
    Report("unknown attribute \"" + attr.GetName() + "\" of <" + node.GetName() + ">");
  }
}

void OptionDefinitionReader::CheckDefault(const std::string& set, PropertyDefinition& property) {
  const std::string where = "set " + set + ", " + property.section + "." + property.name + ": ";
  if (!property.conditionalDefaults.empty() && !FitsIntoChoice(property.defaultText)) {
    ReportFor(property.origin, where + "Default \"" + property.defaultText +
                                   "\" next to one under a condition must not contain a semicolon "
                                   "or an unbalanced parenthesis");
    property.conditionalDefaults.clear();
  }
  if (property.type == ValueType::Choice && property.choices.empty()) {
    ReportFor(property.origin, where + "a choice without any Choice");
  }
  std::vector<std::string_view> texts{property.defaultText};
  for (const ConditionalDefault& each : property.conditionalDefaults) texts.push_back(each.value);
  for (const std::string_view text : texts) {
    if (text.empty() || text.find('$') != std::string_view::npos) continue;
    const std::string fault = CheckAgainst(property, text);
    if (!fault.empty()) ReportFor(property.origin, where + "Default: " + fault);
  }
}

void OptionDefinitionReader::CheckDefaults() {
  for (const auto& set : definitions_.Sets()) {
    for (const auto& section : set->sections) {
      for (const auto& property : section->properties) CheckDefault(set->name, *property);
    }
  }
}

}  // namespace tarn::options
