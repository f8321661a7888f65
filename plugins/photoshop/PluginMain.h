// The plug-in's entry: the one function that the host calls. Main thread only.
#pragma once

#include <cstdint>
#include <string>

// `caller` and `selector` are "SP Interface" with "Startup", "Shutdown" or "About", or "PS Photoshop" with "Do It".
// `message` is the host's SPMessageData; null does nothing. Returns 0 or a host error, which can also be that of a
// missing suite.
//
// The host must be prepared for exceptions from the entry, and from the notifiers and timers that a start adds. A start
// that cannot allocate its globals throws the host's error as a long. Exceptions of libraries (std::bad_alloc, for
// example) pass through. Only "Shutdown" never throws.
extern "C" __attribute__((visibility("default"))) int32_t AutoPluginMain(const char* caller, const char* selector,
                                                                         void* message);

// Empty after loading. Hosts that load the plug-in from a file store its name here; this host does not.
extern std::string gPluginFileName;

// Resets all statics and stops a running timer.
void ResetPluginMainForTesting();
