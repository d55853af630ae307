#include "hosts/serve/RpcServer.h"

#include <tarn/commands.h>

#include <algorithm>
#include <chrono>

#include "hosts/serve/FindingJson.h"
#include "platform/paths/Paths.h"
#include "platform/text/Suggest.h"

namespace tarn::host {

namespace {

using nlohmann::json;

json ToJson(const std::vector<MethodInfo>& methods) {
  json list = json::array();
  for (const MethodInfo& each : methods) {
    list.push_back({{"name", each.name}, {"params", each.arguments}});
  }
  return list;
}

json ToJson(const std::vector<DamageEntry>& damage) {
  json list = json::array();
  for (const DamageEntry& each : damage) {
    list.push_back({{"file", each.file}, {"line", each.line}, {"text", each.text}});
  }
  return list;
}

constexpr const char* kUntrustedText =
    "Its folder is not trusted, so this was refused. Use project/trust to trust it.";

json TrustOf(RpcSession& session) {
  const std::string folder = session.GetProjectFolder();
  return {{"folder", folder}, {"trusted", session.Trust().IsTrusted(folder)}};
}

CallProblem TrustProject(RpcSession& session, json& result) {
  const std::string folder = session.GetProjectFolder();
  if (folder.empty()) return {kRpcFailed, "No project is open."};
  if (const Status added = session.Trust().Trust(folder); !added) {
    return {kRpcFailed, added.GetError().place + ": " + added.GetError().text};
  }
  result = TrustOf(session);
  return {};
}

json DamageOf(RpcSession& session) {
  return {{"damage", ToJson(session.GetDamage())}};
}

json ToJson(const SaveReport& report) {
  json conflicts = json::array();
  for (const SaveReport::Conflict& each : report.conflicts) {
    conflicts.push_back(
        {{"file", each.file}, {"place", each.place}, {"text", each.text}, {"copy", each.copy}});
  }
  return {{"problems", report.problems}, {"notes", report.notes}, {"conflicts", conflicts}};
}

json ToJson(const HistoryState& state) {
  const auto label = [](const std::string& text, std::size_t steps) {
    return steps == 0 ? json() : json(text);
  };
  return {{"canUndo", state.undoSteps > 0},
          {"undoLabel", label(state.undoLabel, state.undoSteps)},
          {"undoSteps", state.undoSteps},
          {"canRedo", state.redoSteps > 0},
          {"redoLabel", label(state.redoLabel, state.redoSteps)},
          {"redoSteps", state.redoSteps}};
}

json LabelsOf(const std::deque<ProjectStep>& steps) {
  json list = json::array();
  for (auto each = steps.rbegin(); each != steps.rend(); ++each) list.push_back(each->label);
  return list;
}

CallProblem HistoryOf(RpcSession& session, json& result) {
  result = ToJson(session.GetHistoryState());
  result["undo"] = LabelsOf(session.GetUndoSteps());
  result["redo"] = LabelsOf(session.GetRedoSteps());
  return {};
}

template <Result<ProjectStep> (RpcSession::*Way)()>
CallProblem Go(RpcSession& session, json& result) {
  const Result<ProjectStep> step = (session.*Way)();
  if (!step) return {kRpcFailed, step.GetError().text};
  result = ToJson(session.GetHistoryState());
  result["label"] = step->label;
  result["files"] = json::array();
  for (const FileChange& each : step->changes) result["files"].push_back(each.path);
  return {};
}

// Reads an optional string; returns false if the value is neither a string nor null.
bool TakeOptionalText(const json& value, std::string& text) {
  if (value.is_null()) return true;
  std::optional<std::string> given = TextOfJson(value);
  if (given && !given->empty()) text = std::move(*given);
  return given.has_value();
}

bool TakeNames(const json& value, std::vector<std::string>& names) {
  if (value.is_null()) return true;
  if (!value.is_array()) return false;
  for (const json& each : value) {
    std::optional<std::string> name = TextOfJson(each);
    if (!name) return false;
    names.push_back(std::move(*name));
  }
  return true;
}

// Returns true if the client cancels what it has requested before.
bool AsksForStop(const RpcRequest& request) {
  if (request.method == "shutdown" || request.method == "exit") return true;
  if (request.method != "Command" || !request.params.is_structured()) return false;
  return std::any_of(request.params.begin(), request.params.end(), [](const json& each) {
    return each.is_number_integer() && each == std::int64_t{TARN_CMD_STOP};
  });
}

}  // namespace

RpcServer::RpcServer(FileSystem& fileSystem, ByteChannel& bytes, bool trustsEveryProject,
                     BuildLimits buildLimits)
    : files_(fileSystem),
      channel_(bytes, MessageLoop::ForCurrentThread(), [this] { stopper_.Stop(); }),
      questions_(channel_),
      trustsAll_(trustsEveryProject),
      limits_(std::move(buildLimits)) {}

RpcServer::~RpcServer() {
  // Destroyed while the channel still exists; its last notifications have no recipient any more.
  session_.reset();
}

void RpcServer::Interrupt() {
  interrupted_ = true;
  channel_.Abandon();
}

bool RpcServer::IsOver() const {
  return exitAsked_ || channel_.IsGone();
}

ServerEnd RpcServer::Run() {
  const auto loop = MessageLoop::ForCurrentThread();
  const auto somethingToDo = [this] {
    return IsOver() || channel_.HasMessage() || channel_.HasInputEnded() ||
           (session_ && session_->NeedsAttention());
  };
  for (;;) {
    const bool isLoading = session_ && session_->IsLoading();
    loop->PumpUntil(somethingToDo,
                    isLoading ? std::chrono::milliseconds(0) : std::chrono::milliseconds::max());
    // The message loop must run even if the client sends without pause, so that the worker and the
    // timers make progress.
    loop->Pump();
    if (session_) {
      session_->Attend();
      session_->RecordChanges();
    }
    if (IsOver()) break;
    // Check for the end first: the last message may arrive just before it.
    const bool hasEnded = channel_.HasInputEnded();
    if (const auto message = channel_.Take()) {
      Handle(*message);
    } else if (hasEnded) {
      break;
    } else if (isLoading && session_->IsLoading()) {
      session_->ContinueLoading();
    }
  }
  if (session_) session_->StopWork();
  if (interrupted_) return ServerEnd::Interrupted;
  return isShutDown_ ? ServerEnd::Asked : ServerEnd::Left;
}

void RpcServer::Handle(const RpcMessage& message) {
  json responses = json::array();
  for (const RpcItem& each : message.items) {
    json response = HandleItem(each);
    if (!response.is_null()) responses.push_back(std::move(response));
    if (IsOver()) break;
  }
  if (session_) session_->RecordChanges();
  if (responses.empty()) return;
  channel_.Send(message.isBatch ? responses : responses.front());
}

json RpcServer::HandleItem(const RpcItem& item) {
  if (const auto* problem = std::get_if<RpcProblem>(&item)) {
    return MakeRpcError(problem->id, problem->code, problem->text);
  }
  const auto* request = std::get_if<RpcRequest>(&item);
  if (request == nullptr) return nullptr;
  json result;
  CallProblem problem;
  try {
    problem = HandleRequest(*request, result);
  } catch (const std::exception& failure) {
    problem = {kRpcFailed, failure.what()};
  }
  if (request->isNotification) return nullptr;
  if (problem.code != 0) return MakeRpcError(request->id, problem.code, problem.text);
  return MakeRpcResult(request->id, std::move(result));
}

CallProblem RpcServer::HandleRequest(const RpcRequest& request, json& result) {
  if (request.method == "exit") {
    exitAsked_ = true;
    return {};
  }
  if (isShutDown_) return {kRpcBadRequest, "The server was shut down; only exit may follow."};
  if (request.method == "initialize") return Initialize(request.params, result);
  if (request.method == "shutdown") {
    if (session_) session_->StopWork();
    isShutDown_ = true;
    return {};
  }
  if (request.method == "addConfiguration") return AddConfiguration(request.params);
  if (request.method == "project/check") return CheckProject(request.params, result);
  CallProblem problem;
  return HandleProject(request, result, problem) ? problem : CallMethod(request, result);
}

bool RpcServer::HandleProject(const RpcRequest& request, json& result, CallProblem& problem) {
  using Session = RpcSession;
  constexpr auto damage = [](Session& served, json& found) {
    found = DamageOf(served);
    return CallProblem();
  };
  constexpr auto accept = [](Session& served, json& found) {
    served.AcceptDamage();
    found = DamageOf(served);
    return CallProblem();
  };
  constexpr auto trusted = [](Session& served, json& found) {
    found = TrustOf(served);
    return CallProblem();
  };
  constexpr auto report = [](Session& served, json& found) {
    found = ToJson(served.GetSaveReport());
    return CallProblem();
  };
  constexpr std::pair<std::string_view, CallProblem (*)(Session&, json&)> kRequests[] = {
      {"project/damage", damage},           {"project/acceptDamage", accept},
      {"project/saveReport", report},       {"project/history", HistoryOf},
      {"project/trust", TrustProject},      {"project/trusted", trusted},
      {"project/undo", Go<&Session::Undo>}, {"project/redo", Go<&Session::Redo>}};
  const auto* const asked =
      std::find_if(std::begin(kRequests), std::end(kRequests),
                   [&](const auto& each) { return each.first == request.method; });
  if (asked == std::end(kRequests)) return false;
  std::vector<json> given;
  problem = OrderParams(request.method, {}, 0, request.params, given);
  if (!session_) problem = {kRpcNotInitialized, "The server isn't initialized yet."};
  if (problem.code == 0) problem = asked->second(*session_, result);
  return true;
}

// Implements the request that no server method covers: adds a configuration together with its
// options.
CallProblem RpcServer::AddConfiguration(const json& params) {
  if (!session_) return {kRpcNotInitialized, "The server isn't initialized yet."};
  std::vector<json> given;
  if (CallProblem problem = OrderParams("addConfiguration", {"name", "from"}, 1, params, given);
      problem.code != 0) {
    return problem;
  }
  NewConfiguration wanted;
  const std::optional<std::string> name = TextOfJson(given[0]);
  if (!given[1].is_null()) wanted.from = TextOfJson(given[1]);
  if (!name || wanted.from.has_value() == given[1].is_null()) {
    return {kRpcBadParams, "addConfiguration: name and from must be strings"};
  }
  wanted.name = *name;
  const Status added = session_->AddConfiguration(wanted);
  return added ? CallProblem() : CallProblem{kRpcFailed, added.GetError().text};
}

CallProblem RpcServer::Initialize(const json& params, json& result) {
  if (session_) return {kRpcBadRequest, "The server is already initialized."};
  std::vector<json> given;
  if (CallProblem problem = OrderParams(
          "initialize", {"applicationPath", "dataPath", "answers", "damagedOk", "trust"}, 0, params,
          given);
      problem.code != 0) {
    return problem;
  }
  if (!given[3].is_null() && !given[3].is_boolean()) {
    return {kRpcBadParams, "initialize: damagedOk must be true or false"};
  }
  if (!given[4].is_null() && !given[4].is_boolean()) {
    return {kRpcBadParams, "initialize: trust must be true or false"};
  }
  HostFolders folders;
  if (CallProblem problem = ReadFolders(given, folders); problem.code != 0) return problem;
  std::vector<std::string> answers;
  if (!TakeNames(given[2], answers)) {
    return {kRpcBadParams, "initialize: answers must be a list of names"};
  }
  questions_.SetAnswered(answers);
  session_ = std::make_unique<RpcSession>(
      files_, folders, questions_, stopper_, [this](const HostMessageEvent& event) {
        channel_.Send(MakeRpcNotification("host/message", tarn::host::ToJson(event)));
      });
  if (const Status started = session_->Start(); !started) {
    const char* const fault = session_->IsOwnDefinition(started.GetError())
                                  ? "A definition has to be corrected: "
                                  : "This installation is incomplete: ";
    session_.reset();
    return {kRpcFailed, fault + started.GetError().place + ": " + started.GetError().text};
  }
  session_->SetWaitEnd([this] { return channel_.HasRequest(AsksForStop); });
  if (given[3] == true) session_->AcceptAllDamage();
  for (const std::string& each : session_->SetLimits(limits_)) {
    if (onRemark) onRemark(each);
  }
  if (trustsAll_ || given[4] == true) session_->Trust().TrustAll();
  session_->onRefused = [this](const std::vector<std::string>& wishes) {
    channel_.Send(MakeRpcNotification(
        "project/refused", {{"folder", session_->GetProjectFolder()}, {"wishes", wishes}}));
  };
  session_->onDamaged = [this] {
    channel_.Send(
        MakeRpcNotification("project/damaged", {{"damage", ToJson(session_->GetDamage())}}));
  };
  session_->onSaveProblem = [this](const SaveReport& report) {
    channel_.Send(MakeRpcNotification("project/saveProblem", ToJson(report)));
  };
  session_->onHistoryChanged = [this] {
    channel_.Send(
        MakeRpcNotification("project/historyChanged", ToJson(session_->GetHistoryState())));
  };
  methods_ = session_->GetMethods();
  result = {{"serverInfo", {{"name", "tarn"}, {"version", TARN_VERSION}}},
            {"methods", ToJson(methods_)},
            {"definitionErrors", session_->GetDefinitionErrors()},
            {"questions", ClientRequests::Names()}};
  return {};
}

CallProblem RpcServer::ReadFolders(const std::vector<json>& params, HostFolders& folders) {
  folders = HostFolders::FromEnvironment(files_);
  std::pair<const char*, std::string*> places[] = {{"applicationPath", &folders.application},
                                                   {"dataPath", &folders.data}};
  for (std::size_t i = 0; i < std::size(places); ++i) {
    auto& [name, path] = places[i];
    if (!TakeOptionalText(params[i], *path)) {
      return {kRpcBadParams, std::string("initialize: ") + name + " must be a path"};
    }
    if (IsRelativePath(*path)) *path = JoinPath(files_.CurrentFolder(), *path);
    *path = files_.Canonical(*path);  // removes a trailing separator
  }
  folders.application = AddSeparator(folders.application);
  return {};
}

// Runs the whole check in one call, because a client sends its next request after the response.
CallProblem RpcServer::CheckProject(const json& params, json& result) {
  if (!session_) return {kRpcNotInitialized, "The server isn't initialized yet."};
  std::vector<json> given;
  CallProblem problem = OrderParams("project/check", {}, 0, params, given);
  if (problem.code != 0) return problem;
  const auto findings = session_->CheckProject(files_);
  if (!findings) return {kRpcFailed, findings.GetError().text};
  json list = json::array();
  for (const Finding& each : *findings) {
    list.push_back(ToJson(each, [](const std::string& path) { return path; }));
  }
  result = {{"findings", std::move(list)}};
  return {};
}

CallProblem RpcServer::CallMethod(const RpcRequest& request, json& result) {
  if (!session_) return {kRpcNotInitialized, "The server isn't initialized yet."};
  const auto method = std::find_if(methods_.begin(), methods_.end(), [&](const MethodInfo& each) {
    return each.name == request.method;
  });
  if (method == methods_.end()) {
    std::vector<std::string> names;
    for (const MethodInfo& each : methods_) names.emplace_back(each.name);
    return {kRpcNoMethod,
            "Unknown method \"" + request.method + "\"." + SuggestionText(request.method, names)};
  }
  std::vector<Variant> arguments;
  if (CallProblem problem = BindArguments(*method, request.params, arguments); problem.code != 0) {
    return problem;
  }
  Variant returned;
  const DispatchResult outcome = session_->Call(*method, arguments, returned);
  result = tarn::host::ToJson(returned);
  // For a running build this is reported at its end.
  const std::vector<std::string> refused =
      session_->IsBuilding() ? std::vector<std::string>() : session_->Trust().TakeRefused();
  if (!refused.empty()) return {kRpcUntrusted, DescribeWishes(refused) + " " + kUntrustedText};
  return ToProblem(outcome, *method);
}

}  // namespace tarn::host
