// What the agent reports, packed on whatever thread it comes and worked through on the main thread.
#pragma once

#include <atomic>
#include <deque>
#include <memory>

#include "ErrorCodes.h"
#include "GMutex.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Value.h"

class CoreAgentInterface;

// One event: a boolean under the key of its kind, and the payload beside it.
class CoreAgentPluginNotification {
 public:
  explicit CoreAgentPluginNotification(CoreAgentInterface* agent)
      : mDictionary(platform::Dictionary::Create()), mAgent(agent) {}
  platform::Dictionary& GetDictionary() { return mDictionary; }

  // Does the event's work. Main thread. -1 when no manager exists, otherwise 0.
  int16_t Respond();

 private:
  platform::Dictionary mDictionary;
  CoreAgentInterface* mAgent;  // not owned
};

// In order of arrival. The mutex is held for one push or one pop only.
class CoreAgentPluginNotificationQueue {
 public:
  ~CoreAgentPluginNotificationQueue();
  // Any thread; takes it over; a null one is ignored.
  void EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification);
  // The oldest, or null. Main thread, the only consumer.
  std::unique_ptr<CoreAgentPluginNotification> DequeueNotification();
  // Responds to all; how many there were.
  int ProcessAllNotifications();

 private:
  GMutex mMutex;
  std::atomic<size_t> mCount{0};  // of what is queued, so that an empty queue is seen without the lock
  std::deque<std::unique_ptr<CoreAgentPluginNotification>> mNotifications;
};

// Registered with the agent. The result is CoreErrorCodes::kUnknownError on every path: that is what the agent always got.
TModuleErrorCode CoreAgentNotificationCallback(PluginInterface::ECallbackKind kind, void* data);
