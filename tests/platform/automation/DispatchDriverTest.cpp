#include "platform/automation/DispatchDriver.h"

#include <gtest/gtest.h>

#include <thread>

#include "TestObject.h"

namespace tarn::test {
namespace {

TEST(DispatchDriver, ACallThatFailsGivesTheZeroOfItsType) {
  COleDispatchDriver driver;
  EXPECT_EQ(driver.InvokeLong(1, {}), 0);
  EXPECT_EQ(driver.InvokeText(1, {}), "");
  EXPECT_EQ(driver.LastResult().status, DispatchStatus::NoObject);

  const DispatchPtr object = DispatchPtr::Adopt(new TestObject);
  driver.AttachDispatch(object.Get(), false);
  EXPECT_EQ(driver.InvokeText(1, {"x", 3}), "'x'+3");
  EXPECT_EQ(driver.LastResult().status, DispatchStatus::Ok);
  EXPECT_EQ(driver.InvokeLong(1, {"x", 3}), 0);
  EXPECT_EQ(driver.LastResult().text, "the result of method 1 is not a number");
  EXPECT_EQ(driver.InvokeText(2, {1}), "");
  EXPECT_EQ(driver.LastResult().text, "the result of method 2 is not a string");
  EXPECT_EQ(driver.InvokeLong(7, {1}), 0);
  EXPECT_EQ(driver.LastResult().status, DispatchStatus::NotImplemented);
  EXPECT_EQ(driver.InvokeLong(5, {}), 0);  // an empty result is not an error
  EXPECT_EQ(driver.LastResult().status, DispatchStatus::Ok);
}

TEST(DispatchDriver, AttachingWithoutAReferenceLeavesTheCountAlone) {
  TestObject::alive = 0;
  DispatchPtr object = DispatchPtr::Adopt(new TestObject);
  {
    COleDispatchDriver driver;
    driver.AttachDispatch(object.Get(), false);
    driver.AttachDispatch(object.Get(), true);
    driver.AttachDispatch(object.Get(), true);  // repeated: must not destroy it in between
    object.Reset();
    EXPECT_EQ(TestObject::alive, 1);
    EXPECT_EQ(driver.InvokeLong(9, {}), 1);
  }
  EXPECT_EQ(TestObject::alive, 0);
}

TEST(DispatchDriver, AnObjectReleasedInsideItsOwnCallLivesToTheEndOfIt) {
  TestObject::alive = 0;
  COleDispatchDriver driver;
  auto* object = new TestObject;
  driver.AttachDispatch(DispatchPtr::Adopt(object).Get(), true);
  object->onAct = [&driver] {
    driver.ReleaseDispatch();
    EXPECT_EQ(TestObject::alive, 1);
  };
  EXPECT_EQ(driver.InvokeLong(9, {}), 1);
  EXPECT_EQ(TestObject::alive, 0);
}

TEST(DispatchDriver, ACreationThatFailsLeavesNoObjectAndTellsWhy) {
  ClassRegistry classes("/nowhere");
  classes.RegisterFactory("Test.Object", [] { return DispatchPtr::Adopt(new TestObject); });
  COleDispatchDriver driver;
  EXPECT_TRUE(driver.CreateDispatch(classes, "Test.Object"));
  EXPECT_FALSE(driver.CreateDispatch(classes, "Test"));
  EXPECT_EQ(driver.GetDispatch(), nullptr);
  EXPECT_EQ(driver.LastResult().text, "Test: no such class");
}

TEST(DispatchDriver, TwoThreadsCallAtOnceWithoutARace) {
  const DispatchPtr object = DispatchPtr::Adopt(new TestObject);
  COleDispatchDriver driver;
  driver.AttachDispatch(object.Get(), true);
  std::thread other([&driver] {
    for (int i = 0; i < 2000; ++i) driver.InvokeLong(i % 3 == 0 ? 6 : 2, {i});
  });
  int right = 0;
  for (int i = 0; i < 2000; ++i) {
    right += driver.InvokeText(1, {"x", i}) == "'x'+" + std::to_string(i) ? 1 : 0;
    const DispatchStatus last = driver.LastResult().status;
    EXPECT_TRUE(last == DispatchStatus::Ok || last == DispatchStatus::UnknownMember);
  }
  other.join();
  EXPECT_EQ(right, 2000);
}

}  // namespace
}  // namespace tarn::test
