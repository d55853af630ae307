#include "hosts/core/TargetName.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "hosts/core/LogEntry.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

std::string Reduced(const std::string& name) {
  std::string reduced;
  for (const char c : FoldCase(name)) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) reduced += c;
  }
  return reduced;
}

constexpr std::size_t kMostTargets = 3;
constexpr std::size_t kLeastPart = 4;  // letters that two names share

// A reduced form of a target's name, and the name.
using TargetForm = std::pair<std::string, std::string>;

std::vector<TargetForm> FormsOf(const std::vector<const CXmlNode*>& targets) {
  std::vector<TargetForm> forms;
  for (const CXmlNode* target : targets) {
    const std::string label = GetAttribute(target, "Header");
    const auto add = [&](const std::string& form) {
      if (!form.empty()) forms.emplace_back(Reduced(form), label);
    };
    add(label);
    if (const std::size_t blank = label.find(' '); blank != std::string::npos) {
      add(label.substr(blank));
    }
    const std::string aliases = GetAttribute(target, "Aliases");
    for (const std::string_view each : Split(aliases, ';')) add(std::string(each));
  }
  return forms;
}

void AddOnce(std::vector<std::string>& names, const std::string& name) {
  const bool isNew = std::find(names.begin(), names.end(), name) == names.end();
  if (isNew && names.size() < kMostTargets) names.push_back(name);
}

}  // namespace

NameFit FitTargetName(const CXmlNode& target, const std::string& name) {
  const std::string wanted = Reduced(name);
  const std::string label = GetAttribute(&target, "Header");
  if (wanted.empty()) return NameFit::None;
  if (Reduced(label) == wanted) return NameFit::Same;
  const std::string aliases = GetAttribute(&target, "Aliases");
  for (const std::string_view each : Split(aliases, ';')) {
    if (Reduced(std::string(each)) == wanted) return NameFit::Same;
  }
  const std::size_t blank = label.find(' ');
  const bool isRest = blank != std::string::npos && Reduced(label.substr(blank)) == wanted;
  return isRest ? NameFit::Similar : NameFit::None;
}

std::vector<std::string> FindNearTargets(const std::vector<const CXmlNode*>& targets,
                                         const std::string& name) {
  const std::string wanted = Reduced(name);
  if (wanted.size() < kLeastPart) return {};
  std::vector<TargetForm> forms = FormsOf(targets);
  std::vector<std::string> found, texts;
  for (const auto& [form, label] : forms) texts.push_back(form);
  for (const std::string& near : FindNearNames(wanted, texts)) {
    for (const auto& [form, label] : forms) {
      if (form == near) AddOnce(found, label);
    }
  }
  if (!found.empty()) return found;
  std::stable_sort(forms.begin(), forms.end(), [](const TargetForm& a, const TargetForm& b) {
    return a.first.size() < b.first.size();
  });
  for (const auto& [form, label] : forms) {
    if (form.find(wanted) != std::string::npos) AddOnce(found, label);
  }
  if (!found.empty()) return found;
  std::size_t longest = kLeastPart;
  for (const auto& [form, label] : forms) {
    if (!wanted.starts_with(form) || form.size() < longest) continue;
    if (form.size() > longest) found.clear();
    longest = form.size();
    AddOnce(found, label);
  }
  return found;
}

}  // namespace tarn::host
