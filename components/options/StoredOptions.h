#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/options/KeyTable.h"
#include "components/options/ValueLayers.h"

// The form in which values are stored in project files, below the element Options of a node:
//
//   <Config Header="Debug"><Set Header="C"><Section Header="Compiler">
//     <Property Header="Optimize" Removable="Yes" Value="s" />
//   </Section></Set></Config>
//
// Element names are fixed, since stored elements are merged by name and Header. Values and names
// are escaped (ValuesText.h), so the text means the same whatever reads and writes it in between.
namespace tarn::options {

struct StoredOptions {
  struct Config {
    std::string name;
    std::vector<ValueMap::Value> values;
  };

  std::string text;
  std::uint64_t mark = 0;  // tells texts apart
  std::vector<Config> configs;

  // The value stored for the configuration, or null.
  const std::string* Find(std::string_view config, KeyId key) const;
};

// Reads an Options element, or a Config element by itself. What cannot be read is left out.
std::shared_ptr<StoredOptions> ParseStoredOptions(std::string_view text, KeyTable& keys);

// The mark of a text read for one configuration.
std::uint64_t MarkFor(const StoredOptions& options, std::string_view config);

// Writes the element of one configuration. Values come sorted by set and section.
class StoredWriter {
 public:
  explicit StoredWriter(std::string_view config);
  void Value(std::string_view set, std::string_view section, std::string_view property,
             std::string_view value, bool removable);
  std::string Finish();

 private:
  void CloseSection();
  void CloseSet();

  std::string text;
  bool setOpen = false;
  bool sectionOpen = false;
  std::string openSet;
  std::string openSection;
};

}  // namespace tarn::options
