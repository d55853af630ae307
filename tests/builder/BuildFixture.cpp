#include "builder/BuildFixture.h"

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::test {

namespace {

constexpr const char* kContent =
    "<Group Header=\"src\" >"
    "<C Header=\"a.c\" Path=\".\\a.c\" Tool=\"cc\" Out=\"a.o\" />"
    "<C Header=\"b.c\" Path=\".\\b.c\" Tool=\"cc\" Out=\"b.o\" />"
    "<Header Header=\"a.h\" Path=\".\\a.h\" />"
    "</Group>"
    "<Group Header=\"lib\" >"
    "<C Header=\"c.c\" Path=\".\\c.c\" Tool=\"cc\" Out=\"c.o\" />"
    "</Group>";

// Converts "/p/a.c","/p/b.c" to: a.c b.c
std::string NamesOf(const std::string& files) {
  std::string names;
  for (const std::string_view piece : Split(files, ',')) {
    if (!names.empty()) names += ' ';
    names += FileNameOf(std::string(piece.substr(1, piece.size() - 2)));
  }
  return names;
}

}  // namespace

BuildFixture::BuildFixture() {
  AddDemo(kContent);
  for (const char* name : {"/p/a.c", "/p/b.c", "/p/c.c", "/p/a.h"}) AddFile(name, "source");
  auto& defaults = components.Properties().defaults;
  defaults["Application.Build.TranslateTool"] = "ld";
  defaults["Application.Build.OutputFile"] = "demo.elf";
  components.Tools().onRun = [this](const ToolRun& run) { return Run(run); };
  host.actions[kMsgToolSucceeded] = [this] {
    const std::string line = host.lines.back();
    Report(line.substr(line.find(' ') + 1, line.rfind(' ') - line.find(' ') - 1));
  };
}

void BuildFixture::Open() {
  OpenDemo();
  model->PublishAll();
  // The fake property manager has no macros, so the values a real one derives are set as
  // attributes.
  for (const char* label : {"a.c", "b.c", "c.c"}) {
    CXmlNode* node = Node(label);
    node->SetAttrValue("TranslateTool", node->GetAttrValue("Tool"));
    node->SetAttrValue("OutputFile", "/p/" + std::string(node->GetAttrValue("Out")));
  }
  host.TakeLines();
  components.Tools().TakeCalls();
}

std::int32_t BuildFixture::Run(const ToolRun& run) {
  const std::string names = NamesOf(run.files);
  runs_.push_back(run.tool + " " + names);
  if (!failing.empty() && names == failing) return 0;
  disk.Advance(1);
  disk.AddFile(run.tool == "ld" ? "/p/demo.elf" : "/p/" + WithExtension(names, ".o"), "output");
  return 1;
}

void BuildFixture::Report(const std::string& product) {
  std::string record = "<I><F Header=\"" + product + "\" Infos=\"made\" Date=\"" +
                       ToDecimal(disk.ModifiedOf(product).value_or(0)) + "\" >";
  if (!EndsWithNoCase(product, ".elf")) record += dependencies;
  builder->Information().SetBuildInfo("", (record + "</F></I>").c_str());
}

std::vector<std::string> BuildFixture::Build(std::int32_t command) {
  bool ended = false;
  host.actions[kMsgWorkerEnded] = [&ended] { ended = true; };
  builder->StartBuildThread(command);
  MessageLoop::ForCurrentThread()->PumpUntil([&] { return ended; }, std::chrono::seconds(20));
  host.actions.erase(kMsgWorkerEnded);
  return host.TakeLines();
}

std::vector<std::string> BuildFixture::TakeRuns() {
  return std::exchange(runs_, {});
}

void BuildFixture::Touch(const std::string& path) {
  disk.Advance(1);
  disk.AddFile(path, "touched");
}

}  // namespace tarn::test
