// The messages between the agent and its preview worker, on a socket with the framing of platform/LocalSocket.h.
//
// A request is a RenderRequest as JSON, and the path of the font file. The answer is a RenderAnswer as JSON, and, if
// that has no problem, the two pictures.
#pragma once

#include <cstdint>
#include <string>

#include "agent/include/AgentCalls.h"

namespace agent {

// All lengths are in pixels of the picture for ordinary screens. The second picture, for dense screens, has twice as
// many in each direction.
struct RenderRequest {
  uint32_t faceIndex = 0;
  std::string name;       // UTF-8
  uint32_t textSize = 0;  // of the em square
  uint32_t width = 0;     // the greatest; the picture of a short name is narrower
  uint32_t height = 0;
  bool inFallback = false;  // do not open the font
  AGENT_FIELDS(faceIndex, name, textSize, width, height, inFallback)
};

struct RenderAnswer {
  std::string problem;     // empty if there are pictures
  bool couldOpen = false;  // the font itself was opened
  AGENT_FIELDS(problem, couldOpen)
};

// Limits of a request, in pixels.
inline constexpr uint32_t kSmallestTextSize = 4, kLargestTextSize = 200;
inline constexpr uint32_t kLargestWidth = 4000;
inline constexpr uint32_t kSmallestHeight = 4, kLargestHeight = 400;

inline constexpr uint64_t kRenderMemory = uint64_t{1} << 29;  // bytes of address space of the worker
inline constexpr uint32_t kRenderSeconds = 3;                 // of processor time for one request

}  // namespace agent
