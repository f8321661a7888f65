// How messages travel: over the socket, and as events of the host's service.
#include <algorithm>
#include <filesystem>
#include <span>

#include "Panel/HTMLPanel.h"
#include "host/panel/EventLink.h"
#include "panel/PanelFixture.h"
#include "platform/FileLock.h"

namespace fs = std::filesystem;
using namespace std::string_literals;
using test_support::PanelClient;

namespace {

using Socket = PanelFixture;

TEST_F(Socket, MessagesEndWithANulHoweverTheyArrive) {
  const std::string probe = kProbe + "\0"s;
  const struct {
    Lines pieces;
    size_t replies;
    const char* logged = nullptr;  // what the log says about one of them
  } kRows[] = {
      {{probe + probe}, 2},
      {{probe.substr(0, 7), probe.substr(7)}, 1},
      {{probe.substr(0, 7), probe.substr(7) + probe.substr(0, 3), probe.substr(3)}, 2},
      {{R"({"messageID":16,"messageID":8})" + "\0"s}, 1},
      {{R"({"messageID":4294967312})" + "\0"s}, 1},  // only the low half counts
      // What was read behind a message that is none is lost, and with it the beginning of the next one.
      {{"garbage\0"s + probe + probe.substr(0, 3), probe.substr(3), probe},
       1,
       "Expression='GJSONUtils::Parse(jsonObject, message, jsonValue)'"},
      {{"\0"s, probe}, 1, "Error='CoreErrorCodes::kInvalidParam'"},
      {{"({\"messageID\":16})\0"s, probe}, 1, "Expression='CallMethodForMessage(message)'"},
      {{"[16]\0"s, probe}, 1, "Error='CoreErrorCodes::kError'"},
      {{"[16]\0"s, probe}, 1, "Expression='!jsonValue.is_map()'"},
      {{"{\"messageID\":16.0}\0"s, probe}, 1, "GJSONUtils::GetValueForKey(root, kMessageIDKey, operatorID)"},
      {{"{}\0"s, probe}, 1, "Error='CoreErrorCodes::kNotFound'"},
      {{"{\"messageID\":-1}\0"s, probe}, 1},
  };
  for (const auto& row : kRows) {
    LogRecorder log;
    for (const std::string& piece : row.pieces) {
      client->Send(piece);
      client->Settle();
      manager.SelectSocket(true);
    }
    for (size_t i = 0; i < row.replies; ++i) {
      EXPECT_EQ(client->Receive([this] { manager.SelectSocket(true); }), kProbesReply) << row.pieces.front();
    }
    const std::string lines = testing::PrintToString(log.lines);
    EXPECT_NE(lines.find(row.logged ? row.logged : ""), std::string::npos) << row.pieces.front() << lines;
  }
  // Longer than any buffer on the way.
  const std::string name(300'000, 'x');
  EXPECT_EQ(Ask(R"({"messageID":44,"smartListName":")" + name + R"(","smartListID":7})"), "");
  EXPECT_EQ(TakeAsked(), Lines{"rename 7 " + name});
}

TEST_F(Socket, OnePanelConnectsAndItsEndIsNotNoticed) {
  const unsigned int port = manager.GetSocketPort();
  EXPECT_FALSE(PanelClient(port).IsConnected());
  MarquineGlobals::SetConnectedToCore(false);
  EXPECT_EQ(manager.GetSocketPort(), 2147483647u);
  MarquineGlobals::SetConnectedToCore(true);
  client->Close();
  for (int i = 0; i < 3; ++i) {
    manager.PushDataChangedNotification();
    Tick();
  }
  EXPECT_EQ(manager.GetSocketPort(), port);
  // While the port stays open, a newer panel takes the older one's place, which is not disconnected.
  PanelManager open;
  open.OpenSocket();
  const auto poll = [&] { open.SelectSocket(false); };
  PanelClient older(open.GetSocketPort()), newer(open.GetSocketPort());
  for (PanelClient* panel : {&older, &newer}) EXPECT_EQ(panel->Receive(poll), R"(({"messageID":20,"isStandalone":1}))");
  EXPECT_FALSE(older.HasEnded());
}

TEST_F(Socket, APanelThatDoesNotReadHoldsUpNothing) {
  for (int i = 0; i < 20'000; ++i) {
    manager.PushSmartListsChangedNotification();
    manager.PushOfflineDownloadFinishedNotification();
    EXPECT_EQ(manager.PopNotifications(), 0u);
  }
}

TEST_F(Socket, WithoutAPanelOrAgentNothingHappens) {
  PanelManager none;
  EXPECT_EQ(none.GetSocketPort(), 0u);
  EXPECT_EQ(none.SetEnabled(true), 0u);
  none.OpenSocket();
  none.PushDataChangedNotification();
  EXPECT_EQ(none.PopNotifications(), 0u) << "lost, as nobody listens";
  // A panel may connect when no agent's library was ever found.
  const PanelClient early(none.GetSocketPort());
  MarquineGlobals::SetConnectedToCore(false);
  FontManagerInterface::ResetForTesting();
  VPILoader::UseEmptyTableForTesting();
  early.SendMessage(R"({"messageID":58})");
  for (int i = 0; i < 3; ++i) none.SelectSocket(true);
}

// Refuses messages from the n-th one on.
class FailingPanel : public MarquinePanel {
 public:
  TModuleErrorCode OpenSocket() override { return 0; }
  TModuleErrorCode SelectSocket(bool) override { return 0; }
  unsigned int GetSocketPort() override { return 0; }
  TModuleErrorCode SendFontImages(const platform::Dictionary&) override { return 0; }
  TModuleErrorCode SendMessage(const std::string& text) override {
    if (room == 0) return CoreErrorCodes::kNullPointer;
    --room;
    sent.push_back(text);
    return 0;
  }

  size_t room = 0;
  Lines sent;
};

TEST_F(Socket, AFailedMessageIsSentAgainWithAllOfItsQueueButNotItsFonts) {
  FailingPanel panel;
  panel.room = 1;
  panel.PushGoogleWebFontsEnabledNotificaton(true);
  panel.PushFontActivatedNotification(4);
  panel.PushDataChangedNotification();
  EXPECT_EQ(panel.PopNotifications(), CoreErrorCodes::kNullPointer);
  panel.room = 9;
  EXPECT_EQ(panel.PopNotifications(), 0u);
  EXPECT_EQ(panel.PopNotifications(), 0u);
  EXPECT_EQ(panel.sent, (Lines{R"(({"messageID":22}))", R"(({"messageID":22}))", R"(({"messageID":24,"fontIDs":[]}))",
                               R"(({"messageID":56}))"}));
}

platform::Dictionary Previews() {
  platform::Dictionary picture = platform::Dictionary::Create(), files = platform::Dictionary::Create();
  picture.Set("pngBytes", platform::Data::From(std::as_bytes(std::span("\x89PNG", 4))));
  picture.Set("pngFilename", "/previews/a b.png");
  files.Set("pngFilename", "/previews/c.png");
  files.Set("2xPNGFilename", "/previews/c@2x.png");
  platform::Dictionary previews = platform::Dictionary::Create();
  previews.Set("1234", picture);
  previews.Set("7", files);
  previews.Set("4294967295", platform::Dictionary::Create());
  return previews;
}

TEST_F(Socket, APreviewIsOneMessageWithItsBytes) {
  manager.SendFontImages(Previews());
  EXPECT_EQ(Heard(), R"(({"messageID":32,"fontID":1234,"image":"iVBORw=="}) ({"messageID":32,"fontID":7,"}) )"
                     R"(({"messageID":32,"fontID":-1,"}))");
  MarquineGlobals::SetConnectedToCore(false);
  manager.SendFontImages(Previews());
  EXPECT_EQ(Heard(), "");
}

