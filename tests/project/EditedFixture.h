#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/text/Text.h"
#include "project/ProjectFixture.h"

namespace tarn::test {

class EditedFixture;
using Damage = std::function<void(EditedFixture&)>;

// A project with two applications, and changes in the project and in each application.
class EditedFixture : public ProjectFixture {
 public:
  EditedFixture() {
    AddFile("/p/demo.tprj",
            "\n<Project Header=\"demo\" Path=\".\\demo.tprj\" Project=\"Yes\" ActiveApp=\"one\" "
            ">\n\t<Application Header=\"one\" Extern=\".\\one.tapp\" Path=\".\\one.tapp\" "
            "/>\n\t<Application Header=\"two\" Extern=\".\\two.tapp\" Path=\".\\two.tapp\" "
            "/>\n</Project>");
    for (const std::string app : {"one", "two"}) {
      AddFile("/p/" + app + ".tapp", "\n<Application Header=\"" + app + "\" Extern=\".\\" + app +
                                         ".tapp\" Path=\".\\" + app + ".tapp\" >\n\t<C Header=\"" +
                                         app + ".c\" />\n</Application>");
    }
    for (const std::string& path : disk.AllFiles()) originals[path] = *disk.BytesOf(path);
  }

  // Adds another project, /p/next.tprj, with one application.
  void AddNext() {
    AddFile("/p/next.tprj",
            "<Project Header='next' ActiveApp='n' ><Application Header='n' "
            "Extern='n.tapp' Path='n.tapp' /></Project>");
    AddFile("/p/n.tapp",
            "<Application Header='n' Extern='n.tapp' Path='n.tapp' ><C Header='n.c' "
            "/></Application>");
  }

  // Changes everything in the three files that can be changed. Discards the messages that the host
  // received before.
  void Edit() {
    components.Properties().defaults[".Build.Tool"] = "edited";
    for (CXmlNode* node : {&model->GetProjectRoot(), Node("one"), Node("two")}) {
      if (node == nullptr) continue;
      model->SetCurrentNode(node);
      model->Options().StoreChangedProperty("Build.Tool");
    }
    host.TakeLines();
  }

  // Returns one line per file, except for the log and the three files with just their change: "old"
  // for the original content, "new" if it contains the change, else the content.
  std::vector<std::string> Files() const {
    std::vector<std::string> lines;
    for (const std::string& path : disk.AllFiles()) {
      if (path == "/tmp/log.xml") continue;
      const std::string bytes = *disk.BytesOf(path);
      const auto original = originals.find(path);
      const bool isOld = original != originals.end() && original->second == bytes;
      const bool isNew = bytes.find("edited") != bytes.npos;
      if (isNew && original != originals.end()) continue;
      lines.push_back(path + (isOld ? " old" : isNew ? " new" : " = " + bytes));
    }
    for (const auto& [path, bytes] : originals) {
      if (!disk.BytesOf(path)) lines.push_back(path + " gone");
    }
    return lines;
  }

  // Returns the log lines that the host received, and the names of the other messages.
  std::vector<std::string> Heard() {
    std::vector<std::string> heard;
    for (const std::string& line : host.TakeLines()) {
      const bool isLog = line.starts_with("LogLine ");
      heard.push_back(isLog ? std::string(Trim(std::string_view(line).substr(7, line.size() - 9)))
                            : line.substr(0, line.find(' ')));
    }
    return heard;
  }

  std::map<std::string, std::string> originals;
};

// Things that may happen to a file.
inline Damage Write(const std::string& path, const std::string& bytes) {
  return [=](EditedFixture& world) { world.disk.AddFile(path, bytes); };
}
inline Damage Erase(const std::string& path) {
  return [=](EditedFixture& world) { world.disk.Erase(path); };
}
inline Damage MakeFolderOf(const std::string& path) {
  return [=](EditedFixture& world) {
    world.disk.Erase(path);
    world.disk.AddFolder(path);
  };
}
inline Damage SetReadOnly(const std::string& path) {
  return [=](EditedFixture& world) { world.disk.SetReadOnly(path); };
}
inline Damage Fail(const std::string& operation, const std::string& path, ErrorCode code) {
  return [=](EditedFixture& world) { world.disk.FailOn(operation, path, code); };
}
inline Damage Both(const Damage& first, const Damage& second) {
  return [=](EditedFixture& world) {
    first(world);
    second(world);
  };
}

}  // namespace tarn::test
