// The messages between the agent and its font unpacker, on a socket with the framing of platform/LocalSocket.h.
//
// A request is the path of a packed font file. The answer is an UnpackAnswer as JSON, and then that many font files.
#pragma once

#include <cstdint>
#include <string>

#include "agent/include/CallTypes.h"

namespace agent {

struct UnpackAnswer {
  std::string problem;  // empty if there are fonts
  uint32_t fonts = 0;
  AGENT_FIELDS(problem, fonts)
};

inline constexpr uint64_t kUnpackMemory = uint64_t{1} << 29;  // bytes of address space of the unpacker
inline constexpr uint32_t kUnpackSeconds = 10;                // of processor time for one request
inline constexpr uint32_t kMostFontsInAFile = 64;
inline constexpr uint32_t kLargestPackedFile = 64u << 20;  // bytes
inline constexpr uint32_t kLargestFont = 60u << 20;        // bytes of all fonts of a file, unpacked

}  // namespace agent
