#include "hosts/serve/ClientChannel.h"

#include <chrono>

namespace tarn::host {

namespace {

// Interval at which a thread waiting for the client to read checks if waiting still makes sense.
constexpr std::chrono::milliseconds kLookAround{100};
// How long a client that has closed its side may leave the output unread. Shutting down takes some
// time as well, and must be done within two seconds.
constexpr std::chrono::milliseconds kPatience{1000};

constexpr std::size_t kReadSize = 64 * 1024;

RpcMessage ToMessage(FrameProblem problem) {
  if (problem == FrameProblem::TooLong) {
    return {false,
            {RpcProblem{nullptr, kRpcBadRequest,
                        "The message is longer than " + std::to_string(FrameReader::kMaxBody) +
                            " bytes."}}};
  }
  return {false,
          {RpcProblem{
              nullptr, kRpcNoJson,
              "Malformed frame: expected header lines with one Content-Length, an empty line, the "
              "message."}}};
}

}  // namespace

ClientChannel::ClientChannel(ByteChannel& byteChannel, std::shared_ptr<MessageLoop> hostLoop,
                             EndHandler onEnd)
    : bytes_(byteChannel), loop_(std::move(hostLoop)), tellEnd_(std::move(onEnd)) {
  reader_ = std::thread([this] { ReadLoop(); });
}

ClientChannel::~ClientChannel() {
  closing_ = true;
  bytes_.Wake();
  reader_.join();
}

void ClientChannel::Abandon() {
  gone_ = true;
  tellEnd_();
  loop_->Wake();
}

bool ClientChannel::HasMessage() const {
  const std::lock_guard<std::mutex> hold(lock_);
  return !messages_.empty();
}

bool ClientChannel::HasRequest(const std::function<bool(const RpcRequest&)>& isWanted) const {
  const std::lock_guard<std::mutex> hold(lock_);
  for (const Waiting& each : messages_) {
    for (const RpcItem& item : each.message.items) {
      const auto* request = std::get_if<RpcRequest>(&item);
      if (request != nullptr && isWanted(*request)) return true;
    }
  }
  return false;
}

bool ClientChannel::IsFull() const {
  const std::lock_guard<std::mutex> hold(lock_);
  return waitingSize_ > kMaxWaiting;
}

std::optional<RpcMessage> ClientChannel::Take() {
  std::optional<RpcMessage> taken;
  bool wasFull = false;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    if (messages_.empty()) return taken;
    wasFull = waitingSize_ > kMaxWaiting;
    taken = std::move(messages_.front().message);
    waitingSize_ -= messages_.front().size;
    messages_.pop_front();
  }
  if (wasFull) bytes_.Wake();
  return taken;
}

void ClientChannel::ReadLoop() {
  for (;;) {
    const bool reads = !inputEnded_ && !IsFull();
    const ByteChannel::Events events = bytes_.Wait(reads);
    if (closing_) return;
    if (events.isBroken) return Abandon();
    if (!events.hasInput || ReadSome()) continue;
    inputEnded_ = true;
    if (!exitSeen_) tellEnd_();
    loop_->Wake();
  }
}

bool ClientChannel::ReadSome() {
  char chunk[kReadSize];
  const std::optional<std::size_t> count = bytes_.Read(chunk, sizeof chunk);
  if (!count) return true;
  if (*count == 0) return false;
  frames_.Feed({chunk, *count});
  while (const std::optional<Frame> frame = frames_.Next()) TakeFrame(*frame);
  return true;
}

void ClientChannel::TakeFrame(const Frame& frame) {
  const std::size_t size = frame.body.size();
  if (frame.problem != FrameProblem::None) return Enqueue(ToMessage(frame.problem), size);
  RpcMessage message = ReadRpcMessage(frame.body);
  if (message.IsBroken()) frames_.GiveBack(frame.body);
  std::vector<RpcItem> requests;
  for (RpcItem& each : message.items) {
    if (auto* answer = std::get_if<RpcAnswer>(&each)) {
      TakeAnswer(std::move(*answer));
      continue;
    }
    const auto* request = std::get_if<RpcRequest>(&each);
    exitSeen_ = exitSeen_ || (request != nullptr && request->method == "exit");
    requests.push_back(std::move(each));
  }
  if (requests.empty()) return;
  message.items = std::move(requests);
  Enqueue(std::move(message), size);
}

// Delivers a response; it is ignored if no caller is waiting for it any more.
void ClientChannel::TakeAnswer(RpcAnswer answer) {
  if (!answer.id.is_number_integer()) return;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    const auto found = questions_.find(answer.id.get<std::int64_t>());
    if (found == questions_.end() || found->second) return;
    found->second = std::move(answer);
  }
  loop_->Wake();
}

void ClientChannel::Enqueue(RpcMessage message, std::size_t size) {
  {
    const std::lock_guard<std::mutex> hold(lock_);
    messages_.push_back({std::move(message), size});
    waitingSize_ += size;
  }
  loop_->Wake();
}

// Called before each chunk that is written without blocking.
bool ClientChannel::WaitToWrite() {
  std::chrono::milliseconds waited{0};
  while (!gone_ && waited < kPatience) {
    const ByteChannel::WriteState state = bytes_.WaitToWrite(kLookAround);
    if (state == ByteChannel::WriteState::Ready) return true;
    if (state == ByteChannel::WriteState::Broken) break;
    if (inputEnded_) waited += kLookAround;
  }
  gone_ = true;
  return false;
}

void ClientChannel::Send(const nlohmann::json& document) {
  const std::string frame = ToFrame(document);
  std::string_view left = frame;
  while (!left.empty() && WaitToWrite()) {
    if (const std::optional<std::size_t> count = bytes_.Write(left)) {
      left.remove_prefix(*count);
    } else {
      gone_ = true;
    }
  }
}

std::optional<RpcAnswer> ClientChannel::Ask(std::string_view method, nlohmann::json params) {
  const std::int64_t id = ++lastId_;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    questions_.emplace(id, std::nullopt);
  }
  Send(MakeRpcRequest(id, method, std::move(params)));
  const auto isOver = [&] {
    const std::lock_guard<std::mutex> hold(lock_);
    return questions_.at(id).has_value() || inputEnded_ || gone_;
  };
  loop_->ServeUntil(isOver, std::chrono::milliseconds::max());
  const std::lock_guard<std::mutex> hold(lock_);
  std::optional<RpcAnswer> answer = std::move(questions_.at(id));
  questions_.erase(id);
  return answer;
}

}  // namespace tarn::host
