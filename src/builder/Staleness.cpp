#include "builder/Staleness.h"

#include "builder/LinkFiles.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

bool IsBlankAttr(const char* value) {
  return value == nullptr || *value == '\0';
}

std::int64_t NumberOf(const char* text) {
  return text == nullptr ? 0 : ParseInt64(text).value_or(0);
}

// Attributes that decide about a node, read in a single pass.
struct JudgedBy {
  const char* outputFile = nullptr;
  const char* path = nullptr;
  const char* lastBuilt = nullptr;
  const char* exclude = nullptr;

  explicit JudgedBy(const CXmlNode& node) {
    for (const CXmlAttr& attribute : node.Attributes()) {
      const char** const place = SlotOf(attribute.NameView());
      if (place != nullptr && *place == nullptr) *place = attribute.ValueText();
    }
  }

 private:
  const char** SlotOf(std::string_view name) {
    switch (name.size()) {
      case 4:
        return name == "Path" ? &path : nullptr;
      case 7:
        return name == "Exclude" ? &exclude : nullptr;
      case 9:
        return name == "LastBuilt" ? &lastBuilt : nullptr;
      case 10:
        return name == "OutputFile" ? &outputFile : nullptr;
      default:
        return nullptr;
    }
  }
};

const CXmlNode* DependenciesOf(const CXmlNode& node) {
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    const CXmlNode* child = node.GetChild(i);
    if (child->NameView() == "Dependencies") return child;
  }
  return nullptr;
}

// Returns true if the tool reported this spelling of the source. A tool that was given the source
// by its name on disk reports that name too, if it differs from the listed one.
bool ReportsSpellingOf(const CXmlNode& node, const char* path) {
  const CXmlNode* dependencies = DependenciesOf(node);
  for (int i = 0; dependencies != nullptr && i < dependencies->GetChildCount(); ++i) {
    const char* file = dependencies->GetChild(i)->GetAttrValue("Header");
    if (file != nullptr && EqualNoCase(file, path)) return true;
  }
  return false;
}

bool IsWithoutTool(const CXmlNode& node) {
  const char* tool = node.GetAttrValue("TranslateTool");
  return tool != nullptr && *tool == '\0';
}

}  // namespace

bool IsExactlyYes(const CXmlNode& node, std::string_view name) {
  const char* value = node.GetAttrValue(name);
  return value != nullptr && std::string_view(value) == "Yes";
}

bool Staleness::IsUpToDate(CXmlNode* node) {
  if (node == nullptr || IsSkipped(*node)) return true;
  for (int i = 0; i < node->GetChildCount(); ++i) {
    CXmlNode* child = node->GetChild(i);
    if (IsContentNode(*child) && !IsUpToDate(child)) return false;
  }
  return IsOwnOutputUpToDate(*node);
}

// Returns true if neither the node nor its descendants are judged.
bool Staleness::IsSkipped(const CXmlNode& node) const {
  return IsExactlyYes(node, "Exclude") ||
         (ignoresUnbuildable_ && types_.GetNodeType(node) == nullptr);
}

// Returns true if the node must have an output of its own.
bool Staleness::IsJudged(const CXmlNode& node) const {
  if ((types_.FlagsOf(node) & kTypeBuild) == 0 || node.NameView() == "Group") return false;
  return !ignoresUnbuildable_ || !IsWithoutTool(node);
}

bool Staleness::HasUnbuilt(const CXmlNode& node) const {
  if (IsSkipped(node)) return false;
  if (IsJudged(node) && LastBuiltOf(node) == 0) return true;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child) && HasUnbuilt(child)) return true;
  }
  return false;
}

bool Staleness::IsOwnOutputUpToDate(CXmlNode& node) {
  if (!IsJudged(node)) return true;
  // Avoids disk access for nodes that were never built; the result is the same.
  if (LastBuiltOf(node) == 0) return false;
  return !Examine(node);
}

bool Staleness::IsUpToDateSince(CXmlNode& node, std::int64_t newest) {
  if ((types_.FlagsOf(node) & kTypeApplication) == 0) return false;
  const char* outputFile = node.GetAttrValue("OutputFile");
  const MtimeCache::Entry* output = IsBlankAttr(outputFile) ? nullptr : times_.Find(outputFile);
  const std::int64_t lastBuilt = LastBuiltOf(node);
  if (output == nullptr || output->GetTime() != lastBuilt || lastBuilt == 0 || newest > lastBuilt) {
    return false;
  }
  return !ExamineRecord(node) && !hasMissed_;
}

std::int64_t Staleness::LastBuiltOf(const CXmlNode& node) {
  return NumberOf(node.GetAttrValue("LastBuilt"));
}

const MtimeCache::Entry& Staleness::Query(const char* path) {
  static const MtimeCache::Entry kNothing;
  if (onUnknown_ == OnUnknown::Examine) return times_.Get(path);
  const MtimeCache::Entry* known = times_.Find(path);
  if (known != nullptr) return *known;
  hasMissed_ = true;
  return kNothing;
}

StaleVerdict Staleness::Examine(CXmlNode& node) {
  StaleVerdict verdict = ExamineTimes(node);
  if (verdict.reason == StaleReason::NeverBuilt) {
    // Reason found by an earlier check, which also cleared everything else known about the node.
    if (StaleVerdict withdrawn = records_.GetWithdrawn(node)) return withdrawn;
  }
  return verdict ? verdict : ExamineRecord(node);
}

StaleVerdict Staleness::ExamineRecord(CXmlNode& node) {
  bool misses = false;
  StaleVerdict verdict = records_.Check(node, onUnknown_ == OnUnknown::Examine, misses);
  hasMissed_ |= misses;
  if (!verdict) return verdict;
  records_.Withdraw(node, verdict);
  if (const CXmlAttr* built = node.GetAttr("LastBuilt")) node.RemoveAttr(built);
  return verdict;
}

