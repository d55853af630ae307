#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hosts/frame/StateEnvelope.h"

namespace tarn::host {

// One program as a tool starts it.
struct ToolCommand {
  std::string program;
  std::string folder;  // working folder
  std::vector<std::string> arguments;

  bool operator==(const ToolCommand&) const = default;
};

// What a tool reported of one output file, and what it was run with.
struct BuildRecord {
  std::string output;  // path, as the node names it
  std::string infos;   // text for the views
  std::string date;    // modification time of the output, decimal seconds
  std::uint64_t signature = 0;
  std::vector<std::string> dependencies;
  std::vector<ToolCommand> commands;
};

// The build information records of one project, by application and output file.
//
// Written for projects of many thousand records that share most of their headers and arguments:
// every text stands once in a table, records are numbers into it, and the texts of a loaded file
// stay where they were read. The form of the file:
//
//   T text                         next entry of the table, numbered from 0
//   A application                  the records that follow are this application's
//   R output infos date signature  a record; all but the signature are numbers of the table
//   D number...                    its dependencies
//   C program folder argument...   a program that was run for it; one line each, in order
//
// Not for use by two threads at once.
class BuildInformationStore {
 public:
  BuildInformationStore() = default;
  BuildInformationStore(const BuildInformationStore&) = delete;
  BuildInformationStore& operator=(const BuildInformationStore&) = delete;

  // Replaces everything by what a state file holds; empty unless the verdict is Good.
  StateVerdict Load(std::string bytes, std::string_view projectFileName);
  // The bytes of a state file.
  std::string Save(std::string_view projectFileName) const;

  // A position stays valid until Load or Keep.
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::size_t Find(std::string_view application, std::string_view output) const;
  std::uint64_t GetSignature(std::size_t record) const { return records[record].signature; }
  void SetSignature(std::size_t record, std::uint64_t signature);
  std::string_view GetInfos(std::size_t record) const { return texts[records[record].infos]; }
  std::vector<ToolCommand> GetCommands(std::size_t record) const;
  // Adds the record as a build information element.
  void AppendXml(std::size_t record, std::string& xml);

  // Adds a record or replaces the one of that output.
  void Put(std::string_view application, const BuildRecord& record);
  // Drops every record for which `wanted` says no.
  void Keep(
      const std::function<bool(std::string_view application, std::string_view output)>& wanted);

  std::size_t GetCount() const { return records.size(); }
  // Something was changed since Load or the last MarkSaved.
  bool IsChanged() const { return changed; }
  void MarkSaved() { changed = false; }

 private:
  using Number = std::uint32_t;

  struct Record {
    Number application = 0, output = 0, infos = 0, date = 0;
    std::uint64_t signature = 0;
    // Runs of `numbers`; a command is its count of numbers, program, folder, arguments.
    std::size_t dependencies = 0, dependencyCount = 0;
    std::size_t commands = 0, commandCount = 0;
  };
  struct Key {
    std::string_view application, output;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      const std::hash<std::string_view> hash;
      return hash(key.application) * 31 + hash(key.output);
    }
  };
  class Writer;
  class Reader;

  void Clear();
  Number Intern(std::string_view text);
  void Index(std::size_t record);

  std::string file;                  // what `texts` of a loaded file borrow from
  std::deque<std::string> ownTexts;  // what the others borrow from
  std::vector<std::string_view> texts;
  std::unordered_map<std::string_view, Number> interned;  // filled at the first Put
  std::vector<std::string> dependencyXml;  // elements of dependencies, by text; made when needed
  std::vector<Number> numbers;
  std::vector<Record> records;
  std::unordered_map<Key, std::size_t, KeyHash> index;
  bool changed = false;
};

}  // namespace tarn::host
