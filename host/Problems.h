// Converts exceptions and host errors to lines for the user.
#pragma once

#include <string>

#include "host/include/HostSuites.h"

namespace host {

// Returns "'Parm' (1348565613)", or only the number if it is not a four-character code.
std::string DescribeHostError(host_sdk::SPErr error);

// Call in a catch block only: describes the current exception. Plug-ins throw integers as host errors.
std::string DescribeCurrentException();

// Runs code of a plug-in. Returns true if it did not throw; otherwise *problem receives one line, "WHAT: ...".
template <class Call>
bool CallGuarded(const std::string& what, const Call& call, std::string* problem) {
  try {
    call();
    return true;
  } catch (...) {
    *problem = what + ": " + DescribeCurrentException();
    return false;
  }
}

}  // namespace host
