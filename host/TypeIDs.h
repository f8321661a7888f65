// The codes of the host's events, classes, keys and values, and the names that stand for them.
#pragma once

#include <string>
#include <string_view>

#include "host/include/HostSuites.h"

namespace host {

using host_sdk::FourCharCode;

inline constexpr FourCharCode kEventOpen = host_sdk::Code("Opn ");
inline constexpr FourCharCode kEventMake = host_sdk::Code("Mk  ");
inline constexpr FourCharCode kEventClose = host_sdk::Code("Cls ");
inline constexpr FourCharCode kEventSave = host_sdk::Code("save");
inline constexpr FourCharCode kEventSelect = host_sdk::Code("slct");

inline constexpr FourCharCode kClassApplication = host_sdk::Code("capp");
inline constexpr FourCharCode kClassDocument = host_sdk::Code("Dcmn");

inline constexpr FourCharCode kKeyTarget = host_sdk::Code("null");
inline constexpr FourCharCode kKeyIn = host_sdk::Code("In  ");
inline constexpr FourCharCode kKeyNew = host_sdk::Code("Nw  ");
inline constexpr FourCharCode kKeySaving = host_sdk::Code("Svng");
inline constexpr FourCharCode kKeyDocumentID = host_sdk::Code("DocI");
inline constexpr FourCharCode kKeyFileReference = host_sdk::Code("FilR");
inline constexpr FourCharCode kKeyIsDirty = host_sdk::Code("IsDr");
inline constexpr FourCharCode kKeyTitle = host_sdk::Code("Ttl ");
inline constexpr FourCharCode kKeyNumberOfDocuments = host_sdk::Code("NmbD");
inline constexpr FourCharCode kKeyOperation = host_sdk::Code("Oper");
inline constexpr FourCharCode kKeyServerPort = host_sdk::Code("SPor");

inline constexpr FourCharCode kTypeOrdinal = host_sdk::Code("Ordn");
inline constexpr FourCharCode kEnumTarget = host_sdk::Code("Trgt");
inline constexpr FourCharCode kTypeYesNo = host_sdk::Code("YsN ");
inline constexpr FourCharCode kEnumYes = host_sdk::Code("Ys  ");
inline constexpr FourCharCode kEnumNo = host_sdk::Code("N   ");

// The code of a name: the fixed one, or one made for the name at its first use, the same for the life of the process.
FourCharCode TypeIDOfString(std::string_view name);
// Empty for a code that has no name.
std::string StringOfTypeID(FourCharCode code);

}  // namespace host
