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
  kRpcUntrusted = -32001,  // the project wanted what only a trusted one may do
  kRpcFailed = -32000,
};

struct RpcRequest {
  nlohmann::json id;            // null in a notification
  bool isNotification = false;  // nobody waits for its result
  std::string method;
  nlohmann::json params;  // an array, an object, or null without any
};

// What somebody answered to a request of ours.
struct RpcAnswer {
  nlohmann::json id;
  bool isError = false;
  nlohmann::json result;
};

// Something that is no message; it is answered with an error.
struct RpcProblem {
  nlohmann::json id;  // null when none could be read
  int code = kRpcBadRequest;
  std::string text;
};

using RpcItem = std::variant<RpcRequest, RpcAnswer, RpcProblem>;

// What one frame held: a batch with its items in order, or the one item.
struct RpcMessage {
  bool isBatch = false;
  std::vector<RpcItem> items;

  // It was no JSON document at all.
  bool IsBroken() const;
};

// Bounds for what one document may hold, so that a small text can't cost much memory or stack.
inline constexpr int kMaxRpcDepth = 64;
inline constexpr int kMaxRpcValues = 1'000'000;

// Reads a frame's body. Never throws.
RpcMessage ReadRpcMessage(std::string_view body);

nlohmann::json MakeRpcResult(const nlohmann::json& id, nlohmann::json result);
nlohmann::json MakeRpcError(const nlohmann::json& id, int code, std::string_view text);
nlohmann::json MakeRpcNotification(std::string_view method, nlohmann::json params);
nlohmann::json MakeRpcRequest(std::int64_t id, std::string_view method, nlohmann::json params);

// The document as a frame. Always UTF-8: bytes of its texts that are none are replaced.
std::string ToFrame(const nlohmann::json& document);

}  // namespace tarn::host
