// Exceptions and host errors as lines for the user.
#pragma once

#include <string>

#include "host/include/HostSuites.h"

namespace host {

// "'Parm' (1348565613)", or the number alone where it spells no code.
std::string DescribeHostError(host_sdk::SPErr error);

// In a handler only: what the exception now handled is. Plug-ins throw integers as host errors.
std::string DescribeCurrentException();

// Runs code of a plug-in. What it throws becomes one line, "WHAT: ...", in *problem; true if nothing was thrown.
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