// The service is found beside the program, which all tests share.
class ExtensionFixture : public PanelFixture {
 protected:
  ExtensionFixture() {
    EXPECT_FALSE(error);
    fs::remove_all(frameworks);
    fs::create_directory(frameworks);
  }
  ~ExtensionFixture() override { fs::remove_all(frameworks); }

  // Puts the service into the folder under a name.
  void Install(const std::string& name) const {
    const fs::path bundle = frameworks / (name + ".framework"), real = APP_DIR "/host/Frameworks/PlugPlug.framework";
    fs::create_directory(bundle);
    fs::copy_file(real / "Info.plist", bundle / "Info.plist");
    fs::create_symlink(real / "PlugPlug", bundle / name);
  }

  const fs::path frameworks = platform::Bundle::Main()->PrivateFrameworksFolder();
  std::error_code error;
  const platform::FileLock lock{frameworks, &error};
  SDKPlugPlug service;
};
using Extension = ExtensionFixture;

TEST_F(Extension, TheServiceIsFoundUnderItsNewerNameFirst) {
  const csxs::event::Event event{"any", 1, "test", nullptr, ""};
  EXPECT_EQ(service.Load(), SDKPlugPlug::kLoadFailure);
  EXPECT_EQ(service.DispatchEvent(&event), csxs::event::kEventErrorCode_OperationFailed);
  EXPECT_EQ(manager.RegisterPlugPlug(nullptr), CoreErrorCodes::kNullPointer);
  EXPECT_EQ(manager.RegisterPlugPlug(&service), CoreErrorCodes::kNotInitialized);
  EXPECT_FALSE(service.IsUsable());
  Install("PlugPlug");
  EXPECT_EQ(service.Load(), 0);
  EXPECT_EQ(service.DispatchEvent(&event), csxs::event::kEventErrorCode_Success);
  EXPECT_EQ(service.Unload(), 0);
  // The newer one is chosen even if it is broken.
  fs::create_directory(frameworks / "PlugPlugOwl.framework");
  EXPECT_EQ(service.Load(), SDKPlugPlug::kLoadFailure);
  fs::remove_all(frameworks / "PlugPlug.framework");
  fs::remove_all(frameworks / "PlugPlugOwl.framework");
  Install("PlugPlugOwl");
  EXPECT_EQ(service.Load(), 0);
}

