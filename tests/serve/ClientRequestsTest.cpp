#include "hosts/serve/ClientRequests.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

#include "hosts/serve/posix/DescriptorChannel.h"
#include "wizard/WizardScene.h"

namespace tarn::host {
namespace {

using nlohmann::json;

// A frame with its questions, and the client's end of the connection, on which a thread reads each
// request and sends these responses verbatim; "gone" closes the connection.
class Connection {
 public:
  explicit Connection(std::vector<std::string> clientAnswers) : answers_(std::move(clientAnswers)) {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_) != 0) std::abort();
    connection_ = std::make_unique<DescriptorChannel>(ends_[0], ends_[0]);
    channel_ =
        std::make_unique<ClientChannel>(*connection_, MessageLoop::ForCurrentThread(), [] {});
    questions_ = std::make_unique<ClientRequests>(*channel_);
    questions_->SetAnswered(ClientRequests::Names());
    SetDialogResponder(frame_.GetHandle(), questions_.get());
    client_ = std::thread([this] { Serve(); });
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    SetDialogResponder(frame_.GetHandle(), nullptr);
    channel_.reset();
    shutdown(ends_[0], SHUT_RDWR);
    client_.join();
    close(ends_[0]);
    close(ends_[1]);
  }

  WindowHandle Window() const { return frame_.GetHandle(); }
  ClientRequests& Questions() { return *questions_; }
  // Returns the questions that the client received, after all responses were used.
  std::vector<json> Asked() {
    shutdown(ends_[0], SHUT_WR);
    client_.join();
    client_ = std::thread([] {});
    return asked_;
  }

 private:
  void Serve() {
    FrameReader reader;
    char bytes[4096];
    std::size_t next = 0;
    for (ssize_t count = 0; (count = read(ends_[1], bytes, sizeof bytes)) > 0;) {
      reader.Feed({bytes, static_cast<std::size_t>(count)});
      while (const auto frameRead = reader.Next()) {
        asked_.push_back(json::parse(frameRead->body));
        const std::string id = asked_.back()["id"].dump();
        if (next == answers_.size()) return;
        std::string text = answers_[next++];
        if (text == "gone") {
          shutdown(ends_[1], SHUT_RDWR);
          return;
        }
        for (std::size_t at = 0; (at = text.find("ID", at)) != std::string::npos;) {
          text.replace(at, 2, id);
        }
        text = "Content-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text;
        if (write(ends_[1], text.data(), text.size()) < 0) return;
      }
    }
  }

  HostWindow frame_;
  int ends_[2] = {-1, -1};
  const std::vector<std::string> answers_;
  std::vector<json> asked_;  // owned by the client thread until it has ended
  std::unique_ptr<DescriptorChannel> connection_;
  std::unique_ptr<ClientChannel> channel_;
  std::unique_ptr<ClientRequests> questions_;
  std::thread client_;
};

std::string Result(const std::string& result) {
  return R"({"jsonrpc":"2.0","id":ID,"result":)" + result + "}";
}

const std::string kError = R"({"jsonrpc":"2.0","id":ID,"error":{"code":-32601,"message":"no"}})";
const HostMessageEvent kClosing{kMsgProjectClosing, 0, 0, "p.tprj", "", true, false};

// Runs the wizard for this window and returns its result.
std::string QueryApplication(WindowHandle window) {
  test::WizardScene scene;
  scene.SetAsked(window);
  return scene.Run(scene.Proposed());
}

std::string AnswersTo(const std::string& answer) {
  Connection connection({answer, answer, answer, answer, answer});
  std::string text = std::to_string(connection.Questions().QueryHost(kClosing));
  // A disconnected client can't be asked again; the result is the same.
  text += AskOkCancel(connection.Window(), "Stop?", "Project") ? " ok" : " cancel";
  const FileQuestion question{"Projects (*.tprj)|*.tprj|", "/p", true};
  for (const std::string& path : ChooseFiles(connection.Window(), question)) text += " " + path;
  return text + "; " + QueryApplication(connection.Window());
}

