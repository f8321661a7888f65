// The limits of the XMP worker.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr uint64_t kWorkerMemory = uint64_t{1} << 30;  // bytes of address space
inline constexpr int kWorkerOutOfMemory = 3;                  // exit status when it needs more
inline constexpr uint32_t kPatienceFactor = 3;                // real time as a multiple of processor time

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
