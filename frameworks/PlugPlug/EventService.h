// The listeners and extensions of the process, behind the exported functions. Main thread only.
//
// A dispatch calls the listeners that were there when it began, in the order of adding. A listener may add and remove
// listeners and dispatch again: one removed meanwhile is not called any more, one added meanwhile is called from the next
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

  // The same callback with another context is another listener; the same pair for one type counts once.
  csxs::event::EventErrorCode AddListener(const char* type, csxs::event::EventCallback callback, void* context);
  // OperationFailed if there is no such listener.
  csxs::event::EventErrorCode RemoveListener(const char* type, csxs::event::EventCallback callback, void* context);
  // Success also if nobody listens to the type: the event is lost. OperationFailed if the event names an extension that is
  // not loaded; then nobody is called.
  csxs::event::EventErrorCode Dispatch(const csxs::event::Event& event);

  // What may be named in events. Loading twice is no error; unloading what is not loaded is OperationFailed.
  csxs::event::EventErrorCode LoadExtension(const char* extensionID);
  csxs::event::EventErrorCode UnloadExtension(const char* extensionID);

 private:
  struct Listener {
    std::string type;
    csxs::event::EventCallback callback = nullptr;
    void* context = nullptr;
    bool isRemoved = false;  // while a dispatch still holds it
  };
  using Listeners = std::vector<std::shared_ptr<Listener>>;
  Listeners::iterator Find(const char* type, csxs::event::EventCallback callback, void* context);

  Listeners listeners_;
  std::set<std::string, std::less<>> extensions_;
  int depth_ = 0;  // of dispatches within dispatches
};
