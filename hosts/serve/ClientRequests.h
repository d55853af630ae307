#pragma once

#include <set>
#include <string>
#include <vector>

#include "hosts/core/HostWindow.h"
#include "hosts/serve/ClientChannel.h"
#include "widgets/Dialogs.h"

namespace tarn::host {

// Forwards the server's questions to the client, if the client has declared that it answers them.
// All others, and those that the client answers with an error, get a default answer: 1, OK, no
// files and no application. A malformed answer, or none because the client has disconnected, counts
// as a refusal: it must not cause anything to be overwritten or built. Main thread only.
class ClientRequests final : public DialogResponder {
 public:
  explicit ClientRequests(ClientChannel& clientChannel) : channel_(clientChannel) {}

  // The names of all questions that a client may answer.
  static const std::vector<std::string>& Names();
  // Sets which of them this client answers; unknown names are ignored.
  void SetAnswered(const std::vector<std::string>& names);

  // Returns the answer to a host message that is a question.
  std::intptr_t QueryHost(const HostMessageEvent& event);

  bool AskOkCancel(const std::string& text, const std::string& caption) override;
  void ShowMessage(const std::string& text, const std::string& caption) override;
  std::vector<std::string> ChooseFiles(const FileQuestion& question) override;
  int RunSheet(CPropertySheet& sheet) override;

 private:
  enum class Outcome { Answered, NotAnswered, Refused };
  Outcome Ask(const char* name, nlohmann::json params, nlohmann::json& answer);

  ClientChannel& channel_;
  std::set<std::string> answered_;
};

// Converts a host message for clients: number, name, and both parameters as string or number.
nlohmann::json ToJson(const HostMessageEvent& event);

}  // namespace tarn::host
