#include "automation/ManagerFixture.h"

#include <algorithm>

#include "platform/text/Text.h"
#include "support/TinyBitmap.h"
#include "xml/XmlNode.h"

namespace tarn::test {

namespace {

constexpr const char* kTypes =
    "<Types><Project Project='Yes' Path='Yes' Build='Yes' />"
    "<Application Application='Yes' Extern='Yes' Path='Yes' Build='Yes' Debug='Yes' "
    "Extension='tapp' />"
    "<Group Build='Yes' InBuild='Yes' />"
    "<C Path='Yes' Build='Yes' InBuild='Yes' IsLeaf='Yes' Extension='c' /></Types>";

constexpr const char* kMessages =
    "<a><Messages Tab=\"Build\" ><m Id=\"0x20000\" String=\"Tarn Project\" /></Messages></a>";

std::string ProjectText(const std::string& name) {
  return "\r\n<Project Header=\"Tarn Project '" + name + "'\" Path=\".\\" + name +
         ".tprj\" Project=\"Yes\" ActiveApp=\"" + name + "\" >\r\n\t<Application Header=\"" + name +
         "\" Extern=\".\\" + name + ".tapp\" Path=\".\\" + name + ".tapp\" />\r\n</Project>";
}

std::string ApplicationText(const std::string& name, const std::string& content) {
  return "\r\n<Application Header=\"" + name + "\" Extern=\".\\" + name + ".tapp\" Path=\".\\" +
         name + ".tapp\" >" + content + "</Application>";
}

}  // namespace

ManagerFixture::ManagerFixture() {
  for (const char* picture : {"errors", "globals"}) {
    disk.AddFile("/app/config/resources/" + std::string(picture) + ".bmp", TinyBitmap(96, 16));
  }
  components.RegisterWith(classes);
  disk.AddFile(kConfigFile, Configuration());
  disk.AddFile("/app/config/message.xslt", kMessages);
  disk.AddFolder("/data/demo");
  disk.AddFolder("/p");
  manager = DispatchPtr::Adopt(
      new CProjectManager(ServerPlatform{disk, settings, classes, runningObjects}));
}

ManagerFixture::~ManagerFixture() {
  if (manager) Call("Clean");
}

std::string ManagerFixture::Configuration(std::string_view more) {
  return "<ProjectManager>" + std::string(kTypes) + std::string(more) + "</ProjectManager>";
}

void ManagerFixture::AddDemo() {
  disk.AddFile("/p/demo.tprj", ProjectText("demo"));
  disk.AddFile("/p/demo.tapp",
               ApplicationText("demo", "\r\n\t<C Header=\"main.c\" Path=\".\\main.c\" />\r\n"));
  disk.AddFile("/p/main.c", "int main() {}");
}

void ManagerFixture::AddDefaultProject() {
  disk.AddFile("/data/demo/demo.tprj", ProjectText("demo"));
  disk.AddFile("/data/demo/demo.tapp", ApplicationText("demo", ""));
}

std::string ManagerFixture::Call(const char* method, std::initializer_list<Variant> arguments) {
  DispatchId id = 0;
  Variant result;
  DispatchResult outcome = manager->GetIDsOfNames(method, id);
  if (outcome) outcome = manager->Invoke(id, {arguments.begin(), arguments.size()}, result);
  return Show(outcome, result);
}

std::string ManagerFixture::Init(Variant application, Variant data) {
  return Call("Init", {std::move(application), std::move(data), host.Handle()});
}

std::uint32_t ManagerFixture::ReferencesTo(IDispatch& object) {
  object.AddRef();
  return object.Release();
}

std::vector<std::string> ManagerFixture::TakeLines() {
  std::vector<std::string> lines = host.TakeLines();
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("LogLine"); });
  return lines;
}

std::string NameOf(DispatchStatus status) {
  // Listed in the order of declaration.
  constexpr const char* kNames[] = {"Ok",        "NoObject",       "UnknownMember", "WrongCount",
                                    "WrongType", "NotImplemented", "Failed"};
  return kNames[static_cast<std::size_t>(status)];
}

std::string Show(const DispatchResult& outcome, const Variant& result) {
  if (!outcome) return NameOf(outcome.status);
  switch (result.GetKind()) {
    case Variant::Kind::Empty:
      return "nothing";
    case Variant::Kind::Long:
      return std::to_string(result.AsLong());
    case Variant::Kind::Text:
      return result.AsText() ? "'" + *result.AsText() + "'" : "null";
    case Variant::Kind::Object:
      return "object";
  }
  return "?";
}

}  // namespace tarn::test
