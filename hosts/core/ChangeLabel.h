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

// The meaning of a project change, for a host to display.
struct ChangeLabel {
  ChangeKind kind = ChangeKind::Other;
  std::string name;     // of the only node, configuration or option; empty if there are several
  std::string newName;  // of a node that was renamed
  std::size_t count = 0;
  NodeKind nodes = NodeKind::Item;  // common kind of several nodes
};

// Classifies a change by comparing the lines of the files as multisets: each line is one element.
// No edit distance is computed, so the time is nearly linear in the size of the files.
ChangeLabel SummarizeChanges(const FileChanges& changes);

// Returns the summary in English: "Add 3 files", "Set Compiler.Defines", "Rename a.c to b.c".
std::string DescribeChanges(const FileChanges& changes);

}  // namespace tarn::host
