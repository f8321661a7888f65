// The command box and the three commands behind its buttons that act on the current document. Main thread only.
#pragma once

#include "host/include/HostSuites.h"

// 0, or "fbar" if no font manager or no user-interface object exists.
host_sdk::SPErr HandleCommandBoxAction();
void DoCheckDocFonts();
void DoMakeDocumentSet();
void DoCollectForOutput();
void ShowAbout();
void ShowPreferences();
