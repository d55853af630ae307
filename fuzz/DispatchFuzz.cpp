// The input is the actions of a host on a manager with a small project, one per line, with
// tab-separated fields:
//
//   METHOD ARGUMENT...            a call by name, or by number after a #
//   @MESSAGE METHOD ARGUMENT...   the same call inside the next host message of that number
//   ?MESSAGE NUMBER               sets the host's reply to that message
//   =PATH TEXT                    creates a file
//   pump                          the host waits for the worker
//
// An argument is 'string, a number, - (null string), . (no value), o (an object) or m (the
// manager). In strings, \n is a line break. For any input, each call returns a result or an error,
// and the manager is destroyed when its host releases it.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "automation/ManagerFixture.h"
#include "platform/text/Text.h"
#include "support/AnsweringUser.h"
#include "support/WizardUser.h"
#include "xml/XmlNode.h"

namespace {

using tarn::DispatchId;
using tarn::DispatchPtr;
using tarn::DispatchResult;
using tarn::DispatchStatus;
using tarn::Variant;
using Words = std::vector<std::string_view>;

constexpr std::size_t kMostLines = 100;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string TextOfWord(std::string_view word) {
  return tarn::ReplaceAll(word, "\\n", "\n");
}

std::int32_t NumberOfWord(std::string_view word) {
  return static_cast<std::int32_t>(std::strtoul(std::string(word).c_str(), nullptr, 0));
}

class Host {
 public:
  Host() {
    world.AddDemo();
    world.AddDefaultProject();
    world.components.Properties().defaults = {{".Build.OutputFile", "/p/demo.o"},
                                              {".Build.ListingFile", "/p/demo.lst"},
                                              {".Build.TranslateTool", "cc"},
                                              {".Internal.Open", "0x810F"}};
    world.components.Properties().changedProperty = "C.Build.Tool";
    world.components.Properties().newConfigName = "Debug";
    world.components.Tools().tools[""] = "<Tools><Tool Header=\"lint\" /></Tools>";
    Require(world.Init() == "1");
    world.Call("InitToolManager", {DispatchPtr(&world.components.Tools())});
    Require(world.Call("ProjectOpen", {"/p/demo.tprj"}) == "1");
    user.okCancel = {true, false, true, true};
    user.files = {{"/p/a.c"}, {}, {"/p/b.c", "/p/demo.tapp"}};
    user.useSheet = [](tarn::CPropertySheet& sheet) {
      tarn::test::WizardUser(sheet).Type(tarn::kIdName, "other");
      return tarn::kSheetFinish;
    };
  }
  // Waits for the worker, since nothing else does after the end of its host.
  ~Host() { WaitForWorker(); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  void Do(std::string_view line) {
    const Words words = tarn::Split(line, '\t');
    const std::string_view first = words.front();
    if (first == "pump") return WaitForWorker();
    if (first.starts_with('=')) {
      const std::string path(first.substr(1));
      if (words.size() == 2 && path.starts_with("/p/")) {
        world.disk.AddFile(path, TextOfWord(words[1]));
      }
      return;
    }
    if (first.starts_with('?') && words.size() == 2) {
      world.host.answers[Message(first)] = NumberOfWord(words[1]);
    } else if (first.starts_with('@') && words.size() > 1) {
      world.host.actions[Message(first)] = [this, message = Message(first),
                                            call = std::string(line.substr(first.size() + 1))] {
        const std::string once = call;  // copied, since it is destroyed with the action
        world.host.actions.erase(message);
        Call(tarn::Split(once, '\t'));
      };
    } else {
      Call(words);
    }
  }

 private:
  static std::uint32_t Message(std::string_view word) {
    return static_cast<std::uint32_t>(NumberOfWord(word.substr(1)));
  }

  Variant Argument(std::string_view word) {
    if (word.starts_with('\'')) return TextOfWord(word.substr(1));
    if (word == "-") return tarn::NullableText();
    if (word == ".") return {};
    if (word == "o") return DispatchPtr(&world.components.Tools());
    if (word == "m") return world.manager;
    return NumberOfWord(word);
  }

  void Call(const Words& words) {
    if (words.empty()) return;
    DispatchId id = NumberOfWord(words.front().substr(words.front().starts_with('#') ? 1 : 0));
    if (!words.front().starts_with('#') && !world.manager->GetIDsOfNames(words.front(), id)) return;
    std::vector<Variant> arguments;
    for (std::size_t i = 1; i < words.size(); ++i) arguments.push_back(Argument(words[i]));
    Variant result("left over");
    const DispatchResult outcome = world.manager->Invoke(id, arguments, result);
    Require(outcome.status != DispatchStatus::Failed && outcome.status != DispatchStatus::NoObject);
    Require(outcome || result.GetKind() == Variant::Kind::Empty);
    for (const tarn::MethodInfo& method : world.manager->GetMethods()) {
      const bool isRight = method.arguments.size() == arguments.size();
      if (method.id != id) continue;
      Require((outcome.status == DispatchStatus::WrongCount) == !isRight);
      return;
    }
    Require(outcome.status == DispatchStatus::UnknownMember);
  }

  void WaitForWorker() {
    tarn::Builder* builder = world.Manager().GetBuilder();
    Require(tarn::MessageLoop::ForCurrentThread()->PumpUntil(
        [builder] { return !builder->IsWorkerAlive(); }, std::chrono::seconds(15)));
  }

  tarn::test::ManagerFixture world;
  tarn::test::AnsweringUser user{world.host.Handle()};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::size_t count = 0;
  Host host;
  for (const std::string_view line : tarn::Split(input, '\n')) {
    if (++count > kMostLines) break;
    if (!line.empty()) host.Do(line);
  }
  return 0;
}
