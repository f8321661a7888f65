// The error code of the core library and the agent interface.
//
// Bits 31 to 24 are the number of the error within its class, 23 to 12 the package (0 general, 1 core library, 2 agent
// SDK and data, 4 agent services, 7 other), 11 to 0 the class within the package. 0 is success.
#pragma once

#include <cstdint>
#include <string>

using TModuleErrorCode = uint32_t;

namespace CoreErrorCodes {
inline constexpr TModuleErrorCode kSuccess = 0x00000000;
inline constexpr TModuleErrorCode kError = 0x01000000;
inline constexpr TModuleErrorCode kFatalError = 0x02000000;
inline constexpr TModuleErrorCode kUnstatic = 0x03000000;
inline constexpr TModuleErrorCode kInvalidParam = 0x04000000;
inline constexpr TModuleErrorCode kNullPointer = 0x05000000;
inline constexpr TModuleErrorCode kOutOfMemory = 0x06000000;
inline constexpr TModuleErrorCode kNotFound = 0x07000000;
inline constexpr TModuleErrorCode kNotImplemented = 0x08000000;
inline constexpr TModuleErrorCode kItemAlreadyExists = 0x09000000;
inline constexpr TModuleErrorCode kItemNotHandled = 0x0A000000;
inline constexpr TModuleErrorCode kIndexOutOfRange = 0x0C000000;
inline constexpr TModuleErrorCode kDatabaseError = 0x0D000000;
inline constexpr TModuleErrorCode kVersionMismatch = 0x0E000000;
inline constexpr TModuleErrorCode kNotANumber = 0x0F000000;
inline constexpr TModuleErrorCode kNotSupported = 0x10000000;
inline constexpr TModuleErrorCode kNotInitialized = 0x11000000;
inline constexpr TModuleErrorCode kAlreadyInitialized = 0x12000000;
inline constexpr TModuleErrorCode kMissingParam = 0x13000000;
inline constexpr TModuleErrorCode kStopped = 0x14000000;
inline constexpr TModuleErrorCode kUnknownError = 0x15000000;
}  // namespace CoreErrorCodes

// Returns the name of a code, or "Unknown error code" for an unknown one. Any thread.
std::string GetNameForErrorCode(TModuleErrorCode code);
// Returns the code of a name, or CoreErrorCodes::kUnknownError for an unknown one. Any thread.
TModuleErrorCode GetErrorCodeForName(const std::string& name);
