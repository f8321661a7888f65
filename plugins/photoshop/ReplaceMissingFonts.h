// Makes the host draw a document with its real fonts once they are active: closes and reopens the document, a few
// seconds after it was handled. Each document has a timer, which waits while one of the counters says that the host is
// busy. Main thread only.
#pragma once

#include <string>

#include "platform/RunLoop.h"

// The number of documents that are being handled. Activating fonts can run the host's event loop, so another open or
// the window hook can arrive in the middle. The counter guards against that, not against threads.
extern int gOpenDocumentCallCounter;
// Above 0 while runModalOverride runs.
extern int gShowingAlertCallCounter;

// Starts the timer that closes and reopens the document with this handle of the host. Its delay is a preference; a
// negative one means never. Does nothing without a user interface, which has the preferences.
void DeferredReplaceMissingFonts(int documentID);
// Sets the fire date of every pending timer to 1 second from now.
void DelayReplaceMissingFontsTimers();

// Opens a file with the desktop's program for it. Returns true if xdg-open could be started. Keep it and timerCallback,
// although nothing in the plug-in calls them: they are part of what its sources offer.
bool SystemOpenFile(const std::string& path);
// SystemOpenFile as a timer callback; `info` is the path, a std::string.
void timerCallback(platform::RunLoopTimer& timer, void* info);

// Cancels the timers and sets the counters to 0.
void ResetReplaceMissingFontsForTesting();
