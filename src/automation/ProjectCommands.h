#pragma once

#include <cstdint>

#include "automation/CommandActions.h"

namespace tarn {

// Life cycle of a command: enabling, prolog, execution, epilog. CommandTable has the commands
// themselves. Main thread only.
//
// Calling sequence for commands that run in the background: Prolog(), which returns 0 if the
// command is refused; Run(), which returns 2 if the work continues in the background; Epilog()
// after its end. All four functions return 1 for ids that aren't commands.
class ProjectCommands {
 public:
  // Both are borrowed and must outlive this object. The services of the model must be set before
  // the first call.
  ProjectCommands(CProjectModel& projectModel, Builder& projectBuilder)
      : model_(projectModel), builder_(projectBuilder), actions_(projectModel, projectBuilder) {}

  // Returns 0 if the command is currently disabled.
  std::int32_t Enable(std::uint32_t id) const;
  std::int32_t Prolog(std::uint32_t id);
  std::int32_t Run(std::uint32_t id);
  // Returns 0 if follow-up commands were posted to the host.
  std::int32_t Epilog(std::uint32_t id);

  // Returns true if nothing may be built, since the project or the definitions were read only in
  // part. The reason is logged.
  bool RefusesBuild();

 private:
  CProjectModel& model_;
  Builder& builder_;
  CommandActions actions_;
};

}  // namespace tarn