TEST_F(Extension, MessagesAreEventsBothWays) {
  Install("PlugPlug");
  ASSERT_EQ(service.Load(), 0);
  ASSERT_EQ(manager.RegisterPlugPlug(&service), 0u);
  Lines heard;
  panel::EventLink page(frameworks / "PlugPlug.framework",
                        [&](const std::string&, const std::string& data) { heard.push_back(data); });
  const auto take = [&] { return std::exchange(heard, {}); };
  const auto send = [&](const char* text) { page.Dispatch(panel_events::kPanelToPlugin, text); };
  EXPECT_EQ(take(), Lines{}) << "nothing comes unasked";
  send(kProbe);
  EXPECT_EQ(take(), Lines{kProbesReply});
  for (const char* bad : {"", "[]", "({\"messageID\":16})"}) {
    send(bad);
    EXPECT_EQ(take(), Lines{});
  }
  agent.smartLists = {{7, "Serif"}};
  EXPECT_THROW(send(R"({"messageID":36,"smartListID":7})"), std::runtime_error);
  EXPECT_EQ(take(), Lines{});
  manager.SendFontImages(Previews());
  EXPECT_EQ(take(), Lines{R"(({"messageID":32,"fonts":[)"
                          R"({"fontID":1234,"pngFilename":"file:///previews/a b.png","2xPNGFilename":""},)"
                          R"({"fontID":7,"pngFilename":"file:///previews/c.png",)"
                          R"("2xPNGFilename":"file:///previews/c@2x.png"},)"
                          R"({"fontID":4294967295,"pngFilename":"","2xPNGFilename":""}]}))"});
  manager.SendFontImages(platform::Dictionary::Create());
  EXPECT_EQ(take(), Lines{R"(({"messageID":32,"fonts":[]}))"});
  Heard();
  // News goes to both panels.
  manager.PushSmartListsChangedNotification();
  manager.PopNotifications();
  EXPECT_EQ(take(), Lines{R"(({"messageID":43}))"});
  EXPECT_EQ(Heard(), R"(({"messageID":43}))");
  EXPECT_NE(manager.GetSocketPort(), 0u);
  manager.ResetForTesting();
  send(kProbe);
  EXPECT_EQ(take(), Lines{}) << "nobody listens any more";
  EXPECT_EQ(HTMLPanel(nullptr).SendMessage("()"), CoreErrorCodes::kNullPointer);
}

}  // namespace
