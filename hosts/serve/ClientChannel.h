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

#include "hosts/serve/ByteChannel.h"
#include "hosts/serve/FrameReader.h"
#include "hosts/serve/RpcMessage.h"
#include "widgets/MessageLoop.h"

namespace tarn::host {

// Connection to the client.
//
// A separate thread reads, so that a disconnect is detected no matter what the main thread is
// doing, and so that a client that writes a lot before it reads can't cause a deadlock. The reader
// passes requests to the main thread, in order, and responses to the waiting caller. All other
// functions must be called on the main thread, whose message loop is woken up when a message
// arrives.
class ClientChannel {
 public:
  // Notification from the reader thread; called on that thread.
  using EndHandler = std::function<void()>;

  // `byteChannel` is borrowed. `onEnd` is called when the input has ended without an exit
  // request, or when the other end of the output was closed; it may be called twice.
  ClientChannel(ByteChannel& byteChannel, std::shared_ptr<MessageLoop> hostLoop, EndHandler onEnd);
  ClientChannel(const ClientChannel&) = delete;
  ClientChannel& operator=(const ClientChannel&) = delete;
  ~ClientChannel();

  bool HasMessage() const;
  // Returns true if a queued request satisfies `isWanted`.
  bool HasRequest(const std::function<bool(const RpcRequest&)>& isWanted) const;
  // Removes and returns the next message, without the responses in it; never an empty message.
  std::optional<RpcMessage> Take();
  // True if the client has closed its side; messages may still be queued.
  bool HasInputEnded() const { return inputEnded_; }
  // True if nothing that is sent will be read.
  bool IsGone() const { return gone_; }
  // Gives up on the client, which ends all waits. May be called from any thread.
  void Abandon();

  // Sends a document, blocking while the client doesn't read. If the client has closed its side,
  // gives up after it has read nothing for a second.
  void Send(const nlohmann::json& document);
  // Sends a request to the client and waits for its response. Tasks posted by other threads are
  // executed in the meantime, requests from the client are not. Returns nullopt if the client
  // disconnects before it has responded.
  std::optional<RpcAnswer> Ask(std::string_view method, nlohmann::json params);

 private:
  // Limit of queued messages in bytes; beyond that, reading pauses.
  static constexpr std::size_t kMaxWaiting = FrameReader::kMaxBody;

  void ReadLoop();
  // Returns false if reading has ended.
  bool ReadSome();
  void TakeFrame(const Frame& frame);
  void TakeAnswer(RpcAnswer answer);
  void Enqueue(RpcMessage message, std::size_t size);
  bool IsFull() const;
  bool WaitToWrite();

  struct Waiting {
    RpcMessage message;
    std::size_t size = 0;  // of its frame
  };

  ByteChannel& bytes_;
  const std::shared_ptr<MessageLoop> loop_;
  const EndHandler tellEnd_;

  mutable std::mutex lock_;
  std::deque<Waiting> messages_;
  std::size_t waitingSize_ = 0;
  std::map<std::int64_t, std::optional<RpcAnswer>> questions_;  // sent by us, by id

  std::atomic<bool> inputEnded_ = false;
  std::atomic<bool> gone_ = false;
  std::atomic<bool> closing_ = false;
  FrameReader frames_;       // reader thread only
  bool exitSeen_ = false;    // reader thread only
  std::int64_t lastId_ = 0;  // main thread only
  std::thread reader_;
};

}  // namespace tarn::host
