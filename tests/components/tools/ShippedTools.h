#pragma once

#include <gtest/gtest.h>

#include <string>

#include "components/tools/FileList.h"
#include "components/tools/ToolDefinitionReader.h"
#include "support/TestEnvironment.h"

namespace tarn::tools::testing {

// Returns the shipped message lists with these names, which are separated by spaces.
inline MessageRuleLists ShippedMessages(const std::string& names) {
  const std::string path = tarn::testing::SourcePath("share/config/tools/messages.tools");
  const ReadDefinitions read =
      ReadDefinitionFiles({{"messages.tools", tarn::testing::ReadBytes(path)}});
  for (const std::string& error : read.errors) ADD_FAILURE() << error;
  MessageRuleLists lists;
  for (const std::string& name : SplitWords(names)) {
    const auto found = read.messages.find(name);
    if (found == read.messages.end()) {
      ADD_FAILURE() << "no list " << name;
    } else {
      lists.push_back(found->second);
    }
  }
  return lists;
}

}  // namespace tarn::tools::testing
