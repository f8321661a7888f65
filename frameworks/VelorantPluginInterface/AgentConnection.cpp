#include "frameworks/VelorantPluginInterface/AgentConnection.h"

#include <sys/socket.h>

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include "agent/include/MessageDepth.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace plugin_interface {

// Shared with the reader thread, which may outlive the connection when a notification's receiver ends it.
struct AgentConnection::State {
  platform::Descriptor socket;
  NotificationHandler onNotification;
  void (*onLost)() = nullptr;

  std::mutex sending;  // one message at a time

  std::mutex mutex;  // guards what follows
  std::condition_variable replied;
  std::map<uint64_t, CallResult> replies;
  uint64_t lastID = 0;
  bool isLost = false;
  bool isClosed = false;  // by this side
  std::thread::id reader;
  bool readerHasEnded = false;
  std::condition_variable readerEnded;

  std::deque<Json> notifications;  // read and not yet delivered; the reader thread's alone

  bool ReadOne();
  void Lose();
};

// Reads one message and puts it where it belongs; false if there is none to come.
bool AgentConnection::State::ReadOne() {
  std::string text;
  if (platform::ReceiveMessage(socket.Get(), text)) return false;
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
  CallResult reply{message["code"].get<uint32_t>()};
  if (message.contains("result")) reply.result = std::move(message["result"]);
  const std::lock_guard lock(mutex);
  replies[message["id"].get<uint64_t>()] = std::move(reply);
  replied.notify_all();
  return true;
}

void AgentConnection::State::Lose() {
  {
    const std::lock_guard lock(mutex);
    if (isLost) return;
    isLost = true;
    replied.notify_all();
  }
  shutdown(socket.Get(), SHUT_RDWR);
}

AgentConnection::AgentConnection(platform::Descriptor socket, NotificationHandler onNotification, void (*onLost)())
    : state_(std::make_shared<State>()) {
  state_->socket = std::move(socket);
  state_->onNotification = std::move(onNotification);
  state_->onLost = onLost;
  // On its own from the start: a lost connection may lie about for long before somebody takes it down.
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

CallResult AgentConnection::Call(const char* name, Json arguments) {
  const CallResult gone{PluginInterface::kAgentShutdownCode};
  uint64_t id = 0;
  bool isReader = false;
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->isLost) return gone;
    id = ++state_->lastID;
    isReader = state_->reader == std::this_thread::get_id();
  }
  const std::string text = Json{{"id", id}, {"call", name}, {"arguments", std::move(arguments)}}.dump(
      -1, ' ', false, Json::error_handler_t::replace);
  {
    const std::lock_guard lock(state_->sending);
    if (platform::SendMessage(state_->socket.Get(), text)) state_->Lose();
  }
  std::unique_lock lock(state_->mutex);
  while (!state_->isLost && !state_->replies.contains(id)) {
    if (!isReader) {
      state_->replied.wait(lock);
      continue;
    }
    lock.unlock();
    if (!state_->ReadOne()) state_->Lose();
    lock.lock();
  }
  const auto reply = state_->replies.extract(id);
  return reply ? std::move(reply.mapped()) : gone;
}

void AgentConnection::Close() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->isClosed = true;
  }
  state_->Lose();
}

bool AgentConnection::IsLost() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isLost;
}

}  // namespace plugin_interface
