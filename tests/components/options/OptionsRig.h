#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "components/options/PropertyManager.h"
#include "platform/automation/DispatchDriver.h"
#include "support/MemoryFileSystem.h"

namespace tarn::options {

// Content of OptionSets that has something of every kind.
extern const char kSampleSets[];

// Texts that a careless reader or writer of values would change.
const std::vector<std::string>& HostileValues();

// The component with definitions from a disk in memory, called by number as its users do.
class OptionsRig {
 public:
  // The content of OptionSets in the configuration file /c/projectmanager.config.
  explicit OptionsRig(const std::string& sets = {});

  std::string Get(const char* set, const char* section, const char* property) {
    return driver.InvokeText(5, {set, section, property});
  }
  void Put(const char* set, const char* section, const char* property, const std::string& value) {
    driver.InvokeLong(6, {set, section, property, value});
  }
  std::string Text() { return driver.InvokeText(22, {"", "", ""}); }
  void Read(const std::string& text) { driver.InvokeLong(4, {text}); }
  void Clear() { driver.InvokeHelper(18, {}); }
  std::string Origin(const char* set, const char* section, const char* property) {
    return driver.InvokeText(107, {set, section, property});
  }
  std::string ConfigText(const char* config, const char* set, const char* section,
                         const char* property) {
    return driver.InvokeText(14, {config, set, section, property});
  }
  std::string Errors() { return driver.InvokeText(102, {}); }
  std::string Display(const char* set, const char* section, const char* property) {
    return driver.InvokeText(27, {set, section, property});
  }
  // Of section Compiler.
  std::string Check(const char* property, const char* value) {
    return driver.InvokeText(101, {"C", "Compiler", property, value});
  }

  // Publishes a node as the project model does: the parent's text when there is one, the label,
  // and the stored options from the outermost node inwards. Gives the node's text.
  std::string Publish(const char* type, const char* header, const std::string& parentText,
                      std::initializer_list<std::string> storedOptions,
                      const char* config = "Debug");

  testing::MemoryFileSystem disk;
  PropertyManager manager;
  COleDispatchDriver driver;
};

// An Options element for one value, as a project file holds it.
std::string Stored(const std::string& config, const std::string& set, const std::string& section,
                   const std::string& property, const std::string& value);

}  // namespace tarn::options
