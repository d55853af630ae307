#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include "hosts/CliProject.h"
#include "platform/process/posix/Descriptor.h"

namespace tarn::host {
namespace {

// An application, not trusted, with programs in the place of simulators and programmers. They print
// their arguments.
class CliActions : public ::testing::Test {
 protected:
  CliActions() {
    for (const char* name : {"avrdude", "openocd", "stm32flash", "st-flash", "dfu-util", "bossac",
                             "pyocd", "stm8flash", "simavr", "qemu-system-arm", "s51", "cp"}) {
      project.AddProgram(name, "#!/bin/sh\necho \"$0 $*\"\n");
    }
    project.Out({"build", "-q"});
  }

  void Set(const std::string& option, const std::string& value) {
    project.Out({"options", "set", "--", option, value});
  }
  void SetAll(std::initializer_list<std::pair<const char*, const char*>> options) {
    for (const auto& [option, value] : options) Set(option, value);
  }
  // Runs an action and returns its output, with the path of the output's folder as "OUT".
  std::string Do(const std::string& action, std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"run-tool", action});
    std::string out = project.Out(more);
    const std::string folder = project.PathOf("build/Standard");
    for (std::size_t at; (at = out.find(folder)) != out.npos;)
      out.replace(at, folder.size(), "OUT");
    return out;
  }

  CliProject project;
};

// The program itself would only list what it knows.
TEST_F(CliActions, AnOptionThatAToolNeedsIsNamedBeforeItStarts) {
  const struct {
    const char *action, *option, *tool, *said;
  } rows[] = {
      {"upload", "Upload.Tool", "avrdude",
       "avrdude needs the option Upload.Programmer, which is not set; `tarn options set "
       "Upload.Programmer VALUE` sets it. It is the programmer by avrdude's name, such as usbasp"},
      {"upload", "Upload.Programmer", "Arduino", "avrdude needs the option Upload.Port"},
      {"upload", "Upload.Tool", "bossac", "bossac needs the option Upload.Port"},
      {"upload", "Upload.Tool", "stm32flash", "stm32flash needs the option Upload.Port"},
      {"upload", "Upload.Tool", "openocd", "openocd needs the option Upload.Part"},
      {"simulate", "Simulate.Tool", "qemu-arm", "QEMU needs the option Simulate.Machine"},
      {"upload", "Upload.Tool", "unknown", "Set the option Upload.Tool of the application"},
      {"simulate", "Simulate.Tool", "none", "Set the options Simulate.Tool and"},
      {"disassemble", "Target.Toolchain", "sdcc-stm8", "has no program for it"},
  };
  for (const auto& row : rows) {
    Set(row.option, row.tool);
    const auto answer = project.Run({"run-tool", row.action});
    EXPECT_NE(answer.code, 0) << row.tool;
    EXPECT_TRUE(Has(answer.out + answer.err, row.said)) << answer.out << answer.err;
  }
}