StaleVerdict Staleness::ExamineTimes(const CXmlNode& node) {
  const std::uint32_t flags = types_.FlagsOf(node);
  if (IsExactlyYes(node, "Exclude") || (flags & kTypeBuild) == 0 || node.NameView() == "Group") {
    return {};
  }
  const char* outputFile = node.GetAttrValue("OutputFile");
  if (IsBlankAttr(outputFile)) return {StaleReason::NoOutputName, {}};
  const MtimeCache::Time outputTime = TimeOf(outputFile);
  if (!outputTime) return {StaleReason::OutputMissing, outputFile};
  const std::int64_t lastBuilt = LastBuiltOf(node);
  if (lastBuilt == 0) return {StaleReason::NeverBuilt, outputFile};
  if (*outputTime != lastBuilt) return {StaleReason::OutputChanged, outputFile};
  if ((flags & kTypeApplication) != 0) return ExamineParts(node, *outputTime);

  const char* path = node.GetAttrValue("Path");
  const MtimeCache::Entry* const source = path == nullptr ? nullptr : &Query(path);
  if (source == nullptr || !source->exists) return {StaleReason::SourceMissing, OrEmpty(path)};
  if (source->status.modifiedSeconds > *outputTime) return {StaleReason::SourceNewer, path};
  if (source->status.otherSpelling && !ReportsSpellingOf(node, path)) {
    return {StaleReason::SourceRenamed, path};
  }
  return ExamineDependencies(node, *outputTime);
}

StaleVerdict Staleness::ExamineParts(const CXmlNode& application, std::int64_t outputTime) {
  StaleVerdict verdict;
  ForEachLinkFile(types_, &application, true, &application, [&](const char* part) {
    if (verdict) return;
    const MtimeCache::Time time = TimeOf(part);
    if (!time) {
      verdict = {StaleReason::PartMissing, part};
    } else if (*time > outputTime) {
      verdict = {StaleReason::PartNewer, part};
    }
  });
  return verdict;
}

StaleVerdict Staleness::ExamineDependencies(const CXmlNode& node, std::int64_t outputTime) {
  const CXmlNode* dependencies = DependenciesOf(node);
  if (dependencies == nullptr) return {};
  for (int i = 0; i < dependencies->GetChildCount(); ++i) {
    const char* file = dependencies->GetChild(i)->GetAttrValue("Header");
    if (file == nullptr) continue;
    const MtimeCache::Entry& entry = Query(file);
    const bool isThere = entry.exists && !entry.status.otherSpelling;
    if (!isThere) return {StaleReason::DependencyMissing, file};
    if (entry.status.modifiedSeconds > outputTime) return {StaleReason::DependencyNewer, file};
  }
  return {};
}

void Staleness::CollectInputs(const CXmlNode& node, MtimeCache::StatBatch& batch, Prefetch& ahead) {
  const std::uint32_t flags = types_.FlagsOf(node);
  if ((flags & kTypeBuild) == 0 || node.NameView() == "Group") return;
  const JudgedBy by(node);
  const std::int64_t lastBuilt = NumberOf(by.lastBuilt);
  if (IsBlankAttr(by.outputFile) || lastBuilt == 0) return;
  const MtimeCache::Entry& output = batch.Add(times_, by.outputFile);
  if ((flags & kTypeApplication) != 0) {
    records_.CollectRecordedInputs(node, batch);
    return;
  }

  const bool isExcluded = by.exclude != nullptr && std::string_view(by.exclude) == "Yes";
  const BuildRecord* const record = records_.FindVerified(node);
  bool isDecided = !isExcluded && (record != nullptr || !records_.HasRecord(node));
  const bool hasFolders = record != nullptr && record->folders != 0;
  ahead.Add(node, lastBuilt, hasFolders ? times_.GetChangeCount() : 0);
  ahead.AddFile(output, record == nullptr ? nullptr : &records_.Version(record->output));
  // The node's files and its record's inputs, which are the same in the same order.
  std::size_t input = 0;
  const auto askFor = [&](const char* file) {
    if (IsBlankAttr(file)) {
      isDecided = false;
      return;
    }
    if (record != nullptr && input + record->programs < record->inputs.size()) {
      const BuildRecord::Number number = record->inputs[input++];
      if (records_.PathOf(number) == file) {
        ahead.AddFile(records_.RequestStat(number, batch), &records_.Version(number));
        return;
      }
      isDecided = false;
    }
    ahead.AddFile(batch.Add(times_, file), nullptr);
  };
  askFor(by.path);
  const CXmlNode* dependencies = nullptr;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode* child = node.GetChild(i);
    if (child->NameView() == "Dependencies") dependencies = child;
    if (IsContentNode(*child)) isDecided = false;
  }
  for (int i = 0; dependencies != nullptr && i < dependencies->GetChildCount(); ++i) {
    const char* file = dependencies->GetChild(i)->GetAttrValue("Header");
    if (file != nullptr) askFor(file);
  }
  if (record != nullptr) {
    if (!records_.AreFoldersUnchanged(*record)) isDecided = false;
    if (input + record->programs != record->inputs.size()) isDecided = false;
    for (std::size_t i = input; i < record->inputs.size(); ++i) {
      const BuildRecord::Number program = record->inputs[i];
      ahead.AddProgram(records_.RequestStat(program, batch), records_.Version(program));
    }
  }
  if (!isDecided) ahead.DropLast();
}

void Staleness::CollectParts(const CXmlNode& application, MtimeCache::StatBatch& batch) {
  ForEachLinkFile(types_, &application, true, &application,
                  [&](const char* part) { batch.Add(times_, part); });
}

}  // namespace tarn
