// JSON for the socket and the configuration.
#pragma once

#include "agent/include/CallEncoding.h"

namespace agent {

using agent_protocol::Json;
using agent_protocol::ToText;

}  // namespace agent
