#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/options/Definitions.h"
#include "platform/files/FileSystem.h"

namespace tarn {
class CXmlNode;
}

namespace tarn::options {

// Reads definition files: the element OptionSets of the configuration file, or a file of its own
// with that root, and the files that it includes. What is wrong is told and costs that definition
// only. The caller indexes the definitions afterwards.
class DefinitionReader {
 public:
  DefinitionReader(FileSystem& fileSystem, Definitions& target)
      : files(fileSystem), definitions(target) {}

  // False when the file can't be read at all.
  bool ReadFile(const std::string& path);
  // A text that stands for a file of that path.
  void ReadText(const std::string& text, const std::string& path);
  // Checks that need all files: defaults against types and choices.
  void CheckDefaults();

  // All files that were read or couldn't be.
  const std::vector<std::string>& FilesRead() const { return paths; }
  // A number of their texts, and of those that files have now.
  std::uint64_t GetDigest() const { return digest; }
  static std::uint64_t DigestOf(FileSystem& files, const std::vector<std::string>& paths);

  // One line for each fault, "file: what".
  const std::vector<std::string>& Errors() const { return errors; }
  // The first fault that lost a file or what follows in it, like a line of Errors; empty if there
  // is none.
  const std::string& LostFile() const { return lostFile; }

 private:
  void ReadSets(const CXmlNode& node);
  void ReadInclude(const CXmlNode& node);
  void ReadSet(const CXmlNode& node);
  void ReadSection(const CXmlNode& node, const std::vector<std::string>& sets);
  void ReadProperty(const CXmlNode& node, const std::vector<std::string>& sets,
                    const std::string& section);
  void FillProperty(const CXmlNode& node, PropertyDefinition& property);
  void ReadCondition(const CXmlNode& node, std::string_view attribute, Condition& condition);
  void ReadDefault(const CXmlNode& node, PropertyDefinition& property);
  void ReadChoice(const CXmlNode& node, PropertyDefinition& property);
  void CheckDefault(const std::string& set, PropertyDefinition& property);
  void CheckAttributes(const CXmlNode& node, std::string_view known);
  void Report(std::string_view what);
  // `fault` is a line of Errors.
  void ReportLoss(const std::string& fault);
  void ReportFor(const std::string& path, std::string_view what);

  FileSystem& files;
  Definitions& definitions;
  std::vector<std::string> chain;  // files that are being read, the innermost last
  std::string place;               // what is being read, for messages
  std::size_t filesRead = 0;
  std::vector<std::string> paths;  // of all files, also of those that can't be read
  std::uint64_t digest = 0;
  std::vector<std::string> errors;
  std::string lostFile;
};

}  // namespace tarn::options
