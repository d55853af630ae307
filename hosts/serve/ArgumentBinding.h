#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/automation/Dispatch.h"

namespace tarn::host {

// Why a call could not be made or has failed, for the client.
struct CallProblem {
  int code = 0;  // 0: none
  std::string text;
};

// Arranges params, given by position or by name, in the order of `names`. All must be present, and
// nothing else; missing params are treated as an empty list. From index `optionalFrom` on they may
// be omitted and are then null.
CallProblem OrderParams(std::string_view method, const std::vector<std::string_view>& names,
                        std::size_t optionalFrom, const nlohmann::json& params,
                        std::vector<nlohmann::json>& ordered);

// Converts params to the arguments of a dispatch call: strings, null strings, and 32-bit numbers,
// signed or unsigned.
CallProblem BindArguments(const MethodInfo& method, const nlohmann::json& params,
                          std::vector<Variant>& arguments);

// Returns a string of a message for a server call; nullopt if the value is not a string or contains
// a zero byte.
std::optional<std::string> TextOfJson(const nlohmann::json& value);

// Converts the result of a dispatch call; an object can't be sent and becomes null.
nlohmann::json ToJson(const Variant& result);
// Converts the error of a dispatch call; code 0 on success.
CallProblem ToProblem(const DispatchResult& result, const MethodInfo& method);

}  // namespace tarn::host
