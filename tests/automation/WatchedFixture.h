#pragma once

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <memory>

#include "automation/ManagerFixture.h"

namespace tarn::test {

// Detects when the manager is destroyed, by its reference to the property manager.
class Watched : public ManagerFixture {
 public:
  Watched() : before_(ReferencesTo(components.Properties())) {
    AddDemo();
    AddDefaultProject();
    disk.AddFile(kConfigFile, Configuration("<ToolBar /><MainMenus><Menu /></MainMenus>"));
  }

  bool IsGone() { return ReferencesTo(components.Properties()) == before_; }
  void LetGo() {
    Call("Clean");
    manager.Reset();
  }

 private:
  std::uint32_t before_;
};

// Project that is built by a worker: two sources and their program.
class Building : public Watched {
 public:
  Building() {
    components.Properties().defaults = {{"C.Build.TranslateTool", "cc"},
                                        {"C.Build.OutputFile", "/p/main.o"},
                                        {"Application.Build.TranslateTool", "ld"},
                                        {"Application.Build.OutputFile", "/p/demo.elf"}};
    disk.AddFile("/p/demo.tapp",
                 "<Application Header=\"demo\" Extern=\".\\demo.tapp\" Path=\".\\demo.tapp\" >"
                 "<C Header=\"main.c\" Path=\".\\main.c\" /><C Header=\"b.c\" Path=\".\\b.c\" />"
                 "</Application>");
    disk.AddFile("/p/b.c", "");
    EXPECT_EQ(Init(), "1");
    EXPECT_EQ(Call("InitToolManager", {DispatchPtr(&components.Tools())}), "1");
    EXPECT_EQ(Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  }
  void Start() {
    EXPECT_EQ(Call("PrologCommand", {TARN_CMD_BUILD_ALL}), "1");
    EXPECT_EQ(Call("Command", {TARN_CMD_BUILD_ALL}), "2");
  }
  // Pumps messages until the manager is destroyed.
  bool PumpUntilGone() {
    return MessageLoop::ForCurrentThread()->PumpUntil([&] { return IsGone(); },
                                                      std::chrono::seconds(20));
  }
};

}  // namespace tarn::test
