#include "automation/Registration.h"

#include "automation/ProjectManager.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

const char* ToString(ValueType type) {
  switch (type) {
    case ValueType::Long:
      return "long";
    case ValueType::UnsignedLong:
      return "unsigned long";
    case ValueType::Text:
      return "text";
    case ValueType::Object:
      return "object";
    case ValueType::None:
      break;
  }
  return "none";
}

// Names and identifiers need no escaping in XML.
std::string Attribute(const char* name, std::string_view value) {
  return " " + std::string(name) + "=\"" + std::string(value) + "\"";
}

std::string MethodText(const MethodInfo& method) {
  std::string text = "    <Method" + Attribute("Header", method.name) +
                     Attribute("Id", std::to_string(method.id)) +
                     Attribute("Result", ToString(method.result));
  if (method.arguments.empty()) return text + " />\n";
  text += ">\n";
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    text += "      <Argument" + Attribute("Header", method.arguments[i]) +
            Attribute("Type", ToString(method.types[i])) + " />\n";
  }
  return text + "    </Method>\n";
}

std::string MakeTypeLibraryText() {
  constexpr const ServerIdentity& server = CProjectManager::kIdentity;
  std::string text = "<TypeLibrary" + Attribute("Header", server.typeLibraryName) +
                     Attribute("Id", server.typeLibraryId) + Attribute("Version", server.version) +
                     ">\n  <Class" + Attribute("Header", server.className) +
                     Attribute("Id", server.classId) + Attribute("ProgID", server.progId) +
                     " />\n  <Interface" + Attribute("Header", server.interfaceName) +
                     Attribute("Id", server.interfaceId) + ">\n";
  for (const auto& method : CProjectManager::Table().Methods()) text += MethodText(method.info);
  return text + "  </Interface>\n</TypeLibrary>\n";
}

}  // namespace

std::int32_t RegisterServer(ClassStore& store, const std::string& libraryPath) {
  if (!store.AddTypeLibrary(CProjectManager::kIdentity, libraryPath)) return kTypeLibraryFailed;
  return store.AddServerClass(CProjectManager::kIdentity, libraryPath) ? 0 : kClassFailed;
}

std::int32_t UnregisterServer(ClassStore& store) {
  if (!store.RemoveTypeLibrary(CProjectManager::kIdentity)) return kTypeLibraryFailed;
  return store.RemoveServerClass(CProjectManager::kIdentity) ? 0 : kClassFailed;
}

const std::string& TypeLibraryText() {
  static const std::string text = MakeTypeLibraryText();
  return text;
}

}  // namespace tarn
