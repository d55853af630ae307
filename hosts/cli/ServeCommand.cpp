#include <fcntl.h>
#include <unistd.h>

#include "hosts/cli/Commands.h"
#include "hosts/core/Interrupts.h"
#include "hosts/core/Jobs.h"
#include "hosts/serve/RpcServer.h"

namespace tarn::host {

namespace {

// Moves one of the standard descriptors to a number that is not inherited by tools and not written
// to by other code of this process; `replacement` takes its place. -1 on error.
class Descriptor {
 public:
  Descriptor(int standard, int replacement)
      : descriptor(fcntl(standard, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    if (replacement >= 0) dup2(replacement, standard);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (descriptor >= 0) close(descriptor);
  }

  int Get() const { return descriptor; }

 private:
  int descriptor;
};

int ExitCodeOf(ServerEnd end) {
  if (end == ServerEnd::Interrupted) return kExitInterrupted;
  return end == ServerEnd::Asked ? 0 : 1;
}

int RunServe(CommandContext& context) {
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  const Descriptor input(STDIN_FILENO, nothing);
  const Descriptor output(STDOUT_FILENO, STDERR_FILENO);
  if (nothing >= 0) close(nothing);
  if (input.Get() < 0 || output.Get() < 0) {
    context.Complain(
        "`tarn serve` communicates over standard input and output; one of them is closed.");
    return kExitUsage;
  }
  RpcServer server(context.Files(), input.Get(), output.Get(), context.Asked().trust,
                   ParseJobs(context.Asked().jobs));
  const Interrupts interrupts([&server] { server.Interrupt(); });
  return ExitCodeOf(server.Run());
}

}  // namespace

CommandSpec ServeCommand() {
  return {
      .name = "serve",
      .group = CommandGroup::Integration,
      .help = "Let an editor control projects (JSON-RPC on stdio)",
      .hasDisplayOptions = false,
      .declare =
          [](CommandArguments& arguments) {
            arguments.AddJobs();
            arguments.AddTrust();  // the client passes everything else in messages
          },
      .run = RunServe,
  };
}

}  // namespace tarn::host
