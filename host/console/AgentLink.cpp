#include "host/console/AgentLink.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdio>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>

#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "host/console/Sandbox.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Presenter.h"
#include "platform/Process.h"

namespace console {

namespace {

using Json = nlohmann::json;

constexpr int kPauseMilliseconds = 10;
constexpr int kPatienceMilliseconds = 10000;
constexpr int kPatienceAfterLastWords = 1000;  // an agent that reported an error and does not answer has ended
constexpr int kPatienceWithSilence = 20000;    // an agent that is silent for this long has stopped
constexpr uint32_t kAllWorkgroups = 0;

int AgentProcess() {
  for (const platform::RunningApplication& application : platform::RunningApplications()) {
    if (application.identifier == agent_protocol::kAgentIdentifier) return application.processID;
  }
  return 0;
}

bool WaitUntil(const std::function<bool()>& condition, int milliseconds) {
  for (int waited = 0; !condition(); waited += kPauseMilliseconds) {
    if (waited >= milliseconds) return false;
    poll(nullptr, 0, kPauseMilliseconds);
  }
  return true;
}

// Shows the progress of a scan with the current presenter, from the first notification on.
class ScanProgress {
 public:
  ScanProgress() : properties_(platform::Dictionary::Create()) {}
  ~ScanProgress() {
    if (isShown_) platform::HideProgress();
  }
  ScanProgress(const ScanProgress&) = delete;
  ScanProgress& operator=(const ScanProgress&) = delete;

  void Update(const Json& payload) {
    properties_.Set("CurrentProgress", platform::Number::FromInteger(payload.value("stepIndex", 0)));
    properties_.Set("MaxProgress", platform::Number::FromInteger(payload.value("numSteps", 0)));
    properties_.Set("Status", payload.value("text", ""));
    if (isShown_) {
      platform::UpdateProgress(properties_);
      return;
    }
    properties_.Set("Header", "Scanning fonts");
    platform::ShowProgress(properties_);
    isShown_ = true;
  }

 private:
  platform::Dictionary properties_;
  bool isShown_ = false;
};

struct Answer {
  uint32_t code = 0;
  Json result;
};

bool Send(int socket, uint64_t id, const char* call, const Json& arguments) {
  const Json request = {{"id", id}, {"call", call}, {"arguments", arguments}};
  return !platform::SendMessage(socket, request.dump(-1, ' ', false, Json::error_handler_t::replace));
}

// Waits for a message of the agent. A busy agent may delay a reply for minutes but still answers a probe. Returns false
// if it does not even answer that.
bool AwaitMessage(int socket) {
  for (const bool isLastTime : {false, true}) {
    pollfd ready{socket, POLLIN, 0};
    int count = 0;
    while ((count = poll(&ready, 1, kPatienceWithSilence / 2)) < 0 && errno == EINTR) {
    }
    if (count != 0) return count > 0;
    if (!isLastTime && !Send(socket, 0, "GetIsOnline", Json::object())) return false;
  }
  return false;
}

bool HasEnded(int socket) {
  char next = 0;
  const ssize_t got = recv(socket, &next, sizeof next, MSG_PEEK | MSG_DONTWAIT);
  return got == 0 || (got < 0 && errno != EAGAIN);
}

// Makes a blocked operation fail after a while, for an agent that stops in the middle of a message.
void LimitBlocking(int socket) {
  const timeval time{kPatienceWithSilence / 1000, 0};
  setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
  setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof time);
}

// Sends a request and waits for its reply. Returns nothing if the connection is lost or the agent is silent.
std::optional<Answer> Ask(int socket, uint64_t id, const char* call, const Json& arguments,
                          const std::function<void(const Json&)>& onNotification) {
  if (!Send(socket, id, call, arguments)) return std::nullopt;
  std::string text;
  while (AwaitMessage(socket) && !platform::ReceiveMessage(socket, text)) {
    const Json message = Json::parse(text, nullptr, false);
    if (!message.is_object()) return std::nullopt;
    if (message.contains("notify")) {
      if (onNotification) onNotification(message);
    } else if (message.value("id", uint64_t{0}) == id) {
      return Answer{message.value("code", uint32_t{0}), message.value("result", Json::object())};
    }
  }
  return std::nullopt;
}

}  // namespace

std::string AgentLink::Start(LibrarySummary* summary) {
  if (sandbox_.HasNewAgentConfiguration()) {
    std::string problem = EndOldAgent();
    if (!problem.empty()) return problem;
  }
  return Restart(summary);
}

std::string AgentLink::Restart(LibrarySummary* summary) {
  const std::string agent = sandbox_.AgentExecutable();
  if (!platform::IsExecutableFile(agent)) return agent + ": there is no agent to start; no font will be activated";
  if (!Connect()) {
    if (silentProcess_ != 0) return SilenceProblem();
    std::string problem = Launch();
    if (!problem.empty()) return problem;
  }
  return ReadReport(summary);
}

std::string AgentLink::EndOldAgent() const {
  const int process = AgentProcess();
  if (process == 0) return "";
  kill(process, SIGTERM);
  if (WaitUntil([] { return AgentProcess() == 0; }, kPatienceMilliseconds)) return "";
  return sandbox_.AgentExecutable() + ": process " + std::to_string(process) +
         " has read another configuration and does not end";
}

