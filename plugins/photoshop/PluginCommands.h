// The command box, and its three commands that work on the current document. Main thread only.
#pragma once

#include "host/include/HostSuites.h"

// Returns 0, or "fbar" if there is no font manager or no user interface.
host_sdk::SPErr HandleCommandBoxAction();
void DoCheckDocFonts();
void DoMakeDocumentSet();
void DoCollectForOutput();
void ShowAbout();
void ShowPreferences();
