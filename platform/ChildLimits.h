// What a helper program (see ChildProgram.h) may use.
#pragma once

#include <cstdint>

#include "platform/Export.h"

namespace platform {

inline constexpr int kChildOutOfMemory = 3;    // exit status when it needs more memory than allowed
inline constexpr uint32_t kChildPatience = 3;  // real time as a multiple of processor time

// Call first in the program. It then dies with its parent, leaves no core dump, and ends with kChildOutOfMemory if it
// needs more than `memory` bytes of address space. What libraries print on standard error is dropped.
PLATFORM_API void LimitChild(uint64_t memory);
// Call for each request. The program ends by SIGXCPU or SIGALRM if the request takes more than `seconds` of processor
// time, or kChildPatience times as much real time, whether or not anybody still waits for the answer. EndChildTime ends
// the limit of real time.
PLATFORM_API void LimitChildTime(uint32_t seconds);
PLATFORM_API void EndChildTime();

// Sanitizers reserve much more address space, so their builds have no memory limit. They report to standard error,
// where otherwise only the library's remarks on damaged files go.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kIsSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif
#else
inline constexpr bool kIsSanitized = false;
#endif

}  // namespace platform
