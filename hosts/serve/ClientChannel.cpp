#include "hosts/serve/ClientChannel.h"

#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>

namespace tarn::host {

namespace {

// Interval at which a thread waiting for the client to read checks if waiting still makes sense.
constexpr int kLookAround = 100;  // milliseconds
// How long a client that has closed its side may leave the output unread. Shutting down takes some
// time as well, and must be done within two seconds.
constexpr int kPatience = 1000;  // milliseconds

constexpr std::size_t kReadSize = 64 * 1024;
constexpr char kWordQuit = 'q';
constexpr char kWordGoOn = 'g';

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

ClientChannel::ClientChannel(int inputDescriptor, int outputDescriptor,
                             std::shared_ptr<MessageLoop> hostLoop, EndHandler onEnd)
    : input(inputDescriptor),
      output(outputDescriptor),
      loop(std::move(hostLoop)),
      tellEnd(std::move(onEnd)) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "no pipe");
  }
  wakeRead = ends[0];
  wakeWrite = ends[1];
  reader = std::thread([this] { ReadLoop(); });
}

ClientChannel::~ClientChannel() {
  WakeReader(kWordQuit);
  reader.join();
  close(wakeRead);
  close(wakeWrite);
}

void ClientChannel::WakeReader(char word) {
  [[maybe_unused]] const auto written = write(wakeWrite, &word, 1);
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
  if (wasFull) WakeReader(kWordGoOn);
  return taken;
}

void ClientChannel::ReadLoop() {
  for (;;) {
    const bool reads = !inputEnded && !IsFull();
    pollfd watched[] = {{wakeRead, POLLIN, 0}, {reads ? input : -1, POLLIN, 0}, {output, 0, 0}};
    if (poll(watched, std::size(watched), -1) < 0 && errno != EINTR) return;
    if (watched[0].revents != 0) {
      char word = 0;
      if (read(wakeRead, &word, 1) == 1 && word == kWordQuit) return;
    }
    if ((watched[2].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) return Abandon();
    if (watched[1].revents == 0 || ReadSome()) continue;
    inputEnded = true;
    if (!exitSeen) tellEnd();
    loop->Wake();
  }
}

bool ClientChannel::ReadSome() {
  char bytes[kReadSize];
  const ssize_t count = read(input, bytes, sizeof bytes);
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  if (count == 0) return false;
  frames.Feed({bytes, static_cast<std::size_t>(count)});
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
  int waited = 0;
  while (!gone && waited < kPatience) {
    pollfd watched{output, POLLOUT, 0};
    const int ready = poll(&watched, 1, kLookAround);
    if (ready < 0 && errno != EINTR) break;
    if (ready > 0 && (watched.revents & POLLOUT) != 0) return true;
    if (ready > 0) break;
    if (inputEnded) waited += kLookAround;
  }
  gone = true;
  return false;
}

void ClientChannel::Send(const nlohmann::json& document) {
  const std::string bytes = ToFrame(document);
  std::string_view left = bytes;
  while (!left.empty() && WaitToWrite()) {
    const ssize_t count = write(output, left.data(), std::min<std::size_t>(left.size(), PIPE_BUF));
    if (count >= 0) {
      left.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR && errno != EAGAIN) {
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
