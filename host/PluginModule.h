// A plug-in: its bundle, its entry function, and the globals that the host keeps for it between calls. Main thread
// only.
#pragma once

#include <string>

#include "host/include/HostSuites.h"
#include "platform/Bundle.h"

namespace host {

class PluginModule {
 public:
  // The functions below return an empty text or one line that names the bundle.

  // Loads the bundle and finds its entry function. Unloads a bundle without one.
  std::string Load(const std::string& bundleFolder);
  bool IsLoaded() const { return main_ != nullptr; }
  host_sdk::SPPluginRef Ref() const { return ref_; }  // null until loaded

  // Sends a message. An error code of the plug-in and an exception are failures.
  std::string Send(const char* caller, const char* selector, host_sdk::PIActionParameters* parameters = nullptr);

  // Forgets the bundle and its entry. The code stays loaded, because timers, the window method and observers of the
  // plug-in may remain until the process ends.
  void Release();

 private:
  platform::BundleRef bundle_;
  host_sdk::PluginMain main_ = nullptr;
  host_sdk::SPPluginRef ref_ = nullptr;
  void* globals_ = nullptr;
};

}  // namespace host
