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
    : bytes(byteChannel), loop(std::move(hostLoop)), tellEnd(std::move(onEnd)) {
  reader = std::thread([this] { ReadLoop(); });
}

ClientChannel::~ClientChannel() {
  closing = true;
  bytes.Wake();
  reader.join();
}

void ClientChannel::Abandon() {
  gone = true;
  tellEnd();
  loop->Wake();
}

bool ClientChannel::HasMessage() const {
  const std::lock_guard<std::mutex> hold(lock);
  return !messages.empty();
}

bool ClientChannel::HasRequest(const std::function<bool(const RpcRequest&)>& isWanted) const {
  const std::lock_guard<std::mutex> hold(lock);
  for (const Waiting& each : messages) {
    for (const RpcItem& item : each.message.items) {
      const auto* request = std::get_if<RpcRequest>(&item);
      if (request != nullptr && isWanted(*request)) return true;
    }
  }
  return false;
}

bool ClientChannel::IsFull() const {
  const std::lock_guard<std::mutex> hold(lock);
  return waitingSize > kMaxWaiting;
}

std::optional<RpcMessage> ClientChannel::Take() {
  std::optional<RpcMessage> taken;
  bool wasFull = false;
  {
    const std::lock_guard<std::mutex> hold(lock);
    if (messages.empty()) return taken;
    wasFull = waitingSize > kMaxWaiting;
    taken = std::move(messages.front().message);
    waitingSize -= messages.front().size;
    messages.pop_front();
  }
  if (wasFull) bytes.Wake();
  return taken;
}

void ClientChannel::ReadLoop() {
  for (;;) {
    const bool reads = !inputEnded && !IsFull();
    const ByteChannel::Events events = bytes.Wait(reads);
    if (closing) return;
    if (events.isBroken) return Abandon();
    if (!events.hasInput || ReadSome()) continue;
    inputEnded = true;
    if (!exitSeen) tellEnd();
    loop->Wake();
  }
}

bool ClientChannel::ReadSome() {
  char chunk[kReadSize];
  const std::optional<std::size_t> count = bytes.Read(chunk, sizeof chunk);
  if (!count) return true;
  if (*count == 0) return false;
  frames.Feed({chunk, *count});
  while (const std::optional<Frame> frame = frames.Next()) TakeFrame(*frame);
  return true;
}

void ClientChannel::TakeFrame(const Frame& frame) {
  const std::size_t size = frame.body.size();
  if (frame.problem != FrameProblem::None) return Enqueue(ToMessage(frame.problem), size);
  RpcMessage message = ReadRpcMessage(frame.body);
  if (message.IsBroken()) frames.GiveBack(frame.body);
  std::vector<RpcItem> requests;
  for (RpcItem& each : message.items) {
    if (auto* answer = std::get_if<RpcAnswer>(&each)) {
      TakeAnswer(std::move(*answer));
      continue;
    }
    const auto* request = std::get_if<RpcRequest>(&each);
    exitSeen = exitSeen || (request != nullptr && request->method == "exit");
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
    const std::lock_guard<std::mutex> hold(lock);
    const auto found = questions.find(answer.id.get<std::int64_t>());
    if (found == questions.end() || found->second) return;
    found->second = std::move(answer);
  }
  loop->Wake();
}

void ClientChannel::Enqueue(RpcMessage message, std::size_t size) {
  {
    const std::lock_guard<std::mutex> hold(lock);
    messages.push_back({std::move(message), size});
    waitingSize += size;
  }
  loop->Wake();
}

// Called before each chunk that is written without blocking.
bool ClientChannel::WaitToWrite() {
  std::chrono::milliseconds waited{0};
  while (!gone && waited < kPatience) {
    const ByteChannel::WriteState state = bytes.WaitToWrite(kLookAround);
    if (state == ByteChannel::WriteState::Ready) return true;
    if (state == ByteChannel::WriteState::Broken) break;
    if (inputEnded) waited += kLookAround;
  }
  gone = true;
  return false;
}

void ClientChannel::Send(const nlohmann::json& document) {
  const std::string frame = ToFrame(document);
  std::string_view left = frame;
  while (!left.empty() && WaitToWrite()) {
    if (const std::optional<std::size_t> count = bytes.Write(left)) {
      left.remove_prefix(*count);
    } else {
      gone = true;
    }
  }
}

std::optional<RpcAnswer> ClientChannel::Ask(std::string_view method, nlohmann::json params) {
  const std::int64_t id = ++lastId;
  {
    const std::lock_guard<std::mutex> hold(lock);
    questions.emplace(id, std::nullopt);
  }
  Send(MakeRpcRequest(id, method, std::move(params)));
  const auto isOver = [&] {
    const std::lock_guard<std::mutex> hold(lock);
    return questions.at(id).has_value() || inputEnded || gone;
  };
  loop->ServeUntil(isOver, std::chrono::milliseconds::max());
  const std::lock_guard<std::mutex> hold(lock);
  std::optional<RpcAnswer> answer = std::move(questions.at(id));
  questions.erase(id);
  return answer;
}

}  // namespace tarn::host
