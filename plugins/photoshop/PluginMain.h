// The plug-in's front door: the one entry that the host calls, for everything. Main thread only.
#pragma once

#include <cstdint>

// caller and selector: "SP Interface" with "Startup", "Shutdown" or "About"; "PS Photoshop" with "Do It". message is the
// host's SPMessageData; null does nothing. 0 or a host error. A start that can't have its globals from the host throws the
// host's error as a long; nothing else is thrown.
extern "C" __attribute__((visibility("default"))) int32_t AutoPluginMain(const char* caller, const char* selector,
                                                                         void* message);

// Every static back to its first state; a timer that runs is ended.
void ResetPluginMainForTesting();
