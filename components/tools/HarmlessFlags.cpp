#include "components/tools/HarmlessFlags.h"

#include <algorithm>
#include <utility>

#include "components/tools/FileList.h"
#include "components/tools/GivenArguments.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::tools {

void HarmlessFlags::Add(char receiver, std::string_view entries) {
  auto list = std::make_shared<List>();
  list->receiver = receiver;
  for (std::string& text : SplitOptionList(entries)) {
    const bool isException = text.front() == '!';
    if (isException) text.erase(0, 1);
    const bool isStart = text.ends_with('*');
    if (isStart) text.pop_back();
    list->Add({isException, isStart, std::move(text)});
  }
  if (!list->entries.empty()) lists_.push_back(std::move(list));
}

void HarmlessFlags::Add(const HarmlessFlags& other) {
  lists_.insert(lists_.end(), other.lists_.begin(), other.lists_.end());
}

void HarmlessFlags::List::Add(Entry entry) {
  const std::size_t open = entry.text.find('[');
  const std::size_t close = entry.text.find(']', std::min(open, entry.text.size()));
  if (close == std::string::npos) {
    entries.push_back(std::move(entry));
    return;
  }
  Entry without = entry;
  without.text.erase(open, close - open + 1);
  entry.text.erase(close, 1).erase(open, 1);
  Add(std::move(without));
  Add(std::move(entry));
}

FlagFit HarmlessFlags::Find(const GivenArguments& given, std::size_t at) const {
  const std::string& word = given.words[at];
  const char receiver = given.receivers[at];
  const bool isValueNext =
      at + 1 < given.words.size() && given.receivers[at + 1] == given.receivers[at];
  const std::string pair = isValueNext ? word + ' ' + given.words[at + 1] : word;
  FlagFit best = FlagFit::None;
  for (const auto& list : lists_) {
    if (list->receiver != receiver) continue;
    for (const Entry& entry : list->entries) {
      const bool isWhole = !entry.isStart && (entry.text == word || entry.text == pair);
      const bool isStart = entry.isStart && word.starts_with(entry.text);
      if (!isWhole && !isStart) continue;
      if (entry.isException) return FlagFit::None;
      best = std::max(best, isWhole ? FlagFit::Whole : FlagFit::Start);
    }
  }
  return best;
}

HarmlessFlags HarmlessFlagsReader::ReadList(const CXmlNode& node) {
  CheckAttributes(node, {"Name"});
  if (Text(node, "Name").empty()) Fail("the list has no Name");
  HarmlessFlags flags;
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->GetType() != XmlElement) continue;
    if (child->NameView() != "Flags") Fail("unknown element " + child->GetName() + " in Harmless");
    CheckAttributes(*child, {"V", "For"});
    // The last one is the result for an invalid value.
    constexpr std::string_view kReceivers = " alp ";
    const std::size_t which = Choose(*child, "For", {"", "Assembler", "Linker", "Preprocessor"});
    flags.Add(kReceivers[which], Text(*child, "V"));
  }
  return flags;
}

}  // namespace tarn::tools
