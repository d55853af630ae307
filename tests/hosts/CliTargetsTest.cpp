#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "hosts/CliProject.h"
#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "platform/text/Text.h"
#include "wizard/TargetCatalogue.h"
#include "xml/XmlNode.h"

namespace tarn::host {
namespace {

TEST(CliTargets, AreShownByFamilyNameAndText) {
  CliProject project;
  project.Write(
      "targets.xml",
      "<Targets Header='Mine' >"
      "<Target Header='ab1' ><Micro_Description>First.\\nUSB and\x1b[m.</Micro_Description>"
      "<Datasheet>https://example.com/ab1</Datasheet><ConfigName>Debug</ConfigName></Target>"
      "<Targets Header='Inner' ><Target Header='ab12' Core='c1' Mcu='m1' Flash='65536' "
      "Pins='28,32' >"
      "<Micro_Description>Second.</Micro_Description></Target><Target Header='\xc3\xa4' /><Other "
      "Header='ab3' /></Targets>"
      "</Targets>");
  std::filesystem::create_directories(project.PathOf("settings/user"));
  project.Point("TARN_SETTINGS", "settings");
  project.Write("settings/user/registry.ini",
                "[Software\\Corvane\\Tarn7\\Targets\\mine]\nNickName=Mine\nXmlPath=" +
                    project.PathOf("targets.xml") + "\n");
  const struct {
    std::vector<std::string> arguments;
    int code;
    std::string out, err;
  } rows[] = {
      {{"targets"},
       0,
       "Mine\n  ab1   First.  [Debug]\nMine, Inner\n  ab12  Second.\n  \xc3\xa4\n",
       ""},
      {{"targets", "inner"}, 0, "Mine, Inner\n  ab12  Second.\n  \xc3\xa4\n", ""},
      {{"targets", "AB1"},
       0,
       "ab1  Mine\n  First.\n  USB and\\x1b[m.\n  Data sheet     https://example.com/ab1\n"
       "  Configuration  Debug\n",
       ""},
      {{"targets", "c1", "flash>=64K", "pins=32"},
       0,
       "ab12  Mine, Inner\n  Second.\n  Device         m1\n  Core           c1\n  Configuration  "
       "Standard\n",
       ""},
      {{"targets", "inner", "flash<64k"},
       0,
       "\xc3\xa4  Mine, Inner\n  Configuration  Standard\n",
       ""},
      {{"targets", "core=c1", "flash>64K"},
       2,
       "",
       "tarn: No target with \"core=c1\" has flash>64K.\n"},
      {{"targets", "flash>=1G"},
       2,
       "",
       "tarn: No target has \"flash>=1G\" in its name or description, and it is not a condition "
       "such as 'flash>=64K'.\n"},
      {{"targets", "--family", "inner", "seco", "--json"},
       0,
       "[\n  {\n    \"configuration\": \"Standard\",\n    \"core\": \"c1\",\n    \"datasheet\": "
       "\"\",\n"
       "    \"description\": \"Second.\",\n    \"families\": [\n      \"Mine\",\n      \"Inner\"\n"
       "    ],\n    \"flash\": 65536,\n    \"mcu\": \"m1\",\n    \"name\": \"ab12\",\n    "
       "\"pins\": \"28,32\"\n  }\n]\n",
       ""},
      {{"targets", "--family", "innr"},
       2,
       "",
       "tarn: Unknown family \"innr\". Did you mean \"Inner\"?\n"},
      {{"targets", "--family", "xyz"},
       2,
       "",
       "tarn: Unknown family \"xyz\". There are:\n  Inner\n  Mine\n"},
      {{"targets", "--family", "Inner", "usb"},
       2,
       "",
       "tarn: No target of the family \"Inner\" has \"usb\" in its name or description. "
       "See `tarn targets`.\n"},
      {{"targets", "a12"},
       2,
       "",
       "tarn: No target has \"a12\" in its name or description. Did you mean \"ab12\" or "
       "\"ab1\"?\n"},
  };
  for (const auto& row : rows) {
    const auto answer = project.Run(row.arguments);
    EXPECT_EQ(answer.code, row.code) << row.arguments.back();
    EXPECT_EQ(answer.out, row.out) << row.arguments.back();
    EXPECT_EQ(answer.err, row.err) << row.arguments.back();
  }
  // The readable part of a damaged file is shown, but no project is created from it.
  project.Write("targets.xml", "<Targets Header='Mine' >\n<Target Header='ab1' />\n");
  const auto answer = project.Run({"targets"});
  const std::string fault = project.PathOf("targets.xml") + ":3: the file ends inside <Targets>";
  EXPECT_EQ(answer.out, "ab1  Mine\n  Configuration  Standard\n");
  EXPECT_EQ(answer.code, 3);
  EXPECT_TRUE(Has(answer.err, fault)) << answer.err;
  project.ExpectRefusal({"new", "--target", "ab1", "made"}, 3, fault);
  EXPECT_FALSE(project.Exists("made"));
  std::filesystem::remove(project.PathOf("targets.xml"));
  project.ExpectRefusal({"targets"}, 3, "No targets are registered. Run `tarn register`");
}

// --- Installed targets ---

struct Part {
  std::string name;
  TargetDescription description;
};

std::string SharePath(const std::string& name) {
  return std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/" + name;
}

std::string ReadText(const std::string& path) {
  const auto text = FileSystem::Native().ReadWholeFile(path);
  return text ? *text : std::string();
}

// Returns the installed catalogue without any user settings.
std::unique_ptr<CXmlNode> ReadShipped() {
  const Settings nobody(FileSystem::Native(), {"/none", "/none", "/none"});
  return TargetCatalogue(FileSystem::Native(), nobody, SharePath("targets")).Read();
}

std::vector<Part> PartsOf(const std::string& package) {
  const auto root = ReadShipped();
  std::vector<Part> parts;
  for (const CXmlNode* packageRoot : root->GetChildren()) {
    if (OrEmpty(packageRoot->GetAttrValue("Header")) != package) continue;
    for (const CXmlNode* family : packageRoot->GetChildren()) {
      for (const CXmlNode* target : family->GetChildren()) {
        if (target->NameView() != "Target") continue;
        parts.push_back({OrEmpty(target->GetAttrValue("Header")), DescribeTarget(*target)});
      }
    }
  }
  return parts;
}

// Returns the size of a memory in bytes from a description such as "4.25 KB RAM"; 0 if it isn't
// mentioned.
long BytesOf(const std::string& description, const std::string& memory) {
  std::size_t end = description.find("B " + memory);
  if (end == std::string::npos || end < 2) return 0;
  const char prefix = description[end - 1];
  const long unit = prefix == 'M' ? 1024 * 1024 : prefix == 'K' ? 1024 : 1;
  end -= unit > 1 ? 2 : 1;  // at the space after the number
  const std::size_t begin = description.find_last_not_of("0123456789.", end - 1) + 1;
  return static_cast<long>(std::strtod(description.c_str() + begin, nullptr) *
                           static_cast<double>(unit));
}

std::string AvrSource(const std::string& description) {
  std::string source = "#include <avr/io.h>\n";
  const auto check = [&](const char* memory, const char* size) {
    const long bytes = BytesOf(description, memory);
    if (bytes == 0) return;
    source += std::string("_Static_assert(") + size + " == " + std::to_string(bytes) + ", \"" +
              memory + "\");\n";
  };
  check("flash", "FLASHEND + 1UL");
  check("RAM", "RAMEND - RAMSTART + 1UL");
  check("EEPROM", "E2END + 1UL");
  return source + ReadText(SharePath("config/templates/avr.c"));
}

std::string SdccSource(const std::string& description) {
  constexpr std::string_view kHeaderFollows = "registers stand in ";
  std::string source = "#include <stdint.h>\n";
  const std::size_t place = description.find(kHeaderFollows);
  if (place != std::string::npos) {
    const std::size_t name = place + kHeaderFollows.size();
    source +=
        "#include <" + description.substr(name, description.find(".h", name) - name) + ".h>\n";
  }
  return source + "unsigned char counter;\nvoid main(void) { for (;;) counter++; }\n";
}

// The 8051 linker takes memory sizes as options, which must match the description.
void ExpectMemoryOptions(const Part& part) {
  const std::string& text = part.description.text;
  const long external = BytesOf(text, "of it by MOVX");
  const std::string options = "\"--code-size " + std::to_string(BytesOf(text, "flash")) +
                              " --iram-size " + std::to_string(BytesOf(text, "RAM") - external) +
                              " --xram-size " + std::to_string(external) + "\"";
  EXPECT_TRUE(Has(part.description.script.value_or(""), options)) << part.name << options;
}

// A new project has these files next to each other; together they are compiled faster.
std::string FirmwareSource(const std::string& family, const std::string& first) {
  std::string source;
  for (const std::string& name :
       {family + "/startup.c", std::string("libc/syscalls.c"), "templates/" + first}) {
    source += "#include \"" + SharePath("config/" + name) + "\"\n";
  }
  return source;
}

// Its second-stage boot loader is assembler code, in a file of its own.
std::string Rp2040Source() {
  return FirmwareSource("arm", "rp2040.c") +
         "__attribute__((section(\".boot2\"), used)) const char boot_stage2[256] = {0};\n";
}

std::string SourceFor(const TargetDescription& description) {
  const std::string script = description.script.value_or("");
  if (Has(script, "\"rp2040\"")) return Rp2040Source();
  if (Has(script, "\"rp2350\"")) return FirmwareSource("arm", "rp2350.c");
  if (Has(script, "\"arm-gcc\"")) return FirmwareSource("arm", "firmware.c");
  if (Has(script, "\"riscv-gcc\"")) return FirmwareSource("riscv", "firmware.c");
  return Has(script, "\"avr-gcc\"") ? AvrSource(description.text) : SdccSource(description.text);
}

struct Package {
  const char* label;
  std::size_t count;  // minimum number of parts
  // Large packages are split, so that they are built in parallel.
  std::size_t piece;
  std::size_t pieces;
};

void PrintTo(const Package& package, std::ostream* out) {
  *out << package.label << "_" << package.piece;
}

class ShippedTargets : public ::testing::TestWithParam<Package> {};

// Returns the lines that a script prints, which are for the user.
std::string NoticesOf(const std::string& script) {
  constexpr std::string_view kCall = "print(\"";
  std::string notices;
  for (std::size_t at = script.find(kCall); at != script.npos; at = script.find(kCall, at + 1)) {
    const std::size_t start = at + kCall.size();
    notices += script.substr(start, script.find('"', start) - start) + "\n";
  }
  return notices;
}

// Each part's script configures an application, and all of them are built.
TEST_P(ShippedTargets, CannotBeBuiltOrAreNotWhatTheyAreSaidToBe) {
  const std::vector<Part> all = PartsOf(GetParam().label);
  ASSERT_GE(all.size(), GetParam().count);
  std::vector<Part> parts;
  for (std::size_t i = GetParam().piece; i < all.size(); i += GetParam().pieces) {
    parts.push_back(all[i]);
  }
  CliProject project;
  project.Trust();
  std::vector<std::pair<std::string, std::vector<std::string>>> applications;
  std::set<std::string> names;
  std::string setUp, notices;
  for (const Part& part : parts) {
    const TargetDescription& description = part.description;
    // sdcc can't handle the characters in the names of some boards.
    const std::string file = "t" + std::to_string(applications.size());
    EXPECT_TRUE(names.insert(FoldCase(part.name)).second) << part.name << " is there twice";
    EXPECT_TRUE(description.datasheet.value_or("").starts_with("https://")) << part.name;
    EXPECT_EQ(description.configName, "Standard") << part.name;
    EXPECT_GE(BytesOf(description.text, "flash"), 512) << part.name;
    if (GetParam().label == std::string("8051")) ExpectMemoryOptions(part);
    applications.push_back({file, {file + ".c"}});
    project.Write("src/" + file + ".c", SourceFor(description));
    project.Write(file + ".lua", description.script.value_or(""));
    notices += NoticesOf(description.script.value_or(""));
    setUp += "tarn.SelectApplication('" + file + "')\n" + "assert(tarn.ExecuteScript('" + file +
             ".lua') == 1)\n";
  }
  project.WriteProject(applications);
  project.Write("setup.lua", setUp + "tarn.ProjectSave()\n");
  ASSERT_EQ(project.Out({"run", "setup.lua"}), notices);
  const auto built = project.Run({"build"});
  if (built.code == 4) GTEST_SKIP() << built.err;
  EXPECT_EQ(built.code, 0) << built.out << built.err;
  const std::string count = std::to_string(2 * parts.size());
  EXPECT_TRUE(Has(built.out, "\nBuilt " + count + " files (")) << built.out << built.err;
}

const Package kPackages[] = {
    {"AVR", 170, 0, 4},
    {"AVR", 170, 1, 4},
    {"AVR", 170, 2, 4},
    {"AVR", 170, 3, 4},
    {"8051", 25, 0, 2},
    {"8051", 25, 1, 2},
    {"STM8", 30, 0, 1},
    {"Z80, HC08 and Padauk", 8, 0, 1},
    {"Boards with 8 bits", 12, 0, 1},
};

// These need compilers that `make test-toolchains` installs.
const Package kFirmwarePackages[] = {
    {"STM32", 200, 0, 6},
    {"STM32", 200, 1, 6},
    {"STM32", 200, 2, 6},
    {"STM32", 200, 3, 6},
    {"STM32", 200, 4, 6},
    {"STM32", 200, 5, 6},
    {"NXP", 35, 0, 1},
    {"SAM", 35, 0, 1},
    {"Nordic", 12, 0, 1},
    {"TI", 10, 0, 1},
    {"EFM32", 13, 0, 1},
    {"XMC", 6, 0, 1},
    {"GD32", 11, 0, 1},
    {"RISC-V", 20, 0, 1},
    {"Renesas RA", 6, 0, 1},
    {"Boards with 32 bits", 45, 0, 2},
    {"Boards with 32 bits", 45, 1, 2},
};

std::string NameOf(const ::testing::TestParamInfo<Package>& package) {
  std::string name = package.param.label;
  std::erase_if(name, [](char c) { return c == ' ' || c == ',' || c == '-'; });
  return name + "_" + std::to_string(package.param.piece);
}

INSTANTIATE_TEST_SUITE_P(Package, ShippedTargets, ::testing::ValuesIn(kPackages), NameOf);
INSTANTIATE_TEST_SUITE_P(Toolchain, ShippedTargets, ::testing::ValuesIn(kFirmwarePackages), NameOf);

TEST(ShippedPackages, AreAllBuiltByATest) {
  std::set<std::string> shipped;
  std::set<std::string> built;
  const auto root = ReadShipped();
  for (const CXmlNode* each : root->GetChildren()) shipped.insert(each->GetAttrValue("Header"));
  for (const Package& each : kPackages) built.insert(each.label);
  for (const Package& each : kFirmwarePackages) built.insert(each.label);
  EXPECT_EQ(shipped, built);
}

}  // namespace
}  // namespace tarn::host
