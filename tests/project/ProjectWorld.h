#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "output/BuildOutput.h"
#include "platform/automation/ClassRegistry.h"
#include "project/ProjectModel.h"
#include "support/FakeComponents.h"
#include "support/MemoryFileSystem.h"
#include "support/RecordingHost.h"

namespace tarn::test {

// A model with everything that it needs, and nothing that is real: a disk in memory, fake
// components, a host that records its messages, and the message texts "row N" with the arguments
// behind them. The project folder of the texts below is /p.
class ProjectWorld {
 public:
  ProjectWorld();

  // Puts a file on the disk; "\n" in `text` becomes CR LF.
  void AddFile(const std::string& path, std::string_view text);
  // What the file holds, with CR LF shown as "\n"; "(none)" when there is no such file.
  std::string FileText(const std::string& path) const;

  // A project /p/demo.tprj with one application /p/demo.tapp that holds the elements of `content`,
  // and an empty file for each `Path` in it.
  void AddDemo(std::string_view content);
  std::int32_t OpenDemo() { return model->OpenProject("/p/demo.tprj", 0); }

  // Makes the project count as modified without changing anything in it.
  void Touch();
  CXmlNode* Application(int index = 0);
  // The node with that label, or null.
  CXmlNode* Node(const char* header);
  // The labels of what is below the node: Sources[main.c led.c] Other.
  static std::string Labels(const CXmlNode& node);
  // The log so far: one line a message or output.
  std::string LogText() const;
  // The node and all below it on one line, with the attributes named, content nodes only:
  // Group(Header=a)[C(Header=b)].
  static std::string Show(const CXmlNode& node, std::initializer_list<const char*> attributes);

  tarn::testing::MemoryFileSystem disk;
  RecordingHost host;
  FakeComponents components;
  ClassRegistry classes{"/nowhere"};
  CBuildOutput output{disk};
  CPropertyManagerDriver propertyManager;
  CToolManagerDriver toolManager;
  std::unique_ptr<CProjectModel> model;
};

}  // namespace tarn::test
