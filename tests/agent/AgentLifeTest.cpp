// The real agent is started, ended and killed: what happens to the fonts and the clients.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "agent/AgentRing.h"
#include "platform/Fonts.h"
#include "support/DebianFonts.h"

namespace {

namespace fs = std::filesystem;
using namespace agent_ring;
using testing::AllOf;
using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class AgentLife : public AgentRing {
 protected:
  AgentLife() {
    FillLibrary();
    Launch();
  }
  // Does what the plug-in does when a command finds that the agent is gone.
  void Relaunch() const {
    Launch();
    vpi_.ResetPluginFacadeInstance();
  }
};

TEST_F(AgentLife, AKilledAgentIsNoticedAndALivingClientGetsItsFontsAgain) {
  vpi_.RegisterForNotifications(Handle(), &Recorder::Callback);
  const uint32_t serif = FontNamed("LiberationSerif-Bold"), mono = FontNamed("LiberationMono-Bold");
  const uint32_t regular = FontNamed("NimbusSans-Regular");
  ASSERT_EQ(Activate({serif, regular}), 2u);
  ASSERT_EQ(vpi_.PreviewActivateFonts(Handle(), 1, &mono, 0), 0u);
  ASSERT_EQ(vpi_.DeactivateFonts(Handle(), 1, &regular, 0), 0u);
  const FacadeHandle before = Handle();
  End(SIGKILL);
  EXPECT_THAT(Links(), SizeIs(2));

  uint32_t failed = 0, failedCount = 0, refusedCount = 0, refused = 0;
  // Both codes mean that the agent is gone. Which one comes depends on whether the dying agent's socket still accepted
  // a connection.
  EXPECT_THAT(
      vpi_.ActivateFonts(Handle(), 1, &regular, 0, 1, 1, 1, 1, 1, &failed, &refused, &failedCount, &refusedCount),
      AnyOf(PluginInterface::kAgentShutdownCode, PluginInterface::kServiceUnavailableCode));
  Relaunch();
  EXPECT_NE(Handle(), before);
  EXPECT_TRUE(IsActive(serif));
  EXPECT_EQ(StateOf(serif), "2");
  EXPECT_EQ(StateOf(mono), "9");
  EXPECT_FALSE(IsActive(regular));
  int32_t online = 99;
  EXPECT_EQ(vpi_.GetIsOnline(before, &online), PluginInterface::kAgentShutdownCode);
  // The client does not register again, but gets the new agent's notifications.
  ASSERT_EQ(Activate({regular}), 1u);
  EXPECT_TRUE(recorder_.Await(PluginInterface::kFontActivated, regular));
  EXPECT_EQ(vpi_.DeactivateFonts(Handle(), 1, &serif, 0), 0u);
  EXPECT_FALSE(platform::ActivePostScriptNames().contains("LiberationSerif-Bold"));
}

// Its user starts a missing agent only for a change, and gives up when none runs. A document that opens now must find
// its fonts all the same.
TEST_F(AgentLife, ALookUpAndTheQuestionWhetherItRunsStartAnAgentThatWasKilledButNotOneThatEnded) {
  const uint32_t serif = FontNamed("LiberationSerif-Bold");
  ASSERT_EQ(Activate({serif}), 1u);
  End(SIGKILL);
  EXPECT_EQ(FontNamed("LiberationSerif-Bold"), serif);
  EXPECT_TRUE(IsActive(serif));
  End(SIGKILL);
  int32_t isRunning = 99;
  EXPECT_EQ(vpi_.GetIsCoreAgentProcessRunning(Handle(), &isRunning), 0u);
  EXPECT_EQ(isRunning, 1);
  EXPECT_TRUE(IsActive(serif));
  End(SIGTERM);
  EXPECT_EQ(vpi_.GetIsCoreAgentProcessRunning(Handle(), &isRunning), 0u);
  EXPECT_EQ(isRunning, 0);
  uint32_t count = 0;
  EXPECT_NE(vpi_.GetFontsByPostscriptName(Handle(), "LiberationSerif-Bold", nullptr, 0, nullptr, 0, &count), 0u);
  EXPECT_FALSE(fs::exists(state_ / "run/nexcore.sock"));
}

// The client's library knows the font by the ID of its former version only.
TEST_F(AgentLife, AFontThatWasUpdatedWhileAClientHeldItOutlivesTheNextKillsToo) {
  const uint32_t serif = FontNamed("LiberationSerif-Bold");
  ASSERT_EQ(Activate({serif}), 1u);
  End(SIGKILL);
  fonts_.Write("LiberationSerif-Bold.ttf", debian_fonts::UpdatedSerifBold());
  for (int kill = 0; kill < 2; ++kill) {
    const uint32_t updated = FontNamed("LiberationSerif-Bold");
    EXPECT_NE(updated, serif);
    EXPECT_TRUE(IsActive(updated)) << kill;
    End(SIGKILL);
  }
  const uint32_t updated = FontNamed("LiberationSerif-Bold");
  EXPECT_EQ(vpi_.DeactivateFonts(Handle(), 1, &serif, 0), 0u);
  EXPECT_FALSE(IsActive(updated));
  const Json reply = RawClient(state_ / "run").Ask("ActivateFonts", {{"fontIDs", {updated, serif}}, {"kind", 1}});
  EXPECT_THAT(reply["result"]["activated"], SizeIs(2)) << "each ID that was given is answered";
}

// Another program may start the agent again. A plug-in with open documents may make no call meanwhile.
TEST_F(AgentLife, AnAgentThatCameBackByItselfGetsTheFontsOfAClientThatIsSilent) {
  const uint32_t serif = FontNamed("LiberationSerif-Bold"), mono = FontNamed("LiberationMono-Bold");
  vpi_.RegisterForNotifications(Handle(), &Recorder::Callback);
  ASSERT_EQ(Activate({serif}), 1u);
  const FacadeHandle before = Handle();
  End(SIGKILL);
  Launch();
  AwaitListening();
  RawClient other(state_ / "run");
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kMostMilliseconds);
  while (other.Ask("GetFontIsActivated", {{"fontIDs", {serif}}})["result"]["flags"] != Json{1}) {
    ASSERT_LT(std::chrono::steady_clock::now(), end);
  }
  EXPECT_NE(Handle(), before);
  EXPECT_EQ(StateOf(serif), "2");
  other.Ask("ActivateFonts", {{"fontIDs", {mono}}, {"kind", 1}});
  EXPECT_TRUE(recorder_.Await(PluginInterface::kFontActivated, mono));
}

