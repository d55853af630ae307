#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

TEST(CliGlobals, ABuildOfTheExampleLeavesTheListOfItsSymbols) {
  if (FindProgram("avr-gcc").empty()) GTEST_SKIP() << "avr-gcc isn't on this machine";
  CliProject project;
  std::filesystem::copy(std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/examples/blinky-avr",
                        project.PathOf("example"), std::filesystem::copy_options::recursive);
  project.Out({"build", "example"});
  EXPECT_EQ(
      project.Out({"globals", "example", "--file", "*drivers/uart.c"}),
      "__vector_19      example/src/drivers/uart.c:24  void __vector_19(void)\n"
      "anything_sent    example/src/drivers/uart.c:22  static volatile _Bool anything_sent\n"
      "queue            example/src/drivers/uart.c:19  static volatile char queue[64]\n"
      "queue_in         example/src/drivers/uart.c:20  static volatile uint8_t queue_in\n"
      "queue_out        example/src/drivers/uart.c:21  static volatile uint8_t queue_out\n"
      "uart_flush       example/src/drivers/uart.c:66  void uart_flush(void)\n"
      "uart_init        example/src/drivers/uart.c:36  void uart_init(void)\n"
      "uart_put         example/src/drivers/uart.c:47  void uart_put(char c)\n"
      "uart_put_number  example/src/drivers/uart.c:60  void uart_put_number(uint16_t number)\n"
      "uart_puts_P      example/src/drivers/uart.c:55  void uart_puts_P(const char *text)\n");
  EXPECT_EQ(project.Out({"build", "example"}).substr(0, 13), "Nothing to do");
}

// Both applications have a file of this name below their folder.
TEST(CliGlobals, ALibrarysFilesAreThoseOfItsApplication) {
  CliProject project;
  std::filesystem::create_directories(project.PathOf("lib/src"));
  project.Write("lib/src/a.c", "int core(void);\n\nint core(void) { return 1; }\n");
  project.Write("lib/core.tapp",
                "<Application Header=\"core\" ><C Header=\"a.c\" Path=\".\\src\\a.c\" />"
                "</Application>");
  project.Write("src/b.c",
                "int a(void);\nint core(void);\nint main(void) { return a() - core(); }\n");
  project.Out({"add", "lib/core.tapp"});
  const auto set = [&](const char* application, const char* option, const char* value) {
    project.Out({"options", "set", "-a", application, option, value});
  };
  set("core", "Target.Toolchain", "host-gcc");
  set("core", "Target.Product", "library");
  set("core", "Build.OutputFile", "build/libcore.a");
  set("app", "Linker.LibraryPaths", "lib/build");
  set("app", "Linker.Libraries", "core");
  project.Out({"build"});
  EXPECT_EQ(project.Out({"globals", "-a", "app", "--sort", "file"}),
            "core  lib/src/a.c:3  int core(void)\n"
            "a     src/a.c:2      int a(void)\n"
            "main  src/b.c:3      int main(void)\n");
}

}  // namespace
}  // namespace tarn::host
