// What the plug-in does when the host opens, makes, saves or closes a document, and in which order. Main thread only.
#pragma once

#include <string>

#include "host/include/HostSuites.h"
#include "photoshop/ReplaceMissingFonts.h"
#include "platform/Value.h"

class OneTrackedDocument;

host_sdk::SPErr OpenEvent(host_sdk::FourCharCode event, host_sdk::PIActionDescriptor descriptor, int32_t options,
                          void* userData);
host_sdk::SPErr MakeEvent(host_sdk::FourCharCode event, host_sdk::PIActionDescriptor descriptor, int32_t options,
                          void* userData);
host_sdk::SPErr SaveEvent(host_sdk::FourCharCode event, host_sdk::PIActionDescriptor descriptor, int32_t options,
                          void* userData);
host_sdk::SPErr CloseEvent(host_sdk::FourCharCode event, host_sdk::PIActionDescriptor descriptor, int32_t options,
                           void* userData);

void HandleOpenedDocument(const std::string& path, bool silently);
void HandleClosedDocument();
// Finds and handles documents that the host has opened but not announced yet.
void DetectAndHandleNewlyOpenedDocuments(bool silently);

// Activates the fonts of a document. Always returns -1, also on success; callers use numFontsActivated.
int ActivateFontsForDocument(bool bOpeningNewDocument, int& numFontsActivated, const std::string& filePath,
                             OneTrackedDocument* document);

// Builds an array of the document's fonts with their database records, for a slug or a set. Returns 0, or -43 if no
// font array could be read. If a look-up failed, returns its status with what was found. Write a slug only after 0.
int CreateGlyphsureDataForDocument(const std::string& path, platform::Array& out, long workgroupID, bool allInfo,
                                   bool& allFontsFound);
void UpdateGlyphsureSlugsForDocument(const std::string& path);
void RemoveAllGlyphsureSlugsForDocument(const std::string& path);

// Resets the counters.
void ResetDocumentEventsForTesting();