TEST_F(AgentLife, AnOrderlyEndIsToldAndTakesBackWhatClientsAskedFor) {
  vpi_.RegisterForNotifications(Handle(), &Recorder::Callback);
  ASSERT_EQ(Activate({FontNamed("LiberationSerif-Bold")}), 1u);
  End(SIGTERM);
  EXPECT_TRUE(recorder_.Await(PluginInterface::kAgentShutdown));
  EXPECT_THAT(Links(), IsEmpty());
  EXPECT_FALSE(fs::exists(state_ / "run/nexcore.sock"));
}

TEST_F(AgentLife, WhatAnOrderlyGoodbyeLeavesActiveOutlivesTheAgent) {
  const uint32_t serif = FontNamed("LiberationSerif-Bold"), mono = FontNamed("LiberationMono-Bold");
  ASSERT_EQ(Activate({serif}), 1u);
  ASSERT_EQ(vpi_.PreviewActivateFonts(Handle(), 1, &mono, 0), 0u);
  EXPECT_EQ(vpi_.DestroyThreadInstance(Handle()), 0u);
  EXPECT_TRUE(IsActive(serif));
  EXPECT_FALSE(IsActive(mono));
  End(SIGKILL);
  Relaunch();
  EXPECT_TRUE(IsActive(serif));
  uint32_t held = 99;
  EXPECT_EQ(vpi_.GetClientFontActivationStates(1, &serif, &held), 0u);
  EXPECT_EQ(held, 0u);
  EXPECT_EQ(vpi_.DeactivateFonts(Handle(), 1, &serif, 0), 0u);
  EXPECT_THAT(Links(), IsEmpty());
}

