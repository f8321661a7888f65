// The agent's end of its socket: takes connections and whole messages in the framing of platform/LocalSocket.h, and
// never waits for a client. A client that breaks the framing or leaves too much unread is disconnected, and so is a new one
// where this process may open no more files.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "agent/Activations.h"
#include "platform/LocalSocket.h"
#include "platform/RunLoop.h"

namespace agent {

// Cuts a stream of bytes into requests, of at most agent_protocol::kLongestRequest bytes.
class FrameReader {
 public:
  void Add(std::string_view bytes) { bytes_.append(bytes); }
  enum class Result { kMessage, kIncomplete, kTooLong };
  Result Next(std::string& message);

 private:
  std::string bytes_;
  size_t start_ = 0;
};

struct ServerEvents {
  std::function<void(ClientID, std::string_view message)> message;
  std::function<void(ClientID)> gone;
};

class Server {
 public:
  Server(platform::RunLoop& loop, ServerEvents events);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  std::error_code Listen(const std::string& folder, const std::string& name);
  // No new client gets through from here on. A socket that another server has put in place of ours stays: somebody may
  // have deleted the folder and begun anew while we were still there.
  void StopListening();
  void Send(ClientID client, std::string_view message);
  // Takes effect when the loop comes round, so that a handler may drop the client that it serves.
  void Drop(ClientID client);
  // Gives unsent messages a last chance, for at most so long.
  void Flush(int milliseconds);

 private:
  struct Connection {
    platform::Descriptor socket;
    FrameReader reader;
    std::string unsent;
    bool isWaitingToWrite = false;
    bool isDropped = false;  // nothing more is taken from it
  };

  void OnReady();
  void Accept();
  platform::Descriptor TakeOrTurnAway();
  void Receive(ClientID client);
  bool Write(ClientID client, Connection& connection);
  void Watch(ClientID client, Connection& connection);
  void End(ClientID client);

  platform::RunLoop& loop_;
  ServerEvents events_;
  platform::Descriptor epoll_;
  platform::Descriptor listening_;
  platform::Descriptor spare_;  // its place takes a client that is turned away; in the queue it would keep us awake
  std::string socketPath_;
  ino_t socketInode_ = 0;
  std::map<ClientID, Connection> connections_;
  ClientID lastClient_ = 0;
};

}  // namespace agent
