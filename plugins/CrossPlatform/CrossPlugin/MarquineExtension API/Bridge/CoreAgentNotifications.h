// The agent's notifications. The thread on which one arrives packs it into a dictionary and queues it; the main thread
// handles it. Packing is in CoreAgentNotificationCallback.cpp, handling in AgentNotificationResponses.cpp.
#pragma once

#include <atomic>
#include <deque>
#include <memory>

#include "ErrorCodes.h"
#include "GMutex.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Value.h"

class CoreAgentInterface;

// One event: a dictionary that contains `true` under the key of its kind (NotificationKeys.h) and, under other keys,
// the event's data.
class CoreAgentPluginNotification {
 public:
  explicit CoreAgentPluginNotification(CoreAgentInterface* agent)
      : mDictionary(platform::Dictionary::Create()), mAgent(agent) {}
  platform::Dictionary& GetDictionary() { return mDictionary; }

  // Changes the plug-in's state and tells the host side. Ignores an unknown kind. Main thread. Returns -1, with nothing
  // done, if there is no font manager, otherwise 0.
  int16_t Respond();

 private:
  platform::Dictionary mDictionary;
  // The font manager that received the event; not owned, may be null. Respond uses the font manager of its own time
  // instead, because this one may be deleted by then.
  CoreAgentInterface* mAgent;
};

// A first-in, first-out queue. The mutex is held for one push or one pop only, never while an event is handled.
class CoreAgentPluginNotificationQueue {
 public:
  ~CoreAgentPluginNotificationQueue();  // drops what is queued
  // Any thread. Takes ownership. Ignores null.
  void EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification);
  // Returns the oldest, or null. Main thread, which is the only consumer.
  std::unique_ptr<CoreAgentPluginNotification> DequeueNotification();
  // Handles all queued notifications, also those that arrive meanwhile, and returns their number. Main thread.
  int ProcessAllNotifications();

 private:
  GMutex mMutex;
  std::atomic<size_t> mCount{0};  // queue length, to see an empty queue without locking
  std::deque<std::unique_ptr<CoreAgentPluginNotification>> mNotifications;
};

// The function that the plug-in registers with the agent's library, which calls it on a thread of its own. `data` is
// the payload of this kind, as AGENT_EVENTS in PluginInterface.h lists it; not owned. Queues the event for the main
// thread. Always returns CoreErrorCodes::kUnknownError. Keep it: libraries have never received another value and ignore
// it.
TModuleErrorCode CoreAgentNotificationCallback(PluginInterface::ECallbackKind kind, void* data);
