#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tarn {

// Finds the end that a sequence of strings has in common, so that it can be stored once.
class CommonEnd {
 public:
  // Returns an end that `text` has in common with a string before it; nullptr if there is none, or
  // none that would save half of the string that it is found with. Takes time linear in the length
  // of the end.
  std::shared_ptr<const std::string> Find(std::string_view text);

 private:
  std::string previous_;  // last string that didn't have the end
  std::shared_ptr<const std::string> end_;
};

}  // namespace tarn
