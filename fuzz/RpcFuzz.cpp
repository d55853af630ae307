#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "hosts/serve/ArgumentBinding.h"
#include "hosts/serve/FrameReader.h"
#include "hosts/serve/RpcMessage.h"

namespace {

using namespace tarn::host;

// Interprets a stream like the server, and returns the result as a string.
class Server {
 public:
  void Feed(std::string_view bytes) {
    frames.Feed(bytes);
    while (const auto frame = frames.Next()) Take(*frame);
  }
  const std::string& Seen() const { return seen; }

 private:
  void Take(const Frame& frame) {
    seen += std::to_string(static_cast<int>(frame.problem)) + frame.body + "\n";
    if (frame.problem != FrameProblem::None) return;
    const RpcMessage message = ReadRpcMessage(frame.body);
    if (message.items.empty()) std::abort();
    if (message.IsBroken()) frames.GiveBack(frame.body);
    for (const RpcItem& each : message.items) Answer(each);
  }

  // The response must be a valid frame with a document for any input.
  void Answer(const RpcItem& item) {
    nlohmann::json response;
    if (const auto* request = std::get_if<RpcRequest>(&item)) {
      const tarn::MethodInfo method{request->method, 1, {"setname", "value"}};
      std::vector<tarn::Variant> arguments;
      const CallProblem problem = BindArguments(method, request->params, arguments);
      if (problem.code == 0 && arguments.size() != 2) std::abort();
      response = MakeRpcError(request->id, problem.code, problem.text);
    } else if (const auto* problem = std::get_if<RpcProblem>(&item)) {
      response = MakeRpcError(problem->id, problem->code, problem->text);
    }
    FrameReader client;
    client.Feed(ToFrame(response));
    const auto frame = client.Next();
    if (!frame || nlohmann::json::parse(frame->body) != response) std::abort();
  }

  FrameReader frames;
  std::string seen;
};

}  // namespace

// A stream must have the same meaning regardless of how it is split into chunks.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Server whole;
  whole.Feed(bytes);
  Server pieces;
  const std::size_t step = size == 0 ? 1 : 1 + data[size - 1] % 32;
  for (std::size_t at = 0; at < size; at += step) pieces.Feed(bytes.substr(at, step));
  if (whole.Seen() != pieces.Seen()) std::abort();
  return 0;
}