TEST_F(AgentLife, ASecondStartGoesOnWithWhatWasStored) {
  const std::vector<uint32_t> before = FontsNamed("NimbusSans-Bold");
  uint32_t set = 0;
  ASSERT_EQ(vpi_.CreateTopLevelSet(Handle(), &set, 1, "Mine", 0, 0, 2, before.data()), 0u);
  const Json sets = RawClient(state_ / "run").Ask("GetSets")["result"];
  const Json report = RawClient(state_ / "run").Ask("GetScanReport")["result"];
  EXPECT_EQ(report["faces"], 5);
  EXPECT_THAT(report["problems"].dump(), HasSubstr("broken.otf"));
  End(SIGKILL);
  fs::remove(state_ / "agent/index.db");
  Relaunch();
  EXPECT_EQ(FontsNamed("NimbusSans-Bold"), before);
  EXPECT_EQ(RawClient(state_ / "run").Ask("GetSets")["result"], sets);
  EXPECT_EQ(RawClient(state_ / "run").Ask("GetScanReport")["result"], report);
}

TEST_F(AgentLife, NonsenseOnTheWireEndsOnlyWhoSentIt) {
  const std::string nonsense[] = {"GET / HTTP/1.1\r\n\r\n", std::string("\0\0\0\2{}", 6), std::string("\0\0\0\1[", 5),
                                  std::string("\0\0\0\4\xFF\xFF\xFF\xFF", 8)};
  FontNamed("LiberationSerif-Bold");
  for (const std::string& bytes : nonsense) {
    const RawClient client(state_ / "run");
    client.SendBytes(bytes);
    EXPECT_TRUE(client.IsEnded());
  }
  EXPECT_THAT(debian_fonts::Bytes(state_ / "agent/agent.log"),
              AllOf(HasSubstr("longer than 1048576 bytes"), HasSubstr("no request; its connection is closed")));
  EXPECT_NE(FontNamed("LiberationSerif-Bold"), 0u);
}

