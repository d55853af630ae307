// A project whose files were damaged when they were read.

#include <tarn/commands.h>

#include <QMessageBox>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/EditorArea.h"

namespace tarn::host {
namespace {

class DesktopDamage : public testing::IdeFixture {
 protected:
  std::string ShownTree() { return window->Session().Inspector().GetTree(); }
};

TEST_F(DesktopDamage, ADamagedProjectIsNeitherBuiltNorChangedBeforeTheUserAgrees) {
  const std::string path = folder / "blinky/blinky-avr.tapp";
  std::string text = testing::ReadBytes(path);
  text.insert(text.find("</Group>"), "<?lost?><C Header=\"last.c\" />");
  ASSERT_TRUE(window->Commands().ReopenWith({{path, text}}));
  const Banner& banner = static_cast<EditorArea*>(window->centralWidget())->DamageBanner();
  EXPECT_TRUE(banner.isVisible());
  EXPECT_TRUE(banner.accessibleName().contains("blinky-avr.tapp:"))
      << banner.accessibleName().toStdString();
  testing::PressInNextBox(QMessageBox::No);
  window->Commands().Run(TARN_CMD_BUILD_ALL);
  EXPECT_FALSE(window->Commands().IsBuilding());
  ASSERT_EQ(window->Session().Inspector().SelectNodeByKey("led.c"), 1);
  testing::PressInNextBox(QMessageBox::No);
  ASSERT_TRUE(Choose("Remove"));
  EXPECT_NE(ShownTree().find("led.c"), std::string::npos);
  EXPECT_FALSE(IsBuilt("blinky-avr.elf"));

  testing::PressInNextBox(QMessageBox::Yes);
  ASSERT_TRUE(Choose("Remove"));
  EXPECT_FALSE(banner.isVisible());
  EXPECT_EQ(ShownTree().find("led.c"), std::string::npos);
  EXPECT_EQ(testing::ReadBytes(path), text);
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_EQ(testing::ReadBytes(path + ".bak"), text);
  EXPECT_TRUE(window->Session().GetDamage().empty());
}

}  // namespace
}  // namespace tarn::host
