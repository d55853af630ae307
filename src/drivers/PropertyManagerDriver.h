#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/DispatchDriver.h"

namespace tarn {

// The late-bound caller of the property manager: the component that knows the option definitions,
// holds the values of one node at a time and shows the options window. One operation per dispatch
// number; texts may be given as const char* (null arrives as null), std::string or string_view. A
// call that fails, also one without a component, gives 0 or an empty text; LastResult tells why.
class CPropertyManagerDriver : public COleDispatchDriver {
 public:
  static constexpr const char* kProgId = "TarnOptionsManager.PropertyManager";

  // The first call of all. `application` and `data` are folders, `frame` the main frame's window.
  std::int32_t InitOptions(TextArgument application, TextArgument data, std::int32_t frame,
                           std::int32_t mode);

  // Definitions of a set; an empty set stands for the configuration file.
  std::int32_t ReadDefsFromFile(TextArgument set, TextArgument file);
  std::int32_t ReadConfigFromFile(TextArgument config, TextArgument set, TextArgument section,
                                  TextArgument property, TextArgument file);
  // Adds the values of a text: those of one node, or a `ProjectsConfigs` element.
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

  // One value as it stands in a configuration, as an element to store.
  std::string GetConfigText(TextArgument config, TextArgument set, TextArgument section,
                            TextArgument property);
  std::int32_t ShowOptions(std::int32_t frame);
  // The handle of the options window, or 0.
  std::int32_t GetPropertyWindow();

  void ClearValues();
  // Set, section and property joined by full stops; empty when nothing changed.
  std::string GetChangedProperty();
  // Hold and release of the options window, around each bulk change.
  void BeginUpdate();
  void EndUpdate();
  std::string GetValuesAsText(TextArgument set, TextArgument section, TextArgument property);

  // What is held belongs to a parent from now on; new values go to the next level.
  void EndParentLevel();
  void BeginChildLevel();

  std::string GetNewConfigName();
  // Reads changed definitions again; not 0 if there were any.
  std::int32_t RefreshDefinitions();
  void SetCurrentConfig(TextArgument config);
  std::string GetPropState();
  void SetPropState(TextArgument state);
  // Lays the stored options of one ancestor over the values held.
  std::int32_t ApplyOptions(TextArgument config, TextArgument xml);
  void ProjectClosing();
};

}  // namespace tarn
