#include "panelcat/Conversation.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>

namespace panelcat {

namespace {

constexpr size_t kBufferSize = 65'536;
constexpr size_t kLongestMessage = 64u << 20;

bool IsMomentary() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

}  // namespace

Conversation::Conversation(uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (!socket_ || connect(socket_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::system_error(errno, std::generic_category(), "port " + std::to_string(port));
  }
}

bool Conversation::ReadInput() {
  char buffer[kBufferSize];
  const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
  if (count < 0) return IsMomentary();
  isInputOpen_ = count > 0;
  std::string_view rest(buffer, static_cast<size_t>(count));
  for (size_t end; (end = rest.find('\n')) != std::string_view::npos; rest.remove_prefix(end + 1)) {
    line_.append(rest.substr(0, end));
    if (!line_.empty()) unsent_.append(line_.c_str(), line_.size() + 1);
    line_.clear();
  }
  line_.append(rest);
  // The last line may lack its end.
  if (!isInputOpen_ && !line_.empty()) unsent_.append(line_.c_str(), line_.size() + 1);
  return true;
}

bool Conversation::SendSome() {
  const ssize_t sent = send(socket_.Get(), unsent_.data(), unsent_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (sent < 0) return IsMomentary();
  unsent_.erase(0, static_cast<size_t>(sent));
  return true;
}

bool Conversation::ReceiveSome() {
  char buffer[kBufferSize];
  const ssize_t count = recv(socket_.Get(), buffer, sizeof buffer, MSG_DONTWAIT);
  if (count < 0) return IsMomentary();
  received_.append(buffer, static_cast<size_t>(count));
  return count > 0;
}

// Prints what is complete, at most this number of messages.
bool Conversation::PrintMessages(size_t most) {
  size_t begin = 0;
  for (size_t end; printed_ < most && (end = received_.find('\0', begin)) != std::string::npos; begin = end + 1) {
    std::printf("%s\n", received_.c_str() + begin);
    ++printed_;
  }
  received_.erase(0, begin);
  return std::fflush(stdout) == 0 && !std::ferror(stdout);
}

std::string Conversation::AtEnd(const Options& options) const {
  if (printed_ < options.count) {
    return "only " + std::to_string(printed_) + " of " + std::to_string(options.count) + " messages came";
  }
  return "";
}

std::string Conversation::Run(const Options& options) {
  const size_t most = options.count > 0 ? options.count : SIZE_MAX;
  for (;;) {
    pollfd polled[] = {{socket_.Get(), static_cast<short>(unsent_.empty() ? POLLIN : POLLIN | POLLOUT), 0},
                       {isInputOpen_ ? STDIN_FILENO : -1, POLLIN, 0}};
    const bool isWaiting = !isInputOpen_ && unsent_.empty();
    const int ready = poll(polled, std::size(polled), isWaiting ? static_cast<int>(options.seconds * 1000) : -1);
    if (ready < 0 && errno != EINTR) return std::generic_category().message(errno);
    if (ready == 0) return AtEnd(options);
    if (polled[1].revents && !ReadInput()) return "the input cannot be read";
    const bool isConnected = !(polled[0].revents & (POLLIN | POLLHUP | POLLERR)) || ReceiveSome();
    if (!PrintMessages(most)) return "the output could not be written";
    if (printed_ >= most) return "";
    if (!isConnected) return "the plug-in closed the connection";
    if (received_.size() > kLongestMessage) return "a message without an end";
    if ((polled[0].revents & POLLOUT) && !SendSome()) return "the plug-in closed the connection";
  }
}

}  // namespace panelcat
