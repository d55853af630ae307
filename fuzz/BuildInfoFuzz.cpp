// The input is a tool's report on a loaded project. It may change what is shown and what is out of
// date, but not the tree that is saved; a second identical report changes nothing.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "project/ProjectFixture.h"
#include "xml/XmlNode.h"

namespace {

using tarn::test::ProjectFixture;

constexpr const char* kContent =
    "<Group Header=\"src\" OutputFile=\"src.lib\" >"
    "<C Header=\"a.c\" Path=\".\\a.c\" OutputFile=\"a.o\" />"
    "<C Header=\"b.c\" Path=\".\\b.c\" OutputFile=\"b.o\" >"
    "<Dependencies Header=\"Dependencies\" ><Header Header=\"/p/a.h\" /></Dependencies></C>"
    "<C Header=\"c.c\" Path=\".\\c.c\" OutputFile=\"a.o\" />"
    "</Group>"
    "<C Header=\"a|\" Path=\".\\d.c\" />";

void Require(bool holds) {
  if (!holds) std::abort();
}

void Open(ProjectFixture& world) {
  world.AddDemo(kContent);
  for (const char* name : {"/p/a.c", "/p/b.c", "/p/c.c", "/p/d.c", "/p/a.h", "/p/a.o"}) {
    world.AddFile(name, "text");
  }
  Require(world.OpenDemo() == 1);
  world.model->PublishAll();
  // Attributes that a real property manager derives.
  for (const auto& [label, output] :
       {std::pair{"a.c", "/p/a.o"}, {"b.c", "/p/b.o"}, {"c.c", "/p/a.o"}, {"a|", "/p/x|\".o"}}) {
    world.Node(label)->SetAttrValue("OutputFile", output);
  }
}

std::string TreeOf(ProjectFixture& world) {
  return world.model->GetProjectRoot().ToString(tarn::g_xmlDisplayOptions);
}

void ExamineAll(ProjectFixture& world, tarn::CXmlNode& node) {
  world.builder->ExamineNode(node);
  for (int i = 0; i < node.GetChildCount(); ++i) ExamineAll(world, *node.GetChild(i));
}

std::string SavedFiles(ProjectFixture& world) {
  world.model->Publishing().SetActiveApplication(world.Application());
  Require(world.model->Options().StoreChangedProperty("C.General.Nothing") == 1);
  Require(world.model->SaveProject() == 1);
  return world.FileText("/p/demo.tprj") + world.FileText("/p/demo.tapp");
}

const std::string& SavedWithoutReport() {
  static const std::string text = [] {
    ProjectFixture world;
    Open(world);
    return SavedFiles(world);
  }();
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::string& expected = SavedWithoutReport();
  ProjectFixture world;
  Open(world);
  Require(world.builder->Information().SetBuildInfo("", input.c_str()) == 1);
  ExamineAll(world, world.model->GetProjectRoot());
  const std::string once = TreeOf(world);
  Require(world.builder->Information().SetBuildInfo("", input.c_str()) == 1);
  Require(TreeOf(world) == once);
  world.model->PublishAll();
  Require(SavedFiles(world) == expected);
  return 0;
}
