// The plug-in's front door: the one entry that the host calls, for everything. Main thread only.
#pragma once

#include <cstdint>
#include <string>

// caller and selector: "SP Interface" with "Startup", "Shutdown" or "About"; "PS Photoshop" with "Do It". message is the
// host's SPMessageData; null does nothing. Returns 0 or a host error; a suite that the host does not give is such an error.
//
// The host must expect exceptions all the same, from the entry as from the notifiers and timers that a start adds: a start
// that can't have its globals from the host throws the host's error as a long, and what a library throws in the middle of
// the work (std::bad_alloc, for example) passes through. Only "Shutdown" lets nothing out.
extern "C" __attribute__((visibility("default"))) int32_t AutoPluginMain(const char* caller, const char* selector,
                                                                         void* message);

// Cleared when the plug-in is loaded. Hosts that load the plug-in by a file put its name here; this host does not.
extern std::string gPluginFileName;

// Every static back to its first state; a timer that runs is ended.
void ResetPluginMainForTesting();