TEST_F(CliActions, ProgrammersGetTheOptionsOfTheApplication) {
  const struct {
    const char* tool;
    const char* expected;
  } rows[] = {
      {"avrdude", "avrdude -p m328p -c xds -P /dev/ttyX0 -b 9600 -U flash:w:OUT/app.hex:i"},
      {"stm32flash", "stm32flash -b 9600 -v -w OUT/app.hex -g 0x0 /dev/ttyX0"},
      {"st-flash", "st-flash --reset --serial S1 --format ihex write OUT/app.hex"},
      {"dfu-util", "dfu-util -d m328p -S S1 -a 0 -s 0x100:leave -D OUT/app.bin"},
      {"bossac", "bossac --port=/dev/ttyX0 --offset=0x100 -e -w -v -b -R OUT/app.bin"},
      {"pyocd", "pyocd flash --no-config --target m328p --uid S1 OUT/app.hex"},
      {"stm8flash", "stm8flash -c xds -p m328p -w OUT/app"},
      {"openocd",
       "openocd -f interface/xds.cfg -f target/m328p.cfg -c adapter serial S1 -c adapter speed "
       "9600 "
       "-c gdb_port disabled -c tcl_port disabled -c telnet_port disabled -c init -c reset init "
       "-c flash write_image erase {OUT/app} -c verify_image {OUT/app} -c reset run -c shutdown"},
  };
  SetAll({{"Upload.Part", "m328p"},
          {"Upload.Programmer", "xds"},
          {"Upload.Port", "/dev/ttyX0"},
          {"Upload.Speed", "9600"},
          {"Upload.Serial", "S1"},
          {"Upload.Address", "0x100"}});
  for (const auto& each : rows) {
    Set("Upload.Tool", each.tool);
    EXPECT_TRUE(Has(Do("upload"), std::string("/") + each.expected + "\n")) << Do("upload");
  }
  // A dry run starts nothing, and its line can be pasted into a shell.
  EXPECT_TRUE(Has(Do("upload", {"--dry-run"}), " -c 'flash write_image erase {OUT/app}' "));
  EXPECT_TRUE(Has(Do("upload", {"--dry-run", "--json"}), "\"flash write_image erase {OUT/app}\""));
  Set("Upload.Programmer", "");
  EXPECT_TRUE(Has(Do("upload", {"--dry-run"}), "openocd -f board/m328p.cfg -c "));
  Set("Build.TranslateTool", "pack");
  EXPECT_TRUE(Has(Do("upload"),
                  "-c set image_address 0x100 -c flash write_image erase {OUT/app} "
                  "$image_address -c verify_image {OUT/app} $image_address -c reset"));
  project.Out({"options", "reset", "Build.TranslateTool"});
  SetAll({{"Simulate.Tool", "sz80"}, {"Simulate.Machine", "Z80"}});
  EXPECT_TRUE(Has(Do("simulate", {"--dry-run"}), "sz80 -b -t Z80 -G OUT/app\n"));
  Set("Upload.Tool", "uf2");
  std::filesystem::create_directory(project.PathOf("drive"));
  Set("Upload.Port", "drive");
  project.ExpectRefusal({"run-tool", "upload"}, 1, "doesn't contain INFO_UF2.TXT");
  project.Edit("drive/INFO_UF2.TXT", "");
  EXPECT_TRUE(Has(Do("upload"), "cp --remove-destination -- OUT/app.uf2 "));
}

TEST_F(CliActions, OptionsCannotAddCommandsOrArguments) {
  const struct {
    const char* tool;
    const char* option;
    const char* value;
  } rows[] = {
      {"openocd", "Upload.Programmer", "../../evil"},
      {"openocd", "Upload.Part", "x/../../evil"},
      {"openocd", "Upload.Serial", "1; exec touch evil"},
      {"openocd", "Upload.Serial", "[exec touch evil]"},
      {"openocd", "Build.OutputFile", "a}; exec touch evil; {.elf"},
      {"avrdude", "Upload.Port", "-Ufuse"},
      {"avrdude", "Upload.Port", "/home/user/file"},
      {"avrdude", "Upload.Port", "/dev/../home/user/file"},
      {"avrdude", "Upload.Part", "-C evil.conf"},
      {"stm32flash", "Upload.Port", "-i"},
      {"dfu-util", "Upload.Part", "-U"},
  };
  SetAll({{"Upload.Part", "m328p"}, {"Upload.Programmer", "xds"}, {"Upload.Port", "/dev/ttyX0"}});
  for (const auto& each : rows) {
    const std::string before = project.Out({"options", "get", each.option});
    SetAll({{"Upload.Tool", each.tool}, {each.option, each.value}});
    const auto run = project.Run({"run-tool", "upload"});
    EXPECT_EQ(run.code, 1) << each.option << " " << each.value << run.out;
    EXPECT_TRUE(Has(run.err, "can't be \"")) << each.value << run.err;
    Set(each.option, before.substr(0, before.find('\n')));
  }
}

