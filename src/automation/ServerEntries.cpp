// What the library exports to whoever loads it as an automation server.

#include "automation/ProjectInspector.h"
#include "automation/ProjectManager.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

class ManagerFactory final : public IClassFactory {
 public:
  DispatchPtr CreateInstance() override {
    return DispatchPtr::Adopt(new CProjectManager(ServerPlatform::Native()));
  }
};

class InspectorFactory final : public IClassFactory {
 public:
  DispatchPtr CreateInstance() override { return DispatchPtr::Adopt(new CProjectInspector()); }
};

IClassFactory* FactoryOf(const char* classId) {
  static ManagerFactory managers;
  static InspectorFactory inspectors;
  if (EqualNoCase(classId, CProjectManager::kProgId) ||
      EqualNoCase(classId, CProjectManager::kClassId)) {
    return &managers;
  }
  return EqualNoCase(classId, CProjectInspector::kProgId) ? &inspectors : nullptr;
}

constexpr std::int32_t kClassNotAvailable = static_cast<std::int32_t>(0x80040111u);

}  // namespace

}  // namespace tarn

extern "C" std::int32_t DllGetClassObject(const char* classId, tarn::IClassFactory** factory) {
  *factory = classId == nullptr ? nullptr : tarn::FactoryOf(classId);
  return *factory == nullptr ? tarn::kClassNotAvailable : 0;
}
