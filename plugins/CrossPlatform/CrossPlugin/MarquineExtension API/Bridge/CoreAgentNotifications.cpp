#include "Bridge/CoreAgentNotifications.h"

#include "GScopedLock.h"

CoreAgentPluginNotificationQueue::~CoreAgentPluginNotificationQueue() {
  const GScopedLock lock(mMutex);
  mNotifications.clear();
}

void CoreAgentPluginNotificationQueue::EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification) {
  if (!notification) return;
  const GScopedLock lock(mMutex);
  mNotifications.push_back(std::move(notification));
  ++mCount;
}

std::unique_ptr<CoreAgentPluginNotification> CoreAgentPluginNotificationQueue::DequeueNotification() {
  // There is one consumer, so a count above 0 cannot fall before the pop.
  if (mCount == 0) return nullptr;
  const GScopedLock lock(mMutex);
  std::unique_ptr<CoreAgentPluginNotification> oldest = std::move(mNotifications.front());
  mNotifications.pop_front();
  --mCount;
  return oldest;
}

int CoreAgentPluginNotificationQueue::ProcessAllNotifications() {
  int handled = 0;
  std::unique_ptr<CoreAgentPluginNotification> current = DequeueNotification();
  while (current) {
    // Take the next one before the current one responds.
    std::unique_ptr<CoreAgentPluginNotification> next = DequeueNotification();
    current->Respond();
    ++handled;
    current = std::move(next);
  }
  return handled;
}
