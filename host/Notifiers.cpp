#include "host/Notifiers.h"

#include <algorithm>

#include "host/HostObjects.h"
#include "host/Problems.h"
#include "host/TypeIDs.h"
#include "platform/RunLoop.h"
#include "platform/Trace.h"

namespace host {

void Notifiers::Add(FourCharCode event, host_sdk::NotifierCallback callback, void* userData) {
  entries_.push_back({event, callback, userData, ++lastSerial_});
}

bool Notifiers::Remove(FourCharCode event, host_sdk::NotifierCallback callback) {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return entry.event == event && entry.callback == callback;
  });
  if (found == entries_.end()) return false;
  entries_.erase(found);
  return true;
}

void Notifiers::Notify(FourCharCode event, const DescriptorData& descriptor) {
  static const std::string sWhat = "Telling the plug-in of an event";
  const auto notify = [&] {
    if (deferrals_ > 0) {
      deferred_.emplace_back(event, descriptor);
      return;
    }
    NotifyDeferred();
    Deliver(event, descriptor);
    NotifyDeferred();
  };
  std::string problem;
  if (!CallGuarded(sWhat, notify, &problem)) platform::ReportProblem(problem);
}

void Notifiers::NotifyDeferred() {
  while (deferrals_ == 0 && !deferred_.empty()) {
    const auto [event, descriptor] = std::move(deferred_.front());
    deferred_.pop_front();
    Deliver(event, descriptor);
  }
}

void Notifiers::EndDeferral() {
  if (--deferrals_ > 0 || deferred_.empty()) return;
  platform::RunLoop::Main().Post([this, alive = std::weak_ptr<int>(alive_)] {
    if (!alive.expired()) NotifyDeferred();
  });
}

void Notifiers::Deliver(FourCharCode event, const DescriptorData& descriptor) {
  const std::vector<Entry> called = entries_;
  for (const Entry& entry : called) {
    const bool isThere =
        std::any_of(entries_.begin(), entries_.end(), [&](const Entry& each) { return each.serial == entry.serial; });
    if (entry.event != event || !isThere) continue;
    auto& descriptors = HostObjects::Shared().descriptors;
    const host_sdk::PIActionDescriptor given = descriptors.Add(descriptor);
    std::string problem;
    const std::string what = "The plug-in's answer to the event \"" + StringOfTypeID(event) + "\"";
    if (!CallGuarded(
            what, [&] { entry.callback(event, given, 0, entry.userData); }, &problem))
      platform::ReportProblem(problem);
    descriptors.Remove(given);
  }
}

}  // namespace host
