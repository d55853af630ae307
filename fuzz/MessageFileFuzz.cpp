// The input is a message file and a tool's message file. The log file must equal a full rewrite,
// regardless of how the messages were added.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "output/BuildOutput.h"
#include "output/LogFile.h"
#include "output/MessageTable.h"
#include "support/MemoryFileSystem.h"

namespace {

constexpr const char* kLog = "/tmp/log.xml";
constexpr const char* kWhole = "/tmp/whole.xml";

void RequireWholeLog(tarn::testing::MemoryFileSystem& disk, tarn::CBuildOutput& hub) {
  hub.SaveLog();
  const std::string log = disk.BytesOf(kLog).value();
  const std::size_t head = log.find("?>\r\n", log.find("?>\r\n") + 1) + 4;
  tarn::LogFileWriter writer(disk);
  if (!writer.Save(kWhole, log.substr(0, head), hub.GetRoot())) std::abort();
  if (disk.BytesOf(kWhole) != log) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  tarn::testing::MemoryFileSystem disk;
  disk.AddFile("/c/projectmanager.config", "");
  disk.AddFile("/c/message.xslt", input);
  disk.AddFile("/tool.xml", input);

  tarn::CBuildOutput hub(disk);
  hub.Initialise("/c/projectmanager.config", 0);
  hub.SetLogFile(kLog);
  for (int i = 0; i < tarn::kMessageCount; ++i) {
    hub.WriteMessage(i, {"%s|\"<", input});
    RequireWholeLog(disk, hub);
  }
  for (int i = 0; i < 2; ++i) {
    hub.MergeToolFile("/tool.xml");
    RequireWholeLog(disk, hub);
    hub.ResetLog();
  }
  hub.AddOutput(input);
  RequireWholeLog(disk, hub);
  return 0;
}
