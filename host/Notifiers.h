// Who is told of which event. Main thread only.
#pragma once

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
  // callback as an exception is reported, and the others are still called.
  void Notify(FourCharCode event, const DescriptorData& descriptor);

 private:
  struct Entry {
    FourCharCode event;
    host_sdk::NotifierCallback callback;
    void* userData;
    int serial;
  };
  std::vector<Entry> entries_;
  int lastSerial_ = 0;
};

}  // namespace host
