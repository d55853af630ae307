#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include "platform/automation/DispatchTable.h"

namespace tarn::test {

// An automation object with one method of each signature type.
class TestObject : public DispatchObject<TestObject> {
 public:
  static inline int alive = 0;

  TestObject() { ++alive; }
  ~TestObject() override {
    // A destructor may create a temporary reference.
    const DispatchPtr moment(this);
    --alive;
  }

  static const DispatchTable<TestObject>& Table() {
    static const DispatchTable<TestObject> table({
        Method<&TestObject::Join>("Join", 1, {"text", "number"}),
        Method<&TestObject::Unsigned>("Unsigned", 2, {"number"}),
        Method<&TestObject::Same>("Same", 3, {"object"}),
        Method<&TestObject::Self>("Self", 4, {}),
        Method<&TestObject::Nothing>("Nothing", 5, {}),
        Method<&TestObject::Later>("Later", 7, {"number"}),
        Method<&TestObject::Throw>("Throw", 8, {"number"}),
        Method<&TestObject::Act>("Act", 9, {}),
    });
    return table;
  }

  std::function<void()> onAct;

  std::string Join(const char* text, std::int32_t number) {
    return (text == nullptr ? std::string("null") : "'" + std::string(text) + "'") + "+" +
           std::to_string(number);
  }
  std::int32_t Unsigned(std::uint32_t number) { return number > 0x7FFFFFFF ? 1 : 0; }
  std::int32_t Same(IDispatch* object) { return object == this ? 1 : 0; }
  DispatchPtr Self() { return DispatchPtr(this); }
  void Nothing() {}
  DispatchResult Later(std::int32_t) const noexcept {
    return {DispatchStatus::NotImplemented, "later", -1};
  }
  std::int32_t Throw(std::int32_t kind) {
    if (kind == 0) throw std::runtime_error("broken");
    throw kind;
  }
  std::int32_t Act() {
    const auto action = onAct;
    if (action) action();
    return 1;
  }
};

}  // namespace tarn::test
