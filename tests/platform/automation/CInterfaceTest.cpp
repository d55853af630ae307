// Tests of the C interface, called in the way that a C program calls it.

#include <gtest/gtest.h>
#include <tarn/automation.h>

#include <atomic>
#include <functional>
#include <thread>

#include "TestObject.h"
#include "platform/automation/ClassRegistry.h"
#include "platform/automation/RunningObjects.h"
#include "widgets/MessageLoop.h"

namespace tarn::test {
namespace {

constexpr const char* kClass = "CInterfaceTest.Object";

class CInterface : public ::testing::Test {
 protected:
  CInterface() {
    ClassRegistry::Native().RegisterFactory(kClass,
                                            [] { return DispatchPtr::Adopt(new TestObject); });
    EXPECT_EQ(tarn->CreateObject(kClass, &object), TARN_OK);
  }
  ~CInterface() override {
    tarn->Release(object);
    EXPECT_EQ(TestObject::alive, 0);
  }

  std::string Show(TarnVariant& value) {
    std::string text = "empty";
    if (value.kind == TARN_LONG) text = std::to_string(value.as.number);
    if (value.kind == TARN_OBJECT) text = value.as.object == object ? "itself" : "another";
    if (value.kind == TARN_TEXT) {
      text = value.as.text.data == nullptr ? "null"
                                           : std::string(value.as.text.data, value.as.text.length);
    }
    tarn->ClearVariant(&value);
    return text;
  }
  // Returns the result, or status, message and argument index of the error.
  std::string Outcome(std::int32_t status, TarnVariant& result) {
    const TarnError& error = *tarn->LastError();
    EXPECT_EQ(error.status, status);
    if (status == TARN_OK) {
      EXPECT_STREQ(error.text, "");
      return Show(result);
    }
    EXPECT_EQ(result.kind, TARN_EMPTY);
    return std::to_string(status) + ", " + error.text + ", " + std::to_string(error.argument);
  }

