// A document whose fonts have become active is closed and opened again a little later, so that the host draws it with the
// real fonts; and the counters that hold that back while the host is in the middle of something. Main thread only.
#pragma once

#include <string>

#include "platform/RunLoop.h"

// 0 when no open handling is in progress. Activating fonts can run the host's event loop, so that a second open or the
// window hook arrives in the middle; the guard is against that, not against threads.
extern int gOpenDocumentCallCounter;
// Above 0 while the alert override runs.
extern int gShowingAlertCallCounter;

// Arms the timer that closes the document and opens it again.
void DeferredReplaceMissingFonts(int documentID);
// Sets the fire date of every pending timer to 1 second from now.
void DelayReplaceMissingFontsTimers();

// Opens a file with the program that the desktop has for it. True if that program's starter could be run. Nothing in the
// plug-in calls it.
bool SystemOpenFile(const std::string& path);
// The form of a timer's function for the above; info is the path as a std::string.
void timerCallback(platform::RunLoopTimer& timer, void* info);

// No timers, the counters at 0.
void ResetReplaceMissingFontsForTesting();
