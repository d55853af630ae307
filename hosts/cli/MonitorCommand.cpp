#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

#include "hosts/cli/ActionRun.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/MonitorText.h"
#include "hosts/core/SerialPort.h"
#include "hosts/core/SignalHandler.h"

namespace tarn::host {

namespace {

constexpr std::chrono::milliseconds kWait(50);
constexpr std::chrono::milliseconds kBetweenOpens(250);
constexpr char kEndKey = 0x1d;  // Ctrl-]
constexpr const char* kUsualSpeed = "115200";

struct MonitorOptions {
  std::string port;
  std::string speed;
  std::string lineEnd = "lf";
  std::string seconds;  // empty: no limit
  bool isHex = false;
  bool hasTimes = false;
  bool reconnects = false;
};

std::string LineEndOf(const std::string& name) {
  return name == "crlf" ? "\r\n" : name == "cr" ? "\r" : name == "none" ? "" : "\n";
}

class Monitor {
 public:
  Monitor(CommandContext& context, const MonitorOptions& options)
      : context_(context),
        options_(options),
        text_(options.isHex, options.hasTimes
                                 ? std::function<std::string()>([this] { return TimeStamp(); })
                                 : std::function<std::string()>()) {}

  // May be called from any thread.
  void Stop() { isStopped_ = true; }

  int Run() {
    const RawInput raw;
    bool isFirst = true;
    while (!IsOver()) {
      auto opened = SerialPort::Open(options_.port, std::stoi(options_.speed));
      if (opened) {
        context_.Remark((isFirst ? "Connected to " : "Connected again to ") + options_.port +
                        ". Ctrl-] ends the monitor.");
        isFirst = false;
        isWaiting_ = false;
        if (Serve(**opened)) break;
        context_.Out().PrintOutput(text_.Finish());
        if (!options_.reconnects) {
          context_.Complain(options_.port + " was disconnected.");
          return kExitBuildFailed;
        }
      } else if (!options_.reconnects) {
        context_.Complain(context_.ShowFailure(options_.port, "opened", opened.GetError().text));
        return kExitCannotOpen;
      }
      if (!std::exchange(isWaiting_, true))
        context_.Remark("Waiting for " + options_.port + " ...");
      std::this_thread::sleep_for(kBetweenOpens);
    }
    context_.Out().PrintOutput(text_.Finish());
    return kExitDone;
  }

 private:
  using Clock = std::chrono::steady_clock;

  std::string TimeStamp() const {
    const auto passed =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_);
    std::string digits = std::to_string(passed.count() % 1000);
    digits.insert(0, 3 - digits.size(), '0');
    return "[" + std::to_string(passed.count() / 1000) + "." + digits + "]";
  }

  bool IsOver() const {
    if (isStopped_ || context_.Out().GetFailure() != 0) return true;
    return !options_.seconds.empty() &&
           Clock::now() - start_ > std::chrono::seconds(std::stoi(options_.seconds));
  }

  // Returns true if the user ends the monitor, false if the device is gone.
  bool Serve(SerialPort& port) {
    while (!IsOver()) {
      std::string bytes;
      switch (port.Wait(kWait, bytes)) {
        case SerialPort::Event::Data:
          context_.Out().PrintOutput(text_.Add(bytes));
          break;
        case SerialPort::Event::Input: {
          const std::size_t end = bytes.find(kEndKey);
          const std::string sent = ToLineEnds(bytes.substr(0, end), LineEndOf(options_.lineEnd));
          if (!port.Write(sent)) return false;
          if (end != bytes.npos) return true;
          break;
        }
        case SerialPort::Event::Gone:
          return false;
        case SerialPort::Event::None:
        case SerialPort::Event::InputEnd:
          break;
      }
    }
    return true;
  }

  CommandContext& context_;
  const MonitorOptions& options_;
  MonitorText text_;
  Clock::time_point start_ = Clock::now();
  std::atomic<bool> isStopped_ = false;
  bool isWaiting_ = false;
};

// Takes what the command line doesn't specify from the application.
int CompleteOptions(CommandContext& context, MonitorOptions& options) {
  if (options.port.empty()) {
    if (const int code = context.OpenProject(); code != kExitDone) return code;
    ApplicationEntry application;
    if (const int code = ChooseOneApplication(context, application); code != kExitDone) return code;
    context.Session().Inspector().SelectApplication(application.path);
    ProjectManagerDriver& manager = context.Session().Manager();
    options.port = manager.GetPropertyValue("Application", "Monitor", "Port");
    if (options.speed.empty()) {
      options.speed = manager.GetPropertyValue("Application", "Monitor", "Speed");
    }
  }
  const bool isNumber = options.speed.size() < 9 && std::ranges::all_of(options.speed, [](char c) {
                          return c >= '0' && c <= '9';
                        });
  if (options.speed.empty() || !isNumber) options.speed = kUsualSpeed;
  if (!options.port.empty()) return kExitDone;
  context.Complain("No serial port is known. Use --port, or set the option Monitor.Port.");
  return kExitUsage;
}

int RunMonitor(CommandContext& context) {
  MonitorOptions options = context.Own<MonitorOptions>();
  if (context.Asked().json) {
    context.Complain("`tarn monitor` shows what arrives, and has no --json.");
    return kExitUsage;
  }
  if (const int code = CompleteOptions(context, options); code != kExitDone) return code;
  Monitor monitor(context, options);
  const SignalHandler interrupts([&monitor] { monitor.Stop(); }, WatchedOutput::Standard);
  return monitor.Run();
}

bool IsLineEnd(const std::string& name) {
  return name == "lf" || name == "cr" || name == "crlf" || name == "none";
}

void DeclareMonitor(CommandArguments& arguments) {
  auto& own = arguments.Own<MonitorOptions>();
  arguments.AddProjectAndApp("The application; without it the active one");
  arguments.AddConfiguration();
  arguments.Option("-p,--port", own.port, "DEVICE", "The serial port; without it Monitor.Port")
      .NotEmpty();
  arguments.Option("-b,--baud", own.speed, "BAUD", "The speed; without it Monitor.Speed or 115200")
      .Between(1, 100'000'000);
  arguments.Option("--line-end", own.lineEnd, "END", "What the enter key sends: lf, cr, crlf, none")
      .Valid(IsLineEnd, "lf, cr, crlf or none");
  arguments.Option("--timeout", own.seconds, "SECONDS", "End after this time")
      .Between(1, 1'000'000);
  arguments.Flag("--hex", own.isHex, "Show the bytes in hexadecimal");
  arguments.Flag("--timestamps", own.hasTimes, "Show the time since the start before each line");
  arguments.Flag("--reconnect", own.reconnects, "Wait for the port if it is missing or removed");
}

}  // namespace

CommandSpec MonitorCommand() {
  return {
      .name = "monitor",
      .group = CommandGroup::Building,
      .help = "Show what a serial port receives, and send what is typed",
      .examples = {{"tarn monitor --port /dev/ttyUSB0 --baud 9600", "a port and its speed"}},
      .declare = DeclareMonitor,
      .run = RunMonitor,
  };
}

}  // namespace tarn::host
