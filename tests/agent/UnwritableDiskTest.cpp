// A state folder that cannot be written: the agent serves fonts all the same, for as long as it runs, and says so.
#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "agent/AgentRing.h"
#include "agent/client/AgentFolders.h"
#include "agent/client/StateFolder.h"
#include "platform/Files.h"
#include "platform/Fonts.h"
#include "platform/Process.h"
#include "support/DebianFonts.h"
#include "support/ScopedVariable.h"

namespace {

namespace fs = std::filesystem;
using namespace agent_ring;
using testing::HasSubstr;

class UnwritableDisk : public AgentRing {
 protected:
  UnwritableDisk() {
    FillLibrary();
    program_.Write("full", "#!/bin/sh\ntrap '' XFSZ\nulimit -f 0\nexec '" APP_DIR "/agent/Nexcore' \"$@\"\n");
    fs::permissions(program_ / "full", fs::perms::owner_all);
  }
  // An agent that can create files, links and sockets, and can write nothing into them.
  void LaunchOnFullDisk() const {
    std::string error;
    ASSERT_TRUE(platform::LaunchDetached(program_ / "full", state_.Path(), program_ / "output", &error)) << error;
    AwaitListening();
  }
  void LaunchAgain() const {
    Launch();
    AwaitListening();
    vpi_.ResetPluginFacadeInstance();
  }
  std::string Unwritable() const { return RawClient(state_ / "run").Ask("GetStatus")["result"]["unwritable"]; }
  size_t CountSets() const { return RawClient(state_ / "run").Ask("GetSets")["result"]["sets"].size(); }
  void CreateSet(uint32_t font) const {
    uint32_t set = 0;
    EXPECT_EQ(vpi_.CreateTopLevelSet(Handle(), &set, 1, "Set", 0, 0, 1, &font), 0u);
  }

  test_support::TempFolder program_;
};

TEST_F(UnwritableDisk, ANewStateFolderOnAFullDiskServesFontsForThisSession) {
  LaunchOnFullDisk();
  EXPECT_THAT(Unwritable(), HasSubstr("user.db"));
  const uint32_t serif = FontNamed("LiberationSerif-Bold"), mono = FontNamed("LiberationMono-Bold");
  EXPECT_EQ(Activate({serif}, 1), 1u);
  EXPECT_EQ(Activate({mono}, 4), 1u);
  EXPECT_EQ(StateOf(mono), "4");
  EXPECT_TRUE(platform::ActivePostScriptNames().contains("LiberationSerif-Bold"));
  CreateSet(serif);
  EXPECT_EQ(CountSets(), 1u);
  const Json refused =
      RawClient(state_ / "run").Ask("PutLibrary", {{"workgroupID", 0}, {"name", "New"}, {"folders", Json::array()}});
  EXPECT_EQ(refused["code"], agent_protocol::kDatabaseError) << "the configuration has no copy in memory";
  End(SIGTERM);

  LaunchAgain();
  EXPECT_EQ(Unwritable(), "");
  EXPECT_NE(FontNamed("LiberationSerif-Bold"), 0u);
  EXPECT_EQ(CountSets(), 0u);
}

TEST_F(UnwritableDisk, WhatWasStoredBeforeIsThereAndStays) {
  Launch();
  const uint32_t serif = FontNamed("LiberationSerif-Bold"), mono = FontNamed("LiberationMono-Bold");
  EXPECT_EQ(Activate({mono}, 4), 1u);
  CreateSet(serif);
  End(SIGTERM);

  // New fonts have come, and the disk is full.
  fs::copy_file(debian_fonts::kDejaVu + "DejaVuSans.ttf", fonts_ / "DejaVuSans.ttf");
  LaunchOnFullDisk();
  vpi_.ResetPluginFacadeInstance();
  EXPECT_EQ(FontNamed("LiberationSerif-Bold"), serif);
  EXPECT_EQ(StateOf(mono), "4");
  const uint32_t fresh = FontNamed("DejaVuSans");
  EXPECT_EQ(Activate({fresh}, 1), 1u);
  EXPECT_THAT(Unwritable(), HasSubstr("user.db"));
  CreateSet(fresh);
  EXPECT_EQ(CountSets(), 2u);
  End(SIGTERM);

  LaunchAgain();
  EXPECT_EQ(FontNamed("LiberationSerif-Bold"), serif);
  EXPECT_NE(FontNamed("DejaVuSans"), 0u);
  EXPECT_EQ(CountSets(), 1u);
  EXPECT_EQ(StateOf(mono), "4");
}

// As on a read-only disk, where nothing can be made.
TEST_F(UnwritableDisk, AFolderOfDatabasesThatCanNotBeMadeIsNoReasonToServeNothing) {
  fs::create_directory_symlink("/proc/nowhere", state_ / "agent");
  LaunchAgain();
  EXPECT_THAT(Unwritable(), HasSubstr("user.db"));
  EXPECT_EQ(Activate({FontNamed("LiberationSerif-Bold")}, 1), 1u);
}

// Nothing can be made in a folder that is a link to nowhere, not even by root.
class UnmakeableFolders : public AgentRing {
 protected:
  UnmakeableFolders() {
    FillLibrary();
    for (const char* name : {"run", "agent", "active"}) fs::create_directory_symlink("/proc/nowhere", state_ / name);
  }
  // Returns the status of an agent that finds another one, or -1.
  int StatusOfSecondAgent() const {
    return std::system(("exec '" APP_DIR "/agent/Nexcore' '" + state_.Path() + "' 2>/dev/null").c_str());
  }

  test_support::TempFolder session_;
  const test_support::ScopedVariable runtime_{"XDG_RUNTIME_DIR", session_.Path()};
};

TEST_F(UnmakeableFolders, AnAgentServesItsFontsFromTheSession) {
  Launch();
  const uint32_t serif = FontNamed("LiberationSerif-Bold");
  EXPECT_EQ(Activate({serif}, 4), 1u) << "the library finds the agent in another place than it was told";
  EXPECT_THAT(Links(), testing::ElementsAre(std::to_string(serif) + ".ttf"));
  EXPECT_THAT(Runtime(), testing::StartsWith(session_.Path()));
  EXPECT_EQ(Runtime(),
            agent_client::RuntimeFolderOf(state_.Path() + "/../" + fs::path(state_.Path()).filename().string()));
  EXPECT_THAT(RawClient(Runtime()).Ask("GetStatus")["result"]["unwritable"].dump(), HasSubstr("user.db"));
  platform::SetPlaces(agent_client::PlacesOf(state_.Path(), false));
  EXPECT_THAT(platform::ActivePostScriptNames(), testing::ElementsAre("LiberationSerif-Bold"));
  End(SIGKILL);
  EXPECT_EQ(StateOf(serif), "0")
      << "the library starts an agent of the same folder, and the memory of the first is gone";
  std::string log;
  EXPECT_FALSE(platform::ReadFile(agent_client::SessionFolderOf(state_.Path()) + "/agent/agent.log", log));
  EXPECT_THAT(log, HasSubstr("kept only until the agent ends"));
}

TEST_F(UnmakeableFolders, OneAgentServesThemAlsoWhenTheDiskCanBeWrittenAgain) {
  Launch();
  AwaitListening();
  const int process = RawClient(Runtime()).AgentProcess();
  EXPECT_EQ(StatusOfSecondAgent(), 0);
  fs::remove(state_ / "run");
  EXPECT_EQ(StatusOfSecondAgent(), 0);
  EXPECT_EQ(RawClient(Runtime()).AgentProcess(), process);
}

}  // namespace
