#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "automation/ManagerWorld.h"

namespace tarn::test {

// Whether the world's manager is gone: it holds its property manager for as long as it lives.
class Watched : public ManagerWorld {
 public:
  Watched() : before(ReferencesTo(components.Properties())) {
    AddDemo();
    AddDefaultProject();
    disk.AddFile(kConfigFile, Configuration("<ToolBar /><MainMenus><Menu /></MainMenus>"));
  }

  bool IsGone() { return ReferencesTo(components.Properties()) == before; }
  void LetGo() {
    Call("Clean");
    manager.Reset();
  }

 private:
  std::uint32_t before;
};

// A project that a worker builds: two sources and the program of them.
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
    EXPECT_EQ(Call("PrologCommand", {0x8112}), "1");
    EXPECT_EQ(Call("Command", {0x8112}), "2");
  }
  // Serves the thread until the manager is gone.
  bool PumpUntilGone() {
    return MessageLoop::ForCurrentThread()->PumpUntil([&] { return IsGone(); },
                                                      std::chrono::seconds(20));
  }
};

}  // namespace tarn::test
