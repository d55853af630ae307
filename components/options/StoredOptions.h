#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/options/KeyTable.h"
#include "components/options/ValueLayers.h"

// Storage format of values in project files, below the element Options of a node:
//
//   <Config Header="Debug"><Set Header="C"><Section Header="Compiler">
//     <Property Header="Optimize" Removable="Yes" Value="s" />
//   </Section></Set></Config>
//
// Element names are fixed, because stored elements are merged by name and Header. Values and names
// are escaped (ValuesXml.h), so that the text survives any reader and writer unchanged.
namespace tarn::options {

// A parsed Options text.
struct StoredOptions {
  struct Config {
    std::string name;
    std::vector<ValueMap::Value> values;
  };

  std::string text;
  std::uint64_t mark = 0;  // identifies the text
  std::vector<Config> configs;

  // Returns the value stored for the configuration, or nullptr.
  const std::string* Find(std::string_view config, KeyId key) const;
};

// Parses an Options element, or a single Config element. Skips malformed parts.
std::shared_ptr<StoredOptions> ParseStoredOptions(std::string_view text, KeyTable& keys);

// Returns an identifier of the text as read for one configuration.
std::uint64_t MarkFor(const StoredOptions& options, std::string_view config);

// Serializes the element of one configuration. Values must be added sorted by set and section.
class StoredWriter {
 public:
  explicit StoredWriter(std::string_view config);
  void Value(std::string_view set, std::string_view section, std::string_view property,
             std::string_view value, bool removable);
  std::string Finish();

 private:
  void CloseSection();
  void CloseSet();

  std::string text_;
  bool setOpen_ = false;
  bool sectionOpen_ = false;
  std::string openSet_;
  std::string openSection_;
};

}  // namespace tarn::options
