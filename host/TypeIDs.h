// The codes of the host's events, classes, keys and values, and their names.
#pragma once

#include <string>
#include <string_view>

#include "host/include/HostTerminology.h"

namespace host {

using host_sdk::FourCharCode;

inline constexpr FourCharCode kEventOpen = host_sdk::eventOpen;
inline constexpr FourCharCode kEventMake = host_sdk::eventMake;
inline constexpr FourCharCode kEventClose = host_sdk::eventClose;
inline constexpr FourCharCode kEventSave = host_sdk::eventSave;
inline constexpr FourCharCode kEventSelect = host_sdk::eventSelect;

inline constexpr FourCharCode kClassApplication = host_sdk::classApplication;
inline constexpr FourCharCode kClassDocument = host_sdk::classDocument;

inline constexpr FourCharCode kKeyTarget = host_sdk::keyTarget;
inline constexpr FourCharCode kKeyIn = host_sdk::keyIn;
inline constexpr FourCharCode kKeyNew = host_sdk::keyNew;
inline constexpr FourCharCode kKeySaving = host_sdk::keySaving;
inline constexpr FourCharCode kKeyDocumentID = host_sdk::keyDocumentID;
inline constexpr FourCharCode kKeyFileReference = host_sdk::keyFileReference;
inline constexpr FourCharCode kKeyIsDirty = host_sdk::keyIsDirty;
inline constexpr FourCharCode kKeyTitle = host_sdk::keyTitle;
inline constexpr FourCharCode kKeyNumberOfDocuments = host_sdk::keyNumberOfDocuments;
inline constexpr FourCharCode kKeyOperation = host_sdk::keyOperation;
inline constexpr FourCharCode kKeyServerPort = host_sdk::keyServerPort;

inline constexpr FourCharCode kTypeOrdinal = host_sdk::typeOrdinal;
inline constexpr FourCharCode kEnumTarget = host_sdk::enumTarget;
inline constexpr FourCharCode kTypeYesNo = host_sdk::typeYesNo;
inline constexpr FourCharCode kEnumYes = host_sdk::enumYes;
inline constexpr FourCharCode kEnumNo = host_sdk::enumNo;

// Returns the code of a name: a fixed one, or one that is created at the first use and stays the same for the life of
// the process.
FourCharCode TypeIDOfString(std::string_view name);
// Returns an empty text for a code without a name.
std::string StringOfTypeID(FourCharCode code);

}  // namespace host
