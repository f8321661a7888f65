// Who is told of which event. Main thread only.
#pragma once

#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "host/ActionValues.h"

namespace host {

class Notifiers {
 public:
  // The same callback added twice is called twice.
  void Add(FourCharCode event, host_sdk::NotifierCallback callback, void* userData);
  // Takes away the first that was added for this event; false if there is none.
  bool Remove(FourCharCode event, host_sdk::NotifierCallback callback);
  void Clear() { entries_.clear(); }
  bool IsEmpty() const { return entries_.empty(); }

  // Calls those added for the event, in the order of adding, each with a descriptor of its own that is freed after the
  // call. Callbacks may add and remove: who is removed is not called any more, who is added only next time. What leaves a
  // callback as an exception is reported, and the others are still called. Throws nothing: without memory for the call, that
  // is reported too.
  void Notify(FourCharCode event, const DescriptorData& descriptor);
  // Delivers what was deferred, unless a deferral goes on.
  void NotifyDeferred();

  // While a plug-in plays events itself: what it does is told after it has returned to the host, at the latest from the
  // run loop, so that nothing re-enters it and it can first take note of a new document.
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
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);  // what was posted looks whether this object is there
};

}  // namespace host
