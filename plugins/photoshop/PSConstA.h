// Names of the host's codes, for lines of the log. Main thread only.
#pragma once

#include <span>
#include <string>

#include "host/include/HostSuites.h"

struct PSConstant {
  uint32_t code;
  const char* name;
};

// This host's own constants, in the order of its terminology file. A code that is not among them has no name here.
extern const std::span<const PSConstant> PSConstA;

// The name of a key: that of its constant; for a key that got its code while the host runs, the host's own name of it; for
// one that nobody knows its four characters between apostrophes.
std::string KeyName(host_sdk::FourCharCode key);
