// The agent's notifications: packed on the thread on which they arrive, queued, and handled on the main thread.
#pragma once

#include <atomic>
#include <deque>
#include <memory>

#include "ErrorCodes.h"
#include "GMutex.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Value.h"

class CoreAgentInterface;

// One event: a dictionary with a boolean under the key of its kind, and the payload beside it.
class CoreAgentPluginNotification {
 public:
  explicit CoreAgentPluginNotification(CoreAgentInterface* agent)
      : mDictionary(platform::Dictionary::Create()), mAgent(agent) {}
  platform::Dictionary& GetDictionary() { return mDictionary; }

  // Handles the event. Main thread. Returns -1 if there is no manager, otherwise 0.
  int16_t Respond();

 private:
  platform::Dictionary mDictionary;
  CoreAgentInterface* mAgent;  // not owned
};

// A first-in, first-out queue. The mutex is held for one push or one pop only.
class CoreAgentPluginNotificationQueue {
 public:
  ~CoreAgentPluginNotificationQueue();
  // Any thread. Takes ownership. Ignores null.
  void EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification);
  // Returns the oldest, or null. Main thread, which is the only consumer.
  std::unique_ptr<CoreAgentPluginNotification> DequeueNotification();
  // Handles all queued notifications and returns their number.
  int ProcessAllNotifications();

 private:
  GMutex mMutex;
  std::atomic<size_t> mCount{0};  // queue length, to see an empty queue without locking
  std::deque<std::unique_ptr<CoreAgentPluginNotification>> mNotifications;
};

// Registered with the agent. Always returns CoreErrorCodes::kUnknownError, which is what the agent has always received.
TModuleErrorCode CoreAgentNotificationCallback(PluginInterface::ECallbackKind kind, void* data);
