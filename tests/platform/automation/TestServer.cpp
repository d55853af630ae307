#include <cstring>

#include "platform/automation/DispatchTable.h"

namespace {

class Counter : public tarn::DispatchObject<Counter> {
 public:
  static const tarn::DispatchTable<Counter>& Table() {
    static const tarn::DispatchTable<Counter> table({tarn::Method<&Counter::Next>("Next", 1, {})});
    return table;
  }
  std::int32_t Next() { return ++count_; }

 private:
  std::int32_t count_ = 0;
};

class Factory : public tarn::IClassFactory {
 public:
  tarn::DispatchPtr CreateInstance() override { return tarn::DispatchPtr::Adopt(new Counter); }
};

}  // namespace

extern "C" std::int32_t DllGetClassObject(const char* classId, tarn::IClassFactory** factory) {
  static Factory counters;
  if (std::strcmp(classId, "TarnTestServer.Counter") != 0) return 1;
  *factory = &counters;
  return 0;
}
