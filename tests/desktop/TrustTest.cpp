// A project that wants to run a program from its own folder.

#include <QPushButton>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/EditorArea.h"

namespace tarn::host {
namespace {

class DesktopTrust : public testing::IdeFixture {
 protected:
  Banner& TrustBanner() { return static_cast<EditorArea*>(window->centralWidget())->TrustBanner(); }
  void Press(const QString& text) {
    for (QPushButton* each : TrustBanner().findChildren<QPushButton*>()) {
      if (each->text() == text) each->click();
    }
  }
};

TEST_F(DesktopTrust, ARefusedBuildAsksForTrustAndGoesOnWithIt) {
  EXPECT_NE(window->Session().Manager().SavePropertyValue("Application", "Build", "Launcher",
                                                          "nice -n 1"),
            0);
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_FALSE(TrustBanner().isVisible()) << "opening and saving ask nothing";
  for (const char* answer : {"Not now", "Trust"}) {
    ASSERT_TRUE(Choose("Build all"));
    ASSERT_TRUE(AwaitBuild());
    ASSERT_TRUE(TrustBanner().isVisible());
    const std::string text = TrustBanner().accessibleName().toStdString();
    EXPECT_NE(text.find("wants to run the launcher nice -n 1."), std::string::npos) << text;
    EXPECT_NE(text.find(folder / "blinky" + "?"), std::string::npos) << text;
    EXPECT_FALSE(IsBuilt("blinky-avr.elf"));
    Press(answer);
    EXPECT_FALSE(TrustBanner().isVisible());
  }
  ASSERT_TRUE(AwaitBuild());
  EXPECT_FALSE(TrustBanner().isVisible());
  EXPECT_TRUE(IsBuilt("blinky-avr.elf"));
}

}  // namespace
}  // namespace tarn::host
