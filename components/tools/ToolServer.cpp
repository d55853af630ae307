#include <cstdint>
#include <string_view>

#include "components/tools/ToolManager.h"

namespace {

class ToolManagerFactory : public tarn::IClassFactory {
 public:
  tarn::DispatchPtr CreateInstance() override {
    return tarn::DispatchPtr::Adopt(
        new tarn::tools::ToolManager(tarn::tools::ToolEnvironment::Native()));
  }
};

}  // namespace

extern "C" std::int32_t DllGetClassObject(const char* classId, tarn::IClassFactory** factory) {
  static ToolManagerFactory toolManagers;
  if (classId == nullptr || factory == nullptr) return 1;
  if (!tarn::EqualNoCase(classId, "TarnToolManager.ToolManager")) return 1;
  *factory = &toolManagers;
  return 0;
}
