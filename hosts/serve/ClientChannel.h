#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>

#include "hosts/serve/FrameReader.h"
#include "hosts/serve/RpcMessage.h"
#include "widgets/MessageLoop.h"

namespace tarn::host {

// The client at the other end of two descriptors.
//
// A thread of its own reads, so that a client that goes away is noticed whatever the host's thread
// is busy with, and so that a client which writes much before it reads anything can't lock both
// sides up. It hands requests to the host's thread, in order, and answers to whoever asked. All
// else is called on the host's thread, whose loop is woken when something has come.
class ClientChannel {
 public:
  // What the reading thread tells at once. Called on that thread.
  using EndHandler = std::function<void()>;

  // The descriptors are borrowed. `onEnd` is called when the input has ended without a request to
  // exit, or when nobody reads the output any more; perhaps twice.
  ClientChannel(int inputDescriptor, int outputDescriptor, std::shared_ptr<MessageLoop> hostLoop,
                EndHandler onEnd);
  ClientChannel(const ClientChannel&) = delete;
  ClientChannel& operator=(const ClientChannel&) = delete;
  ~ClientChannel();

  bool HasMessage() const;
  // A request waits to be taken for which `isWanted` holds.
  bool HasRequest(const std::function<bool(const RpcRequest&)>& isWanted) const;
  // The next message, without the answers in it; never an empty one.
  std::optional<RpcMessage> Take();
  // The client has closed its side; messages may still be left.
  bool HasInputEnded() const { return inputEnded; }
  // Nothing that is sent will be read.
  bool IsGone() const { return gone; }
  // Gives up on the client: nothing is waited for from now on. From any thread.
  void Abandon();

  // Waits while the client doesn't read; gives up on one that has closed its side after a second
  // in which it read nothing.
  void Send(const nlohmann::json& document);
  // Asks the client and waits for its answer; meanwhile other threads are served, requests are not.
  // Nothing when the client goes away before it has answered.
  std::optional<RpcAnswer> Ask(std::string_view method, nlohmann::json params);

 private:
  // Unread messages are no more than this; then reading waits.
  static constexpr std::size_t kMaxWaiting = FrameReader::kMaxBody;

  void ReadLoop();
  // False when the reading is over.
  bool ReadSome();
  void TakeFrame(const Frame& frame);
  void TakeAnswer(RpcAnswer answer);
  void Enqueue(RpcMessage message, std::size_t size);
  void WakeReader(char word);
  bool IsFull() const;
  bool WaitToWrite();

  struct Waiting {
    RpcMessage message;
    std::size_t size = 0;  // of its frame
  };

  const int input;
  const int output;
  const std::shared_ptr<MessageLoop> loop;
  const EndHandler tellEnd;
  int wakeRead = -1;
  int wakeWrite = -1;

  mutable std::mutex lock;
  std::deque<Waiting> messages;
  std::size_t waitingSize = 0;
  std::map<std::int64_t, std::optional<RpcAnswer>> questions;  // ours, by id

  std::atomic<bool> inputEnded = false;
  std::atomic<bool> gone = false;
  FrameReader frames;       // the reading thread's
  bool exitSeen = false;    // the reading thread's
  std::int64_t lastId = 0;  // the host thread's
  std::thread reader;
};

}  // namespace tarn::host
