// A plug-in: its bundle, its entry, and what the host keeps for it between calls. Main thread only.
#pragma once

#include <string>

#include "host/include/HostSuites.h"
#include "platform/Bundle.h"

namespace host {

class PluginModule {
 public:
  // The results of the calls below are empty or one line that names the bundle.

  // Loads the bundle and finds its entry. A bundle without one is unloaded again.
  std::string Load(const std::string& bundleFolder);
  bool IsLoaded() const { return main_ != nullptr; }
  host_sdk::SPPluginRef Ref() const { return ref_; }  // null until loaded

  // Sends a message. An error that the plug-in answers, and an exception, are a failure.
  std::string Send(const char* caller, const char* selector, host_sdk::PIActionParameters* parameters = nullptr);

  // Forgets bundle and entry. The object stays mapped: a plug-in's timers, its window method and its observers stay behind
  // and end with the process.
  void Release();

 private:
  platform::BundleRef bundle_;
  host_sdk::PluginMain main_ = nullptr;
  host_sdk::SPPluginRef ref_ = nullptr;
  void* globals_ = nullptr;
};

}  // namespace host
