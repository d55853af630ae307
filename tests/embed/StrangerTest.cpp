// A program that uses nothing of Tarn except its C headers, and finds the server through its
// registration. Under ctest each case is a separate process, so the library is loaded from scratch.

#include <gtest/gtest.h>
#include <tarn/load.h>

#include <cstdlib>
#include <string>

#include "support/TestEnvironment.h"

namespace {

class Stranger : public ::testing::TestWithParam<const char*> {
 protected:
  Stranger() { setenv("TARN_SETTINGS", settings.Path().c_str(), 1); }

  tarn::testing::ScratchFolder settings;
};

TEST_P(Stranger, MakesAndCallsTheServerOnceItIsRegistered) {
  char path[TARN_PATH_SIZE];
  EXPECT_FALSE(TarnFindLibrary(GetParam(), path, sizeof path));
  ASSERT_EQ(std::system(TARN_PROGRAM " register --system >/dev/null"), 0);
  EXPECT_TRUE(TarnFindLibrary(GetParam(), path, sizeof path));
  char reason[1024] = "";
  const TarnAutomation* tarn = TarnLoad(GetParam(), reason, sizeof reason);
  ASSERT_NE(tarn, nullptr) << reason;
  ASSERT_TRUE(TARN_HAS(tarn, UntilNextTimer));

  TarnObject* manager = nullptr;
  ASSERT_EQ(tarn->CreateObject(GetParam(), &manager), TARN_OK) << tarn->LastError()->text;
  TarnVariant result;
  // Before Init every method can be called but does nothing.
  EXPECT_EQ(tarn->InvokeByName(manager, "getselectedapplication", nullptr, 0, &result), TARN_OK);
  EXPECT_EQ(result.kind, TARN_TEXT);
  EXPECT_EQ(result.as.text.length, 0u);
  tarn->ClearVariant(&result);
  EXPECT_EQ(tarn->Invoke(manager, 21, nullptr, 0, &result), TARN_OK);
  EXPECT_EQ(result.as.number, 1);
  tarn->Release(manager);
}

INSTANTIATE_TEST_SUITE_P(Names, Stranger,
                         ::testing::Values(TARN_PROJECT_MANAGER, TARN_PROJECT_MANAGER_ID));

TEST(TarnLoadFrom, SaysWhyALibraryIsNotLoaded) {
  char reason[1024] = "";
  EXPECT_EQ(TarnLoadFrom("/nowhere.so", reason, sizeof reason), nullptr);
  EXPECT_NE(std::string(reason).find("/nowhere.so"), std::string::npos) << reason;
  EXPECT_EQ(TarnLoadFrom("libc.so.6", reason, sizeof reason), nullptr);
  EXPECT_NE(std::string(reason).find("TarnGetAutomation"), std::string::npos) << reason;
  EXPECT_NE(TarnLoadFrom(TARN_SERVER, reason, sizeof reason), nullptr) << reason;
}

}  // namespace
