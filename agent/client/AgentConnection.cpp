#include "agent/client/AgentConnection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "agent/include/MessageDepth.h"
#include "platform/Trace.h"
#include "platform/Waiting.h"

namespace agent_client {

namespace {

using Clock = std::chrono::steady_clock;  // does not advance while the machine sleeps

// The probe, which the agent answers at any time, and its ID. Nobody waits for its reply.
using Probe = agent_protocol::calls::GetIsOnline;
constexpr uint64_t kProbeID = 0;
// The agent does nothing else while it copies files to a slow disk.
using LongCall = agent_protocol::calls::ExportFonts;
constexpr int kLongCallFactor = 30;

bool IsLongCall(const char* name) { return std::strcmp(name, agent_protocol::CallName<LongCall>::kText) == 0; }

std::chrono::milliseconds TimeUntil(Clock::time_point end) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
  return std::max(left, std::chrono::milliseconds(1));
}

bool IsReadableBefore(int socket, Clock::time_point end) {
  pollfd ready{socket, POLLIN, 0};
  return poll(&ready, 1, static_cast<int>(TimeUntil(end).count())) > 0;
}

// Sets the time after which a blocked operation on the socket fails; 0 for never.
void SetTimeout(int socket, int option, std::chrono::milliseconds time) {
  timeval value{};
  value.tv_sec = time.count() / 1000;
  value.tv_usec = static_cast<suseconds_t>(time.count() % 1000 * 1000);
  setsockopt(socket, SOL_SOCKET, option, &value, sizeof value);
}

// True as soon as the other side has closed its end. Reads nothing.
bool IsHungUp(int socket) {
  pollfd polled{socket, 0, 0};
  return poll(&polled, 1, 0) > 0;
}

}  // namespace

platform::Descriptor ReachAgent(const std::string& runtimeFolder) {
  std::error_code error;
  platform::Descriptor socket = platform::ConnectLocal(runtimeFolder, agent_protocol::kAgentSocketName, error);
  if (socket) return socket;
  const std::string now = RuntimeFolderOf(StateFolderAt(runtimeFolder));
  if (now == runtimeFolder) return socket;
  return platform::ConnectLocal(now, agent_protocol::kAgentSocketName, error);
}

bool AnswersGreeting(const platform::Descriptor& socket, std::chrono::milliseconds patience) {
  if (patience != platform::kForever) SetTimeout(socket.Get(), SO_RCVTIMEO, patience);
  const std::string hello = agent_protocol::RequestText<agent_protocol::calls::Hello>(1, {});
  std::string reply;
  return !platform::SendMessage(socket.Get(), hello) && !platform::ReceiveMessage(socket.Get(), reply);
}

// Shared with the reader thread, which may outlive the connection if a notification handler deletes it.
struct AgentConnection::State {
  platform::Descriptor socket;
  NotificationHandler onNotification;
  LostHandler onLost;
  Patience patience = kPatience;

  std::mutex sending;  // one message at a time

  std::mutex mutex;  // guards what follows
  std::condition_variable replied;
  std::map<uint64_t, RawReply> replies;
  uint64_t lastID = 0;
  bool isLost = false;
  bool isSilent = false;  // lost because the agent was silent
  bool isClosed = false;  // closed by this side
  Clock::time_point lastHeard;
  std::thread::id reader;
  bool readerHasEnded = false;
  std::condition_variable readerEnded;

  std::deque<Json> notifications;  // not yet delivered; used by the reader thread only

  bool ReadOne();
  bool ReadOneBefore(Clock::time_point end);
  void Send(const std::string& request);
  void Lose(bool silent = false);
};

// Reads one message and stores it as a reply or notification. Returns false when the connection ends or the message is
// malformed.
bool AgentConnection::State::ReadOne() {
  std::string text;
  if (platform::ReceiveMessage(socket.Get(), text)) return false;
  {
    const std::lock_guard lock(mutex);
    lastHeard = Clock::now();
  }
  if (agent_protocol::IsTooDeep(text)) return false;
  Json message = Json::parse(text, nullptr, false);
  if (!message.is_object()) return false;
  if (message.contains("notify")) {
    notifications.push_back(std::move(message));
    return true;
  }
  if (!message.contains("id") || !message["id"].is_number_unsigned() || !message.contains("code") ||
      !message["code"].is_number_unsigned() || message["code"].get<uint64_t>() > UINT32_MAX) {
    return false;
  }
  RawReply reply{message["code"].get<uint32_t>()};
  if (message.contains("result")) reply.result = std::move(message["result"]);
  const uint64_t id = message["id"].get<uint64_t>();
  const std::lock_guard lock(mutex);
  if (id != kProbeID) replies[id] = std::move(reply);
  replied.notify_all();
  return true;
}

// The reader thread only, because it changes the socket's timeout.
bool AgentConnection::State::ReadOneBefore(Clock::time_point end) {
  SetTimeout(socket.Get(), SO_RCVTIMEO, TimeUntil(end));
  const bool hasRead = ReadOne();
  SetTimeout(socket.Get(), SO_RCVTIMEO, {});
  return hasRead;
}

