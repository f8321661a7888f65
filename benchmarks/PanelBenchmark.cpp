// The font panel's socket: requests as fast as they are polled, an idle tick of two panels, and news of many fonts in
// one tick, each against what it cannot do without. The agent is a fake.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/select.h>
#include <sys/socket.h>

#include <filesystem>
#include <set>
#include <string>

#include "Bridge/CoreAgentInterface.h"
#include "Floor.h"
#include "Panel/PanelManager.h"
#include "Panel/SDKPlugPlug.h"
#include "platform/Bundle.h"
#include "platform/Descriptor.h"
#include "support/FakeAgent.h"
#include "support/FakeUIFramework.h"

namespace {

using platform::Descriptor;

constexpr int kRuns = 9;
constexpr int kRequests = 2'000;
constexpr int kTicks = 20'000;
constexpr unsigned kFonts = 10'000;
constexpr char kRequest[] = R"({"messageID":11})";
constexpr char kReply[] = R"(({"messageID":11,"height":350,"width":260}))";

void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "PanelBenchmark: %s\n", what);
  std::exit(2);
}

sockaddr_in Loopback(unsigned port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

Descriptor Connect(unsigned port) {
  Descriptor client(socket(AF_INET, SOCK_STREAM, 0));
  const sockaddr_in address = Loopback(port);
  // Room for the largest message: otherwise the kernel's delayed acknowledgements are measured.
  const int room = 1 << 20;
  setsockopt(client.Get(), SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
  Require(connect(client.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0, "no connection");
  const int on = 1;
  setsockopt(client.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return client;
}

// Receives until this number of messages has come, calling `work` before each try.
template <class Work>
void Await(int client, int messages, const Work& work) {
  char buffer[65536];
  while (messages > 0) {
    work();
    const ssize_t count = recv(client, buffer, sizeof buffer, MSG_DONTWAIT);
    for (ssize_t i = 0; i < count; ++i) messages -= buffer[i] == '\0';
  }
}

// A connection without a protocol.
struct PlainConnection {
  PlainConnection() {
    const Descriptor listening(socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    Require(bind(listening.Get(), reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
                listen(listening.Get(), 1) == 0 &&
                getsockname(listening.Get(), reinterpret_cast<sockaddr*>(&address), &size) == 0,
            "no socket");
    client = Connect(ntohs(address.sin_port));
    server = Descriptor(accept(listening.Get(), nullptr, nullptr));
    const int on = 1;
    setsockopt(server.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  }
  Descriptor client, server;
};

bool Select(int descriptor) {
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(descriptor, &readable);
  timeval none{};
  select(descriptor + 1, &readable, nullptr, nullptr, &none);
  return FD_ISSET(descriptor, &readable);
}

void CompareRequests(PanelManager& panels, int client) {
  const PlainConnection plain;
  double best = 1e9;
  const auto ask = [&] {
    const double seconds = benchmark::Measure([&] {
      for (int i = 0; i < kRequests; ++i) {
        send(client, kRequest, sizeof kRequest, 0);
        Await(client, 1, [&] { panels.SelectSocket(true); });
      }
    });
    best = std::min(best, seconds);
  };
  const auto echo = [&] {
    char buffer[65536];
    for (int i = 0; i < kRequests; ++i) {
      send(plain.client.Get(), kRequest, sizeof kRequest, 0);
      Await(plain.client.Get(), 1, [&] {
        if (!Select(plain.server.Get())) return;
        if (recv(plain.server.Get(), buffer, sizeof buffer, 0) > 0) send(plain.server.Get(), kReply, sizeof kReply, 0);
      });
    }
  };
  benchmark::Compare("2,000 requests / answered without a protocol", 3.0, kRuns, ask, echo);
  std::printf("%-44s %12.0f\n", "requests a second", kRequests / best);
}

void CompareIdleTicks(PanelManager& panels, int client) {
  const auto tick = [&] {
    for (int i = 0; i < kTicks; ++i) {
      panels.SelectSocket(true);
      panels.PopNotifications();
    }
  };
  const auto select = [&] {
    for (int i = 0; i < kTicks; ++i) Select(client);
  };
  benchmark::Compare("20,000 idle ticks of two panels / select", 5.0, kRuns, tick, select);
}

void CompareNews(PanelManager& panels, int client) {
  const PlainConnection plain;
  const auto tell = [&] {
    for (unsigned id = kFonts; id > 0; --id) panels.PushFontActivatedNotification(id);
    panels.PopNotifications();
    Await(client, 1, [] {});
  };
  const auto byHand = [&] {
    std::set<unsigned> first, second;  // one for each panel
    for (unsigned id = kFonts; id > 0; --id) first.insert(id), second.insert(id);
    std::string text = "({\"messageID\":24,\"fontIDs\":[";
    for (const unsigned id : first) text += std::to_string(id) + ",";
    text.back() = ']';
    text += "})";
    send(plain.server.Get(), text.c_str(), text.size() + 1, 0);
    Await(plain.client.Get(), 1, [] {});
  };
  benchmark::Compare("10,000 activations in a tick / by hand", 10.0, kRuns, tell, byHand);
}

}  // namespace

int main() {
  fakes::FakeUIFramework ui;
  ui.preferences = {{"CS5PanelWidth", 260}, {"CS5PanelHeight", 350}};
  fakes::FakeAgent agent;
  FontManagerInterface::sm_pFontManager = std::make_unique<CoreAgentInterface>();
  MarquineGlobals::SetUserHasWorkgroups(true);

  const std::filesystem::path frameworks = platform::Bundle::Main()->PrivateFrameworksFolder();
  std::filesystem::remove(frameworks);
  std::filesystem::create_directory_symlink(APP_DIR "/host/Frameworks", frameworks);
  SDKPlugPlug service;
  Require(service.Load() == 0, "no event service");
  PanelManager panels;
  panels.OpenSocket();
  Require(panels.RegisterPlugPlug(&service) == 0, "no second panel");
  const Descriptor client = Connect(panels.GetSocketPort());
  Await(client.Get(), 2, [&] {
    panels.SelectSocket(true);
    panels.PopNotifications();
  });

  benchmark::Begin();
  CompareRequests(panels, client.Get());
  CompareIdleTicks(panels, client.Get());
  CompareNews(panels, client.Get());
  return benchmark::Finish();
}
