// Names of the host's codes, for log lines. Main thread only.
#pragma once

#include <span>
#include <string>

#include "host/include/HostSuites.h"

struct PSConstant {
  uint32_t code;
  const char* name;
};

// This host's constants, in the order of its terminology file. Other codes have no name here.
extern const std::span<const PSConstant> PSConstA;

// The name of a key: its constant's; for a key that got its code at run time, the host's name; for an unknown key, its
// four characters in apostrophes.
std::string KeyName(host_sdk::FourCharCode key);
