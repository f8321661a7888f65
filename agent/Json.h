// JSON as the wire and the configuration use it.
#pragma once

#include "agent/include/CallEncoding.h"

namespace agent {

using agent_protocol::Json;
using agent_protocol::ToText;

}  // namespace agent
