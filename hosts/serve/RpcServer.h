#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/serve/ArgumentBinding.h"
#include "hosts/serve/ClientChannel.h"
#include "hosts/serve/ClientRequests.h"
#include "hosts/serve/RpcSession.h"

namespace tarn::host {

// Why the server has ended.
enum class ServerEnd {
  Asked,        // shutdown, then exit or end of the input
  Left,         // the client disconnected without shutdown
  Interrupted,  // by Interrupt
};

// Serves one client: the protocol's life cycle, and every method of the project manager by its
// name. Requests are handled sequentially in order of arrival, on the thread that calls Run; while
// there are none, the thread's message loop runs.
class RpcServer {
 public:
  // `bytes` is the borrowed connection. `trustsAll`: trust every project, like the option `trust`
  // of `initialize`. `buildLimits`: see ServerConnection.
  RpcServer(FileSystem& fileSystem, ByteChannel& bytes, bool trustsAll = false,
            BuildLimits buildLimits = {});
  RpcServer(const RpcServer&) = delete;
  RpcServer& operator=(const RpcServer&) = delete;
  ~RpcServer();

  // Receives sentences for the user about limits that are passed over; may be empty.
  std::function<void(const std::string&)> onRemark;

  ServerEnd Run();
  // Stops running work and makes Run return soon. May be called from any thread, but not from a
  // signal handler.
  void Interrupt();

 private:
  void Handle(const RpcMessage& message);
  // Returns the response to one item; null if it gets none.
  nlohmann::json HandleItem(const RpcItem& item);
  CallProblem HandleRequest(const RpcRequest& request, nlohmann::json& result);
  CallProblem AddConfiguration(const nlohmann::json& params);
  CallProblem Initialize(const nlohmann::json& params, nlohmann::json& result);
  CallProblem ReadFolders(const std::vector<nlohmann::json>& params, HostFolders& folders);
  CallProblem CheckProject(const nlohmann::json& params, nlohmann::json& result);
  CallProblem CallMethod(const RpcRequest& request, nlohmann::json& result);
  // Handles requests about the open project that are not methods of the server. Returns false if
  // the request is none of them.
  bool HandleProject(const RpcRequest& request, nlohmann::json& result, CallProblem& problem);
  bool IsOver() const;

  FileSystem& files_;
  CancelToken stopper_;
  ClientChannel channel_;
  ClientRequests questions_;
  std::unique_ptr<RpcSession> session_;  // null before initialize
  std::vector<MethodInfo> methods_;
  std::atomic<bool> interrupted_ = false;
  const bool trustsAll_;
  const BuildLimits limits_;
  bool isShutDown_ = false;
  bool exitAsked_ = false;
};

}  // namespace tarn::host