  const TarnAutomation* tarn = TarnGetAutomation(TARN_AUTOMATION_VERSION);
  TarnObject* object = nullptr;
};

TEST_F(CInterface, CallsByNumberAndByNameAreTheSame) {
  TarnVariant cut = TarnText("abc");
  cut.as.text.length = 2;
  TarnVariant unknownKind = TarnLong(1);
  unknownKind.kind = 9;
  const struct {
    const char* name;
    std::int32_t id;
    std::vector<TarnVariant> arguments;
    const char* expected;
  } rows[] = {
      {"Join", 1, {TarnText("a b"), TarnLong(-5)}, "'a b'+-5"},
      {"JOIN", 1, {TarnText(""), TarnLong(0)}, "''+0"},
      {"join", 1, {TarnText(nullptr), TarnEmpty()}, "null+0"},
      {"Join", 1, {cut, TarnLong(0)}, "'ab'+0"},
      {"Same", 3, {TarnObjectOf(object)}, "1"},
      {"Same", 3, {TarnObjectOf(nullptr)}, "0"},
      {"Self", 4, {}, "itself"},
      {"Nothing", 5, {}, "empty"},
      {"Join", 1, {TarnText("a")}, "3, Join takes 2 arguments, 1 were given, -1"},
      {"Join", 1, {TarnText("a"), TarnText("b")}, "4, argument 2 has the wrong type, 1"},
      {"Join", 1, {TarnText("a"), unknownKind}, "4, argument 2 is of no known kind, 1"},
      {"Throw", 8, {TarnLong(0)}, "6, broken, -1"},
  };
  for (const auto& row : rows) {
    const TarnVariant* const first = row.arguments.data();
    const std::size_t count = row.arguments.size();
    TarnVariant result = TarnLong(7);
    std::int32_t status = tarn->Invoke(object, row.id, first, count, &result);
    EXPECT_EQ(Outcome(status, result), row.expected);
    result = TarnLong(7);
    status = tarn->InvokeByName(object, row.name, first, count, &result);
    EXPECT_EQ(Outcome(status, result), row.expected);
    std::int32_t id = 0;
    EXPECT_EQ(tarn->GetId(object, row.name, &id), TARN_OK);
    EXPECT_EQ(id, row.id);
  }
  EXPECT_EQ(tarn->Invoke(object, 5, nullptr, 0, nullptr), TARN_OK);
}

TEST_F(CInterface, WhatCannotBeCalledSaysWhy) {
  TarnVariant result = TarnLong(7);
  TarnObject* none = object;
  std::int32_t id = 5;
  const std::pair<std::function<std::int32_t()>, const char*> rows[] = {
      {[&] { return tarn->Invoke(object, 6, nullptr, 0, &result); },
       "2, no method with the number 6, -1"},
      {[&] { return tarn->InvokeByName(object, "Joi", nullptr, 0, &result); },
       "2, no method named \"Joi\", -1"},
      {[&] { return tarn->GetId(object, "Joi", &id); }, "2, no method named \"Joi\", -1"},
      {[&] { return tarn->CreateObject("Nowhere.Class", &none); }, "7, Nowhere.Class: "},
      {[&] { return tarn->FindRunningObject(kClass, &none); },
       "1, no object of CInterfaceTest.Object is running, -1"},
      {[&] { return tarn->Invoke(nullptr, 1, nullptr, 0, &result); }, "1, no object was given, -1"},
      {[&] { return tarn->InvokeByName(nullptr, "Self", nullptr, 0, &result); },
       "1, no object was given, -1"},
      {[&] { return tarn->GetId(nullptr, "Self", &id); }, "1, no object was given, -1"},
      {[&] { return tarn->Invoke(object, 1, nullptr, 2, &result); },
       "8, a null pointer was given, -1"},
      {[&] { return tarn->InvokeByName(object, nullptr, nullptr, 0, &result); },
       "8, a null pointer was given, -1"},
      {[&] { return tarn->GetId(object, "Self", nullptr); }, "8, a null pointer was given, -1"},
      {[&] { return tarn->CreateObject(nullptr, &none); }, "8, a null pointer was given, -1"},
      {[&] { return tarn->CreateObject(kClass, nullptr); }, "8, a null pointer was given, -1"},
      {[&] { return tarn->ListMethods(object, nullptr, nullptr); },
       "8, a null pointer was given, -1"},
  };
  for (const auto& [call, expected] : rows) {
    const std::int32_t status = call();
    TarnVariant empty = TarnEmpty();
    EXPECT_TRUE(Outcome(status, empty).starts_with(expected)) << expected;
  }
  EXPECT_EQ(result.kind, TARN_EMPTY);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(id, 5);
  for (const int version : {0, TARN_AUTOMATION_VERSION + 1}) {
    EXPECT_EQ(TarnGetAutomation(static_cast<std::uint32_t>(version)), nullptr);
  }
  // No-ops.
  tarn->Release(nullptr);
  tarn->AddReference(nullptr);
  tarn->ClearVariant(nullptr);
}

TEST_F(CInterface, ALongReasonIsCutAndAnotherThreadHasItsOwn) {
  const std::string name(3000, 'x');
  std::int32_t id = 0;
  EXPECT_EQ(tarn->GetId(object, name.c_str(), &id), TARN_UNKNOWN_MEMBER);
  EXPECT_EQ(std::string(tarn->LastError()->text), ("no method named \"" + name).substr(0, 1000));
  std::thread([&] { EXPECT_EQ(tarn->LastError()->status, TARN_OK); }).join();
}

TEST_F(CInterface, ObjectsAreCountedAndTheRunningOneIsFound) {
  const std::uint32_t token = RunningObjectTable::Native().RegisterActiveObject(
      "{c-interface}", reinterpret_cast<IDispatch*>(object));
  ClassRegistry::Native().RegisterServer("CInterfaceTest.Running", "{C-Interface}", "/none.so");
  for (const char* name : {"{C-INTERFACE}", "cinterfacetest.running"}) {
    TarnObject* found = nullptr;
    EXPECT_EQ(tarn->FindRunningObject(name, &found), TARN_OK) << name;
    EXPECT_EQ(found, object);
    tarn->Release(found);
  }
  RunningObjectTable::Native().RevokeActiveObject(token);
  tarn->AddReference(object);
  tarn->Release(object);
  EXPECT_EQ(TestObject::alive, 1);
}

TEST_F(CInterface, MethodsAreListedWithNamesAndKinds) {
  std::vector<std::string> lines;
  const auto visit = [](void* context, const TarnMethod* method) {
    std::string line = std::to_string(method->id) + " " + method->name + "(";
    for (std::int32_t i = 0; i < method->argumentCount; ++i) {
      line += std::to_string(method->argumentKinds[i]) + " " + method->argumentNames[i] + ",";
    }
    static_cast<std::vector<std::string>*>(context)->push_back(line + ") " +
                                                               std::to_string(method->result));
  };
  EXPECT_EQ(tarn->ListMethods(object, visit, &lines), TARN_OK);
  EXPECT_EQ(lines, (std::vector<std::string>{"1 Join(2 text,1 number,) 2",
                                             "2 Unsigned(1 number,) 1", "3 Same(3 object,) 1",
                                             "4 Self() 3", "5 Nothing() 0", "7 Later(1 number,) 0",
                                             "8 Throw(1 number,) 1", "9 Act() 1"}));
}

struct Frame {
  const TarnAutomation* tarn;
  std::int32_t window = 0;
  int messages = 0;
  bool leaves = false;
};

std::intptr_t OnMessage(void* context, std::uint32_t message, std::intptr_t wParam,
                        std::intptr_t lParam) {
  auto& frame = *static_cast<Frame*>(context);
  ++frame.messages;
  if (frame.leaves) frame.tarn->RemoveWindow(frame.window);
  return static_cast<std::intptr_t>(message) + wParam + lParam;
}

TEST_F(CInterface, WindowsAnswerUntilTheyAreRemovedAlsoFromInside) {
  Frame frame{tarn};
  frame.window = tarn->AddWindow(OnMessage, &frame);
  ASSERT_NE(frame.window, 0);
  EXPECT_EQ(SendWindowMessage(frame.window, 0x8008, 1, -12), 0x8008 - 11);
  std::thread([&] { tarn->RemoveWindow(frame.window); }).join();  // no-op: not that thread's
  frame.leaves = true;
  EXPECT_EQ(SendWindowMessage(frame.window, 1, 0, 0), 1);
  EXPECT_EQ(SendWindowMessage(frame.window, 1, 0, 0), 0);
  tarn->RemoveWindow(frame.window);
  tarn->RemoveWindow(12345);
  EXPECT_EQ(frame.messages, 2);
  EXPECT_EQ(tarn->AddWindow(nullptr, nullptr), 0);
}

TEST_F(CInterface, TheLoopServesOtherThreadsAndWakesAnotherLoop) {
  Frame frame{tarn};
  frame.window = tarn->AddWindow(OnMessage, &frame);
  std::atomic<int> woken = 0;
  tarn->SetWakeHandler([](void* count) { ++*static_cast<std::atomic<int>*>(count); }, &woken);
  std::thread sender([&] { EXPECT_EQ(SendWindowMessage(frame.window, 5, 6, 7), 18); });
  const auto hasMessage = [](void* context) -> std::int32_t {
    return static_cast<Frame*>(context)->messages;
  };
  EXPECT_EQ(tarn->PumpUntil(hasMessage, &frame, 20000), 1);
  sender.join();
  EXPECT_GE(woken, 1);
  tarn->SetWakeHandler(nullptr, nullptr);

  EXPECT_EQ(tarn->UntilNextTimer(), -1);
  SetWindowTimer(frame.window, 1, std::chrono::milliseconds(1000000), [] {});
  EXPECT_GT(tarn->UntilNextTimer(), 900000);
  EXPECT_TRUE(PostWindowMessage(frame.window, 1, 0, 0));
  EXPECT_EQ(tarn->Pump(), 1);
  EXPECT_EQ(tarn->Pump(), 0);
  EXPECT_EQ(tarn->PumpUntil(nullptr, nullptr, -1), 0);
  EXPECT_EQ(frame.messages, 2);
  tarn->RemoveWindow(frame.window);
}

}  // namespace
}  // namespace tarn::test
