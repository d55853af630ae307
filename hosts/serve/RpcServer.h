#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "hosts/serve/Binding.h"
#include "hosts/serve/ClientChannel.h"
#include "hosts/serve/ClientQuestions.h"
#include "hosts/serve/ServedSession.h"

namespace tarn::host {

// How a server ended.
enum class ServerEnd {
  Asked,        // shutdown, then exit or the end of the input
  Left,         // the client went away without a word
  Interrupted,  // by Interrupt
};

// Serves one client: the life of the protocol, and every method of the project manager by its name.
// What comes is done in order, one at a time, on the thread that calls Run; while nothing comes the
// thread's message loop runs.
class RpcServer {
 public:
  // The descriptors are borrowed.
  // `trustsAll`: every project is trusted, as with the option `trust` of `initialize`.
  RpcServer(FileSystem& fileSystem, int input, int output, bool trustsAll = false);
  RpcServer(const RpcServer&) = delete;
  RpcServer& operator=(const RpcServer&) = delete;
  ~RpcServer();

  ServerEnd Run();
  // Stops what runs and makes Run return soon. From any thread; not from a signal handler.
  void Interrupt();

 private:
  void Handle(const RpcMessage& message);
  // The response to one item; null when it gets none.
  nlohmann::json HandleItem(const RpcItem& item);
  CallProblem HandleRequest(const RpcRequest& request, nlohmann::json& result);
  CallProblem AddConfiguration(const nlohmann::json& params);
  CallProblem Initialize(const nlohmann::json& params, nlohmann::json& result);
  CallProblem ReadFolders(const std::vector<nlohmann::json>& params, HostFolders& folders);
  CallProblem CheckProject(const nlohmann::json& params, nlohmann::json& result);
  CallProblem CallMethod(const RpcRequest& request, nlohmann::json& result);
  // The requests about the open project that are no methods of the server. False if it is none of
  // them.
  bool HandleProject(const RpcRequest& request, nlohmann::json& result, CallProblem& problem);
  bool IsOver() const;

  FileSystem& files;
  WorkStopper stopper;
  ClientChannel channel;
  ClientQuestions questions;
  std::unique_ptr<ServedSession> session;  // from initialize on
  std::vector<MethodInfo> methods;
  std::atomic<bool> interrupted = false;
  const bool trustsAll;
  bool isShutDown = false;
  bool exitAsked = false;
};

}  // namespace tarn::host
