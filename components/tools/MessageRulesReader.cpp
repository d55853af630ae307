#include "components/tools/MessageRulesReader.h"

#include "xml/XmlNode.h"

namespace tarn::tools {

std::shared_ptr<const MessageRules> MessageRulesReader::ReadList(const CXmlNode& node) {
  CheckAttributes(node, {"Name"});
  if (Text(node, "Name").empty()) Fail("the list has no Name");
  auto rules = std::make_shared<MessageRules>();
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->GetType() != XmlElement) continue;
    if (child->NameView() == "Line") {
      rules->Add(ReadLine(*child));
    } else {
      Fail("unknown element " + child->GetName() + " in Messages");
    }
  }
  return rules;
}

MessageRule MessageRulesReader::ReadLine(const CXmlNode& node) {
  CheckAttributes(node, {"Template", "With", "Kind", "Folder", "Fails"});
  const std::string text = Text(node, "Template");
  MessageRule rule{PatternOfTemplate(text, kMessageTemplates), {}, {}, {}, {}};
  // An empty template would match every line.
  if (text.empty()) Fail("a Line has no Template");
  if (!rule.pattern.IsCompiled()) Fail(text + ": " + rule.pattern.GetError());
  if (const std::string with = Text(node, "With"); !with.empty()) {
    rule.with.emplace(with);
    if (!rule.with->IsCompiled()) Fail(with + ": " + rule.with->GetError());
  }
  // The last elements are the results for an invalid value.
  constexpr std::optional<LineKind> kKinds[] = {
      {}, LineKind::Plain, LineKind::Error, LineKind::Warning, {}};
  rule.kind = kKinds[Choose(node, "Kind", {"", "Plain", "Error", "Warning"})];
  constexpr FolderChange kChanges[] = {FolderChange::None, FolderChange::Enter, FolderChange::Leave,
                                       FolderChange::None};
  rule.folder = kChanges[Choose(node, "Folder", {"", "Enter", "Leave"})];
  constexpr Failing kFailing[] = {Failing::Always, Failing::Always, Failing::Never,
                                  Failing::OnErrorStream, Failing::Always};
  rule.failing = kFailing[Choose(node, "Fails", {"", "Yes", "No", "ErrorStream"})];
  return rule;
}

}  // namespace tarn::tools
