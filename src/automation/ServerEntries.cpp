// Functions that the library exports to the loader of an automation server.

#include "automation/ProjectInspector.h"
#include "automation/ProjectManager.h"
#include "automation/Registration.h"
#include "platform/modules/Modules.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

template <class Make>
class Factory final : public IClassFactory {
 public:
  DispatchPtr CreateInstance() override { return DispatchPtr::Adopt(Make()()); }
  void LockServer(bool lock) override { lock ? ServerLock::Hold() : ServerLock::LetGo(); }
};

struct MakeManager {
  IDispatch* operator()() const { return new CProjectManager(ServerPlatform::Native()); }
};
struct MakeInspector {
  IDispatch* operator()() const { return new ProjectInspector(); }
};

IClassFactory* FactoryOf(const char* classId) {
  static Factory<MakeManager> managers;
  static Factory<MakeInspector> inspectors;
  if (EqualNoCase(classId, CProjectManager::kProgId) ||
      EqualNoCase(classId, CProjectManager::kClassId)) {
    return &managers;
  }
  return EqualNoCase(classId, ProjectInspector::kProgId) ? &inspectors : nullptr;
}

std::string OwnPath() {
  return ModulePathOf(reinterpret_cast<const void*>(&FactoryOf));
}

constexpr auto kClassNotAvailable = static_cast<std::int32_t>(0x80040111u);
constexpr auto kNullPointer = static_cast<std::int32_t>(0x80004003u);

// Registers the class in the process when the library is loaded, regardless of its registration on
// the system.
[[maybe_unused]] const bool isAnnounced = [] {
  ClassRegistry::Native().RegisterServer(CProjectManager::kProgId, CProjectManager::kClassId,
                                         OwnPath());
  return true;
}();

}  // namespace

}  // namespace tarn

extern "C" {

std::int32_t DllGetClassObject(const char* classId, tarn::IClassFactory** factory) {
  if (factory == nullptr) return tarn::kNullPointer;
  *factory = classId == nullptr ? nullptr : tarn::FactoryOf(classId);
  return *factory == nullptr ? tarn::kClassNotAvailable : 0;
}

std::int32_t DllCanUnloadNow() {
  return tarn::ServerLock::Count() == 0 ? 0 : 1;
}

std::int32_t DllRegisterServer() {
  return tarn::RegisterServer(tarn::ClassStore::Native(), tarn::OwnPath());
}

std::int32_t DllUnregisterServer() {
  return tarn::UnregisterServer(tarn::ClassStore::Native());
}

const char* TarnTypeLibrary() {
  return tarn::TypeLibraryText().c_str();
}

}  // extern "C"
