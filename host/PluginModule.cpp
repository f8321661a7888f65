#include "host/PluginModule.h"

#include "host/ObjectTable.h"
#include "host/Problems.h"
#include "host/Suites.h"

namespace host {

namespace {
constexpr const char* kEntry = "AutoPluginMain";
}

std::string PluginModule::Load(const std::string& bundleFolder) {
  std::string problem;
  platform::BundleRef bundle = platform::Bundle::Create(bundleFolder, &problem);
  if (!bundle) return "The plug-in cannot be loaded: " + problem;
  // Runs the plug-in's static constructors.
  bool isLoaded = false;
  if (!CallGuarded(
          bundle->Folder() + " was loaded", [&] { isLoaded = bundle->Load(&problem); }, &problem) ||
      !isLoaded) {
    return "The plug-in cannot be loaded: " + problem;
  }
  const auto entry = reinterpret_cast<host_sdk::PluginMain>(bundle->FunctionForName(kEntry));
  if (!entry) {
    bundle->Unload();
    return "The plug-in cannot be loaded: " + bundle->Folder() + " has no function \"" + kEntry + "\"";
  }
  bundle_ = std::move(bundle);
  main_ = entry;
  ref_ = reinterpret_cast<host_sdk::SPPluginRef>(NextObjectNumber());
  return "";
}

std::string PluginModule::Send(const char* caller, const char* selector, host_sdk::PIActionParameters* parameters) {
  if (!main_) return "No plug-in is loaded";
  host_sdk::SPMessageData message = {ref_, globals_, &BasicSuite(), parameters};
  host_sdk::SPErr error = host_sdk::kNoErr;
  std::string problem;
  const std::string what = bundle_->Folder() + ": \"" + selector + "\" failed";
  const bool returned = CallGuarded(
      what, [&] { error = main_(caller, selector, &message); }, &problem);
  globals_ = message.globals;
  if (!returned) return problem;
  return error == host_sdk::kNoErr ? "" : what + ": error " + DescribeHostError(error);
}

void PluginModule::Release() {
  bundle_.reset();
  main_ = nullptr;
  ref_ = nullptr;
  globals_ = nullptr;
}

}  // namespace host
