#include <memory>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/Jobs.h"
#include "hosts/core/SignalHandler.h"
#include "hosts/serve/ByteChannel.h"
#include "hosts/serve/RpcServer.h"

namespace tarn::host {

namespace {

int ExitCodeOf(ServerEnd end) {
  if (end == ServerEnd::Interrupted) return kExitInterrupted;
  return end == ServerEnd::Asked ? 0 : 1;
}

int RunServe(CommandContext& context) {
  const std::unique_ptr<ByteChannel> streams = TakeStandardStreams();
  if (!streams) {
    context.Complain(
        "`tarn serve` communicates over standard input and output; one of them is closed.");
    return kExitUsage;
  }
  BuildLimits limits = context.Asked().limits;
  limits.joinsJobserver = true;
  RpcServer server(context.Files(), *streams, context.Asked().trust, std::move(limits));
  server.onRemark = [&context](const std::string& text) { context.Remark(Printable(text)); };
  const SignalHandler interrupts([&server] { server.Interrupt(); });
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
            arguments.AddKeepGoing();
            arguments.AddLoadLimits();
            arguments.AddTrust();  // the client passes everything else in messages
          },
      .run = RunServe,
  };
}

}  // namespace tarn::host