TEST_F(CliActions, ASimulatorEndsWithTheExitCodeOfItsFirmware) {
  project.AddProgram("simavr",
                     "#!/bin/sh\nprintf '\\033[32mready.\\033[0m\\n1.5.\\n' >&2; exit 5\n");
  SetAll({{"Simulate.Tool", "simavr"}, {"Simulate.Machine", "atmega328p"}});
  const auto run = project.Run({"run-tool", "simulate"});
  EXPECT_EQ(run.code, 5);
  EXPECT_EQ(run.out, "ready\n1.5\n");
  EXPECT_TRUE(Has(project.Out({"log"}), "\nready\n"));
  // The firmware may run programs through semihosting.
  SetAll({{"Simulate.Tool", "qemu-arm"}, {"Simulate.Machine", "lm3s6965evb"}});
  project.ExpectRefusal({"run-tool", "simulate"}, 3, "is not trusted");
  EXPECT_TRUE(Has(Do("simulate", {"--trust"}), "enable=on,target=native"));
  Set("Simulate.Semihosting", "No");
  EXPECT_FALSE(Has(Do("simulate"), "semihosting"));
  Set("Simulate.Machine", "virt,dumpdtb=x");
  project.ExpectRefusal({"run-tool", "simulate"}, 1, "can't be \"virt,dumpdtb=x\"");
  project.ExpectRefusal({"run-tool", "simulat"}, 2, "Did you mean \"simulate\"?");
  EXPECT_TRUE(Has(project.Out({"actions"}), "simulate"));
}

TEST_F(CliActions, AProgramOfThisComputerNeedsTrust) {
  project.Edit("src/b.c",
               "#include <stdio.h>\n#include <unistd.h>\nint main(void) {\n"
               "  printf(\"part\"); fflush(stdout); sleep(60); return 0; }\n");
  project.ExpectRefusal({"run-tool", "simulate", "--build"}, 3, "is not trusted");
  project.ExpectRefusal({"debug", "--no-build"}, 3, "is not trusted");
  // The beginning of a line is shown before the program ends.
  bool isSeen = false;
  const auto run = project.Run({"run-tool", "simulate", "--trust", "--timeout", "2"},
                               [&](Process&, const std::string& out) { isSeen |= out == "part"; });
  EXPECT_TRUE(isSeen);
  EXPECT_EQ(run.code, 124);
  EXPECT_TRUE(Has(run.err, "the time limit")) << run.err;
}

TEST_F(CliActions, AnyApplicationAndConfigurationHasActionsAndSizes) {
  project.Edit("src/tool.c", "int main(void) { return 5; }\n");
  project.Out({"add", "--application", "tool", "src/tool.c"});
  project.Out({"select", "app"});
  for (const char* configuration : {"Standard", "Fast"}) {
    project.Out({"build", "-q", "-c", configuration});
    for (const char* name : {"app", "tool"}) {
      const std::vector<std::string> which{"-a", name, "-c", configuration};
      const auto with = [&which](std::vector<std::string> words) {
        words.insert(words.end(), which.begin(), which.end());
        return words;
      };
      const std::string output = project.PathOf("build/" + std::string(configuration) + "/" + name);
      EXPECT_TRUE(Has(project.Out(with({"actions"})), "simulate     Run in simulator (host)"));
      EXPECT_TRUE(Has(project.Out(with({"run-tool", "simulate", "--dry-run"})), output + "\n"));
      EXPECT_TRUE(Has(project.Out(with({"debug", "--dry-run"})), output + " ")) << output;
      const std::string sizes = project.Out(with({"size"}));
      EXPECT_TRUE(sizes.starts_with(name + ("  [" + std::string(configuration) + "]"))) << sizes;
      EXPECT_TRUE(Has(project.Out(with({"size", "--json"})), '"' + output + '"')) << output;
    }
  }
  EXPECT_EQ(project.Run({"run-tool", "simulate", "-a", "tool", "--trust"}).code, 5);
}

