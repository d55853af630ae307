#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "hosts/core/FileChanges.h"

namespace tarn::host {

enum class ChangeKind : std::uint8_t {
  Add,
  Remove,
  Move,
  Replace,
  Rename,
  AddConfiguration,
  RemoveConfiguration,
  SelectConfiguration,
  SetOption,
  ResetOption,
  ChangeOptions,
  SelectApplication,
  Other,
};

enum class NodeKind : std::uint8_t { Item, File, Group, Application };

// What a change of a project did, for a host to put into words.
struct ChangeLabel {
  ChangeKind kind = ChangeKind::Other;
  std::string name;     // of the only node, configuration or option; empty if there are several
  std::string newName;  // of a node that was renamed
  std::size_t count = 0;
  NodeKind nodes = NodeKind::Item;  // what several nodes have in common
};

// Compares the lines of the files, each of which is one element, so the time is linear.
ChangeLabel SummarizeChanges(const FileChanges& changes);

// The summary in English: "Add 3 files", "Set Compiler.Defines", "Rename a.c to b.c".
std::string DescribeChanges(const FileChanges& changes);

}  // namespace tarn::host
