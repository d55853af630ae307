#include "components/tools/EarlyRun.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

bool Contains(const std::vector<std::string>& list, const std::string& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

std::vector<std::string> WrittenBy(const ToolPlan& plan) {
  std::vector<std::string> written = plan.products;
  written.insert(written.end(), plan.byProducts.begin(), plan.byProducts.end());
  for (const std::string& path :
       {plan.outputOnDisk, plan.listing, plan.rules, plan.furtherRules, plan.globals}) {
    if (!path.empty()) written.push_back(path);
  }
  return written;
}

}  // namespace

EarlyRun::EarlyRun(const ToolEnvironment& machine, HelperFinder& helpers,
                   std::unique_ptr<PlannedRun> run, std::size_t mostMessages)
    : world_(machine),
      planned_(std::move(run)),
      run_(machine, running_, helpers, *planned_, mostMessages),
      most_(mostMessages),
      claims_(WrittenBy(planned_->plan)) {
  // Compilers derive the names of by-products from that of the output.
  claims_.push_back(WithoutExtension(Plan().outputOnDisk));
  run_.ListInputsOnError();
}

bool EarlyRun::MayRunEarly() const {
  const ToolPlan& plan = Plan();
  const bool isPlain = planned_->definition->isEarly && plan.problems.empty() &&
                       !plan.outputOnDisk.empty() && !plan.rules.empty() && !plan.commands.empty();
  if (!isPlain || Job().files.size() != 1 || !Job().repeated.empty()) return false;
  const RunAccess& access = planned_->FindFiles();
  // A flag that follows a flag that names a file counts as a name, too.
  const auto isDeclared = [this](const FileWrite& each) {
    return !each.isCertain || Contains(claims_, each.path) ||
           FileNameOf(each.path).starts_with('-');
  };
  return !access.writesUnknownFiles &&
         std::all_of(access.writes.begin(), access.writes.end(), isDeclared);
}

void EarlyRun::Execute() {
  if (events_) events_->Start();
  hasSucceeded_ = run_.Run();
  if (events_) events_->End(hasSucceeded_, run_.GetExitCode());
  // The tool is going to run again in its turn, and many messages take much memory.
  if (run_.GetInputs() == nullptr) static_cast<void>(run_.TakeMessages());
}

bool EarlyRun::IsValid(std::size_t mostMessages) {
  if (events_) events_->BeginRetiring();
  const BuildRecord* const inputs = run_.GetInputs();
  if (inputs == nullptr) return false;
  // With a different limit, the run might have retained different messages.
  const bool isLimited = run_.GetLog().GetRetained() >= std::min(most_, mostMessages);
  if (most_ != mostMessages && isLimited) return false;
  std::vector<std::string> read = Job().files;
  read.insert(read.end(), inputs->dependencies.begin(), inputs->dependencies.end());
  const bool isUnchanged = std::all_of(
      read.begin(), read.end(), [this](const std::string& path) { return IsUnchanged(path); });
  const auto exists = [this](const std::string& path) {
    return world_.files->ExamineExactly(path).has_value();
  };
  return isUnchanged && !std::any_of(inputs->missing.begin(), inputs->missing.end(), exists) &&
         !IsShadowed(read);
}

bool EarlyRun::IsUnchanged(const std::string& path) const {
  const auto status = world_.files->ExamineExactly(path);
  return status && (status->changed == 0 || status->changed < run_.GetStartTime());
}

// Returns true if a name may lead to a different file now than when the run looked it up: an entry
// was added to or removed from a folder with files that were read, or a file that was created since
// is found before one of them. The run itself adds entries to the folders of its output.
bool EarlyRun::IsShadowed(const std::vector<std::string>& read) const {
  std::vector<std::string> folders = run_.GetInputs()->search;
  for (const std::string& path : read) {
    std::string folder = FolderOf(path);
    if (!Contains(folders, folder)) folders.push_back(std::move(folder));
  }
  const auto isIn = [](const std::string& path, const std::string& folder) {
    return path.starts_with(AddSeparator(folder));
  };
  for (const std::string& folder : folders) {
    const auto status = world_.files->ExamineFolder(folder);
    if (!status || status->changed < run_.GetStartTime()) continue;
    const bool isOwn = isIn(Plan().outputOnDisk, folder);
    for (const std::string& path : read) {
      if (!isOwn && isIn(path, folder)) return true;
      for (const std::string& other : folders) {
        if (other == folder || !isIn(path, other)) continue;
        const std::string candidate = JoinPath(folder, path.substr(AddSeparator(other).size()));
        if (world_.files->ExamineExactly(candidate) && !IsUnchanged(candidate)) return true;
      }
    }
  }
  return false;
}

}  // namespace tarn::tools
