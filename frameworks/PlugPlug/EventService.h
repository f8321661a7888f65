// The listeners and extensions of the process, behind the exported functions. Main thread only.
//
// A dispatch calls the listeners that exist when it begins, in the order in which they were added. A listener may add
// and remove listeners and dispatch. A removed listener is not called any more; an added one is called from the next
// event on.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "frameworks/PlugPlug/include/PlugPlugEvents.h"

class EventService {
 public:
  static EventService& Shared();

  // A pair of callback and context is one listener. Adding the same pair again for a type changes nothing.
  csxs::event::EventErrorCode AddListener(const char* type, csxs::event::EventCallback callback, void* context);
  // Returns OperationFailed if there is no such listener.
  csxs::event::EventErrorCode RemoveListener(const char* type, csxs::event::EventCallback callback, void* context);
  // Returns Success even if the type has no listener; the event is then lost. Returns OperationFailed and calls nothing
  // if the event names an extension that is not loaded.
  csxs::event::EventErrorCode Dispatch(const csxs::event::Event& event);

  // The extensions that events may name. Loading twice is a success; unloading one that is not loaded is
  // OperationFailed.
  csxs::event::EventErrorCode LoadExtension(const char* extensionID);
  csxs::event::EventErrorCode UnloadExtension(const char* extensionID);

 private:
  struct Listener {
    std::string type;
    csxs::event::EventCallback callback = nullptr;
    void* context = nullptr;
    bool isRemoved = false;  // a running dispatch may still hold it
  };
  using Listeners = std::vector<std::shared_ptr<Listener>>;
  Listeners::iterator Find(const char* type, csxs::event::EventCallback callback, void* context);

  Listeners listeners_;
  std::set<std::string, std::less<>> extensions_;
  int depth_ = 0;  // of nested dispatches
};
