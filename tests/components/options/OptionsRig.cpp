#include "components/options/OptionsRig.h"

#include "components/common/ValuesText.h"

namespace tarn::options {

OptionsRig::OptionsRig(const std::string& sets) : manager(disk) {
  disk.AddFile("/c/projectmanager.config",
               "<Config><Types><C /></Types><OptionSets>" + sets + "</OptionSets></Config>");
  driver.AttachDispatch(&manager, false);
  driver.InvokeLong(23, {"/c/", "/d/", 0, 1});
  driver.InvokeLong(1, {"", "/c/projectmanager.config"});
}

std::string OptionsRig::Publish(const char* type, const char* header, const std::string& parentText,
                                std::initializer_list<std::string> storedOptions,
                                const char* config) {
  Clear();
  driver.InvokeHelper(26, {config});
  if (!parentText.empty()) {
    Read(parentText);
    driver.InvokeHelper(32, {});
    driver.InvokeHelper(24, {});
  }
  driver.InvokeLong(1, {type, "/c/projectmanager.config"});
  Put(type, "General", "Header", header);
  for (const std::string& options : storedOptions) driver.InvokeLong(30, {config, options});
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
