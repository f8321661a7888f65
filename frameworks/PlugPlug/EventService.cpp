#include "frameworks/PlugPlug/EventService.h"

#include <algorithm>

using csxs::event::EventCallback;
using csxs::event::EventErrorCode;
using csxs::event::kEventErrorCode_InvalidParam;
using csxs::event::kEventErrorCode_OperationFailed;
using csxs::event::kEventErrorCode_Success;

namespace {

bool IsNamed(const char* text) { return text && *text; }

// Counts a dispatch until the end of the scope, also when a listener throws.
class Depth {
 public:
  explicit Depth(int& depth) : depth_(depth) { ++depth_; }
  ~Depth() { --depth_; }
  Depth(const Depth&) = delete;
  Depth& operator=(const Depth&) = delete;

 private:
  int& depth_;
};

// Limits the nesting, so that listeners which dispatch endlessly do not overflow the stack.
constexpr int kDeepestDispatch = 64;

}  // namespace

EventService& EventService::Shared() {
  static EventService sShared;
  return sShared;
}

EventService::Listeners::iterator EventService::Find(const char* type, EventCallback callback, void* context) {
  return std::find_if(listeners_.begin(), listeners_.end(), [&](const auto& listener) {
    return listener->callback == callback && listener->context == context && listener->type == type;
  });
}

EventErrorCode EventService::AddListener(const char* type, EventCallback callback, void* context) {
  if (!IsNamed(type) || !callback) return kEventErrorCode_InvalidParam;
  if (Find(type, callback, context) != listeners_.end()) return kEventErrorCode_Success;
  listeners_.push_back(std::make_shared<Listener>(Listener{type, callback, context}));
  return kEventErrorCode_Success;
}

EventErrorCode EventService::RemoveListener(const char* type, EventCallback callback, void* context) {
  if (!IsNamed(type) || !callback) return kEventErrorCode_InvalidParam;
  const auto found = Find(type, callback, context);
  if (found == listeners_.end()) return kEventErrorCode_OperationFailed;
  (*found)->isRemoved = true;
  listeners_.erase(found);
  return kEventErrorCode_Success;
}

EventErrorCode EventService::Dispatch(const csxs::event::Event& event) {
  if (!IsNamed(event.type)) return kEventErrorCode_InvalidParam;
  if (IsNamed(event.extensionID) && !extensions_.contains(event.extensionID)) return kEventErrorCode_OperationFailed;
  if (depth_ >= kDeepestDispatch) return kEventErrorCode_OperationFailed;
  const Depth depth(depth_);
  Listeners called;
  for (const auto& listener : listeners_) {
    if (listener->type == event.type) called.push_back(listener);
  }
  for (const auto& listener : called) {
    if (!listener->isRemoved) listener->callback(&event, listener->context);
  }
  return kEventErrorCode_Success;
}

EventErrorCode EventService::LoadExtension(const char* extensionID) {
  if (!IsNamed(extensionID)) return kEventErrorCode_InvalidParam;
  extensions_.insert(extensionID);
  return kEventErrorCode_Success;
}

EventErrorCode EventService::UnloadExtension(const char* extensionID) {
  if (!IsNamed(extensionID)) return kEventErrorCode_InvalidParam;
  return extensions_.erase(extensionID) > 0 ? kEventErrorCode_Success : kEventErrorCode_OperationFailed;
}
