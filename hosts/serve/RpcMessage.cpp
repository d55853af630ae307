#include "hosts/serve/RpcMessage.h"

namespace tarn::host {

namespace {

using nlohmann::json;

RpcMessage OneProblem(int code, std::string text) {
  return {false, {RpcProblem{nullptr, code, std::move(text)}}};
}

// Checks the limits without parsing, by counting brackets and commas outside of strings.
bool IsTooMuch(std::string_view body) {
  int depth = 0;
  int values = 0;
  bool inString = false;
  for (std::size_t i = 0; i < body.size(); ++i) {
    const char c = body[i];
    if (inString) {
      if (c == '\\') ++i;
      inString = c != '"';
    } else if (c == '"') {
      inString = true;
    } else if (c == '[' || c == '{') {
      if (++depth > kMaxRpcDepth) return true;
    } else if (c == ']' || c == '}') {
      --depth;
    } else if (c == ',') {
      if (++values > kMaxRpcValues) return true;
    }
  }
  return false;
}

bool CanBeId(const json& id) {
  return id.is_string() || id.is_number() || id.is_null();
}

RpcItem ReadItem(json& value) {
  RpcProblem problem{nullptr, kRpcBadRequest, "A message must be an object."};
  if (!value.is_object()) return problem;
  const auto id = value.find("id");
  const bool hasId = id != value.end();
  if (hasId && !CanBeId(*id)) {
    problem.text = "\"id\" must be a string or a number.";
    return problem;
  }
  if (hasId) problem.id = *id;
  const auto version = value.find("jsonrpc");
  if (version == value.end() || *version != "2.0") {
    problem.text = "\"jsonrpc\" must be \"2.0\".";
    return problem;
  }
  const auto method = value.find("method");
  if (method == value.end()) {
    const auto result = value.find("result");
    const bool isError = value.contains("error");
    if (hasId && (isError || result != value.end())) {
      return RpcAnswer{problem.id, isError, isError ? json() : std::move(*result)};
    }
    problem.text = "\"method\" is missing.";
    return problem;
  }
  if (!method->is_string()) {
    problem.text = "\"method\" must be a string.";
    return problem;
  }
  const auto params = value.find("params");
  const bool hasParams = params != value.end();
  if (hasParams && !params->is_structured() && !params->is_null()) {
    problem.text = "\"params\" must be an array or an object.";
    return problem;
  }
  return RpcRequest{problem.id, !hasId, method->get<std::string>(),
                    hasParams ? std::move(*params) : json()};
}

}  // namespace

bool RpcMessage::IsBroken() const {
  if (isBatch || items.size() != 1) return false;
  const auto* problem = std::get_if<RpcProblem>(&items.front());
  return problem != nullptr && problem->code == kRpcNoJson;
}

RpcMessage ReadRpcMessage(std::string_view body) {
  if (IsTooMuch(body)) {
    return OneProblem(kRpcBadRequest, "The message is nested too deeply or has too many values.");
  }
  json document = json::parse(body, nullptr, false);
  if (document.is_discarded())
    return OneProblem(kRpcNoJson, "The message is not a JSON document in UTF-8.");
  if (!document.is_array()) return {false, {ReadItem(document)}};
  if (document.empty()) return OneProblem(kRpcBadRequest, "The batch is empty.");
  RpcMessage message{true, {}};
  message.items.reserve(document.size());
  for (json& each : document) message.items.push_back(ReadItem(each));
  return message;
}

json MakeRpcResult(const json& id, json result) {
  return {{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}};
}

json MakeRpcError(const json& id, int code, std::string_view text) {
  return {{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", text}}}};
}

json MakeRpcNotification(std::string_view method, json params) {
  return {{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}};
}

json MakeRpcRequest(std::int64_t id, std::string_view method, json params) {
  json request = MakeRpcNotification(method, std::move(params));
  request["id"] = id;
  return request;
}

std::string ToFrame(const json& document) {
  const std::string body = document.dump(-1, ' ', false, json::error_handler_t::replace);
  return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

}  // namespace tarn::host
