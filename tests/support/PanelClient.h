// A panel that is a client of the plug-in's port.
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/Descriptor.h"

namespace test_support {

class PanelClient {
 public:
  explicit PanelClient(unsigned int port) : mSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int on = 1;
    setsockopt(mSocket.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    mIsConnected = connect(mSocket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  bool IsConnected() const { return mIsConnected; }
  void Close() { mSocket.Close(); }
  // True if the other side has disconnected.
  bool HasEnded() const {
    char byte;
    return recv(mSocket.Get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
  }

  void Send(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t sent = send(mSocket.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      ASSERT_GT(sent, 0);
      bytes.remove_prefix(static_cast<size_t>(sent));
    }
  }
  void SendMessage(const std::string& text) const { Send({text.c_str(), text.size() + 1}); }
  // Returns when the other side's system has all bytes.
  void Settle() const {
    for (int left = 1; left > 0;) ASSERT_EQ(ioctl(mSocket.Get(), SIOCOUTQ, &left), 0);
  }
  // Returns the next message, calling `work` until it comes. Empty, and a failure of the test, after ten seconds.
  std::string Receive(const std::function<void()>& work = [] {}) {
    for (int tries = 0; mReceived.find('\0') == std::string::npos; ++tries) {
      work();
      pollfd polled{mSocket.Get(), POLLIN, 0};
      if (poll(&polled, 1, 1) == 0 && tries < 10'000) continue;
      char buffer[65536];
      const ssize_t count = recv(mSocket.Get(), buffer, sizeof buffer, MSG_DONTWAIT);
      if (count <= 0) {
        ADD_FAILURE() << "no message comes";
        return "";
      }
      mReceived.append(buffer, static_cast<size_t>(count));
    }
    const std::string message = mReceived.substr(0, mReceived.find('\0'));
    mReceived.erase(0, message.size() + 1);
    return message;
  }

 private:
  platform::Descriptor mSocket;
  std::string mReceived;
  bool mIsConnected = false;
};

}  // namespace test_support
