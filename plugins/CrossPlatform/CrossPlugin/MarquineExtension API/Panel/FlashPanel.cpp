#include "Panel/FlashPanel.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include "Bridge/NotificationKeys.h"
#include "GSystem.h"
#include "Panel/PanelChecks.h"
#include "Panel/PanelKeys.h"
#include "Services/MarquineGlobals.h"
#include "host/include/HostTerminology.h"
#include "platform/Base64.h"

using namespace panel_keys;
using platform::Data;
using platform::Descriptor;
using platform::Dictionary;

namespace {

constexpr int kWaitingConnections = 2;
constexpr int kSendBufferSize = 128'000;       // bytes
constexpr size_t kReceiveBufferSize = 65'535;  // bytes

// Written by hand, so that a picture without bytes gives a text that is no valid JSON. Keep it: panels depend on this
// text for a name that could not be drawn.
std::string ImageMessage(int32_t fontID, const std::string& base64) {
  std::string text = "({\"" + kMessageIDKey + "\":" + std::to_string(MarquinePanel::kGetFontPNG) + ",\"" + kFontIDKey +
                     "\":" + std::to_string(fontID) + ",";
  if (!base64.empty()) text += "\"" + kFontImageKey + "\":\"" + base64;
  return text + "\"})";
}

void FlashPanelSendFontImage(std::string_view key, const Dictionary& value, FlashPanel* panel) {
  if (!panel) return;
  const auto bytes = Data(value.Get(PluginInterface::kPngBytesKey)).Bytes();
  const std::string_view png(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  panel->SendMessage(ImageMessage(FontIDOf(key), png.empty() ? "" : platform::EncodeBase64(png)));
}

}  // namespace

TModuleErrorCode FlashPanel::OpenSocket() {
  const PanelTrace trace(__func__);
  GSystem::InitializeSockets();
  mListeningSocket = Descriptor(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const int on = 1;
  setsockopt(mListeningSocket.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  // On every interface, as panels expect. A panel does not authenticate itself: whoever connects first is the panel.
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  // If it fails, the port is not in use, and no panel connects.
  static_cast<void>(bind(mListeningSocket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address));
  socklen_t size = sizeof address;
  getsockname(mListeningSocket.Get(), reinterpret_cast<sockaddr*>(&address), &size);
  mPort = ntohs(address.sin_port);
  PANEL_CHECK_AS(SetNonBlocking(mListeningSocket.Get()), "SetNonBlocking(mListeningSocket)");
  listen(mListeningSocket.Get(), kWaitingConnections);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode FlashPanel::SetNonBlocking(int fd) {
  if (fd >= 0) fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
  return CoreErrorCodes::kSuccess;
}

// Polls rather than selects, because a host may have more than the 1,024 descriptors that select knows.
TModuleErrorCode FlashPanel::SelectSocket(bool closeListeningSocket) {
  pollfd polled[] = {{mListeningSocket.Get(), POLLIN, 0}, {mSocket.Get(), POLLIN, 0}};  // ignores negative ones
  if (poll(polled, std::size(polled), 0) <= 0) return CoreErrorCodes::kSuccess;
  const auto& [listening, connected] = polled;
  if (listening.revents) SocketAcceptCallback(closeListeningSocket);
  if (connected.revents) SocketDataCallback();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode FlashPanel::SocketAcceptCallback(bool closeListeningSocket) {
  if (mSocket) mReplacedSockets.push_back(std::move(mSocket));
  mSocket = Descriptor(accept4(mListeningSocket.Get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (closeListeningSocket) mListeningSocket.Close();
  PANEL_CHECK_AS(SetNonBlocking(mSocket.Get()), "SetNonBlocking(mSocket)");
  setsockopt(mSocket.Get(), SOL_SOCKET, SO_SNDBUF, &kSendBufferSize, sizeof kSendBufferSize);
  // A message must not wait until the panel has acknowledged the one before.
  const int on = 1;
  setsockopt(mSocket.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  PANEL_CHECK(StartPanelInfo());
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode FlashPanel::SocketDataCallback() {
  char buffer[kReceiveBufferSize];
  const ssize_t count = recv(mSocket.Get(), buffer, sizeof buffer, 0);
  // At the end of the stream, too: the socket stays, and each poll comes here again.
  if (count < 1) return CoreErrorCodes::kSuccess;
  std::string_view rest(buffer, static_cast<size_t>(count));
  for (size_t end = rest.find('\0'); end != std::string_view::npos; end = rest.find('\0')) {
    const std::string message = mMessageBuffer.append(rest.substr(0, end));
    mMessageBuffer.clear();
    rest.remove_prefix(end + 1);
    PANEL_CHECK(CallMethodForMessage(message));
  }
  mMessageBuffer.append(rest);
  return CoreErrorCodes::kSuccess;
}

unsigned int FlashPanel::GetSocketPort() {
  return MarquineGlobals::sConnectedToCore ? mPort : host_sdk::kNoFontManagerPort;
}

// Drops the text without a panel, and what does not fit into the buffer of a panel that does not read.
TModuleErrorCode FlashPanel::SendMessage(const std::string& text) {
  if (mSocket) send(mSocket.Get(), text.c_str(), text.size() + 1, 0);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode FlashPanel::SendFontImages(const Dictionary& fontPNGs) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  for (size_t i = 0; i < fontPNGs.Count(); ++i) {
    FlashPanelSendFontImage(fontPNGs.KeyAt(i), Dictionary(fontPNGs.ValueAt(i)), this);
  }
  return CoreErrorCodes::kSuccess;
}
