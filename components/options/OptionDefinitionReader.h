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

// Reads definition files: the element OptionSets of the configuration file, or a separate file with
// that root, and the files they include. A faulty definition is reported and skipped; the others
// remain valid. The caller indexes the definitions afterwards.
class OptionDefinitionReader {
 public:
  OptionDefinitionReader(FileSystem& fileSystem, Definitions& target)
      : files_(fileSystem), definitions_(target) {}

  // Returns false if the file can't be read.
  bool ReadFile(const std::string& path);
  // Reads `text` as if it were the content of the file at `path`.
  void ReadText(const std::string& text, const std::string& path);
  // Checks defaults against types and choices. Requires that all files have been read.
  void CheckDefaults();

  // All files that were read or could not be read.
  const std::vector<std::string>& FilesRead() const { return paths_; }
  // Digest of the contents read, and of the contents that the files have now. Equal digests mean
  // that nothing changed.
  std::uint64_t GetDigest() const { return digest_; }
  static std::uint64_t DigestOf(FileSystem& files, const std::vector<std::string>& paths);

  // Returns one line per fault, "file: what".
  const std::vector<std::string>& Errors() const { return errors_; }
  // Returns the first fault that lost a file or the rest of one, formatted like a line of Errors;
  // empty if there is none.
  const std::string& LostFile() const { return lostFile_; }

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
  // `fault` is formatted like a line of Errors.
  void ReportLoss(const std::string& fault);
  void ReportFor(const std::string& path, std::string_view what);

  FileSystem& files_;
  Definitions& definitions_;
  std::vector<std::string> chain_;  // files being read, innermost last
  std::string place_;               // current position, for messages
  std::size_t filesRead_ = 0;
  std::vector<std::string> paths_;  // all files, including unreadable ones
  std::uint64_t digest_ = 0;
  std::vector<std::string> errors_;
  std::string lostFile_;
};

}  // namespace tarn::options
