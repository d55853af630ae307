#pragma once

#include <tarn/methods.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "components/options/PropertyManager.h"
#include "platform/automation/DispatchDriver.h"
#include "support/MemoryFileSystem.h"

namespace tarn::options {

// Content of OptionSets with something of every kind.
extern const char kSampleSets[];

// Values that a careless reader or writer would corrupt.
const std::vector<std::string>& HostileValues();

// The component with definitions from an in-memory disk, called by number as its users do.
class OptionsRig {
 public:
  // `sets` is the content of OptionSets in the configuration file /c/projectmanager.config.
  explicit OptionsRig(const std::string& sets = {});

  std::string Get(const char* set, const char* section, const char* property) {
    return driver.InvokeText(TARN_OPT_GET_PROPERTY_VALUE, {set, section, property});
  }
  void Put(const char* set, const char* section, const char* property, const std::string& value) {
    driver.InvokeLong(TARN_OPT_SET_PROPERTY_VALUE, {set, section, property, value});
  }
  std::string Text() { return driver.InvokeText(TARN_OPT_GET_VALUES_AS_TEXT, {"", "", ""}); }
  void Read(const std::string& text) { driver.InvokeLong(TARN_OPT_READ_VALUES_FROM_TEXT, {text}); }
  void Clear() { driver.InvokeHelper(TARN_OPT_CLEAR_VALUES, {}); }
  std::string Origin(const char* set, const char* section, const char* property) {
    return driver.InvokeText(TARN_OPT_GET_ORIGIN, {set, section, property});
  }
  std::string ConfigText(const char* config, const char* set, const char* section,
                         const char* property) {
    return driver.InvokeText(TARN_OPT_GET_CONFIG_TEXT, {config, set, section, property});
  }
  std::string Errors() { return driver.InvokeText(TARN_OPT_GET_DEFINITION_ERRORS, {}); }
  std::string Display(const char* set, const char* section, const char* property) {
    return driver.InvokeText(TARN_OPT_GET_PROPERTY_STRING_VALUE, {set, section, property});
  }
  // Checks a value of the section Compiler.
  std::string Check(const char* property, const char* value) {
    return driver.InvokeText(TARN_OPT_CHECK_VALUE, {"C", "Compiler", property, value});
  }

  // Publishes a node as the project model does: the parent's text if there is one, the label, and
  // the stored options from the outermost node inwards. Returns the node's text.
  std::string Publish(const char* type, const char* header, const std::string& parentText,
                      std::initializer_list<std::string> storedOptions,
                      const char* config = "Debug");

  testing::MemoryFileSystem disk;
  PropertyManager manager;
  COleDispatchDriver driver;
};

// Returns an Options element for one value, as stored in a project file.
std::string Stored(const std::string& config, const std::string& set, const std::string& section,
                   const std::string& property, const std::string& value);

}  // namespace tarn::options
