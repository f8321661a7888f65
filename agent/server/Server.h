// The agent's side of the socket: accepts connections, and reads and writes messages in the framing of
// platform/LocalSocket.h. Never waits for a client. Disconnects a client that breaks the framing or leaves too much
// unread, and a new client if this process can open no more files.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "agent/activation/Activations.h"
#include "agent/include/AgentProtocol.h"
#include "platform/FrameReader.h"
#include "platform/LocalSocket.h"
#include "platform/RunLoop.h"

namespace agent {

struct ServerEvents {
  std::function<void(ClientID, std::string_view message)> message;
  std::function<void(ClientID)> gone;
  // A line for people: why a client was disconnected. May be empty.
  std::function<void(const std::string& line)> report = nullptr;
};

class Server {
 public:
  Server(platform::RunLoop& loop, ServerEvents events);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  std::error_code Listen(const std::string& folder, const std::string& name);
  // Serves a socket that another program listens on and keeps. It is not removed at the end.
  std::error_code Serve(platform::Descriptor listening);
  // Accepts no more clients. Leaves a socket that another server has created in place of ours: the folder may have been
  // deleted and created again while this server was running.
  void StopListening();
  void Send(ClientID client, std::string_view message);
  // The number of bytes that the client has not read yet.
  size_t Unsent(ClientID client) const;
  // Takes effect in the next round of the loop, so a handler may drop its own client.
  void Drop(ClientID client);
  // Tries to send unsent messages, for at most this time.
  void Flush(int milliseconds);

 private:
  struct Connection {
    platform::Descriptor socket;
    platform::FrameReader reader{agent_protocol::kLongestRequest};
    std::string unsent;
    bool isWaitingToWrite = false;
    bool isDropped = false;  // nothing more is read from it
  };

  void OnReady();
  void Accept();
  platform::Descriptor TakeOrTurnAway();
  void Receive(ClientID client);
  bool Write(ClientID client, Connection& connection);
  void Watch(ClientID client, Connection& connection);
  void End(ClientID client);
  void Report(const std::string& line) const;

  platform::RunLoop& loop_;
  ServerEvents events_;
  platform::Descriptor epoll_;
  platform::Descriptor listening_;
  // Reserved descriptor: freed to accept and close one client when we are out of descriptors. Otherwise the pending
  // client would wake the loop forever.
  platform::Descriptor spare_;
  std::string socketPath_;
  ino_t socketInode_ = 0;  // 0 if the socket is not ours
  std::map<ClientID, Connection> connections_;
  ClientID lastClient_ = 0;
};

}  // namespace agent
