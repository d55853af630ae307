#include "components/options/StoredOptions.h"

#include "components/values/ValuesXml.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::options {

namespace {

std::uint64_t HashBytes(std::uint64_t hash, std::string_view text) {
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  }
  return hash;
}

std::string HeaderOf(const CXmlNode& node) {
  const char* header = node.GetAttrValue("Header");
  return header == nullptr ? std::string() : Unescape(header);
}

template <class Visit>
void ForEachElement(const CXmlNode& parent, Visit visit) {
  for (int i = 0; i < parent.GetChildCount(); ++i) {
    const CXmlNode& child = *parent.GetChild(i);
    if (child.GetType() == XmlElement) visit(child);
  }
}

void ReadConfig(const CXmlNode& node, KeyTable& keys, StoredOptions& options) {
  StoredOptions::Config config{HeaderOf(node), {}};
  ForEachElement(node, [&](const CXmlNode& setNode) {
    const SetId set = keys.AddSet(HeaderOf(setNode));
    ForEachElement(setNode, [&](const CXmlNode& sectionNode) {
      const std::string section = HeaderOf(sectionNode);
      ForEachElement(sectionNode, [&](const CXmlNode& propertyNode) {
        const char* value = propertyNode.GetAttrValue("Value");
        if (value == nullptr) return;
        const KeyId key = keys.AddKey(set, keys.AddProperty(section, HeaderOf(propertyNode)));
        config.values.emplace_back(key, Unescape(value));
      });
    });
  });
  options.configs.push_back(std::move(config));
}

}  // namespace

const std::string* StoredOptions::Find(std::string_view config, KeyId key) const {
  const std::string* found = nullptr;
  for (const Config& candidate : configs) {
    if (!EqualNoCase(candidate.name, config)) continue;
    for (const auto& [valueKey, value] : candidate.values) {
      if (valueKey == key) found = &value;
    }
  }
  return found;
}

std::shared_ptr<StoredOptions> ParseStoredOptions(std::string_view text, KeyTable& keys) {
  auto options = std::make_shared<StoredOptions>();
  options->text = text;
  options->mark = HashBytes(0xCBF29CE484222325U, text);
  CXmlNode root;
  CXmlParseInfo parseInfo;
  root.Load(options->text, parseInfo);
  if (root.NameView() == "Config") {
    ReadConfig(root, keys, *options);
  } else {
    ForEachElement(root, [&](const CXmlNode& node) { ReadConfig(node, keys, *options); });
  }
  return options;
}

std::uint64_t MarkFor(const StoredOptions& options, std::string_view config) {
  std::uint64_t mark = options.mark;
  for (const char c : config) {
    const char folded = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    mark = HashBytes(mark, std::string_view(&folded, 1));
  }
  return mark;
}

StoredWriter::StoredWriter(std::string_view config) {
  text_ = "<Config Header=\"";
  AppendEscaped(text_, config);
  text_ += "\">";
}

void StoredWriter::Value(std::string_view set, std::string_view section, std::string_view property,
                         std::string_view value, bool removable) {
  if (!setOpen_ || set != openSet_) {
    CloseSet();
    text_ += "<Set Header=\"";
    AppendEscaped(text_, set);
    text_ += "\">";
    setOpen_ = true;
    openSet_ = set;
  }
  if (!sectionOpen_ || section != openSection_) {
    CloseSection();
    text_ += "<Section Header=\"";
    AppendEscaped(text_, section);
    text_ += "\">";
    sectionOpen_ = true;
    openSection_ = section;
  }
  text_ += "<Property Header=\"";
  AppendEscaped(text_, property);
  text_ += removable ? "\" Removable=\"Yes\" Value=\"" : "\" Value=\"";
  AppendEscaped(text_, value);
  text_ += "\" />";
}

void StoredWriter::CloseSection() {
  if (sectionOpen_) text_ += "</Section>";
  sectionOpen_ = false;
}

void StoredWriter::CloseSet() {
  CloseSection();
  if (setOpen_) text_ += "</Set>";
  setOpen_ = false;
}

std::string StoredWriter::Finish() {
  CloseSet();
  text_ += "</Config>";
  return std::move(text_);
}

}  // namespace tarn::options
