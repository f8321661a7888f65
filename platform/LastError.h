// The error of the system call that failed last on this thread, for functions that return std::error_code.
#pragma once

#include <cerrno>
#include <system_error>

namespace platform {

inline std::error_code LastError() { return {errno, std::generic_category()}; }

}  // namespace platform
