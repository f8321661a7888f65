#include "host/plugins/Recorder.h"

#include <cstring>

using namespace host_sdk;

namespace {

RecorderHooks sHooks;
constexpr FourCharCode kEvents[] = {Code("Opn "), Code("Mk  "), Code("Cls "), Code("save")};

SPErr Notified(FourCharCode event, PIActionDescriptor descriptor, int32_t, void*) {
  return sHooks.onEvent ? sHooks.onEvent(event, descriptor) : kNoErr;
}

SPErr SetNotifiers(const SPMessageData& message, bool add) {
  const void* suite = nullptr;
  SPErr error = message.basic->AcquireSuite(kPSActionControlSuite, kPSActionControlSuiteVersion, &suite);
  if (error != kNoErr) return error;
  const auto* control = static_cast<const PSActionControlSuite*>(suite);
  for (const FourCharCode event : kEvents) {
    if (error != kNoErr) break;
    error = add ? control->AddNotify(message.self, event, Notified, nullptr)
                : control->RemoveNotify(message.self, event, Notified);
  }
  message.basic->ReleaseSuite(kPSActionControlSuite, kPSActionControlSuiteVersion);
  return error;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void RecorderSetHooks(const RecorderHooks& hooks) { sHooks = hooks; }

extern "C" __attribute__((visibility("default"))) int32_t AutoPluginMain(const char*, const char* selector,
                                                                         void* data) {
  auto* message = static_cast<SPMessageData*>(data);
  SPErr error = sHooks.onMessage ? sHooks.onMessage(selector, message) : kNoErr;
  if (error == kNoErr && std::strcmp(selector, "Startup") == 0) error = SetNotifiers(*message, true);
  if (error == kNoErr && std::strcmp(selector, "Shutdown") == 0) error = SetNotifiers(*message, false);
  return error;
}
