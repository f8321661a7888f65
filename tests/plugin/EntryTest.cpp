// The plug-in's entry as the host calls it, and the timer between calls.
#include "photoshop/PluginMain.h"

#include <filesystem>

#include "Panel/SDKPlugPlug.h"
#include "Readers/CommonFunctionality.h"
#include "photoshop/MissingFontsWindow.h"
#include "photoshop/NotificationTimer.h"
#include "platform/Bundle.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "plugin/HostFixture.h"

using host_sdk::Code;

namespace {

// The plug-in looks for an agent when it is loaded, before any test. It must not find the user's agent.
[[gnu::constructor(101)]] void StayOutOfTheHomeFolder() {
  platform::Places places;
  places.fileSystemRoot = places.home = places.runtime = "/nonexistent";
  platform::SetPlaces(places);
}

class EntryFixture : public HostFixture {
 protected:
  EntryFixture() {
    ResetPluginMainForTesting();
    CommonFunctionality::ResetForTesting();
    agent.Add({.id = 1, .postScriptName = "Alpha"});
    ui->preferences["SuppressPanelLaunch"] = 1;
    MarquineGlobals::IdentifyPluginBundleID("com.velorant.AutoActivationPlugin.PS21");
  }
  ~EntryFixture() override {
    ResetPluginMainForTesting();
    CommonFunctionality::ResetForTesting();
    ResetMissingFontsWindowForTesting();
    sSPBasic = &fakes::TestHost::Basic();
  }
  int32_t Call(const char* caller, const char* selector) {
    const int32_t error = AutoPluginMain(caller, selector, &message);
    EXPECT_EQ(host::AcquiredSuites(), 0u) << selector;
    return error;
  }
  int32_t Start() { return Call("SP Interface", "Startup"); }
  void Wait(double seconds) { platform::RunLoop::Main().RunFor(seconds); }
  // Opens a document in front and notifies the plug-in.
  int32_t NotifyOpen(const std::string& path) {
    app.Add(path);
    const fakes::GivenDescriptor descriptor(host::kKeyTarget, host::AliasData::OfPath(path));
    return app.notifiers.at(0).second(Code("Opn "), descriptor.Get(), 0, nullptr);
  }

