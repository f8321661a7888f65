// A plug-in that adds the four notifiers and passes each call of the host to the test.
#pragma once

#include "host/include/HostSuites.h"

struct RecorderHooks {
  // A null hook returns 0. Exceptions of hooks leave the plug-in.
  host_sdk::SPErr (*onMessage)(const char* selector, host_sdk::SPMessageData* message) = nullptr;
  host_sdk::SPErr (*onEvent)(host_sdk::FourCharCode event, host_sdk::PIActionDescriptor descriptor) = nullptr;
};
// Exported as "RecorderSetHooks".
using RecorderSetHooksFunction = void (*)(const RecorderHooks& hooks);
