#include <gtest/gtest.h>

#include <map>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

struct Toolchain {
  const char* name;
  const char* program;
  const char* code;  // start of an assembler source; empty for a compiler without C++
};

constexpr Toolchain kToolchains[] = {
    {"host-gcc", "gcc", ".text\n.global other\nother:"},
    {"avr-gcc", "avr-gcc", ".text\n.global other\nother:"},
    {"sdcc-mcs51", "sdcc", ""},
    {"sdcc-stm8", "sdcc", ""},
};

std::string Property(const char* section, const char* name, const std::string& value) {
  return "<Section Header=\"" + std::string(section) + "\" ><Property Header=\"" + name +
         "\" Removable=\"Yes\" Value=\"" + value + "\" /></Section>";
}

// Creates a checkout whose application is in a separate folder and uses sources, a header and a
// library next to it. All sources embed their file names into the outputs.
void WriteCheckout(CliProject& project, const std::string& checkout, const Toolchain& toolchain,
                   const char* debug = "Yes") {
  const auto write = [&](const char* name, const std::string& text) {
    project.Write(checkout + "/" + name, text);
  };
  for (const char* folder : {"fw", "inc", "shared"}) {
    std::filesystem::create_directories(project.PathOf(checkout + "/" + folder));
  }
  const bool hasCpp = *toolchain.code != '\0';
  write("demo.tprj",
        "\r\n<Project Project=\"Yes\" ActiveApp=\"fw\" ><Application Header=\"fw\" "
        "Extern=\".\\fw\\fw.tapp\" Path=\".\\fw\\fw.tapp\" /></Project>");
  write(
      "fw/fw.tapp",
      "\r\n<Application Header=\"fw\" Extern=\".\\fw\\fw.tapp\" Path=\".\\fw\\fw.tapp\" ><Options>"
      "<Config Header=\"Standard\" ><Set Header=\"Application\" >" +
          Property("Target", "Toolchain", toolchain.name) + Property("Compiler", "Debug", debug) +
          Property("Directories", "Include", "../inc") +
          (std::string_view(toolchain.name) == "avr-gcc"
               ? Property("Target", "Device", "atmega328p")
               : std::string()) +
          "</Set></Config></Options><C Header=\"m.c\" Path=\".\\m.c\" />" +
          "<C Header=\"f.c\" Path=\"..\\shared\\f.c\" />" +
          (hasCpp ? "<Cpp Header=\"p.cpp\" Path=\".\\p.cpp\" /><Assembler Header=\"s.s\" "
                    "Path=\".\\s.s\" />"
                  : "") +
          "</Application>");
  write("inc/h.h", "static char h(int a) { const char *name = __FILE__; return name[a]; }\n");
  write(
      "fw/m.c",
      "#include \"h.h\"\nextern void fail(const char *file, int line);\nextern void other(void);\n"
      "#define CHECK(x) if (!(x)) fail(__FILE__, __LINE__)\nint v;\n"
      "int main(void) { CHECK(v); v = h(1);" +
          std::string(hasCpp ? " other();" : "") + " return 0; }\n");
  write("shared/f.c",
        "char last;\nvoid fail(const char *file, int line) { last = file[line]; }\n"
        "const char *where(void) { return __FILE__; }\n");
  // Without an externally visible name, the compiler generates one.
  write("fw/p.cpp", "namespace { struct S { S(); int v; }; S::S() : v(__FILE__[v]) {} S s; }\n");
  write("fw/s.s", std::string(toolchain.code) + " ret\n");
}

// Returns the contents of the output folder by name. An .omf file contains uninitialised memory of
// sdcc.
std::map<std::string, std::string> Outputs(const CliProject& project, const std::string& checkout) {
  std::map<std::string, std::string> outputs;
  const std::filesystem::path folder = project.PathOf(checkout + "/fw/build");
  for (const auto& each : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string name = each.path().lexically_relative(folder).string();
    if (each.is_regular_file() && !name.ends_with(".omf")) {
      outputs[name] = project.Read(checkout + "/fw/build/" + name);
    }
  }
  return outputs;
}

