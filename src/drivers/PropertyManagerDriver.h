#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/DispatchDriver.h"

namespace tarn {

// Late-bound proxy of the property manager, the component that reads option definitions, holds the
// values of one node at a time and shows the options window. One function per dispatch id. Strings
// may be passed as const char* (nullptr arrives as null), std::string or string_view. If a call
// fails, also because no component is attached, it returns 0 or an empty string, and `LastResult()`
// has the reason.
class CPropertyManagerDriver : public COleDispatchDriver {
 public:
  static constexpr const char* kProgId = "TarnOptionsManager.PropertyManager";

  // Must be called before all other functions. `application` and `data` are folders, `frame` is the
  // window of the main frame.
  std::int32_t InitOptions(TextArgument application, TextArgument data, std::int32_t frame,
                           std::int32_t mode);

  // Reads the definitions of a set; an empty `set` denotes the configuration file.
  std::int32_t ReadDefsFromFile(TextArgument set, TextArgument file);
  std::int32_t ReadConfigFromFile(TextArgument config, TextArgument set, TextArgument section,
                                  TextArgument property, TextArgument file);
  // Adds the values in an XML string: the values of one node, or a `ProjectsConfigs` element.
  std::int32_t ReadValuesFromText(TextArgument text);

  std::string GetPropertyValue(TextArgument set, TextArgument section, TextArgument property);
  std::int32_t SetPropertyValue(TextArgument set, TextArgument section, TextArgument property,
                                TextArgument value);
  std::string GetPropertyStringValue(TextArgument set, TextArgument section, TextArgument property);

  std::int32_t HideProperty(TextArgument set, TextArgument section, TextArgument property,
                            std::int32_t hide);
  std::int32_t EnableProperty(TextArgument set, TextArgument section, TextArgument property,
                              std::int32_t enable);
  std::int32_t HideSection(TextArgument set, TextArgument section, std::int32_t hide);
  std::int32_t HideSet(TextArgument set, std::int32_t hide);

  // Returns the value of one property in a configuration, unchanged, as an element to store.
  std::string GetConfigText(TextArgument config, TextArgument set, TextArgument section,
                            TextArgument property);
  std::int32_t ShowOptions(std::int32_t frame);
  // Returns the handle of the options window, or 0 if there is none.
  std::int32_t GetPropertyWindow();

  void ClearValues();
  // Returns set, section and property, joined by full stops; empty if nothing has changed.
  std::string GetChangedProperty();
  // Suspend and resume updates of the options window; called around each bulk change.
  void BeginUpdate();
  void EndUpdate();
  std::string GetValuesAsText(TextArgument set, TextArgument section, TextArgument property);

  // `EndParentLevel()` declares the current values as those of a parent node; subsequent values
  // belong to the next level.
  void EndParentLevel();
  void BeginChildLevel();

  std::string GetNewConfigName();
  // Reloads changed definitions. Returns nonzero if there were any.
  std::int32_t RefreshDefinitions();
  // Sets further folders with definitions, one per line. Returns 1 if this changes them.
  std::int32_t SetDefinitionFolders(TextArgument folders);
  void SetCurrentConfig(TextArgument config);
  std::string GetPropState();
  void SetPropState(TextArgument state);
  // Overrides the current values by the stored options of one ancestor.
  std::int32_t ApplyOptions(TextArgument config, TextArgument xml);
  void ProjectClosing();
};

}  // namespace tarn
