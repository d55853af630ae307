#include "automation/Installation.h"

#include <tarn/methods.h>

#include "output/MessageTable.h"
#include "patterns/ParseNumber.h"
#include "platform/paths/Paths.h"
#include "platform/settings/InstalledData.h"
#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kConfigFileName = "projectmanager.config";

std::string AfterLastSeparator(const std::string& path) {
  std::size_t start = path.size();
  while (start > 0 && !IsSeparator(path[start - 1])) --start;
  return path.substr(start);
}

void SendMenus(HostLink& host, const CXmlNode& configuration) {
  const std::string caption = GetMessageText(kRowProjectWord);
  for (int i = 0; i < configuration.GetChildCount(); ++i) {
    const CXmlNode& section = *configuration.GetChild(i);
    if (section.NameView() == "ToolBar") {
      host.SendHost(kMsgCreateToolbar, caption, section.ToString(g_xmlDisplayOptions));
    } else if (section.NameView() == "MainMenus") {
      for (int menu = 0; menu < section.GetChildCount(); ++menu) {
        const CXmlNode& entry = *section.GetChild(menu);
        if (entry.GetType() != XmlElement) continue;
        host.SendHost(kMsgAddMainMenu, caption, entry.ToString(g_xmlDisplayOptions));
      }
    }
  }
}

}  // namespace

Installation::Installation(FileSystem& fileSystem, Settings& userSettings)
    : files_(fileSystem), settings_(userSettings) {}

bool Installation::Locate(const char* givenApplicationPath, const char* givenDataPath) {
  std::string root = givenApplicationPath != nullptr && *givenApplicationPath != '\0'
                         ? std::string(givenApplicationPath)
                         : InstalledDataFolder(files_);
  // The current folder changes with every project.
  if (IsRelativePath(root)) root = JoinPath(files_.CurrentFolder(), root);
  dataPath_ = OrEmpty(givenDataPath);
  configFolder_ = root + "config" + kSeparator;
  const std::string own = configFolder_ + AfterLastSeparator(dataPath_) + "_" + kConfigFileName;
  const auto canBeRead = [this] {
    const Result<std::string> text = files_.ReadWholeFile(configFile_);
    return text || text.GetError().code != ErrorCode::NotFound;
  };
  configFile_ = own;
  if (!files_.Exists(own) || !canBeRead()) {
    configFile_ = configFolder_ + kConfigFileName;
    if (!files_.Exists(configFile_) && !canBeRead()) return false;
  }
  folder_ = root;
  return true;
}

bool Installation::Configure(CProjectModel& model) {
  ProjectServices& services = model.Services();
  services.configFilePath = configFile_;
  services.configFolder = configFolder_;
  services.examplesFolder = folder_ + "examples" + kSeparator;
  CXmlNode configuration;
  if (!LoadTypes(model, configuration)) return false;
  SendMenus(model.Host(), configuration);
  services.applicationPath = folder_;
  services.dataPath = dataPath_;
  const std::string name = OwnFolderName();
  if (!name.empty()) settings_.SetProfileKey("Corvane\\" + name);
  services.importProgram = settings_.ReadProfile("Import", "Interpreter", "");
  const std::int32_t seconds = ParseNumber(settings_.ReadProfile("Import", "Seconds", "0"));
  if (seconds > 0 && seconds != kNoNumber) services.importSeconds = seconds;
  return true;
}

bool Installation::LoadTypes(CProjectModel& model, CXmlNode& configuration) {
  const Result<std::string> text = files_.ReadWholeFile(configFile_);
  if (!text) {
    // The result already means that the file doesn't exist.
    const Error& error = text.GetError();
    const std::string reason = configFile_ + ": " + error.text;
    if (error.code != ErrorCode::NotFound) model.Host().SendHost(kMsgLogLine, reason, 0);
    return false;
  }
  problem_ = LoadWhole(configuration, *text, XmlTexts::None, configFile_);
  const bool isDamaged = !problem_.empty();
  if (isDamaged && configuration.Load(*text, g_xmlParseInfo) == nullptr) return false;
  for (int i = 0; i < configuration.GetChildCount(); ++i) {
    const CXmlNode& section = *configuration.GetChild(i);
    if (section.NameView() != "Types") continue;
    for (int record = 0; record < section.GetChildCount(); ++record) {
      const CXmlNode& type = *section.GetChild(record);
      if (type.GetType() == XmlElement) model.Services().types.Add(type);
    }
  }
  return true;
}

void Installation::SeedDefaultProject() {
  std::string base = dataPath_;
  if (base.empty()) {
    base = settings_.GetFolders().userData;
    // No other component creates it for a new user.
    (void)files_.CreateFolders(base);
  }
  if (IsRelativePath(base)) base = JoinPath(files_.CurrentFolder(), base);
  const std::string name = AfterLastSeparator(dataPath_);
  defaultProject_ = files_.Canonical(base + kSeparator + name + ".tprj");
  const std::string application = base + kSeparator + name + ".tapp";
  if (files_.Exists(defaultProject_) && files_.Exists(application)) return;
  const std::string seeds = ReadRegistryValue("Default Directories", "LastTargetConfig");
  (void)files_.CopyFileTo(seeds + kSeparator + name + ".tprj", defaultProject_);
  (void)files_.CopyFileTo(seeds + kSeparator + name + ".tapp", application);
}

std::string Installation::FindConfigFile(const char* name) const {
  const std::string path = OrEmpty(name);
  return files_.Exists(path) ? path : configFolder_ + path;
}

std::string Installation::OwnFolderName() const {
  const std::string path = files_.Canonical(folder_);
  std::string name = AfterLastSeparator(path);
  if (name.empty() && !path.empty()) name = AfterLastSeparator(path.substr(0, path.size() - 1));
  return EqualNoCase(name, "Tarn") ? std::string() : name;
}

std::string Installation::ReadRegistryValue(const char* key, const char* name) const {
  const std::string own = OwnFolderName();
  const std::string base =
      own.empty() ? std::string("Software\\Corvane\\Tarn7\\") : "Software\\Corvane\\" + own + "\\";
  return settings_.ReadRegistry(base + OrEmpty(key), OrEmpty(name)).value_or(std::string());
}

std::string FindDefinitionProblem(const ProjectServices& services) {
  const std::string options =
      services.propertyManager->InvokeText(TARN_OPT_GET_DEFINITION_PROBLEM, {});
  return options.empty() ? services.toolManager->InvokeText(TARN_TOOL_GET_DEFINITION_PROBLEM, {})
                         : options;
}

}  // namespace tarn
