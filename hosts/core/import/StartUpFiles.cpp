#include "hosts/core/import/StartUpFiles.h"

#include <algorithm>

#include "hosts/core/import/ArduinoCore.h"
#include "hosts/core/import/StartUpCode.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kFolder = "startup";
constexpr const char* kGroup = "Start-up";
constexpr const char* kStandardName = "Standard";

std::string ValueOf(const ImportedOptions& options, const char* key) {
  const auto found = options.find(key);
  return found == options.end() ? std::string() : found->second;
}

bool IsLibrary(const ImportedApplication& application) {
  return ValueOf(application.configurations.front().options, "Application.Target.Product") ==
         "library";
}

// Completes one application.
class StartUpAdder {
 public:
  StartUpAdder(ImportedProject& project, ImportedApplication& application,
               const ImportContext& context)
      : project_(project), application_(application), context_(context) {}

  Status Run();

 private:
  bool HasOwn(const std::string& configuration) const;
  bool HasOwnIn(const ImportedApplication& application, const std::string& configuration) const;
  std::vector<std::string> FindNeeded(const ImportedConfiguration& configuration);
  Result<std::string> Provide(const std::string& original);
  void Remark(const std::string& text) {
    const std::string line = application_.label + ": " + text;
    auto& remarks = project_.remarks;
    if (std::find(remarks.begin(), remarks.end(), line) == remarks.end()) remarks.push_back(line);
  }

  ImportedProject& project_;
  ImportedApplication& application_;
  const ImportContext& context_;
  std::map<std::string, std::string> provided_;  // path in the project, by that of the original
};

bool StartUpAdder::HasOwnIn(const ImportedApplication& application,
                            const std::string& configuration) const {
  return std::any_of(
      application.files.begin(), application.files.end(), [&](const ImportedFile& file) {
        const std::string type = file.type.empty() ? context_.typeOf(file.path) : file.type;
        if (!IsSourceType(type)) return false;
        const auto own = file.options.find(configuration);
        const std::string key = type + ".Build.Exclude";
        if (own != file.options.end() && ValueOf(own->second, key.c_str()) == "Yes") return false;
        const auto text = ReadForImport(context_.files, file.path);
        return text && HasStartUpCode(*text);
      });
}

// Returns true if a source of the application or of a library has start-up code.
bool StartUpAdder::HasOwn(const std::string& configuration) const {
  if (HasOwnIn(application_, configuration)) return true;
  return std::any_of(project_.applications.begin(), project_.applications.end(),
                     [&](const ImportedApplication& each) {
                       return IsLibrary(each) && HasOwnIn(each, configuration);
                     });
}

// Returns the files of the installation that the configuration lacks.
std::vector<std::string> StartUpAdder::FindNeeded(const ImportedConfiguration& configuration) {
  const ImportedOptions& options = configuration.options;
  const std::vector<std::string> originals = context_.startUp(options);
  if (originals.empty() || ValueOf(options, "Application.Linker.StartFiles") == "Yes") return {};
  const bool hasScript = !ValueOf(options, "Application.Linker.Script").empty();
  if (!hasScript && (ValueOf(options, "Application.Target.FlashSize").empty() ||
                     ValueOf(options, "Application.Target.RamSize").empty())) {
    Remark(
        "the sizes of its memories are unknown; set Target.FlashSize and Target.RamSize, or "
        "Linker.Script");
  }
  if (HasOwn(configuration.name)) return {};
  if (!hasScript) return originals;
  Remark(
      "it has no start-up code with a vector table; add the one that belongs to its linker "
      "script with `tarn add FILE`");
  return {};
}

// Returns the path of the copy in the project.
Result<std::string> StartUpAdder::Provide(const std::string& original) {
  if (const auto found = provided_.find(original); found != provided_.end()) return found->second;
  const auto text = ReadForImport(context_.files, original);
  if (!text) return text.GetError();
  const std::string plain = JoinPath(project_.folder, JoinPath(kFolder, FileNameOf(original)));
  std::string path = plain;
  const auto isTaken = [&](const NewFile& each) { return each.path == path && each.text != *text; };
  auto& sources = project_.sources;
  for (int count = 2; std::any_of(sources.begin(), sources.end(), isTaken); ++count) {
    path = WithExtension(plain, "") + ToDecimal(count) + ExtensionOf(plain);
  }
  const Result<bool> exists = context_.files.CheckExists(path);
  if (!exists) return exists.GetError();
  const bool isNew = std::none_of(sources.begin(), sources.end(),
                                  [&](const NewFile& each) { return each.path == path; });
  if (!*exists && isNew) sources.push_back({path, *text});
  provided_[original] = path;
  return path;
}

Status StartUpAdder::Run() {
  std::map<std::string, std::set<std::string>> users;  // configurations, by original
  for (const ImportedConfiguration& each : application_.configurations) {
    for (const std::string& original : FindNeeded(each)) users[original].insert(each.name);
  }
  for (const auto& [original, names] : users) {
    const Result<std::string> path = Provide(original);
    if (!path) return path.GetError();
    ImportedFile file{*path, {kGroup}, context_.typeOf(*path), {}};
    const std::string key = file.type + ".Build.Exclude";
    for (const ImportedConfiguration& each : application_.configurations) {
      if (!names.contains(each.name)) file.options[each.name][key] = "Yes";
    }
    // The configuration that is added has the options of the first one.
    const auto first = file.options.find(application_.configurations.front().name);
    if (first != file.options.end()) file.options[kStandardName] = first->second;
    application_.files.push_back(std::move(file));
    Remark(*path + " was added: no source has start-up code");
  }
  return {};
}

}  // namespace

Status AddStartUpFiles(ImportedProject& project, const ImportContext& context) {
  for (ImportedApplication& each : project.applications) {
    if (IsLibrary(each)) continue;
    if (const Status added = StartUpAdder(project, each, context).Run(); !added) return added;
  }
  return {};
}

}  // namespace tarn::host
