// Stream sockets in the file system for programs of one user, and their messages: a 32-bit length in network order, then
// that many bytes. Path names of any length are served (the socket is reached through its folder's descriptor).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Descriptor.h"
#include "platform/Export.h"

namespace platform {

inline constexpr uint32_t kLongestMessage = 64u << 20;

// Listens in a folder of mode 0700 that belongs to this user (made if missing, refused otherwise); a socket left by a
// dead program is replaced, one that a living program serves is refused with std::errc::address_in_use.
PLATFORM_API Descriptor ListenLocal(const std::string& folder, const std::string& name, std::error_code& error);
// Refuses a listener of another user with std::errc::permission_denied. A listener that takes no more connections, as one
// whose program has stopped, gives std::errc::timed_out after 2 seconds.
PLATFORM_API Descriptor ConnectLocal(const std::string& folder, const std::string& name, std::error_code& error);
// Takes one connection and checks that the peer is this user; others are closed with std::errc::permission_denied.
PLATFORM_API Descriptor AcceptLocal(int listening, std::error_code& error);

// Whole messages; blocking. Interrupted calls go on. The end of the stream gives std::errc::connection_reset, a length
// above kLongestMessage std::errc::message_size.
PLATFORM_API std::error_code SendMessage(int fd, std::string_view message);
PLATFORM_API std::error_code ReceiveMessage(int fd, std::string& message);

}  // namespace platform
