#include "agent/server/Server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "agent/include/AgentProtocol.h"
#include "platform/LastError.h"

namespace agent {

using platform::FrameReader;

namespace {

constexpr size_t kMostUnsent = 64u << 20;
constexpr uint64_t kListeningTag = 0;  // never a client's number

void MakeNonBlocking(int fd) { fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK); }

platform::Descriptor OpenSpare() { return platform::Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC)); }

// Returns 0 if nothing is there.
ino_t InodeAt(const std::string& path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0 ? info.st_ino : 0;
}

}  // namespace

Server::Server(platform::RunLoop& loop, ServerEvents events)
    : loop_(loop), events_(std::move(events)), epoll_(epoll_create1(EPOLL_CLOEXEC)), spare_(OpenSpare()) {
  // An epoll descriptor is readable when one of its descriptors is ready for reading or writing.
  loop_.WatchDescriptor(epoll_.Get(), [this] { OnReady(); });
}

Server::~Server() {
  loop_.UnwatchDescriptor(epoll_.Get());
  StopListening();
}

std::error_code Server::Listen(const std::string& folder, const std::string& name) {
  std::error_code error;
  platform::Descriptor listening = platform::ListenLocal(folder, name, error);
  if (error) return error;
  socketPath_ = folder + "/" + name;
  socketInode_ = InodeAt(socketPath_);
  return Serve(std::move(listening));
}

std::error_code Server::Serve(platform::Descriptor listening) {
  listening_ = std::move(listening);
  MakeNonBlocking(listening_.Get());
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = kListeningTag;
  if (epoll_ctl(epoll_.Get(), EPOLL_CTL_ADD, listening_.Get(), &event) != 0) return platform::LastError();
  return {};
}

void Server::StopListening() {
  if (!listening_) return;
  if (socketInode_ != 0 && InodeAt(socketPath_) == socketInode_) unlink(socketPath_.c_str());
  listening_.Close();
}

void Server::OnReady() {
  std::array<epoll_event, 32> events{};
  const int count = epoll_wait(epoll_.Get(), events.data(), static_cast<int>(events.size()), 0);
  for (int i = 0; i < count; ++i) {
    const epoll_event& event = events[static_cast<size_t>(i)];
    if (event.data.u64 == kListeningTag) {
      Accept();
      continue;
    }
    const auto client = static_cast<ClientID>(event.data.u64);
    const auto found = connections_.find(client);
    if (found == connections_.end()) continue;
    if ((event.events & EPOLLOUT) && !Write(client, found->second)) {
      End(client);
      continue;
    }
    if (event.events & (EPOLLIN | EPOLLHUP | EPOLLERR)) Receive(client);
  }
}

// Returns none if the client is gone, belongs to another user, or was turned away.
platform::Descriptor Server::TakeOrTurnAway() {
  std::error_code error;
  platform::Descriptor socket = platform::AcceptLocal(listening_.Get(), error);
  if (error != std::errc::too_many_files_open && error != std::errc::too_many_files_open_in_system) return socket;
  spare_.Close();
  platform::AcceptLocal(listening_.Get(), error);
  spare_ = OpenSpare();
  return {};
}

void Server::Accept() {
  platform::Descriptor socket = TakeOrTurnAway();
  if (!socket) return;
  MakeNonBlocking(socket.Get());
  const ClientID client = ++lastClient_;
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = client;
  if (epoll_ctl(epoll_.Get(), EPOLL_CTL_ADD, socket.Get(), &event) != 0) return;
  connections_[client].socket = std::move(socket);
}

void Server::Receive(ClientID client) {
  std::array<char, 65536> buffer;
  Connection& connection = connections_.at(client);
  const ssize_t got = recv(connection.socket.Get(), buffer.data(), buffer.size(), 0);
  if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (got <= 0 || connection.isDropped) {
    End(client);
    return;
  }
  connection.reader.Add(std::string_view(buffer.data(), static_cast<size_t>(got)));
  std::string message;
  for (;;) {
    // The handler may have dropped the client.
    const auto found = connections_.find(client);
    if (found == connections_.end() || found->second.isDropped) return;
    const FrameReader::Result result = found->second.reader.Next(message);
    if (result == FrameReader::Result::kIncomplete) return;
    if (result == FrameReader::Result::kTooLong) {
      Report("a client sent a message longer than " + std::to_string(agent_protocol::kLongestRequest) +
             " bytes; its connection is closed");
      End(client);
      return;
    }
    events_.message(client, message);
  }
}

void Server::Send(ClientID client, std::string_view message) {
  const auto found = connections_.find(client);
  if (found == connections_.end() || found->second.isDropped) return;
  Connection& connection = found->second;
  const uint32_t length = htonl(static_cast<uint32_t>(message.size()));
  connection.unsent.append(reinterpret_cast<const char*>(&length), sizeof length).append(message);
  if (message.size() > platform::kLongestMessage || connection.unsent.size() > kMostUnsent) {
    Report("a client leaves more than " + std::to_string(kMostUnsent >> 20) + " MiB unread; its connection is closed");
    Drop(client);
  } else if (!Write(client, connection)) {
    Drop(client);
  }
}

size_t Server::Unsent(ClientID client) const {
  const auto found = connections_.find(client);
  return found == connections_.end() ? 0 : found->second.unsent.size();
}

bool Server::Write(ClientID client, Connection& connection) {
  size_t sent = 0;
  while (sent < connection.unsent.size()) {
    const ssize_t count =
        send(connection.socket.Get(), connection.unsent.data() + sent, connection.unsent.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno != EAGAIN) return false;
    if (count < 0) break;
    sent += static_cast<size_t>(count);
  }
  connection.unsent.erase(0, sent);
  if (connection.unsent.empty() == connection.isWaitingToWrite) Watch(client, connection);
  return true;
}

void Server::Watch(ClientID client, Connection& connection) {
  connection.isWaitingToWrite = !connection.unsent.empty();
  epoll_event event{};
  event.events = connection.isWaitingToWrite ? EPOLLIN | EPOLLOUT : EPOLLIN;
  event.data.u64 = client;
  epoll_ctl(epoll_.Get(), EPOLL_CTL_MOD, connection.socket.Get(), &event);
}

void Server::Drop(ClientID client) {
  const auto found = connections_.find(client);
  if (found == connections_.end()) return;
  found->second.isDropped = true;
  shutdown(found->second.socket.Get(), SHUT_RDWR);
}

void Server::Report(const std::string& line) const {
  if (events_.report) events_.report(line);
}

void Server::End(ClientID client) {
  connections_.erase(client);
  events_.gone(client);
}

void Server::Flush(int milliseconds) {
  for (auto& [client, connection] : connections_) {
    while (!connection.unsent.empty()) {
      pollfd polled{connection.socket.Get(), POLLOUT, 0};
      if (poll(&polled, 1, milliseconds) <= 0 || !Write(client, connection)) break;
    }
  }
}

}  // namespace agent
