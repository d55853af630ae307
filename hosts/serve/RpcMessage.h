#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarn::host {

enum RpcCode : int {
  kRpcNoJson = -32700,
  kRpcBadRequest = -32600,
  kRpcNoMethod = -32601,
  kRpcBadParams = -32602,
  kRpcNotInitialized = -32002,
  kRpcUntrusted = -32001,  // the project requested something that only a trusted one may do
  kRpcFailed = -32000,
};

struct RpcRequest {
  nlohmann::json id;            // null in a notification
  bool isNotification = false;  // no response is expected
  std::string method;
  nlohmann::json params;  // an array, an object, or null if absent
};

// The response of the client to a request of this server.
struct RpcAnswer {
  nlohmann::json id;
  bool isError = false;
  nlohmann::json result;
};

// A malformed message; it is answered with an error.
struct RpcProblem {
  nlohmann::json id;  // null if it could not be read
  int code = kRpcBadRequest;
  std::string text;
};

using RpcItem = std::variant<RpcRequest, RpcAnswer, RpcProblem>;

// The content of one frame: a batch with its items in order, or a single item.
struct RpcMessage {
  bool isBatch = false;
  std::vector<RpcItem> items;

  // True if it was not a JSON document.
  bool IsBroken() const;
};

// Limits for one document, so that a small input can't use much memory or stack.
inline constexpr int kMaxRpcDepth = 64;
inline constexpr int kMaxRpcValues = 1'000'000;

// Parses the body of a frame. Never throws.
RpcMessage ReadRpcMessage(std::string_view body);

nlohmann::json MakeRpcResult(const nlohmann::json& id, nlohmann::json result);
nlohmann::json MakeRpcError(const nlohmann::json& id, int code, std::string_view text);
nlohmann::json MakeRpcNotification(std::string_view method, nlohmann::json params);
nlohmann::json MakeRpcRequest(std::int64_t id, std::string_view method, nlohmann::json params);

// Formats the document as a frame. Always valid UTF-8: invalid bytes in strings are replaced.
std::string ToFrame(const nlohmann::json& document);

}  // namespace tarn::host