TEST(CliReproducible, ACheckoutInAnotherFolderIsBuiltToTheSameBytes) {
  for (const Toolchain& toolchain : kToolchains) {
    SCOPED_TRACE(toolchain.name);
    CliProject project;
    if (project.RunProgram("/bin/sh", {"-c", "command -v \"$0\"", toolchain.program}).code != 0) {
      continue;
    }
    for (const char* debug : {"Yes", "No"}) {
      SCOPED_TRACE(debug);
      std::map<std::string, std::string> first;
      for (const std::string place : {"one", "a deep/place with blanks/two"}) {
        const std::string checkout = place + debug;
        WriteCheckout(project, checkout, toolchain, debug);
        const auto build = project.Run({"build", checkout});
        ASSERT_EQ(build.code, 0) << build.out << build.err;
        const auto outputs = Outputs(project, checkout);
        EXPECT_GE(outputs.size(), 7u);
        for (const auto& [name, bytes] : outputs) {
          EXPECT_FALSE(Has(bytes, project.PathOf(""))) << name << " tells where it was built";
          EXPECT_TRUE(first.empty() || bytes == first[name]) << name << " differs";
        }
        EXPECT_TRUE(first.empty() || outputs.size() == first.size());
        first = outputs;
        EXPECT_TRUE(Has(project.Out({"build", checkout}), "Nothing to do"));
      }
    }
  }
}

TEST(CliReproducible, ARebuildWithOptimizationByTheLinkerMakesTheSameBytes) {
  for (const Toolchain& toolchain : {kToolchains[0], kToolchains[1]}) {
    SCOPED_TRACE(toolchain.name);
    CliProject project;
    if (project.RunProgram("/bin/sh", {"-c", "command -v \"$0\"", toolchain.program}).code != 0) {
      continue;
    }
    WriteCheckout(project, "one", toolchain);
    project.Out({"options", "set", "C.Compiler.Extra", "--", "-flto", "one"});
    project.Out({"options", "set", "Linker.Extra", "--", "-flto", "one"});
    project.Out({"options", "set", "Linker.MapFile", "build/fw.map", "one"});
    project.Out({"build", "one"});
    const auto first = Outputs(project, "one");
    ASSERT_TRUE(Has(first.at("fw.map"), ".ltrans"));
    project.Out({"rebuild", "one"});
    for (const auto& [name, bytes] : Outputs(project, "one")) {
      EXPECT_TRUE(bytes == first.at(name)) << name << " differs";
    }
    EXPECT_TRUE(Has(project.Out({"build", "one"}), "Nothing to do"));
  }
}

TEST(CliReproducible, MessagesAndGlobalsLeadToTheRealFiles) {
  CliProject project;
  WriteCheckout(project, "one", kToolchains[0]);
  project.Out({"build", "one"});
  for (const char* place : {"one/fw/m.c:5", "one/shared/f.c:1", "one/inc/h.h:1"}) {
    EXPECT_TRUE(Has(project.Out({"globals", "one"}), place)) << place;
  }
  project.Write("one/shared/f.c", "int f(void) {\n  int unused;\n  return missing;\n}\n");
  const auto failed = project.Run({"rebuild", "one"});
  EXPECT_EQ(failed.code, 1);
  for (const char* line : {"one/shared/f.c: In function ‘f’:\n", "one/shared/f.c:3:10: error: "}) {
    EXPECT_TRUE(Has(failed.out, line)) << failed.out;
  }
  EXPECT_TRUE(Has(project.Out({"log", "one", "--json"}), project.PathOf("one/shared/f.c")));
}

TEST(CliReproducible, AFolderThatIsReachedByALinkHasTheNeighboursOfItsTarget) {
  CliProject project;
  WriteCheckout(project, "real/one", kToolchains[0]);
  WriteCheckout(project, "other", kToolchains[0]);
  // "../shared" is relative to the link's target, not to the link.
  std::filesystem::remove_all(project.PathOf("other/fw"));
  std::filesystem::create_directory_symlink(project.PathOf("real/one/fw"),
                                            project.PathOf("other/fw"));
  project.Write("other/shared/f.c",
                "void fail(const char *file, int line) { (void)file; }\n#error here\n");
  const auto build = project.Run({"build", "other", "--trust"});
  EXPECT_EQ(build.code, 0) << build.out;
}

}  // namespace
}  // namespace tarn::host
