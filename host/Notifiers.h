// The callbacks for the host's events. Main thread only.
#pragma once

#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "host/ActionValues.h"

namespace host {

class Notifiers {
 public:
  // A callback that is added twice is called twice.
  void Add(FourCharCode event, host_sdk::NotifierCallback callback, void* userData);
  // Removes the oldest entry with this event and callback; false if there is none.
  bool Remove(FourCharCode event, host_sdk::NotifierCallback callback);
  void Clear() { entries_.clear(); }
  bool IsEmpty() const { return entries_.empty(); }

  // Calls the callbacks of the event in the order in which they were added. Each gets its own descriptor, which is
  // freed after the call. Callbacks may add and remove: a removed callback is not called any more, an added one only
  // for the next event. An exception of a callback is reported, and the others are still called. Throws nothing;
  // running out of memory is reported, too.
  void Notify(FourCharCode event, const DescriptorData& descriptor);
  // Delivers deferred events, unless a deferral is active.
  void NotifyDeferred();

  // Defers events while a plug-in plays events itself. They are delivered after it has returned to the host, at the
  // latest by the run loop, so that nothing re-enters the plug-in and it can first register a new document.
  class Deferral {
   public:
    explicit Deferral(Notifiers& notifiers) : notifiers_(notifiers) { ++notifiers_.deferrals_; }
    ~Deferral() { notifiers_.EndDeferral(); }
    Deferral(const Deferral&) = delete;
    Deferral& operator=(const Deferral&) = delete;

   private:
    Notifiers& notifiers_;
  };

 private:
  struct Entry {
    FourCharCode event;
    host_sdk::NotifierCallback callback;
    void* userData;
    int serial;
  };
  void EndDeferral();
  void Deliver(FourCharCode event, const DescriptorData& descriptor);

  std::vector<Entry> entries_;
  int lastSerial_ = 0;
  int deferrals_ = 0;
  std::deque<std::pair<FourCharCode, DescriptorData>> deferred_;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);  // posted callbacks check whether this object still exists
};

}  // namespace host
