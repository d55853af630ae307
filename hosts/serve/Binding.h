#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/automation/Dispatch.h"

namespace tarn::host {

// Why a call could not be made or did not end well, for its caller.
struct CallProblem {
  int code = 0;  // 0: none
  std::string text;
};

// Puts params, by place or by name, into the order of `names`. All of them have to be there, and
// nothing else; an absent params is an empty list. `optionalFrom` on they may be missing, and are
// null then.
CallProblem OrderParams(std::string_view method, const std::vector<std::string_view>& names,
                        std::size_t optionalFrom, const nlohmann::json& params,
                        std::vector<nlohmann::json>& ordered);

// The arguments of a dispatch call: texts, null texts, and 32-bit numbers with or without sign.
CallProblem BindArguments(const MethodInfo& method, const nlohmann::json& params,
                          std::vector<Variant>& arguments);

// A text of a message as the system takes it; nothing when it is no text or holds a zero byte.
std::optional<std::string> TextOfJson(const nlohmann::json& value);

// The result of a dispatch call; an object can't be sent and is null.
nlohmann::json ToJson(const Variant& result);
// The problem that a dispatch call reports; code 0 when it went well.
CallProblem ToProblem(const DispatchResult& result, const MethodInfo& method);

}  // namespace tarn::host