  host_sdk::PluginObject* self = reinterpret_cast<host_sdk::PluginObject*>(0x1234);
  host_sdk::SPMessageData message{self, nullptr, &fakes::TestHost::Basic(), nullptr};
};
using Entry = EntryFixture;

TEST_F(Entry, StartsOnceAndStopsWhatItStarted) {
  ui->preferences["RMF5"] = 1000;
  ui->preferences["RMF4"] = 6000;
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(ui->preferences["RMF5"], 4000) << "a short delay is raised";
  EXPECT_EQ(ui->preferences["RMF4"], 6000) << "a long one stays";
  std::string events;
  for (const auto& [event, callback] : app.notifiers) events += FourCharTypeToStdString(event);
  EXPECT_EQ(events, "Opn Mk  Cls save");
  EXPECT_EQ(host::LiveObjects().blocks, 1u);
  uint64_t words[2];
  std::memcpy(words, message.globals, sizeof words);
  EXPECT_EQ(words[0], 0u);
  EXPECT_EQ(words[1], 0x1234u);
  EXPECT_TRUE(MarquineGlobals::GetSuppressingHostAppDialogs());
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(app.notifiers.size(), 4u);

  EXPECT_EQ(NotifyOpen(WriteDocument("a.psd", {"Alpha"})), 0);
  EXPECT_EQ(host::AcquiredSuites(), 0u);
  EXPECT_EQ(Held(), "1");
  ui->preferences["CloseFontsOnHostAppQuit"] = 1;
  EXPECT_EQ(Call("SP Interface", "Shutdown"), 0);
  EXPECT_EQ(Held(), "");
  EXPECT_TRUE(app.notifiers.empty());
  EXPECT_EQ(host::LiveObjects().blocks, 0u);
  EXPECT_EQ(message.globals, nullptr);
  EXPECT_FALSE(MarquineGlobals::GetSuppressingHostAppDialogs());
}

TEST_F(Entry, AFailedStartLeavesThePluginInertWithItsNotifiers) {
  VPILoader::UseEmptyTableForTesting();
  ui->preferences["RMF5"] = 1000;
  EXPECT_EQ(Start(), 0);
  EXPECT_TRUE(Traced("StartupPlugin, after catching an error\n"));
  EXPECT_EQ(app.notifiers.size(), 4u);
  EXPECT_EQ(ui->preferences["RMF5"], 1000) << "the steps behind the failed one are left out";
  EXPECT_EQ(NotifyOpen(WriteDocument("a.psd", {"Alpha"})), 0);
  EXPECT_EQ(Tracked(), "");
}

TEST_F(Entry, TellsTheHostOfWhatItLacks) {
  app.blockError = host_sdk::kOutOfMemory;
  EXPECT_THROW(Start(), long);
  EXPECT_EQ(host::AcquiredSuites(), 1u) << "what is thrown to the host keeps the suite";
  host::ForgetAcquisitions();
  ResetPluginMainForTesting();
  app.blockError = host_sdk::kNoErr;
  app.failingNotifiers = {Code("Cls ")};
  EXPECT_EQ(Start(), host_sdk::kBadParameters);
  EXPECT_EQ(app.notifiers.size(), 2u);
  // If notifiers are missing, a shutdown keeps the two others.
  EXPECT_EQ(Call("SP Interface", "Shutdown"), 0);
  EXPECT_EQ(app.notifiers.size(), 2u);
}

TEST_F(Entry, AMissingSuiteIsTheErrorOfTheCall) {
  Start();
  MakeReady();
  app.missingSuites = {host_sdk::kPSActionReferenceSuite};
  EXPECT_EQ(NotifyOpen(WriteDocument("a.psd", {"Alpha"})), host_sdk::kSuiteNotFound);
  app.missingSuites = {host_sdk::kPSActionDescriptorSuite};
  const fakes::GivenDescriptor descriptor;
  host_sdk::PIActionParameters parameters{descriptor.Get()};
  message.actionParameters = &parameters;
  EXPECT_EQ(Call("PS Photoshop", "Do It"), host_sdk::kSuiteNotFound);
  app.missingSuites = {host_sdk::kPSActionControlSuite};
  EXPECT_EQ(Call("SP Interface", "Shutdown"), host_sdk::kSuiteNotFound);
  EXPECT_EQ(message.globals, nullptr) << "the steps before are done";
}

TEST_F(Entry, ANotifierThatStaysIsTheErrorOfTheShutdown) {
  Start();
  app.failingNotifiers = {Code("Cls ")};
  EXPECT_EQ(Call("SP Interface", "Shutdown"), host_sdk::kBadParameters);
  EXPECT_EQ(app.notifiers.size(), 2u) << "those behind it are left in place";
}

TEST_F(Entry, AnObjectWhoseSuiteIsMissingStaysWithTheHost) {
  Start();
  host_sdk::PIActionDescriptor left = nullptr;
  {
    ScopedDescriptor descriptor;
    ASSERT_EQ(sPSActionDescriptor->Make(descriptor.Out()), host_sdk::kNoErr);
    left = descriptor.Get();
    PIUSuitesRelease();
    app.missingSuites = {host_sdk::kPSActionDescriptorSuite};
  }
  app.missingSuites.clear();
  EXPECT_EQ(sPSActionDescriptor->Free(left), host_sdk::kNoErr);
  PIUSuitesRelease();
}

TEST_F(Entry, AnswersEachCallerAndSelector) {
  Start();
  MakeReady();
  EXPECT_EQ(AutoPluginMain("SP Interface", "Startup", nullptr), 0);
  const struct {
    const char *caller, *selector;
    int32_t operation;  // none if below 0
    const char* shown;
  } kRows[] = {
      {"SP Interface", "About", -1, "about"},  {"SP Interface", "Do It", -1, ""},
      {"PS Photoshop", "About", -1, ""},       {"PS Photoshop", "Do It", -1, "command"},
      {"PS Photoshop", "Do It", 3, "command"}, {"PS Photoshop", "Do It", 4, ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.shown);
    const fakes::GivenDescriptor descriptor(Code("else"), 1);
    if (row.operation >= 0) descriptor.Put(Code("Oper"), row.operation);
    host_sdk::PIActionParameters parameters{descriptor.Get()};
    message.actionParameters = &parameters;
    EXPECT_EQ(Call(row.caller, row.selector), 0);
    EXPECT_EQ(Shown(), row.shown);
    const bool isDone = std::string(row.caller) == "PS Photoshop" && std::string(row.selector) == "Do It";
    EXPECT_NE(descriptor.Has(Code("else")), isDone) << "the host gets it back emptied";
    EXPECT_EQ(descriptor.Has(Code("SPor")), row.operation == 4);
  }
  message.actionParameters = nullptr;
  EXPECT_EQ(Call("PS Photoshop", "Do It"), host_sdk::kBadParameters);
}

// The extension event service is in the host's folder, which for a test is the folder of its program.
TEST_F(Entry, AsksForThePanelUntilTheHostHasOpenedIt) {
  const std::filesystem::path frameworks = platform::Bundle::Main()->PrivateFrameworksFolder();
  std::filesystem::remove(frameworks);
  Start();
  Wait(0.05);
  ResetPluginMainForTesting();
  CommonFunctionality::ResetForTesting();
  ui->preferences["SuppressPanelLaunch"] = 0;
  Start();
  Wait(0.05);
  EXPECT_EQ(ui->preferences["SuppressPanelLaunch"], 0);
  EXPECT_TRUE(TracedLines("RegisterPlugPlug() called").empty()) << "there is nothing to register with";
  std::filesystem::create_directory_symlink(APP_DIR "/host/Frameworks", frameworks);
  SDKPlugPlug service;
  ASSERT_EQ(service.Load(), 0);
  Lines heard;
  const auto listen = [](const csxs::event::Event* event, void* lines) {
    static_cast<Lines*>(lines)->push_back(std::to_string(event->scope) + " " + event->appID + " '" + event->data + "'");
  };
  service.AddEventListener("com.velorant.startpanel", listen, &heard);
  Wait(0.05);
  EXPECT_EQ(heard, Lines{"1 test ''"});
  EXPECT_EQ(ui->preferences["SuppressPanelLaunch"], 1);
  EXPECT_EQ(TracedLines("RegisterPlugPlug() called").size(), 1u);
  // Sent once per user, not at another start.
  ResetPluginMainForTesting();
  CommonFunctionality::ResetForTesting();
  Start();
  Wait(0.05);
  EXPECT_EQ(heard.size(), 1u);
  service.RemoveEventListener("com.velorant.startpanel", listen, &heard);
  std::filesystem::remove(frameworks);
}

TEST_F(Entry, TheTimerRestsWhileTheMachineSleeps) {
  static int sTicks;
  sTicks = 0;
  NotificationTimer timer;
  timer.initWithCallback([](platform::RunLoopTimer&, void*) { ++sTicks; });
  const auto ticksIn = [&](double seconds, platform::RunLoopMode mode) {
    const int before = sTicks;
    platform::RunLoop::Main().RunFor(seconds, mode);
    return sTicks - before;
  };
  EXPECT_NEAR(ticksIn(1.005, platform::RunLoopMode::kDefault), 100, 1);
  EXPECT_NEAR(ticksIn(1, platform::RunLoopMode::kModal), 100, 1) << "also in modal loops";
  platform::PostPowerEvent(platform::PowerEvent::kWillSleep);
  EXPECT_EQ(ticksIn(1, platform::RunLoopMode::kDefault), 0);
  platform::PostPowerEvent(platform::PowerEvent::kDidWake);
  platform::PostPowerEvent(platform::PowerEvent::kDidWake);
  EXPECT_NEAR(ticksIn(1, platform::RunLoopMode::kDefault), 100, 1) << "one timer, however often it wakes";
}

}  // namespace
