// What the library itself answers, where the agent does not; the numbers are those of the common table of error codes.
#pragma once

#include <cstdint>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace plugin_interface {

using PluginInterface::TModuleErrorCode;

inline constexpr TModuleErrorCode kSuccess = 0;
inline constexpr TModuleErrorCode kInvalidParam = 0x04000000;
inline constexpr TModuleErrorCode kNullPointer = 0x05000000;
inline constexpr TModuleErrorCode kOutOfMemory = 0x06000000;
inline constexpr TModuleErrorCode kNotFound = 0x07000000;
inline constexpr TModuleErrorCode kVersionMismatch = 0x0E000000;
inline constexpr TModuleErrorCode kNotInitialized = 0x11000000;
inline constexpr TModuleErrorCode kAgentNotFound = 0x02002005;
inline constexpr TModuleErrorCode kReplyTimeout = 0x0200100E;    // the agent runs and does not answer
inline constexpr TModuleErrorCode kInvalidMessage = 0x01004015;  // the agent's answer is none
inline constexpr TModuleErrorCode kCouldNotOpenFile = 0x02001004;
inline constexpr TModuleErrorCode kCouldNotMakeFolder = 0x03004007;

// Whoever gets one of these relaunches the agent and asks again.
inline bool IsAgentGone(TModuleErrorCode code) {
  return code == PluginInterface::kAgentShutdownCode || code == PluginInterface::kServiceUnavailableCode;
}

// Nothing can be asked now, for whatever reason.
inline bool IsUnreachable(TModuleErrorCode code) {
  return IsAgentGone(code) || code == kAgentNotFound || code == kReplyTimeout;
}

}  // namespace plugin_interface
