// Stream sockets in the file system between programs of one user, and messages on them. A message is a 32-bit length in
// network order and that many bytes. Paths may be of any length, because the socket is accessed through its folder's
// descriptor. All functions may be called on any thread; one thread at a time sends on a socket, and one receives.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Descriptor.h"
#include "platform/Export.h"

namespace platform {

inline constexpr uint32_t kLongestMessage = 64u << 20;

// Listens on the socket `name` in `folder`. Creates the folder with mode 0700 if it is missing; refuses one of another
// user or with a wider mode. Replaces a socket that a dead program left, and fails with std::errc::address_in_use if a
// program serves it. Returns an empty descriptor on failure.
PLATFORM_API Descriptor ListenLocal(const std::string& folder, const std::string& name, std::error_code& error);
// Connects to a socket. Fails with std::errc::permission_denied if another user listens, and with std::errc::timed_out
// after 2 seconds if the listener accepts no connections, for example because it is stopped. Returns an empty
// descriptor on failure.
PLATFORM_API Descriptor ConnectLocal(const std::string& folder, const std::string& name, std::error_code& error);
// Accepts one connection. Closes one from another user and fails with std::errc::permission_denied. Returns an empty
// descriptor on failure.
PLATFORM_API Descriptor AcceptLocal(int listening, std::error_code& error);

// Send or receive one whole message. They block and are not interrupted by signals. The end of the stream gives
// std::errc::connection_reset; a message longer than kLongestMessage gives std::errc::message_size, before anything is
// sent. After another failure close the socket, because half a message may have been transferred.
PLATFORM_API std::error_code SendMessage(int fd, std::string_view message);
PLATFORM_API std::error_code ReceiveMessage(int fd, std::string& message);

}  // namespace platform
