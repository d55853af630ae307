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

// Manager as used by a host, called through the dispatch interface only. The platform is an
// in-memory file system, and external components are fakes. Installed in /app/, with the data
// folder /data/demo; projects are in /p.
class ManagerFixture {
 public:
  ManagerFixture();
  // Calls Clean like a host does.
  ~ManagerFixture();
  ManagerFixture(const ManagerFixture&) = delete;
  ManagerFixture& operator=(const ManagerFixture&) = delete;

  static constexpr const char* kConfigFile = "/app/config/projectmanager.config";

  // Returns a configuration with the types of the tests, followed by `more`.
  static std::string Configuration(std::string_view more = {});
  // Adds a project /p/demo.tprj whose application contains main.c.
  void AddDemo();
  // Adds the default project in the location that Init expects.
  void AddDefaultProject();

  // Returns the result of a call: a number, a string in single quotes, "nothing", or the failure.
  std::string Call(const char* method, std::initializer_list<Variant> arguments = {});
  // Calls Init with the default folders and this object's host.
  std::string Init() { return Init("/app/", "/data/demo"); }
  std::string Init(Variant application, Variant data);
  CProjectManager& Manager() { return *static_cast<CProjectManager*>(manager.Get()); }
  // Returns the number of references to an object of this process.
  static std::uint32_t ReferencesTo(IDispatch& object);
  // Returns the messages to the host, except for log messages.
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

// Returns the status as a word.
std::string NameOf(DispatchStatus status);
std::string Show(const DispatchResult& outcome, const Variant& result);

}  // namespace tarn::test
