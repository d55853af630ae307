#include "components/options/OptionsRig.h"

#include <tarn/methods.h>

#include "components/values/ValuesXml.h"

namespace tarn::options {

const char kSampleSets[] = R"~(
<Set Header="*"><Section Header="Internal">
  <Property Header="Icon" Default="$(Install.ConfigFolder)any.bmp" /></Section>
  <Section Header="Directories"><Property Header="AddSrcPaths" Type="paths" /></Section>
  <Section Header="Build"><Property Header="Exclude" Type="yesno" Label="Leave out" /></Section></Set>
<Set Header="Application"><Section Header="Target">
  <Property Header="Toolchain" Type="choice" Default="avr"><Choice Value="avr" Label="AVR" />
    <Choice Value="mcs51" Label="8051" /></Property>
  <Property Header="Ext" Default=".elf"><Default When="Target.Toolchain=mcs51" Value=".ihx" /></Property>
</Section></Set>
<Set Header="C"><Section Header="Compiler">
  <Property Header="Include" Type="paths" Default="std" />
  <Property Header="Optimize" Type="choice" Default="s" Removable="No"><Choice Value="s" Label="for size" />
    <Choice Value="2" Label="for speed" /></Property>
  <Property Header="Debug" Type="yesno" KeepsOutputs="Yes" Enabled="Compiler.Optimize!=2" />
  <Property Header="Level" Type="number" Min="1" Max="0x10" />
  <Property Header="Count" Type="number" />
  <Property Header="Out" Type="file" Shown="Compiler.Level=1,2" /></Section>
<Section Header="Build"><Property Header="OutputFile" Default="$(Config.Name)/$(General.Header)$(Target.Ext)" />
</Section></Set>)~";

const std::vector<std::string>& HostileValues() {
  static const std::vector<std::string> values = [] {
    std::vector<std::string> list = {"one\r\ntwo\n\tthree\r",    "C:\\dir\\",  "\\",  "]]>",
                                     "p|q &slash; &quot; &#93;", "<b a=\"1\"", " x ", ""};
    list.emplace_back(5000, ']');
    std::string& bytes = list.emplace_back();
    for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
    return list;
  }();
  return values;
}

OptionsRig::OptionsRig(const std::string& sets) : manager(disk) {
  disk.AddFile("/c/projectmanager.config",
               "<Config><Types><C /></Types><OptionSets>" + sets + "</OptionSets></Config>");
  driver.AttachDispatch(&manager, false);
  driver.InvokeLong(TARN_OPT_INIT_OPTIONS, {"/c/", "/d/", 0, 1});
  driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"", "/c/projectmanager.config"});
}

std::string OptionsRig::Publish(const char* type, const char* header, const std::string& parentText,
                                std::initializer_list<std::string> storedOptions,
                                const char* config) {
  Clear();
  driver.InvokeHelper(TARN_OPT_SET_CURRENT_CONFIG, {config});
  if (!parentText.empty()) {
    Read(parentText);
    driver.InvokeHelper(TARN_OPT_END_PARENT_LEVEL, {});
    driver.InvokeHelper(TARN_OPT_BEGIN_CHILD_LEVEL, {});
  }
  driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {type, "/c/projectmanager.config"});
  Put(type, "General", "Header", header);
  for (const std::string& options : storedOptions)
    driver.InvokeLong(TARN_OPT_APPLY_OPTIONS, {config, options});
  return Text();
}

std::string Stored(const std::string& config, const std::string& set, const std::string& section,
                   const std::string& property, const std::string& value) {
  return "\r\n<Options>\r\n\t<Config Header=\"" + config + "\" >\r\n\t\t<Set Header=\"" + set +
         "\" ><Section Header=\"" + section + "\" >\r\n<Property Header=\"" + property +
         "\" Removable=\"Yes\" Value=\"" + Escape(value) + "\" /></Section></Set>\r\n\t</Config>" +
         "\r\n</Options>";
}

}  // namespace tarn::options
