// What the XMP worker may use.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr uint64_t kWorkerMemory = uint64_t{1} << 30;  // bytes of address space
inline constexpr int kWorkerOutOfMemory = 3;                  // its exit status when it needs more
inline constexpr uint32_t kPatienceFactor = 3;                // real time, as a multiple of its processor time

// The sanitizers reserve far more address space than that for tables of their own, so that their builds go without the
// limit of memory. And they report on standard error, where else only the library's remarks on damaged files would go.
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
