// The plug-in's panels with a fake agent and a client on the panel's socket.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Panel/PanelManager.h"
#include "core/CoreFixtures.h"
#include "support/PanelClient.h"
#include "support/PluginFixture.h"

using Lines = std::vector<std::string>;

class PanelFixture : public fakes::PluginFixture {
 protected:
  static constexpr const char* kProbe = R"({"messageID":16})";
  static constexpr const char* kProbesReply = R"(({"messageID":16,"isWindows":false}))";

  PanelFixture() {
    Connect();
    manager.OpenSocket();
    client = std::make_unique<test_support::PanelClient>(manager.GetSocketPort());
    // The second message tells whether there is a Typekit library.
    for (int i = 0; i < 2; ++i) greeting += client->Receive([this] { Tick(); });
    agent.asked.clear();
  }

  // What the plug-in's timer does.
  void Tick() {
    manager.SelectSocket(true);
    manager.PopNotifications();
  }
  // Sends one message and returns the messages that follow, separated by blanks: its reply, then what it queued.
  std::string Ask(const std::string& request) {
    client->SendMessage(request);
    std::string heard = Heard();
    manager.PopNotifications();
    const std::string queued = Heard();
    return heard + (heard.empty() || queued.empty() ? "" : " ") + queued;
  }
  // Returns the messages since the last call. The answer to a probe ends them.
  std::string Heard() {
    client->SendMessage(kProbe);
    std::string heard;
    for (;;) {
      const std::string message = client->Receive([this] { manager.SelectSocket(true); });
      if (message == kProbesReply || message.empty()) return heard;
      heard += (heard.empty() ? "" : " ") + message;
    }
  }
  Lines TakeAsked() { return std::exchange(agent.asked, {}); }
  static std::string ContentOf(const std::string& reply) {
    const std::string start = R"(({"messageID":41,"filename":"file://)";
    EXPECT_EQ(reply.substr(0, start.size()), start);
    return test_support::TempFolder::Content(reply.substr(start.size(), reply.size() - start.size() - 3));
  }

  PanelManager manager;
  std::unique_ptr<test_support::PanelClient> client;
  std::string greeting;
};
