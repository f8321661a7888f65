// Closes and reopens a document whose fonts have become active, a little later, so that the host draws it with the real
// fonts. The counters delay that while the host is busy. Main thread only.
#pragma once

#include <string>

#include "platform/RunLoop.h"

// 0 while no document is being handled. Activating fonts can run the host's event loop, so another open or the window
// hook can arrive in the middle. The counter guards against that, not against threads.
extern int gOpenDocumentCallCounter;
// Above 0 while runModalOverride runs.
extern int gShowingAlertCallCounter;

// Starts the timer that closes and reopens the document.
void DeferredReplaceMissingFonts(int documentID);
// Sets the fire date of every pending timer to 1 second from now.
void DelayReplaceMissingFontsTimers();

// Opens a file with the desktop's program for it. Returns true if the starter could be run. Nothing in the plug-in
// calls it.
bool SystemOpenFile(const std::string& path);
// SystemOpenFile as a timer callback; `info` is the path, a std::string.
void timerCallback(platform::RunLoopTimer& timer, void* info);

// Cancels the timers and sets the counters to 0.
void ResetReplaceMissingFontsForTesting();
