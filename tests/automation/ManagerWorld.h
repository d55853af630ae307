#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "automation/ProjectManager.h"
#include "support/FakeComponents.h"
#include "support/ManualClock.h"
#include "support/MemoryFileSystem.h"
#include "support/RecordingHost.h"

namespace tarn::test {

// A manager as a host has one, called through the dispatch interface alone; the machine below it is
// a disk in memory, and the outside components are fakes. Installed in /app/, with the data folder
// /data/demo; projects lie in /p.
class ManagerWorld {
 public:
  ManagerWorld();
  // Says goodbye as a host should.
  ~ManagerWorld();
  ManagerWorld(const ManagerWorld&) = delete;
  ManagerWorld& operator=(const ManagerWorld&) = delete;

  static constexpr const char* kConfigFile = "/app/config/projectmanager.config";

  // A configuration with the types of the tests and `more` behind them.
  static std::string Configuration(std::string_view more = {});
  // A project /p/demo.tprj whose application holds main.c.
  void AddDemo();
  // The default project where Init looks for it.
  void AddDefaultProject();

  // What a call answers: a number, a text in single quotes, "nothing", or how it failed.
  std::string Call(const char* method, std::initializer_list<Variant> arguments = {});
  // With the usual folders, and with this world's host.
  std::string Init() { return Init("/app/", "/data/demo"); }
  std::string Init(Variant application, Variant data);
  CProjectManager& Manager() { return *static_cast<CProjectManager*>(manager.Get()); }
  // How many references there are to an object of this process.
  static std::uint32_t ReferencesTo(IDispatch& object);
  // Lines of the host that are not about the log.
  std::vector<std::string> TakeLines();

  ManualClock clock;
  tarn::testing::MemoryFileSystem disk;
  Settings settings{disk, {"/machine", "/user", "/userdata"}};
  ClassRegistry classes{"/nowhere"};
  RunningObjectTable runningObjects;
  RecordingHost host;
  FakeComponents components;
  DispatchPtr manager;
};

// How a call ended, in a word.
std::string NameOf(DispatchStatus status);
std::string Show(const DispatchResult& outcome, const Variant& result);

}  // namespace tarn::test
