// Persistent build state, for hosts that store one.

#include "automation/ApplicationSearch.h"
#include "automation/ProjectInspector.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

const char* NameOf(StateVerdict verdict) {
  switch (verdict) {
    case StateVerdict::Good:
      return "good";
    case StateVerdict::Cut:
      return "cut";
    case StateVerdict::Damaged:
      return "damaged";
    case StateVerdict::OtherVersion:
      return "other-version";
    case StateVerdict::Foreign:
      return "foreign";
    case StateVerdict::Unreadable:
      return "unreadable";
  }
  return "";
}

}  // namespace

std::string ProjectInspector::OpenBuildState(const char* path) {
  CProjectModel* model = Model();
  if (model == nullptr || !model->IsOpen() || OrEmpty(path).empty()) return {};
  return NameOf(GetBuilder()->Information().OpenBuildState(path));
}

std::string ProjectInspector::GetBuildStateProblem() {
  CProjectModel* model = Model();
  return model == nullptr ? std::string()
                          : GetBuilder()->Information().GetBuildRecords().GetReadProblem();
}

std::int32_t ProjectInspector::IsBuildStateCurrent(const char* path) {
  CProjectModel* model = Model();
  return model != nullptr &&
                 GetBuilder()->Information().GetBuildRecords().IsJournalCurrent(OrEmpty(path))
             ? 1
             : 0;
}

std::int32_t ProjectInspector::RestoreFor(std::int32_t milliseconds) {
  CProjectModel* model = Model();
  return model == nullptr ||
                 GetBuilder()->Information().RestoreFor(std::chrono::milliseconds(milliseconds))
             ? 1
             : 0;
}

std::string ProjectInspector::FinishBuildState(std::int32_t mayShrink) {
  CProjectModel* model = Model();
  return model == nullptr ? std::string()
                          : GetBuilder()->Information().FinishBuildState(mayShrink != 0);
}

std::string ProjectInspector::GetBuildInfos(const char* application, const char* outputFile) {
  CProjectModel* model = Model();
  const CXmlNode* owner =
      model == nullptr ? nullptr : FindApplication(*model, OrEmpty(application));
  if (owner == nullptr) return {};
  const BuildRecordStore& store = GetBuilder()->Information().GetBuildRecords().Store();
  const std::size_t record = store.Find(OrEmpty(owner->GetAttrValue("Path")), OrEmpty(outputFile));
  return record == BuildRecordStore::kNone ? std::string()
                                           : std::string(store.Text(store.Get(record).infos));
}

}  // namespace tarn
