#include "components/tools/HarmlessFlags.h"

#include <gtest/gtest.h>

#include <string>

#include "components/tools/FileList.h"
#include "components/tools/GivenArguments.h"
#include "components/tools/ToolDefinitionReader.h"
#include "support/TestEnvironment.h"

namespace tarn::tools {
namespace {

TEST(HarmlessFlags, EntriesDescribeWholeWordsOrBeginningsForOneProgram) {
  HarmlessFlags flags;
  flags.Add(' ', "-c;-O*;-x c;-f[no-]common;-[-]map;-W*;!-Wl,*;-m;-m*");
  flags.Add('l', "-Bstatic");
  const struct {
    const char* words;
    FlagFit fit;  // of the first one
    const char* receivers = "    ";
  } rows[] = {
      {"-c", FlagFit::Whole},
      {"-cx", FlagFit::None},
      {"-Os", FlagFit::Start},
      {"-o", FlagFit::None},
      {"-x c", FlagFit::Whole},
      {"-x c++", FlagFit::None},
      {"-x c", FlagFit::None, " l"},
      {"-x", FlagFit::None},
      {"-fcommon", FlagFit::Whole},
      {"-fno-common", FlagFit::Whole},
      {"-fno-no-common", FlagFit::None},
      {"--map", FlagFit::Whole},
      {"-map", FlagFit::Whole},
      {"-Wall", FlagFit::Start},
      {"-Wl,x", FlagFit::None},
      {"-m", FlagFit::Whole},
      {"-Bstatic", FlagFit::None},
      {"-Bstatic", FlagFit::Whole, "l"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.words + std::string(" for ") + row.receivers);
    EXPECT_EQ(flags.Find({SplitWords(row.words), row.receivers, {}}, 0), row.fit);
  }
}

// Flags that run code, load it or write files, in the forms that their programs accept.
TEST(HarmlessFlags, TheShippedListsContainNoDangerousFlag) {
  const std::string path = tarn::testing::SourcePath("share/config/tools/harmless.tools");
  const ReadDefinitions read =
      ReadDefinitionFiles({{"harmless.tools", tarn::testing::ReadBytes(path)}});
  ASSERT_TRUE(read.errors.empty()) << read.errors.front();
  const struct {
    const char* list;
    char receiver;
    const char* words;
  } rows[] = {
      {"gcc", ' ',
       "-fplugin=p.so --plugin=p.so -fplugin-arg-x -B. -Bbin --prefix=x -wrapper -specs=x "
       "--specs=x "
       "-specs -iplugindir=x -fcompare-debug -fcompare-debug=x -fmodule-mapper=x -foffload=x "
       "-fuse-ld=lld -fuse-ld=gold --for-linker=x --for-assembler -fdump-tree-all -dumpdir -da -dH "
       "-x -xf95 -save-temps -save-temps=cwd -fprofile-note=x -fprofile-use=x -fprofile-dir=x "
       "-fauto-profile=x -time=x -fsave-optimization-record -auxbase "
       "-fdiagnostics-format=sarif-file "
       "-fdiagnostics-format=json-file -fdiagnostics-add-output=x -fmodules-ts -fmodule-header "
       "-fwpa "
       "-fltrans-output-list=x -fresolution=x -fanalyzer-dump=x -fself-test=x -frepo "
       "-mllvm -Xclang -no-canonical-prefixes --sysr=x -gnatO -fada-spec-parent=x -"},
      {"gcc", 'l',
       "-plugin --plugin=x -plugin-opt=x -error-handling-script=x --error-h=x -c -mri-script=x "
       "--mri-script=x -o --output=x --out-implib=x --base-file=x --output-def=x -P --audit=x "
       "--dependency-f=x -mllvm -fuse-ld=lld -f -a -Bx --remap-inputs-file=x -dump"},
      {"gcc", 'a', "-o --MDx -D1 @x -plugin --output"},
      {"gcc", 'p', "-o --output -auxbase -dumpbase -fplugin=x -iplugindir=x -quiet -dM -imultilib"},
      {"sdcc", ' ',
       "-Wl -Wp -Wa -Wloout -Wpx --dump-all --peep-file -fplugin=x -x --asm=x --use-stdout"},
      {"sdcc", 'l', "-t -o -oout -f -m -u -i -s -y"},
      {"sdcc", 'p', "-o -fplugin=x -MF -iplugindir=x --output"},
      {"sdas", ' ', "-i -oout -lx -ox -plosgffx"},
  };
  for (const auto& row : rows) {
    for (const std::string& word : SplitWords(row.words)) {
      const FlagFit fit = read.harmless.at(row.list).Find({{word}, {row.receiver}, {}}, 0);
      EXPECT_EQ(fit, FlagFit::None) << word << " for " << row.list << " '" << row.receiver << "'";
    }
  }
}

}  // namespace
}  // namespace tarn::tools