std::string AgentLink::Launch() {
  const std::string agent = sandbox_.AgentExecutable();
  const std::string errors = sandbox_.AgentErrors();
  std::remove(errors.c_str());  // those of the previous agent
  std::string error;
  if (!platform::LaunchDetached(agent, sandbox_.Folder(), errors, &error)) return error;
  // The plug-in finds the agent in the list of running applications, so wait until it is listed.
  const auto isReady = [this] { return Connect() && AgentProcess() != 0; };
  for (int waited = 0; waited < kPatienceMilliseconds; waited += kPatienceAfterLastWords) {
    if (WaitUntil(isReady, kPatienceAfterLastWords)) return "";
    if (!LastWords().empty()) break;
  }
  const std::string words = LastWords();
  return agent + ": the agent did not start" + (words.empty() ? "" : ": " + words);
}

bool AgentLink::Connect() {
  if (socket_) return true;
  // Make the user wait for a stopped agent only once.
  if (silentProcess_ != 0 && silentProcess_ == AgentProcess()) return false;
  silentProcess_ = 0;
  std::error_code error;
  platform::Descriptor socket =
      platform::ConnectLocal(platform::GetPlaces().runtime, agent_protocol::kAgentSocketName, error);
  if (!socket) return false;
  LimitBlocking(socket.Get());
  if (!Ask(socket.Get(), ++lastID_, "Hello", {{"notifications", true}}, nullptr)) {
    silentProcess_ = HasEnded(socket.Get()) ? 0 : AgentProcess();
    return false;
  }
  socket_ = std::move(socket);
  return true;
}

std::string AgentLink::ReadReport(LibrarySummary* summary) {
  ScanProgress progress;
  const auto answer = Ask(socket_.Get(), ++lastID_, "GetScanReport", Json::object(), [&](const Json& notification) {
    if (notification.value("notify", Json()) == PluginInterface::kBulkReplicationProgress) {
      progress.Update(notification.value("payload", Json::object()));
    }
  });
  const std::string agent = sandbox_.AgentExecutable();
  if (!answer) {
    Lose();
    return silentProcess_ != 0 ? SilenceProblem()
                               : agent + ": the agent ended while it read its library: " + LastWords();
  }
  if (answer->code != 0) return agent + ": the agent can't serve fonts: " + LastWords();
  summary->isKnown = true;
  summary->files = answer->result.value("files", size_t{0});
  summary->faces = answer->result.value("faces", size_t{0});
  for (const Json& problem : answer->result.value("problems", Json::array())) {
    summary->problems.push_back({problem.value("path", ""), problem.value("message", "")});
  }
  return "";
}

std::string AgentLink::LastWords() const {
  std::string text;
  if (platform::ReadFile(sandbox_.AgentErrors(), text)) return "";
  while (text.ends_with('\n')) text.pop_back();
  text.erase(0, text.rfind('\n') + 1);
  const std::string own = std::string(agent_protocol::kAgentName) + ": ";
  return text.starts_with(own) ? text.substr(own.size()) : text;
}

void AgentLink::Lose() {
  silentProcess_ = HasEnded(socket_.Get()) ? 0 : AgentProcess();
  socket_.Close();
}

std::string AgentLink::SilenceProblem() const {
  return sandbox_.AgentExecutable() + ": process " + std::to_string(silentProcess_) + " runs but does not answer";
}

bool AgentLink::IsConnected() {
  if (!socket_) return false;
  // Notifications may be pending before the end of the stream.
  for (pollfd ready{socket_.Get(), POLLIN, 0}; poll(&ready, 1, 0) > 0;) {
    std::string ignored;
    if (!platform::ReceiveMessage(socket_.Get(), ignored)) continue;
    socket_.Close();
    return false;
  }
  return true;
}

bool AgentLink::WaitForActivation(int stop) {
  pollfd ready[] = {{socket_.Get(), POLLIN, 0}, {stop, POLLIN, 0}};
  while (socket_ && poll(ready, 2, -1) > 0 && ready[0].revents != 0) {
    std::string text;
    if (platform::ReceiveMessage(socket_.Get(), text)) return false;  // IsConnected notices it, too
    const Json message = Json::parse(text, nullptr, false);
    if (message.is_object() && message.value("notify", Json()) == PluginInterface::kFontActivated) return true;
  }
  return false;
}

size_t AgentLink::CountCandidates(const std::string& postScriptName) {
  if (!socket_) return 0;
  const auto answer = Ask(socket_.Get(), ++lastID_, "GetFontsByPostscriptName",
                          {{"name", postScriptName}, {"workgroupIDs", {kAllWorkgroups}}}, nullptr);
  if (!answer) Lose();
  return answer && answer->code == 0 ? answer->result.value("fontIDs", Json::array()).size() : 0;
}

std::string AgentLink::FileOf(uint32_t fontID) {
  if (!socket_) return "";
  const auto answer = Ask(socket_.Get(), ++lastID_, "GetFontInfoByID", {{"fontID", fontID}}, nullptr);
  if (!answer) Lose();
  if (!answer || answer->code != 0) return "";
  return answer->result.value("record", Json::object()).value("Path", "");
}

}  // namespace console
