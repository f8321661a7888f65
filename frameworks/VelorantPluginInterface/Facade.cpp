#include "frameworks/VelorantPluginInterface/Facade.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <thread>

#include "agent/client/AgentProcess.h"
#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/Guarded.h"
#include "frameworks/VelorantPluginInterface/Notifications.h"
#include "frameworks/VelorantPluginInterface/ResultCodes.h"
#include "platform/Folders.h"
#include "platform/Waiting.h"

namespace plugin_interface {

namespace {

using agent_client::IsAgentProcessRunning;
using agent_client::ReachAgent;

constexpr int kMostRelaunches = 5;
constexpr auto kBetweenLooks = std::chrono::milliseconds(250);  // between checks for another process's agent

// A just launched agent does not listen yet. Callers relaunch without a pause and do not check again whether it is
// running, so wait here while its process exists. Without a socket, `hasEnded` tells whether there is no process.
platform::Descriptor AwaitAgent(const std::string& runtimeFolder, AgentConnection::Patience patience, bool& hasEnded) {
  platform::Descriptor socket;
  hasEnded = false;
  platform::WaitUntil(patience, [&] {
    socket = ReachAgent(runtimeFolder);
    hasEnded = !socket && !IsAgentProcessRunning(runtimeFolder);
    return socket || hasEnded;
  });
  // Another agent may have begun to listen between the two.
  return hasEnded ? ReachAgent(runtimeFolder) : std::move(socket);
}

struct Facades {
  std::atomic<bool> isSilent = false;
  std::atomic<bool> expectsAgent = false;
  std::atomic<AgentConnection::Patience> patience = AgentConnection::kPatience;

  std::mutex mutex;  // guards what follows
  std::condition_variable discarded;
  std::shared_ptr<Facade> current;
  PluginInterface::FacadeHandle lastHandle = 0;
  int relaunches = 0;  // since the last connection
  HeldFonts held;

