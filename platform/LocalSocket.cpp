#include "platform/LocalSocket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/Files.h"
#include "platform/LastError.h"

namespace platform {

namespace {

// The address of a socket relative to its folder's descriptor, so that the length of the path does not matter.
sockaddr_un MakeAddress(int folder, const std::string& name, std::error_code& error) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const int length =
      std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder, name.c_str());
  if (length <= 0 || static_cast<size_t>(length) >= sizeof address.sun_path) {
    error = std::make_error_code(std::errc::filename_too_long);
  }
  return address;
}

Descriptor OpenFolder(const std::string& folder, std::error_code& error) {
  Descriptor descriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor) error = LastError();
  return descriptor;
}

Descriptor NewSocket(std::error_code& error) {
  Descriptor descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!descriptor) error = LastError();
  return descriptor;
}

constexpr int kSecondsToConnect = 2;

// 0 means no timeout.
void SetSendTimeout(int fd, int seconds) {
  const timeval timeout{seconds, 0};
  setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
}

bool IsPeerThisUser(int connected) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(connected, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

std::error_code SendAll(int fd, const char* bytes, size_t count) {
  while (count > 0) {
    const ssize_t sent = send(fd, bytes, count, MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) return LastError();
    bytes += sent;
    count -= static_cast<size_t>(sent);
  }
  return {};
}

std::error_code ReceiveAll(int fd, char* bytes, size_t count) {
  while (count > 0) {
    const ssize_t got = recv(fd, bytes, count, 0);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return LastError();
    if (got == 0) return std::make_error_code(std::errc::connection_reset);
    bytes += got;
    count -= static_cast<size_t>(got);
  }
  return {};
}

}  // namespace

Descriptor ConnectLocal(const std::string& folder, const std::string& name, std::error_code& error) {
  error.clear();
  const Descriptor at = OpenFolder(folder, error);
  if (error) return Descriptor();
  const sockaddr_un address = MakeAddress(at.Get(), name, error);
  if (error) return Descriptor();
  Descriptor descriptor = NewSocket(error);
  if (error) return Descriptor();
  SetSendTimeout(descriptor.Get(), kSecondsToConnect);
  if (connect(descriptor.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    error = errno == EAGAIN ? std::make_error_code(std::errc::timed_out) : LastError();
    return Descriptor();
  }
  SetSendTimeout(descriptor.Get(), 0);
  // Another user may have created the folder first and listen in it.
  if (!IsPeerThisUser(descriptor.Get())) {
    error = std::make_error_code(std::errc::permission_denied);
    return Descriptor();
  }
  return descriptor;
}

Descriptor ListenLocal(const std::string& folder, const std::string& name, std::error_code& error) {
  const Descriptor at = OpenPrivateFolder(folder, error);
  if (error) return Descriptor();
  std::error_code unreachable;
  if (ConnectLocal(folder, name, unreachable)) {
    error = std::make_error_code(std::errc::address_in_use);
    return Descriptor();
  }
  unlinkat(at.Get(), name.c_str(), 0);
  const sockaddr_un address = MakeAddress(at.Get(), name, error);
  if (error) return Descriptor();
  Descriptor descriptor = NewSocket(error);
  if (error) return Descriptor();
  if (bind(descriptor.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(descriptor.Get(), 16) != 0) {
    error = LastError();
    return Descriptor();
  }
  return descriptor;
}

Descriptor AcceptLocal(int listening, std::error_code& error) {
  error.clear();
  Descriptor descriptor(accept4(listening, nullptr, nullptr, SOCK_CLOEXEC));
  if (!descriptor) {
    error = LastError();
    return descriptor;
  }
  if (!IsPeerThisUser(descriptor.Get())) {
    error = std::make_error_code(std::errc::permission_denied);
    return Descriptor();
  }
  return descriptor;
}

std::error_code SendMessage(int fd, std::string_view message) {
  if (message.size() > kLongestMessage) return std::make_error_code(std::errc::message_size);
  std::string framed(sizeof(uint32_t), '\0');
  const uint32_t length = htonl(static_cast<uint32_t>(message.size()));
  framed.replace(0, sizeof length, reinterpret_cast<const char*>(&length), sizeof length);
  framed.append(message);
  return SendAll(fd, framed.data(), framed.size());
}

std::error_code ReceiveMessage(int fd, std::string& message) {
  uint32_t length = 0;
  if (const std::error_code error = ReceiveAll(fd, reinterpret_cast<char*>(&length), sizeof length)) return error;
  length = ntohl(length);
  if (length > kLongestMessage) return std::make_error_code(std::errc::message_size);
  message.resize(length);
  return ReceiveAll(fd, message.data(), length);
}

}  // namespace platform