// Programs look for the agent as soon as they have started it, and large databases take a while to open.
TEST_F(AgentRing, AnnouncesItselfBeforeItOpensItsFiles) {
  FillLibrary();
  fs::create_directory(state_ / "agent");
  const std::string log = state_ / "agent/agent.log";
  ASSERT_EQ(mkfifo(log.c_str(), 0600), 0);  // opening it blocks until something reads
  LaunchAndAwaitAnnouncement();
  const platform::Descriptor reader(open(log.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_NE(FontNamed("LiberationSerif-Bold"), 0u);
  End(SIGTERM);
}

int StatusOf(const std::string& command) { return WEXITSTATUS(std::system((command + " 2>/dev/null").c_str())); }

TEST_F(AgentLife, OneAgentServesAStateFolder) {
  FontNamed("LiberationSerif-Bold");
  const int process = RawClient(state_ / "run").AgentProcess();
  fs::create_directory_symlink(state_.Path(), fonts_ / "other name");
  for (const std::string& folder : {state_.Path(), "'" + fonts_ / "other name'"}) {
    EXPECT_EQ(StatusOf(APP_DIR "/agent/Nexcore " + folder), 0) << folder;
  }
  EXPECT_EQ(RawClient(state_ / "run").AgentProcess(), process);
}

// Also if they start together.
TEST_F(AgentRing, OfSeveralAgentsThatStartTogetherOneStays) {
  const std::string start = "( " APP_DIR "/agent/Nexcore " + state_.Path() + "; echo $? ) & ";
  EXPECT_EQ(StatusOf("{ " + start + start + start + "} | { read one; read two; test $one$two = 00; }"), 0);
  EXPECT_NE(RawClient(state_ / "run").AgentProcess(), 0);
}

TEST_F(AgentLife, AClientOfAnotherProtocolIsRefusedAndHarmsNobody) {
  const uint32_t serif = FontNamed("LiberationSerif-Bold");
  ASSERT_EQ(Activate({serif}), 1u);
  RawClient other(state_ / "run");
  const Json reply = other.Hello(agent_protocol::kProtocolVersion + 1);
  EXPECT_EQ(reply["code"], agent_protocol::kVersionMismatch);
  EXPECT_EQ(reply["result"]["protocol"], agent_protocol::kProtocolVersion);
  EXPECT_EQ(other.Ask("SetNotifications", {{"wanted", true}})["code"], agent_protocol::kInvalidParam);
  EXPECT_TRUE(IsActive(serif));
}

TEST_F(AgentRing, AStartThatCanNotBeSaysWhyAndFails) {
  const std::string nexcore = APP_DIR "/agent/Nexcore ";
  EXPECT_EQ(StatusOf(nexcore), 2);
  EXPECT_EQ(StatusOf(nexcore + state_ / "nowhere"), 2);
  for (const char* text : {"", "[]", "{\"library\":[1]}", "{\"desktop\":\"yes\"}", "{\"library\":"}) {
    state_.Write("nexcore.json", text);
    EXPECT_EQ(StatusOf(nexcore + state_.Path()), 2) << text;
  }
  EXPECT_FALSE(fs::exists(state_ / "agent"));
}

// It does not continue, and does not create parts of the folder again.
TEST_F(AgentLife, AnAgentWhoseStateFolderIsGoneSaysSoAndEnds) {
  const uint32_t serif = FontNamed("LiberationSerif-Bold");
  ASSERT_EQ(Activate({serif}), 1u);
  RawClient client(state_ / "run");
  EXPECT_EQ(client.Ask("GetFontIsActivated", {{"fontIDs", {serif}}})["code"], 0);
  fs::rename(state_.Path(), fonts_ / "aside");
  EXPECT_EQ(client.Ask("GetFontIsActivated", {{"fontIDs", {serif}}})["code"], 0x01002008u);
  EXPECT_TRUE(client.IsEnded());
  EXPECT_FALSE(fs::exists(state_.Path()));
  EXPECT_THAT(debian_fonts::Bytes(fonts_ / "aside/agent/agent.log"), HasSubstr(state_.Path() + ": was removed"));
}

TEST_F(AgentRing, ADamagedUserDatabaseIsReportedAndLeftAlone) {
  FillLibrary();
  state_.Write("agent/user.db", std::string(3000, '?'));
  Launch();
  EXPECT_EQ(vpi_.InitThreadInstance(Handle()), 0x01002008u);
  char path[1024] = {};
  EXPECT_EQ(vpi_.GetFontVaultPath(Handle(), sizeof path, path), 0u);
  EXPECT_EQ(path, state_ / "agent");
  uint32_t id = 0, count = 0;
  EXPECT_EQ(vpi_.GetFontsByPostscriptName(Handle(), "X", nullptr, 0, &id, 1, &count), 0x01002008u);
  EXPECT_EQ(debian_fonts::Bytes(state_ / "agent/user.db"), std::string(3000, '?'));
  EXPECT_THAT(debian_fonts::Bytes(state_ / "agent/agent.log"), HasSubstr("user.db"));
}

// An agent that a command started ends with the last client and leaves nothing behind.
TEST_F(AgentRing, EndsWithItsLastClientWhereItIsToldTo) {
  FillLibrary();
  WriteConfiguration({{"exitWithLastClient", true}});
  Launch();
  ASSERT_EQ(Activate({FontNamed("LiberationSerif-Bold")}), 1u);
  RawClient watcher(state_ / "run");  // sends no hello, so it does not count as a client
  vpi_.ResetPluginFacadeInstance();
  EXPECT_TRUE(watcher.IsEnded());
  EXPECT_THAT(Links(), IsEmpty());
}

}  // namespace