  // Detaches a facade whose agent is gone if another agent answers, and creates one if there is none. Call with the
  // mutex locked, but retire the returned facade without it: retiring waits for a reader thread, which may be in a
  // callback that calls here.
  std::shared_ptr<Facade> Renew(const std::string& runtimeFolder) {
    std::shared_ptr<Facade> replaced;
    if (current && current->IsLost() && !isSilent && ReachAgent(current->RuntimeFolder())) {
      replaced = std::move(current);
    }
    if (!current) current = std::make_shared<Facade>(++lastHandle, held, runtimeFolder);
    return replaced;
  }
};

// Leaked on purpose: a reader thread may still run when the process ends.
Facades& All() {
  static auto* facades = new Facades;
  return *facades;
}

// Runs on a reader thread that has nothing more to read. Waits until the lost facade is discarded or an agent answers.
void ReturnToNextAgent() {
  Facades& all = All();
  std::shared_ptr<Facade> renewed;
  std::shared_ptr<Facade> replaced;
  {
    std::unique_lock lock(all.mutex);
    while (!replaced) {
      if (!all.current || !all.current->IsLost()) return;
      const std::string runtimeFolder = all.current->RuntimeFolder();
      replaced = all.Renew(runtimeFolder);
      if (!replaced) all.discarded.wait_for(lock, kBetweenLooks);
    }
    renewed = all.current;
  }
  replaced->Retire();
  // A dying agent's socket accepts connections a moment longer than the agent keeps them, so repeat.
  while (IsAgentGone(Guarded([&] { return renewed->Connect(); }))) {
    std::unique_lock lock(all.mutex);
    if (all.current == renewed) all.discarded.wait_for(lock, kBetweenLooks);
    if (all.current != renewed) return;
  }
}

// Waits until the agent has answered a greeting, which may take forever, or has ended.
void AwaitVoice(const std::string& runtimeFolder) {
  const auto hasAnsweredOrEnded = [&runtimeFolder] {
    const platform::Descriptor socket = ReachAgent(runtimeFolder);
    // Without a socket the agent does not listen yet, or accepts no more connections.
    if (!socket) return !IsAgentProcessRunning(runtimeFolder);
    agent_client::AnswersGreeting(socket, platform::kForever);
    return true;
  };
  platform::WaitUntil(platform::kForever, hasAnsweredOrEnded, kBetweenLooks);
}

// From now on callers do not wait for this agent. If no thread can be created to notice its answer, they have to.
void NoteSilence(const std::string& runtimeFolder) {
  Facades& all = All();
  if (all.isSilent.exchange(true)) return;
  const uint32_t code = Guarded([&] {
    std::thread([&all, runtimeFolder] {
      Guarded([&] {
        AwaitVoice(runtimeFolder);
        return kSuccess;
      });
      all.isSilent = false;
      // Connect to get the fonts of open documents back, as after a restart of the agent.
      Guarded([] { return CurrentFacade()->Connect(); });
    }).detach();
    return kSuccess;
  });
  if (code != kSuccess) all.isSilent = false;
}

void NoteAndDeliver(const nlohmann::json& notification) {
  if (notification.value("notify", nlohmann::json()) == PluginInterface::kAgentShutdown) All().expectsAgent = false;
  Deliver(notification);
}

uint32_t CodeWithoutAgent() {
  Facades& all = All();
  const std::lock_guard lock(all.mutex);
  if (all.relaunches < kMostRelaunches) return kServiceUnavailableCode;
  all.relaunches = 0;  // the next command may try again
  return kAgentNotFound;
}

}  // namespace

bool IsAgentSilent() { return All().isSilent; }
bool ExpectsAgent() { return All().expectsAgent; }
void SetPatienceForTesting(AgentConnection::Patience patience) { All().patience = patience; }

Facade::ConnectionRef Facade::Connection() const {
  const std::lock_guard lock(mutex_);
  return connection_;
}

bool Facade::IsRetired() const {
  const std::lock_guard lock(mutex_);
  return isRetired_;
}

bool Facade::IsConnected() const {
  const ConnectionRef connection = Connection();
  return connection && !connection->HasEnded();  // the reader thread may not have noticed the end yet
}

bool Facade::IsLost() const {
  const ConnectionRef connection = Connection();
  return connection && connection->IsLost();
}

void Facade::AwaitLastWords() const {
  const ConnectionRef connection = Connection();
  if (connection && connection->HasEnded()) connection->AwaitDelivery();
}

uint32_t Facade::Connect() {
  if (IsAgentSilent()) return kReplyTimeout;
  const std::lock_guard one(connecting_);
  {
    const std::lock_guard lock(mutex_);
    if (isRetired_) return kAgentShutdownCode;
    if (connection_) return connection_->IsLost() ? kAgentShutdownCode : kSuccess;
  }
  return IsAgentSilent() ? kReplyTimeout : ConnectAlone();
}

uint32_t Facade::ConnectAlone() {
  uint32_t code = kSuccess;
  // The socket of a killed agent accepts connections until the system has cleaned up, so try again as long as there is
  // one. Callers would relaunch the agent several times, and tell the user that it does not run.
  platform::WaitUntil(All().patience, [&] {
    bool hasEnded = false;
    platform::Descriptor socket = AwaitAgent(runtimeFolder_, All().patience, hasEnded);
    const bool isThere = static_cast<bool>(socket);
    code = isThere ? ConnectThrough(std::move(socket)) : CodeWithoutSocket(hasEnded);
    return !isThere || !IsAgentGone(code) || IsRetired();
  });
  return code;
}

// Do not look for the process again here: an agent that was launched since then is not silent.
uint32_t Facade::CodeWithoutSocket(bool hasEnded) {
  if (hasEnded) return CodeWithoutAgent();
  NoteSilence(runtimeFolder_);
  return kReplyTimeout;
}

uint32_t Facade::ConnectThrough(platform::Descriptor socket) {
  const auto connection =
      std::make_shared<AgentConnection>(std::move(socket), NoteAndDeliver, ReturnToNextAgent, All().patience);
  const uint32_t code = Greet(*connection);
  if (connection->HasFallenSilent()) {
    NoteSilence(runtimeFolder_);
    return kReplyTimeout;
  }
  if (code != kSuccess) return code;
  {
    const std::lock_guard lock(All().mutex);
    All().relaunches = 0;
  }
  All().expectsAgent = true;
  {
    const std::lock_guard lock(mutex_);
    if (isRetired_) return kAgentShutdownCode;
    connection_ = connection;
  }
  // Request notifications last: a callback may call the library and needs the connection.
  return connection->Call<calls::SetNotifications>({.wanted = true}).code;
}

uint32_t Facade::Greet(AgentConnection& connection) {
  const auto hello = connection.Call<calls::Hello>({.notifications = false});
  if (hello.code != kSuccess) return hello.code;
  if (hello.result.protocol != agent_protocol::kProtocolVersion) return kVersionMismatch;
  uint32_t code = AskAgainFor<calls::RestoreActivations>(connection, HoldKind::kDocument);
  if (code == kSuccess) {
    constexpr uint32_t kKind = agent_protocol::kPreviewActivated;
    code = AskAgainFor<calls::ActivateFonts>(connection, HoldKind::kDesign, kKind);
  }
  return code != kSuccess ? code : AskAgainFor<calls::PreviewActivateFonts>(connection, HoldKind::kTemporary);
}

template <class Call, class... More>
uint32_t Facade::AskAgainFor(AgentConnection& connection, HoldKind kind, More... more) {
  const std::vector<uint32_t> ids = held_.Of(kind);
  if (ids.empty()) return kSuccess;
  const Reply<Call> restored = connection.Call<Call>({ids, more...});
  if (IsAgentGone(restored.code) || restored.code == kInvalidMessage) return restored.code;
  held_.Remove(restored.result.failed);
  return kSuccess;
}

void Facade::StopWaiting() const { NoteSilence(runtimeFolder_); }

void Facade::Disconnect(bool keepFonts) {
  ConnectionRef connection;
  {
    const std::lock_guard lock(mutex_);
    connection = std::move(connection_);
    connection_ = nullptr;
  }
  if (connection && keepFonts) connection->Call<calls::KeepActivations>({});
  if (keepFonts) {
    held_.Clear();
    // This process is done with the agent, which may end without saying so.
    All().expectsAgent = false;
  }
  if (connection) connection->Close();
}

void Facade::Retire() {
  {
    const std::lock_guard lock(mutex_);
    isRetired_ = true;
  }
  Disconnect(false);
}

std::shared_ptr<Facade> CurrentFacade() {
  Facades& all = All();
  std::shared_ptr<Facade> replaced;
  std::shared_ptr<Facade> current;
  {
    const std::lock_guard lock(all.mutex);
    replaced = all.Renew(platform::GetPlaces().runtime);
    current = all.current;
  }
  if (replaced) replaced->Retire();
  return current;
}

std::shared_ptr<Facade> FacadeOf(PluginInterface::FacadeHandle handle, uint32_t& code) {
  Facades& all = All();
  const std::lock_guard lock(all.mutex);
  code = kSuccess;
  if (all.current && all.current->Handle() == handle) return all.current;
  code = handle == 0 || handle > all.lastHandle ? kInvalidParam : kAgentShutdownCode;
  return nullptr;
}

void DiscardFacade(bool keepFonts) {
  Facades& all = All();
  std::shared_ptr<Facade> discarded;
  {
    const std::lock_guard lock(all.mutex);
    discarded = std::move(all.current);
    all.current = nullptr;
    ++all.relaunches;
    all.discarded.notify_all();
  }
  if (!discarded) return;
  if (keepFonts) discarded->Disconnect(true);
  discarded->Retire();
}

HeldFonts& ProcessFonts() { return All().held; }

}  // namespace plugin_interface