// A stopped agent reads nothing: once the socket buffer is full, this fails after the patience.
void AgentConnection::State::Send(const std::string& request) {
  const std::lock_guard lock(sending);
  const std::error_code error = platform::SendMessage(socket.Get(), request);
  if (error) Lose(error == std::errc::resource_unavailable_try_again);
}

void AgentConnection::State::Lose(bool silent) {
  {
    const std::lock_guard lock(mutex);
    if (isLost) return;
    isLost = true;
    isSilent = silent;
    replied.notify_all();
  }
  shutdown(socket.Get(), SHUT_RDWR);
}

AgentConnection::AgentConnection(platform::Descriptor socket, NotificationHandler onNotification, LostHandler onLost,
                                 Patience patience)
    : state_(std::make_shared<State>()) {
  state_->socket = std::move(socket);
  state_->onNotification = std::move(onNotification);
  state_->onLost = std::move(onLost);
  state_->patience = patience;
  SetTimeout(state_->socket.Get(), SO_SNDTIMEO, patience);
  // Detached from the start, because a lost connection may exist for a long time before it is deleted.
  std::thread([state = state_] { ReadUntilLost(state); }).detach();
}

AgentConnection::~AgentConnection() {
  Close();
  std::unique_lock lock(state_->mutex);
  if (state_->reader == std::this_thread::get_id()) return;
  state_->readerEnded.wait(lock, [this] { return state_->readerHasEnded; });
}

void AgentConnection::ReadUntilLost(const std::shared_ptr<State>& state) {
  {
    const std::lock_guard lock(state->mutex);
    state->reader = std::this_thread::get_id();
  }
  while (state->ReadOne()) {
    while (!state->notifications.empty()) {
      const Json notification = std::move(state->notifications.front());
      state->notifications.pop_front();
      state->onNotification(notification);
    }
  }
  state->Lose();
  bool wasClosed = false;
  {
    const std::lock_guard lock(state->mutex);
    wasClosed = state->isClosed;
    state->readerHasEnded = true;
    state->readerEnded.notify_all();
  }
  if (!wasClosed) state->onLost();
}

AgentConnection::RawReply AgentConnection::CallByName(const char* name, Json arguments) {
  uint64_t id = 0;
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->isLost) return {agent_protocol::kAgentShutdownCode};
    id = ++state_->lastID;
  }
  const std::string text = agent_protocol::ToText({{"id", id}, {"call", name}, {"arguments", std::move(arguments)}});
  // The agent would end the connection, and everything active for this client would be given back.
  if (text.size() > agent_protocol::kLongestRequest) {
    platform::ReportProblem(std::string(name) + ": a request of " + std::to_string(text.size()) +
                            " bytes is more than the agent takes; it was not sent");
    return {agent_protocol::kMessageTooLarge};
  }
  state_->Send(text);
  return AwaitReply(id, IsLongCall(name) ? state_->patience * kLongCallFactor : state_->patience);
}

AgentConnection::RawReply AgentConnection::AwaitReply(uint64_t id, Patience patience) {
  State& state = *state_;
  std::unique_lock lock(state.mutex);
  const bool isReader = state.reader == std::this_thread::get_id();
  const Clock::time_point sent = Clock::now();
  Clock::time_point probed;  // start of the silence in which the probe was sent
  while (!state.isLost && !state.replies.contains(id)) {
    const Clock::time_point quietSince = std::max(sent, state.lastHeard);
    const bool hasProbed = probed == quietSince;
    const Clock::time_point end = quietSince + (hasProbed ? patience : patience / 2);
    if (Clock::now() < end) {
      if (!isReader) {
        state.replied.wait_until(lock, end);
        continue;
      }
      lock.unlock();
      if (IsReadableBefore(state.socket.Get(), end) && !state.ReadOneBefore(quietSince + patience)) {
        state.Lose(Clock::now() >= quietSince + patience);
      }
    } else if (hasProbed) {
      lock.unlock();
      state.Lose(true);
    } else {
      probed = quietSince;
      lock.unlock();
      state.Send(agent_protocol::RequestText<Probe>(kProbeID, {}));
    }
    lock.lock();
  }
  const auto reply = state.replies.extract(id);
  return reply ? std::move(reply.mapped()) : RawReply{agent_protocol::kAgentShutdownCode};
}

void AgentConnection::Close() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->isClosed = true;
  }
  state_->Lose();
}

void AgentConnection::AwaitDelivery() const {
  constexpr auto kLongest = std::chrono::seconds(1);
  std::unique_lock lock(state_->mutex);
  if (state_->reader == std::this_thread::get_id()) return;
  state_->readerEnded.wait_for(lock, kLongest, [this] { return state_->readerHasEnded; });
}

bool AgentConnection::IsLost() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isLost;
}

bool AgentConnection::HasEnded() const { return IsLost() || IsHungUp(state_->socket.Get()); }

bool AgentConnection::HasFallenSilent() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isSilent;
}

}  // namespace agent_client
