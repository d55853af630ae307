#include "hosts/core/AttributeEdits.h"

#include <set>

#include "xml/XmlEntities.h"

namespace tarn::host {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

void AttributeEdits::Add(const std::string& name, const std::string& value,
                         const std::string& replacement) {
  edits_[{name, value}] = {replacement, true};
}

void AttributeEdits::AddOptional(const std::string& name, const std::string& value,
                                 const std::string& replacement) {
  edits_.try_emplace({name, value}, Edit{replacement, false});
}

Result<std::string> AttributeEdits::ApplyTo(const std::string& text) const {
  std::string result;
  std::set<const Edit*> made;
  std::size_t copied = 0;
  for (std::size_t at = text.find("=\""); at != text.npos; at = text.find("=\"", at)) {
    const std::size_t start = at + 2;
    const std::size_t end = text.find('"', start);
    if (end == text.npos) break;
    const std::size_t blank = text.find_last_of(kBlanks, at);
    const std::size_t name = blank == text.npos ? 0 : blank + 1;
    const std::string value = g_xmlEntities.Decode(text.substr(start, end - start).c_str());
    const auto edit = edits_.find({text.substr(name, at - name), value});
    at = end;
    if (edit == edits_.end()) continue;
    made.insert(&edit->second);
    result.append(text, copied, start - copied);
    g_xmlEntities.EncodeTo(result, edit->second.replacement);
    copied = end;
  }
  for (const auto& [place, edit] : edits_) {
    if (!edit.isRequired || made.contains(&edit)) continue;
    return Error{
        ErrorCode::Unsupported,
        place.first + " \"" + place.second + "\" is stored in a form that can't be replaced",
        {}};
  }
  return result.append(text, copied);
}

}  // namespace tarn::host
