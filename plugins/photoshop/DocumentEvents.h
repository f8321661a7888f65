// The host's document notifiers turned into font work: what happens, in which order, when a document is opened, made,
// saved or closed. Main thread only.
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
// Catches documents that the host has opened but not yet told of.
void DetectAndHandleNewlyOpenedDocuments(bool silently);

// From the list of a document's font names to fonts that are active. Always -1, also after success; callers look at
// numFontsActivated.
int ActivateFontsForDocument(bool bOpeningNewDocument, int& numFontsActivated, const std::string& filePath,
                             OneTrackedDocument* document);

// The document's fonts with their database records, for a slug or a set. 0, or -43 if no font array could be read; where a
// look-up failed another status, with what was found. A slug is only written after 0.
int CreateGlyphsureDataForDocument(const std::string& path, platform::Array& out, long workgroupID, bool allInfo,
                                   bool& allFontsFound);
void UpdateGlyphsureSlugsForDocument(const std::string& path);
void RemoveAllGlyphsureSlugsForDocument(const std::string& path);

// The counters back to their first state.
void ResetDocumentEventsForTesting();
