// Entry point of the shared library.
#include "components/options/PropertyManager.h"
#include "platform/automation/ClassRegistry.h"
#include "platform/text/Text.h"

namespace tarn::options {

namespace {

class Factory : public IClassFactory {
 public:
  DispatchPtr CreateInstance() override { return DispatchPtr::Adopt(new PropertyManager); }
};

}  // namespace

}  // namespace tarn::options

extern "C" std::int32_t DllGetClassObject(const char* classId, tarn::IClassFactory** factory) {
  static tarn::options::Factory theFactory;
  const bool isKnown = classId != nullptr && factory != nullptr &&
                       tarn::EqualNoCase(classId, tarn::options::kPropertyManagerProgId);
  if (!isKnown) return 1;
  *factory = &theFactory;
  return 0;
}
