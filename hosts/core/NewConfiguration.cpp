#include "hosts/core/NewConfiguration.h"

#include <tarn/commands.h>

#include <algorithm>

#include "hosts/core/Damage.h"
#include "hosts/core/ProjectTemplate.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

std::optional<ApplicationEntry> FindActive(BuildSession& session) {
  for (ApplicationEntry& each : ListApplications(session.Inspector())) {
    if (each.active) return std::move(each);
  }
  return std::nullopt;
}

// The name is set for this command only: a later command without a name must not reuse it.
bool RunWithName(BuildSession& session, const std::string& name) {
  session.Options().SetNewConfigName(name);
  const bool isDone = session.Manager().Command(TARN_CMD_ADD_CONFIGURATION) == 1;
  session.Options().SetNewConfigName({});
  return isDone;
}

}  // namespace

std::string FindConfiguration(const ApplicationEntry& application, const std::string& name) {
  for (const std::string& each : application.configurations) {
    if (EqualNoCase(each, name)) return each;
  }
  return {};
}

Status AddConfiguration(BuildSession& session, const NewConfiguration& wanted,
                        const ApplicationEntry* application) {
  if (session.Damage().RefusesChange()) return Error{ErrorCode::Changed, kDamageRefusal, {}};
  const std::optional<ApplicationEntry> active =
      application == nullptr ? FindActive(session) : std::nullopt;
  if (active) application = &*active;
  if (application == nullptr) {
    return Error{ErrorCode::NotFound, "This project has no application.", {}};
  }
  if (const std::string problem = CheckFileTitle(wanted.name, "configuration"); !problem.empty()) {
    return Error{ErrorCode::InvalidName, problem, wanted.name};
  }
  if (!FindConfiguration(*application, wanted.name).empty()) {
    return Error{ErrorCode::AlreadyExists,
                 application->label + " already has a configuration \"" + wanted.name + "\".",
                 wanted.name};
  }
  const std::string asked = wanted.from.value_or(application->configuration);
  const std::string from = FindConfiguration(*application, asked);
  if (from.empty() && !asked.empty()) {
    return Error{ErrorCode::NotFound,
                 application->label + " has no configuration \"" + asked + "\".", asked};
  }
  // Selecting the application also makes it the current node.
  if (!application->active) session.Inspector().SelectApplication(application->path);
  if (!RunWithName(session, wanted.name) ||
      session.Inspector().CopyConfiguration(from, wanted.name) == 0) {
    return Error{ErrorCode::Io, "The project can't be changed now.", wanted.name};
  }
  return {};
}

}  // namespace tarn::host
