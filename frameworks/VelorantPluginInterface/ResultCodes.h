// Groups the result codes of agent_protocol for the library.
#pragma once

#include "agent/include/ResultCodes.h"

namespace plugin_interface {

using namespace agent_protocol;  // the calls and their codes
using TModuleErrorCode = agent_protocol::ResultCode;

// Callers that get one of these relaunch the agent and try again.
inline bool IsAgentGone(TModuleErrorCode code) { return code == kAgentShutdownCode || code == kServiceUnavailableCode; }

// The agent cannot be asked now, for whatever reason.
inline bool IsUnreachable(TModuleErrorCode code) {
  return IsAgentGone(code) || code == kAgentNotFound || code == kReplyTimeout;
}

}  // namespace plugin_interface
