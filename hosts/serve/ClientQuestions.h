#pragma once

#include <set>
#include <string>
#include <vector>

#include "hosts/core/MainFrame.h"
#include "hosts/serve/ClientChannel.h"
#include "widgets/Dialogs.h"

namespace tarn::host {

// Hands the system's questions to the client, those that it said it answers. The others, and those
// that it answers with an error, are answered for it: with 1, OK, no files and no application. An
// answer of another form, or none since the client is gone, is a refusal: nothing may be
// overwritten or built on the strength of it. On the host's thread.
class ClientQuestions final : public DialogResponder {
 public:
  explicit ClientQuestions(ClientChannel& clientChannel) : channel(clientChannel) {}

  // The names of all questions that a client may answer.
  static const std::vector<std::string>& Names();
  // Which of them this one does; other names play no part.
  void SetAnswered(const std::vector<std::string>& names);

  // The host's answer to a message that asks for one.
  std::intptr_t AskHost(const HostEvent& event);

  bool AskOkCancel(const std::string& text, const std::string& caption) override;
  void ShowMessage(const std::string& text, const std::string& caption) override;
  std::vector<std::string> ChooseFiles(const FileQuestion& question) override;
  int RunSheet(CPropertySheet& sheet) override;

 private:
  enum class Outcome { Answered, NotAnswered, Refused };
  Outcome Ask(const char* name, nlohmann::json params, nlohmann::json& answer);

  ClientChannel& channel;
  std::set<std::string> answered;
};

// A message as clients see it: number, name, and both parameters as text or number.
nlohmann::json ToJson(const HostEvent& event);

}  // namespace tarn::host
