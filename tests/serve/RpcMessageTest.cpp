#include "hosts/serve/RpcMessage.h"

#include <gtest/gtest.h>

namespace tarn::host {
namespace {

std::string Describe(const RpcItem& item) {
  if (const auto* request = std::get_if<RpcRequest>(&item)) {
    return (request->isNotification ? "notify " : "call " + request->id.dump() + " ") +
           request->method + " " + request->params.dump();
  }
  if (const auto* answer = std::get_if<RpcAnswer>(&item)) {
    return "answer " + answer->id.dump() + " " +
           (answer->isError ? "error" : answer->result.dump());
  }
  const auto& problem = std::get<RpcProblem>(item);
  return "problem " + problem.id.dump() + " " + std::to_string(problem.code);
}

std::string DescribeBody(std::string_view body) {
  const RpcMessage message = ReadRpcMessage(body);
  std::string text = message.isBatch ? "batch" : "";
  for (const RpcItem& each : message.items) text += (text.empty() ? "" : "; ") + Describe(each);
  return text;
}

std::string Repeat(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(RpcMessage, EveryDocumentIsAMessageOrAProblemWithTheRightId) {
  const std::pair<std::string, std::string> rows[] = {
      {R"({"jsonrpc":"2.0","id":1,"method":"a"})", "call 1 a null"},
      {R"({"jsonrpc":"2.0","id":"x","method":"a","params":[1,null]})", "call \"x\" a [1,null]"},
      {R"({"jsonrpc":"2.0","id":null,"method":"a","params":null})", "call null a null"},
      {R"({"jsonrpc":"2.0","method":"a","params":{"b":2}})", R"(notify a {"b":2})"},
      {R"({"jsonrpc":"2.0","id":3,"result":["p"]})", R"(answer 3 ["p"])"},
      {R"({"jsonrpc":"2.0","id":3,"result":null})", "answer 3 null"},
      {R"({"jsonrpc":"2.0","id":3,"error":{"code":1}})", "answer 3 error"},
      {R"({"jsonrpc":"2.0","id":3})", "problem 3 -32600"},
      {R"({"jsonrpc":"2.0","result":1})", "problem null -32600"},
      {R"({"jsonrpc":"1.0","id":4,"method":"a"})", "problem 4 -32600"},
      {R"({"id":4,"method":"a"})", "problem 4 -32600"},
      {R"({"jsonrpc":"2.0","id":[5],"method":"a"})", "problem null -32600"},
      {R"({"jsonrpc":"2.0","id":6,"method":7})", "problem 6 -32600"},
      {R"({"jsonrpc":"2.0","id":6,"method":"a","params":"b"})", "problem 6 -32600"},
      {R"([1,{"jsonrpc":"2.0","method":"a"},{"jsonrpc":"2.0","id":2,"result":0}])",
       "batch; problem null -32600; notify a null; answer 2 0"},
      {"[]", "problem null -32600"},
      {"7", "problem null -32600"},
      {"", "problem null -32700"},
      {"{", "problem null -32700"},
      {"{} {}", "problem null -32700"},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\xff\"}", "problem null -32700"},
      {R"({"jsonrpc":"2.0","id":1,"method":"\ud800"})", "problem null -32700"},
      {Repeat("[", kMaxRpcDepth + 1), "problem null -32600"},
      {Repeat("[", 1'000'000), "problem null -32600"},
      {"[" + Repeat("1,", kMaxRpcValues + 1) + "1]", "problem null -32600"},
      {R"({"jsonrpc":"2.0","id":1,"method":"[[\"[","params":[",,,"]})", R"(call 1 [["[ [",,,"])"},
  };
  for (const auto& [body, expected] : rows) {
    EXPECT_EQ(DescribeBody(body), expected) << body.substr(0, 100);
  }
}

TEST(RpcMessage, BytesThatAreNoUtf8NeverReachTheClient) {
  EXPECT_EQ(ToFrame(MakeRpcResult(1, "caf\xe9 \xc3\xa9\x01")),
            "Content-Length: 51\r\n\r\n"
            "{\"id\":1,\"jsonrpc\":\"2.0\",\"result\":\"caf\xef\xbf\xbd \xc3\xa9\\u0001\"}");
}

}  // namespace
}  // namespace tarn::host
