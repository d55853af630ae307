#include "hosts/core/TargetPackages.h"

#include <gtest/gtest.h>

#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

constexpr const char* kKey = "[Software\\Corvane\\Tarn7\\Targets\\";
const std::string kForeign =
    "; mine\n[Software\\Corvane\\Tarn7\\Targets\\avr]\nNickName=mine\nXmlPath=/home/me/avr.xml\n";

std::string Entry(const std::string& key, const std::string& label, const std::string& path) {
  return kKey + key + "]\nNickName=" + label + "\nXmlPath=" + path + "\n";
}

class TargetPackagesTest : public ::testing::Test {
 protected:
  TargetPackagesTest() {
    files.AddFile("/app/targets/mcs51.xml", "<Targets Header='8051' />");
    files.AddFile("/app/targets/avr.xml", "<Targets Header='AVR' />");
    files.AddFile("/app/targets/none.xml", "<Targets/>");
    files.AddFile("/app/targets/README.md", "");
    files.AddFile("/r.ini", kForeign);
  }
  std::string Registry() { return *files.BytesOf("/r.ini"); }

  testing::MemoryFileSystem files;
  TargetPackages packages{files, "/r.ini", "/app/targets"};
};

TEST_F(TargetPackagesTest, EachFileHasAKeyAndOthersKeepTheirs) {
  const std::string registered = kForeign + Entry("Tarn-avr", "AVR", "/app/targets/avr.xml") +
                                 Entry("Tarn-mcs51", "8051", "/app/targets/mcs51.xml") +
                                 Entry("Tarn-none", "none", "/app/targets/none.xml");
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(packages.Register());
    EXPECT_EQ(Registry(), registered);
  }
  EXPECT_EQ(packages.ListRegistered(),
            (std::vector<std::string>{"/app/targets/avr.xml", "/app/targets/mcs51.xml",
                                      "/app/targets/none.xml"}));
  files.Erase("/app/targets/none.xml");
  EXPECT_TRUE(packages.Register());
  EXPECT_EQ(Registry(), registered.substr(0, registered.find(std::string(kKey) + "Tarn-none")));
  EXPECT_TRUE(packages.Unregister());
  EXPECT_EQ(Registry(), kForeign);
}

TEST_F(TargetPackagesTest, AnotherInstallationTakesTheKeysOverAndGivesThemBackItself) {
  EXPECT_TRUE(packages.Register());
  files.AddFile("/new/targets/avr.xml", "<Targets Header='AVR 2' />");
  TargetPackages others(files, "/r.ini", "/new/targets");
  EXPECT_TRUE(others.Register());
  EXPECT_TRUE(packages.Unregister());
  EXPECT_EQ(Registry(), kForeign + Entry("Tarn-avr", "AVR 2", "/new/targets/avr.xml"));
}

TEST_F(TargetPackagesTest, WhatNoReaderCouldReadIsRefusedAndNothingIsWritten) {
  const std::string deep = "/" + std::string(250, 'd');
  files.AddFile(deep + "/longname.xml", "<Targets/>");
  TargetPackages unreadable(files, "/r.ini", deep);
  EXPECT_FALSE(unreadable.Register());
  files.FailOn("write", "/r.ini", ErrorCode::NoSpace);
  EXPECT_FALSE(packages.Register());
  EXPECT_EQ(Registry(), kForeign);
}

}  // namespace
}  // namespace tarn::host
