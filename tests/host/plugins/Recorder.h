// A plug-in that adds the four notifiers and hands every call of the host on to the test that drives it.
#pragma once

#include "host/include/HostSuites.h"

struct RecorderHooks {
  // Null hooks answer 0. What they throw leaves the plug-in.
  host_sdk::SPErr (*onMessage)(const char* selector, host_sdk::SPMessageData* message) = nullptr;
  host_sdk::SPErr (*onEvent)(host_sdk::FourCharCode event, host_sdk::PIActionDescriptor descriptor) = nullptr;
};
// Exported as "RecorderSetHooks".
using RecorderSetHooksFunction = void (*)(const RecorderHooks& hooks);
