#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "builder/Builder.h"
#include "output/BuildOutput.h"
#include "platform/automation/ClassRegistry.h"
#include "project/ProjectModel.h"
#include "support/FakeComponents.h"
#include "support/MemoryFileSystem.h"
#include "support/RecordingHost.h"

namespace tarn::test {

// A model with everything it needs and nothing real: an in-memory disk, fake components, a host
// that records its messages, and the message texts "row N" followed by the arguments. The project
// folder in the paths below is /p.
class ProjectFixture {
 public:
  ProjectFixture();

  // Adds a file to the disk; "\n" in `text` becomes CR LF.
  void AddFile(const std::string& path, std::string_view text);
  // Returns the content of the file, with CR LF as "\n"; "(none)" if it does not exist.
  std::string FileText(const std::string& path) const;

  // Adds a project /p/demo.tprj with one application /p/demo.tapp that contains the elements in
  // `content`, and an empty file for each `Path` in it.
  void AddDemo(std::string_view content);
  std::int32_t OpenDemo() { return model->OpenProject("/p/demo.tprj", 0); }

  // Marks the project as modified without changing its content.
  void Touch();
  CXmlNode* Application(int index = 0);
  // Returns the node with that label, or nullptr.
  CXmlNode* Node(const char* header);
  // Returns the labels of the node's descendants: Sources[main.c led.c] Other.
  static std::string Labels(const CXmlNode& node);
  // Returns the log so far, one line per message or output.
  std::string LogText() const;
  // Returns the content nodes of a subtree on one line, with the specified attributes:
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
  std::unique_ptr<Builder> builder;
};

}  // namespace tarn::test