TEST(ClientRequests, OnlyARealYesLetsSomethingHappen) {
  const std::pair<std::string, const char*> rows[] = {
      {Result("1"), "1 cancel; cancelled"},
      {Result("0"), "0 cancel; cancelled"},
      {Result("-7"), "-7 cancel; cancelled"},
      {Result("true"), "0 cancel; cancelled"},
      {Result("null"), "0 cancel; cancelled"},
      {Result(R"("ok")"), "0 ok; cancelled"},
      {Result(R"("yes")"), "0 cancel; cancelled"},
      {Result(R"(["/a","/b"])"), "0 cancel /a /b; cancelled"},
      {Result(R"(["/a",7])"), "0 cancel; cancelled"},
      {Result(R"(["/a\u0000b"])"), "0 cancel; cancelled"},
      {Result("{}"), "0 cancel; Application: app @ /p, new, config 'Standard', script '', tool ''"},
      {Result(R"({"applicationName":"mine","target":"s1","unknown":1})"),
       "0 cancel; Application: mine @ /p, new, config 'Debug', script 'script 1', tool ''"},
      {Result(R"({"applicationName":"mine","launchTool":1})"), "0 cancel; cancelled"},
      {Result(R"({"target":"S9"})"), "0 cancel; cancelled"},
      // Not one of the client's questions.
      {kError, "1 cancel; cancelled"},
      // A response to an unknown request comes first, then the same response twice.
      {R"([{"jsonrpc":"2.0","id":99,"result":1},{"jsonrpc":"2.0","id":"x","result":1},)" +
           Result(R"("ok")") + "," + Result("1") + "]",
       "0 ok; cancelled"},
      {"gone", "0 cancel; cancelled"},
  };
  for (const auto& [answer, expected] : rows) EXPECT_EQ(AnswersTo(answer), expected) << answer;
}

TEST(ClientRequests, AClientSeesWhatItIsAsked) {
  Connection connection({Result("1"), Result("\"ok\""), Result("\"ok\""), Result("[]"),
                         Result(R"({"target":"S"})"), Result("null")});
  connection.Questions().QueryHost(kClosing);
  AskOkCancel(connection.Window(), "Stop?", "Project");
  ShowMessage(connection.Window(), "Done.", "Project");
  ChooseFiles(connection.Window(), {"C files|*.c;*.h|All|*.*||", "/p", false});
  QueryApplication(connection.Window());
  std::string seen;
  for (const json& each : connection.Asked()) {
    seen += each["method"].get<std::string>() + " " + each["params"].dump() + "\n";
  }
  const std::string expected =
      R"(host/ask {"lParam":0,"name":"ProjectClosing","number":32790,"wParam":"p.tprj"})"
      "\n"
      R"(host/messageBox {"caption":"Project","text":"Stop?"})"
      "\n"
      R"(host/messageBox {"buttons":["ok"],"caption":"Project","text":"Done."})"
      "\n"
      R"(host/openFile {"filters":[{"label":"C files","patterns":["*.c","*.h"]},)"
      R"({"label":"All","patterns":["*.*"]}],"folder":"/p","multiple":false})"
      "\n"
      R"(host/wizard {"applicationName":"app","createNewProject":true,"launchTool":false,)"
      R"("location":"/p","mayJoinProject":false,"mayLaunchTool":false,"target":"","targets":)"
      R"(["Chips/Small/S1","Chips/Small/S2","Chips/Small/S3","Chips/Small/S4"],)"
      R"("typeHeader":"Application","typeHeaders":["Application","","Program"]})"
      "\n"
      R"(host/messageBox {"buttons":["ok"],"caption":"Project New",)"
      R"("text":"Unknown target \"S\"."})"
      "\n";
  EXPECT_EQ(seen, expected);
}

// Without a client's response the host agrees, but never to a loss of data.
TEST(ClientRequests, WhatTheClientDoesNotAnswerChangesNothing) {
  Connection connection({});
  connection.Questions().SetAnswered({"host/openFile2"});
  EXPECT_EQ(connection.Questions().QueryHost(kClosing), 1);
  EXPECT_FALSE(AskOkCancel(connection.Window(), "Stop?", "Project"));
  EXPECT_TRUE(ChooseFiles(connection.Window(), {}).empty());
  EXPECT_EQ(QueryApplication(connection.Window()), "cancelled");
  EXPECT_TRUE(connection.Asked().empty());
}

}  // namespace
}  // namespace tarn::host
