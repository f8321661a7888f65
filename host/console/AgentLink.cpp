#include "host/console/AgentLink.h"

#include <signal.h>

#include <chrono>
#include <cstdio>

#include "agent/client/AgentProcess.h"
#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "host/console/Sandbox.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Presenter.h"
#include "platform/Process.h"
#include "platform/Waiting.h"

namespace console {

namespace {

namespace calls = agent_protocol::calls;
using agent_client::AgentConnection;
using agent_client::AnnouncedAgentProcess;
using agent_protocol::Json;

constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(10);
// An agent that reported an error and does not answer has ended.
constexpr std::chrono::milliseconds kPatienceAfterLastWords = std::chrono::seconds(1);
constexpr uint32_t kAllWorkgroups = 0;

bool IsOfKind(const Json& notification, PluginInterface::ECallbackKind kind) {
  return notification.value("notify", Json()) == kind;
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

  void Update(const Json& notification) {
    const Json payload = notification.value("payload", Json::object());
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

}  // namespace

AgentLink::AgentLink(const Sandbox& sandbox) : sandbox_(sandbox) {}
AgentLink::~AgentLink() = default;

std::string AgentLink::Start(LibrarySummary* summary) {
  if (sandbox_.HasNewAgentConfiguration()) {
    std::string problem = agent_client::EndAgent();
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

std::string AgentLink::Launch() {
  const std::string agent = sandbox_.AgentExecutable();
  const std::string errors = sandbox_.AgentErrors();
  std::remove(errors.c_str());  // those of the previous agent
  std::string error;
  if (!platform::LaunchDetached(agent, sandbox_.Folder(), errors, &error)) return error;
  // The plug-in finds the agent in the list of running applications, so wait until it is listed.
  const auto isReady = [this] { return Connect() && AnnouncedAgentProcess() != 0; };
  for (auto waited = kPatience * 0; waited < kPatience; waited += kPatienceAfterLastWords) {
    if (platform::WaitUntil(kPatienceAfterLastWords, isReady)) return "";
    if (!LastWords().empty()) break;
  }
  const std::string words = LastWords();
  return agent + ": the agent did not start" + (words.empty() ? "" : ": " + words);
}

bool AgentLink::Connect() {
  if (connection_) return true;
  // Make the user wait for a stopped agent only once.
  if (silentProcess_ != 0 && silentProcess_ == AnnouncedAgentProcess()) return false;
  silentProcess_ = 0;
  platform::Descriptor socket = agent_client::ReachAgent(platform::GetPlaces().runtime);
  if (!socket) return false;
  connection_ = std::make_unique<AgentConnection>(
      std::move(socket), [this](const Json& notification) { Deliver(notification); }, [] {});
  if (connection_->Call<calls::Hello>({.notifications = true}).code != agent_protocol::kAgentShutdownCode) return true;
  Lose();
  return false;
}

void AgentLink::Deliver(const Json& notification) {
  const std::lock_guard lock(observing_);
  if (observer_) observer_(notification);
}

void AgentLink::Observe(NotificationHandler observer) {
  const std::lock_guard lock(observing_);
  observer_ = std::move(observer);
}

void AgentLink::ObserveActivations(std::function<void()> observer) {
  if (!observer) return Observe(nullptr);
  Observe([observer = std::move(observer)](const Json& notification) {
    if (IsOfKind(notification, PluginInterface::kFontActivated)) observer();
  });
}

std::string AgentLink::ReadReport(LibrarySummary* summary) {
  ScanProgress progress;
  Observe([&progress](const Json& notification) {
    if (IsOfKind(notification, PluginInterface::kBulkReplicationProgress)) progress.Update(notification);
  });
  const auto reply = connection_->Call<calls::GetScanReport>({});
  Observe(nullptr);
  const std::string agent = sandbox_.AgentExecutable();
  if (reply.code == agent_protocol::kAgentShutdownCode) {
    Lose();
    return silentProcess_ != 0 ? SilenceProblem()
                               : agent + ": the agent ended while it read its library: " + LastWords();
  }
  if (reply.code != agent_protocol::kSuccess) return agent + ": the agent can't serve fonts: " + LastWords();
  summary->isKnown = true;
  summary->files = reply.result.files;
  summary->faces = reply.result.faces;
  for (const auto& problem : reply.result.problems) summary->problems.push_back({problem.path, problem.message});
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
  silentProcess_ = connection_->HasFallenSilent() ? AnnouncedAgentProcess() : 0;
  connection_.reset();
}

std::string AgentLink::SilenceProblem() const {
  return sandbox_.AgentExecutable() + ": process " + std::to_string(silentProcess_) + " runs but does not answer";
}

bool AgentLink::IsConnected() {
  if (connection_ && connection_->HasEnded()) connection_.reset();
  return connection_ != nullptr;
}

bool AgentLink::Answers() { return Ask<calls::GetIsOnline>({}).has_value(); }

size_t AgentLink::CountCandidates(const std::string& postScriptName) {
  const auto found = Ask<calls::GetFontsByPostscriptName>({{postScriptName, {kAllWorkgroups}}});
  return found ? found->fontIDs.size() : 0;
}

std::string AgentLink::FileOf(uint32_t fontID) {
  auto found = Ask<calls::GetFontInfoByID>({fontID});
  return found ? found->record["Path"] : "";
}

}  // namespace console
