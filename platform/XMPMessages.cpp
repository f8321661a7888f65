#include "platform/XMPMessages.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string_view>

namespace platform {

namespace {

using Clock = std::chrono::steady_clock;
using Header = std::array<uint32_t, 5>;  // kind, number, scans, sizes of path and packet

bool SendAll(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(sent));
  }
  return true;
}

bool WaitForInput(int socket, Clock::time_point deadline) {
  for (;;) {
    // Round up to avoid a busy last wait.
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd input{socket, POLLIN, 0};
    const int ready = poll(&input, 1, static_cast<int>(std::clamp<int64_t>(left, 0, INT_MAX)));
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return false;
    if (ready == 0 && Clock::now() >= deadline) return false;
  }
}

bool ReceiveAll(int socket, char* bytes, size_t size, Clock::time_point deadline) {
  while (size > 0) {
    if (!WaitForInput(socket, deadline)) return false;
    const ssize_t got = recv(socket, bytes, size, 0);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    bytes += got;
    size -= static_cast<size_t>(got);
  }
  return true;
}

}  // namespace

bool SendXMPMessage(int socket, const XMPMessage& message) {
  if (message.path.size() > kLargestXMPText || message.packet.size() > kLargestXMPText) return false;
  const Header header = {message.kind, message.number, message.scans, static_cast<uint32_t>(message.path.size()),
                         static_cast<uint32_t>(message.packet.size())};
  return SendAll(socket, {reinterpret_cast<const char*>(header.data()), sizeof header}) &&
         SendAll(socket, message.path) && SendAll(socket, message.packet);
}

bool ReceiveXMPMessage(int socket, XMPMessage& message, Clock::time_point deadline) {
  Header header;
  if (!ReceiveAll(socket, reinterpret_cast<char*>(header.data()), sizeof header, deadline)) return false;
  const auto [kind, number, scans, pathSize, packetSize] = header;
  if (pathSize > kLargestXMPText || packetSize > kLargestXMPText) return false;
  message = {kind, number, scans, std::string(pathSize, '\0'), std::string(packetSize, '\0')};
  return ReceiveAll(socket, message.path.data(), pathSize, deadline) &&
         ReceiveAll(socket, message.packet.data(), packetSize, deadline);
}

}  // namespace platform
