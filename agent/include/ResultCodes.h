// The result codes of the agent and of its client library: the one list that both sides and their tests use.
//
// The numbers come from the common table of error codes, so people can look them up there. docs/PROTOCOL.md says which
// call gives which code.
#pragma once

#include <cstdint>

namespace agent_protocol {

using ResultCode = uint32_t;

inline constexpr ResultCode kSuccess = 0;

// From the agent.
inline constexpr ResultCode kInvalidParam = 0x04000000;    // an argument is missing, of another type, or out of range
inline constexpr ResultCode kNotFound = 0x07000000;        // no such font or set
inline constexpr ResultCode kNotImplemented = 0x08000000;  // the agent does not serve this call
inline constexpr ResultCode kDatabaseError = 0x0D000000;   // a database cannot be written; agent.log says why
inline constexpr ResultCode kNotSupported = 0x10000000;    // a preview activation failed for at least one font
inline constexpr ResultCode kNotInitialized =
    0x11000000;                                          // too many requests wait for the first scan; a log is not open
inline constexpr ResultCode kUnknownError = 0x15000000;  // the call failed in another way; agent.log says how
inline constexpr ResultCode kInvalidVault = 0x01002008;  // user.db cannot be used
inline constexpr ResultCode kCouldNotCopyFile = 0x04004007;
inline constexpr ResultCode kNotGrantedExport = 0x09004007;  // the right to export a font was taken away
inline constexpr ResultCode kCantDeactivateSystemFonts = 0x08004001;

// From either.
inline constexpr ResultCode kOutOfMemory = 0x06000000;  // no memory, or no further thread

inline constexpr ResultCode kVersionMismatch = 0x0E000000;  // the other side speaks another protocol

// From the library, without the agent.
inline constexpr ResultCode kNullPointer = 0x05000000;
inline constexpr ResultCode kMessageTooLarge = 0x03001009;  // more than the agent takes in one request; it was not sent
inline constexpr ResultCode kInvalidMessage = 0x01004015;   // the agent's reply makes no sense
inline constexpr ResultCode kReplyTimeout = 0x0200100E;     // the agent runs and does not answer
inline constexpr ResultCode kAgentNotFound = 0x02002005;    // several relaunches brought no agent
inline constexpr ResultCode kCouldNotOpenFile = 0x02001004;
inline constexpr ResultCode kCouldNotMakeFolder = 0x03004007;
// The agent is gone: the connection was lost, or no agent listens. Callers relaunch the agent and ask again.
inline constexpr ResultCode kAgentShutdownCode = 0x0200200D;
inline constexpr ResultCode kServiceUnavailableCode = 0x0300100E;

}  // namespace agent_protocol
