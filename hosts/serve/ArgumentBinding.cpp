#include "hosts/serve/ArgumentBinding.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "hosts/serve/RpcMessage.h"
#include "platform/text/Suggest.h"

namespace tarn::host {

namespace {

using nlohmann::json;

std::string Quote(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

std::string Usage(std::string_view method, const std::vector<std::string_view>& names) {
  std::string text = std::string(method) + " takes ";
  if (names.empty()) return text + "no arguments";
  for (std::size_t i = 0; i < names.size(); ++i) text.append(i == 0 ? "" : ", ").append(names[i]);
  return text;
}

// Returns a number that fits into 32 bits, signed or unsigned. An integral number may also be
// written as 1.0.
std::optional<std::int32_t> LongOf(const json& value) {
  const double number = value.get<double>();
  if (number != std::floor(number) || number < std::numeric_limits<std::int32_t>::min() ||
      number > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(static_cast<std::int64_t>(number));
}

CallProblem BindOne(const json& value, Variant& argument) {
  if (value.is_null()) {
    argument = Variant(NullableText());
    return {};
  }
  if (value.is_string()) {
    std::optional<std::string> text = TextOfJson(value);
    if (!text) return {kRpcBadParams, "contains a zero byte"};
    argument = Variant(std::move(*text));
    return {};
  }
  if (value.is_number()) {
    const auto number = LongOf(value);
    if (!number) return {kRpcBadParams, "is not a 32-bit integer"};
    argument = Variant(*number);
    return {};
  }
  return {kRpcBadParams, "is neither a string nor a number"};
}

}  // namespace

CallProblem OrderParams(std::string_view method, const std::vector<std::string_view>& names,
                        std::size_t optionalFrom, const json& params, std::vector<json>& ordered) {
  ordered.assign(names.size(), json());
  if (!params.is_object()) {
    const std::size_t count = params.size();
    if (count < std::min(optionalFrom, names.size()) || count > names.size()) {
      return {kRpcBadParams, Usage(method, names) + "; got " + std::to_string(count)};
    }
    for (std::size_t i = 0; i < count; ++i) ordered[i] = params[i];
    return {};
  }
  for (const auto& [name, value] : params.items()) {
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
      const std::string hint = SuggestionText(name, {names.begin(), names.end()});
      return {kRpcBadParams, Usage(method, names) + "; unknown argument " + Quote(name) +
                                 (hint.empty() ? "" : "." + hint)};
    }
    ordered[static_cast<std::size_t>(found - names.begin())] = value;
  }
  for (std::size_t i = 0; i < std::min(optionalFrom, names.size()); ++i) {
    if (params.contains(std::string(names[i]))) continue;
    return {kRpcBadParams, Usage(method, names) + "; " + Quote(names[i]) + " is missing"};
  }
  return {};
}

CallProblem BindArguments(const MethodInfo& method, const json& params,
                          std::vector<Variant>& arguments) {
  std::vector<json> ordered;
  const auto& names = method.arguments;
  CallProblem problem = OrderParams(method.name, names, names.size(), params, ordered);
  arguments.assign(ordered.size(), Variant());
  for (std::size_t i = 0; problem.code == 0 && i < ordered.size(); ++i) {
    problem = BindOne(ordered[i], arguments[i]);
    if (problem.code == 0) continue;
    problem.text = std::string(method.name) + ": " + std::string(names[i]) + " " + problem.text;
  }
  return problem;
}

std::optional<std::string> TextOfJson(const json& value) {
  if (!value.is_string()) return std::nullopt;
  std::string text = value.get<std::string>();
  if (text.find('\0') != std::string::npos) return std::nullopt;
  return text;
}

json ToJson(const Variant& result) {
  if (result.GetKind() == Variant::Kind::Long) return result.AsLong();
  if (result.GetKind() == Variant::Kind::Text && result.AsText()) return *result.AsText();
  return nullptr;
}

CallProblem ToProblem(const DispatchResult& result, const MethodInfo& method) {
  const std::string name(method.name);
  switch (result.status) {
    case DispatchStatus::Ok:
      return {};
    case DispatchStatus::UnknownMember:
      return {kRpcNoMethod, result.text};
    case DispatchStatus::WrongCount:
      return {kRpcBadParams, result.text};
    case DispatchStatus::WrongType: {
      const auto place = static_cast<std::size_t>(result.argument);
      const bool isKnown = result.argument >= 0 && place < method.arguments.size();
      if (!isKnown) return {kRpcBadParams, name + ": " + result.text};
      return {kRpcBadParams,
              name + ": " + std::string(method.arguments[place]) + " has the wrong type"};
    }
    case DispatchStatus::NoObject:
    case DispatchStatus::NotImplemented:
    case DispatchStatus::Failed:
      break;
  }
  return {kRpcFailed, result.text.empty() ? name + " failed" : result.text};
}

}  // namespace tarn::host
