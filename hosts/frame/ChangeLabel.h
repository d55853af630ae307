#pragma once

#include <string>

#include "hosts/frame/FileChanges.h"

namespace tarn::host {

// A few words about a change, for the menu entry that takes it back: "Add 3 files",
// "Set Compiler.Defines", "Rename a.c to b.c".
//
// Compares the lines of the files, each of which is one element, so the time is linear.
std::string DescribeChanges(const FileChanges& changes);

}  // namespace tarn::host