TEST_F(CliActions, TestsFailByExitCodeOutputAndTime) {
  const std::pair<const char*, const char*> programs[] = {
      {"good", "puts(\"all well\"); return 0;"},
      {"bad", "puts(\"<broken>\"); putchar(0xe9); return 3;"},
      {"silent", "return 0;"},
      {"slow", "for (;;) pause();"},
      {"app", "return 1;"},
      {"faulty", "return missing;"},
  };
  std::vector<std::pair<std::string, std::vector<std::string>>> applications;
  for (const auto& [name, body] : programs) {
    project.Write(
        "src/" + std::string(name) + ".c",
        "#include <stdio.h>\n#include <unistd.h>\nint main(void) { " + std::string(body) + " }\n");
    applications.push_back({name, {std::string(name) + ".c"}});
  }
  project.WriteProject(applications);
  for (const char* name : {"good", "bad", "silent", "slow", "faulty"}) {
    project.Out({"options", "set", "Test.Run", "Yes", "--app", name});
  }
  project.Out({"options", "set", "Test.Expect", "well", "--app", "silent"});
  project.Out({"options", "set", "Test.Timeout", "1", "--app", "slow"});
  EXPECT_EQ(project.Run({"test", "--app", "good"}).code, 3);
  const auto run = project.Run({"test", "--trust", "--junit", "r.xml"});
  EXPECT_EQ(run.code, 1);
  for (const char* line : {"PASS  good (", "<broken>\n", "its output lacks \"well\"",
                           "ended with exit code 3", "the time limit", "5 tests, 4 failed\n"}) {
    EXPECT_TRUE(Has(run.out, line)) << line << run.out << run.err;
  }
  const std::string xml = project.Read("r.xml");
  EXPECT_TRUE(Has(xml, "<testsuites tests=\"5\" failures=\"3\" errors=\"1\"")) << xml;
  EXPECT_TRUE(Has(xml, "<system-out>&lt;broken&gt;\n\xef\xbf\xbd</system-out>")) << xml;
  EXPECT_EQ(project.Run({"test", "--trust", "--app", "good", "--junit", "r.xml"}).code, 0);
  project.ExpectRefusal({"test", "--trust", "--app", "good", "--junit", "src/good.c"}, 2,
                        "--junit would replace src/good.c");
}

// The records and the log of a build that ends before the simulator are not replaced by older ones.
TEST_F(CliActions, AProjectCanBeBuiltWhileItsProgramIsSimulated) {
  SetAll({{"Simulate.Tool", "simavr"}, {"Simulate.Machine", "atmega328p"}});
  project.AddProgram("simavr",
                     "#!/bin/sh\necho runs\nwhile [ ! -e stop ]; do sleep 0.05; done\necho over\n");
  bool isBuilt = false;
  const auto run = project.Run({"run-tool", "simulate"}, [&](Process&, const std::string& out) {
    if (isBuilt || !Has(out, "runs")) return;
    isBuilt = true;
    project.Touch("src/a.c");
    const auto built = project.RunProgram("/usr/bin/timeout", {"30", TARN_PROGRAM, "build"});
    EXPECT_EQ(Built(built.out), "a.c app") << built.err;
    project.Edit("stop", "");
  });
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(run.out, "runs\nover\n");
  EXPECT_TRUE(Has(project.Out({"log"}), "a.c")) << project.Out({"log"});
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
}

