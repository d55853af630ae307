#include "project/CommonEnd.h"

#include <algorithm>

namespace tarn {

std::shared_ptr<const std::string> CommonEnd::Find(std::string_view text) {
  if (end_ != nullptr && text.ends_with(*end_)) return end_;
  const auto differs =
      std::mismatch(text.rbegin(), text.rend(), previous_.rbegin(), previous_.rend());
  const auto common = static_cast<std::size_t>(differs.first - text.rbegin());
  const bool isWorthwhile = common > 0 && common * 2 >= text.size();
  end_ = isWorthwhile ? std::make_shared<const std::string>(text.substr(text.size() - common))
                      : nullptr;
  previous_ = text;
  return end_;
}

}  // namespace tarn
