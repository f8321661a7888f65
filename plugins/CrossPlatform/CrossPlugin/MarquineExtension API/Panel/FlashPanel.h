// A panel that connects to a TCP port of this process. Messages in both directions end with a NUL byte.
//
// The system chooses the port; the host asks the plug-in for it and tells the panel. One panel connects; while the
// plug-in polls with closeListeningSocket, no other can. Nothing blocks and no thread is involved: the plug-in's timer
// polls. A panel that has gone away is not noticed, and what a stalled panel's buffer cannot hold is lost.
#pragma once

#include <string>
#include <vector>

#include "Panel/MarquinePanel.h"
#include "platform/Descriptor.h"

class FlashPanel : public MarquinePanel {
 public:
  // Returns 0 also if no socket can be had; the port is then 0.
  TModuleErrorCode OpenSocket() override;
  TModuleErrorCode SelectSocket(bool closeListeningSocket) override;  // always 0
  unsigned int GetSocketPort() override;  // host_sdk::kNoFontManagerPort while there is no agent
  TModuleErrorCode SendMessage(const std::string& text) override;                  // always 0
  TModuleErrorCode SendFontImages(const platform::Dictionary& fontPNGs) override;  // always 0

 protected:
  // Reads once and carries out the messages that are complete. Returns the code of a message that cannot be read; what
  // was read behind it is lost.
  virtual TModuleErrorCode SocketDataCallback();
  virtual TModuleErrorCode SetNonBlocking(int fd);  // nothing for a negative descriptor; always 0
  virtual TModuleErrorCode SocketAcceptCallback(bool closeListeningSocket);

 private:
  std::string mMessageBuffer;  // of a message that is not complete; as long as the panel makes it
  unsigned int mPort = 0;      // in host order
  platform::Descriptor mListeningSocket;
  platform::Descriptor mSocket;
  // Connections that a newer one has replaced. They stay open, but nothing is read or sent any more.
  std::vector<platform::Descriptor> mReplacedSockets;
};