// Listens at a local port. With 0, the OS chooses one; `port` receives it.
Descriptor Listen(int& port) {
  Descriptor server(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  socklen_t size = sizeof address;
  EXPECT_EQ(bind(server.Get(), reinterpret_cast<sockaddr*>(&address), size), 0);
  EXPECT_EQ(listen(server.Get(), 1), 0);
  getsockname(server.Get(), reinterpret_cast<sockaddr*>(&address), &size);
  port = ntohs(address.sin_port);
  return server;
}

// The debugger would connect to the other program, or wait for a server that has ended.
TEST_F(CliActions, NoDebuggerStartsWithoutItsServer) {
  int port = 0;
  Descriptor other = Listen(port);
  SetAll({{"Simulate.Tool", "qemu-arm"},
          {"Simulate.Machine", "virt"},
          {"Simulate.Semihosting", "No"}});
  Set("Debug.Port", std::to_string(port));
  project.AddProgram("qemu-system-arm", "#!/bin/sh\necho no machine\nexit 1\n");
  project.AddProgram("gdb-multiarch", "#!/bin/sh\necho debugger\n");
  project.ExpectRefusal({"debug"}, 1, "The option Debug.Port selects");
  other.Close();
  project.ExpectRefusal({"debug", "--json"}, 2, "--json needs --dry-run");
  const auto ended = project.Run({"debug"});
  EXPECT_EQ(ended.code, 1) << ended.out;
  EXPECT_TRUE(Has(ended.out, "no machine") && !Has(ended.out, "debugger")) << ended.out;
  EXPECT_TRUE(Has(ended.err, "qemu-system-arm has ended before")) << ended.err;
}

TEST_F(CliActions, TheServerEndsWithTheDebugger) {
  project.AddProgram("qemu-system-arm",
                     "#!/bin/sh\necho $$ > server.pid\necho listens\nexec sleep 60\n");
  project.AddProgram("gdb-multiarch", "#!/bin/sh\necho \"$@\"\nexit 4\n");
  SetAll({{"Simulate.Tool", "qemu-arm"},
          {"Simulate.Machine", "virt"},
          {"Simulate.Semihosting", "No"}});
  int port = 0;
  Listen(port).Close();
  Set("Debug.Port", std::to_string(port));
  Descriptor server;
  const auto run = project.Run({"debug", "-x", "bt"}, [&](Process&, const std::string& out) {
    if (!server && Has(out, "listens")) server = Listen(port);
  });
  EXPECT_EQ(run.code, 4) << run.err;
  EXPECT_TRUE(Has(run.out, "-ex break main -ex continue -ex bt\n")) << run.out;
  EXPECT_TRUE(Has(run.out, "-batch -nx ")) << run.out;
  EXPECT_NE(project.RunProgram("sh", {"-c", "kill -0 $(cat server.pid)"}).code, 0);
}

// Firmware that prints "hi" on its serial port and ends, or runs on, compiled without the project's
// own tools.
TEST(CliSimulators, FirmwareRunsInTheInstalledSimulators) {
  const struct {
    const char* program;
    const char* package;
    const char* build;  // of t.c
    const char* source;
    const char* tool;
    const char* machine;
    int code;
  } rows[] = {
      {"qemu-system-arm", "qemu-system-arm and gcc-arm-none-eabi",
       "arm-none-eabi-gcc -mcpu=cortex-m3 -nostdlib -Ttext=0 t.c -o build/Standard/app",
       "__attribute__((naked)) int start(void) { __asm__(\".word 0x20010000, main + 1\"); }\n"
       "int main(void) { volatile int* uart = (int*)0x4000c000; *uart = 'h'; *uart = 'i';\n"
       "  *uart = 10; int block[] = {0x20026, 7}; register int op __asm__(\"r0\") = 0x20;\n"
       "  register int* r1 __asm__(\"r1\") = block;\n"
       "  __asm__(\"bkpt 0xab\" : : \"r\"(op), \"r\"(r1) : \"memory\"); for (;;) {} }\n",
       "qemu-arm", "lm3s6965evb", 7},
      {"qemu-system-riscv32", "qemu-system-misc and gcc-riscv64-unknown-elf",
       "riscv64-unknown-elf-gcc -march=rv32imac -mabi=ilp32 -nostdlib -Ttext=0x80000000 t.c -o "
       "build/Standard/app",
       "__attribute__((naked)) void _start(void) { __asm__(\"li sp, 0x80100000\\ncall main\"); }\n"
       "int main(void) { volatile char* uart = (char*)0x10000000; *uart = 'h'; *uart = 'i';\n"
       "  *uart = 10; *(volatile int*)0x100000 = 0x3333 | 9 << 16; for (;;) {} }\n",
       "qemu-riscv32", "virt", 9},
      {"simavr", "simavr, gcc-avr and avr-libc",
       "avr-gcc -mmcu=atmega328p -Os t.c -o t.elf && avr-objcopy -O ihex t.elf "
       "build/Standard/app.hex",
       "#include <avr/io.h>\n#include <avr/sleep.h>\nint main(void) { UCSR0B = 1 << TXEN0;\n"
       "  for (const char* s = \"hi\\n\"; *s; ++s) { while (!(UCSR0A & 1 << UDRE0)) {} UDR0 = *s; "
       "}\n"
       "  for (volatile int i = 0; i < 30000; ++i) {} sleep_mode(); return 0; }\n",
       "simavr", "atmega328p", 0},
      {"s51", "sdcc and sdcc-ucsim", "sdcc -mmcs51 t.c -o t.ihx",
       "#include <8052.h>\nvolatile __xdata __at(0xffff) char port;\n"
       "static void put(char c) { SBUF = c; while (!TI); TI = 0; }\n"
       "void main(void) { TMOD = 0x20; TH1 = 0xfd; TR1 = 1; SM1 = 1; put('h'); put('i');\n"
       "  put(10); port = 's'; for (;;); }\n",
       "s51", "C52", 0},
      {"sstm8", "sdcc and sdcc-ucsim", "sdcc -mstm8 t.c -o t.ihx",
       "#define P(a) (*(volatile unsigned char*)(a))\n"
       "static void put(char c) { P(0x5241) = c; while (!(P(0x5240) & 0x80)); }\n"
       "void main(void) { P(0x5242) = 1; P(0x5245) = 8; put('h'); put('i'); put(10); for (;;); }\n",
       "sstm8", "S105", 124},
  };
  std::string missing;
  for (const auto& each : rows) {
    CliProject project;
    project.Trust();
    const std::string compiler =
        std::string(each.build).substr(0, std::string(each.build).find(' '));
    if (FindProgram(each.program).empty() || FindProgram(compiler).empty()) {
      missing += std::string(missing.empty() ? "" : "; ") + each.package;
      continue;
    }
    project.Out({"build", "-q"});
    project.Edit("t.c", each.source);
    const auto built = project.RunProgram("sh", {"-c", each.build});
    ASSERT_EQ(built.code, 0) << built.err;
    project.Out({"options", "set", "Simulate.Tool", each.tool});
    project.Out({"options", "set", "Simulate.Machine", each.machine});
    if (compiler == "sdcc") {
      project.Edit("build/Standard/app.ihx", project.Read("t.ihx"));
      project.Out({"options", "set", "Build.OutputFile", "build/Standard/app.ihx"});
    }
    const auto run =
        project.Run({"run-tool", "simulate", "--timeout", each.code == 124 ? "3" : "20"});
    EXPECT_EQ(run.code, each.code) << each.tool << run.out << run.err;
    // A warning of the simulator itself may come before the end of the line.
    const bool isPrinted = Has(run.out, "hi\n") || Has(run.out, "hiWarning:");
    EXPECT_TRUE(isPrinted) << each.tool << run.out << run.err;
  }
  if (!missing.empty()) GTEST_SKIP() << "needs " << missing;
}

TEST_F(CliActions, TheMonitorTalksToASerialPort) {
  const int device = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_TRUE(device >= 0 && grantpt(device) == 0 && unlockpt(device) == 0);
  Set("Monitor.Port", ptsname(device));
  bool isAnswered = false;
  const auto run = project.RunProgram(
      "sh", {"-c", "(sleep 0.5; printf 'hi\\n\\035') | " TARN_PROGRAM " monitor --line-end crlf"},
      [&](Process&, const std::string&) {});
  char bytes[16] = {};
  isAnswered = read(device, bytes, sizeof bytes - 1) > 0;
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_TRUE(isAnswered);
  EXPECT_STREQ(bytes, "hi\r\n");
  close(device);
  project.ExpectRefusal({"monitor", "--json"}, 2, "has no --json");
  project.Write("plain", "text");
  project.ExpectRefusal({"monitor", "--port", "plain"}, 3, "not a serial port");
  EXPECT_EQ(project.Read("plain"), "text");
}

}  // namespace
}  // namespace tarn::host
