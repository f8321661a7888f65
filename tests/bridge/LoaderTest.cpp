// Finding the agent's library and the agent itself.
#include <unistd.h>

#include <future>

#include "Bridge/AgentLaunch.h"
#include "platform/Process.h"
#include "support/PluginFixture.h"

using namespace fakes;

namespace {

constexpr const char* kLibrary = APP_DIR "/agent/VelorantPluginInterface.framework";

class Loader : public PluginFixture {
 protected:
  Loader() { MarquineGlobals::IdentifyPluginBundleID("com.velorant.test"); }

  // A library of this version, with the real one's functions.
  void PutLibrary(const std::string& where, const std::string& version) {
    const std::string bundle = where + "/VelorantPluginInterface.framework";
    WriteInfo(bundle, "CFBundleShortVersionString", version);
    std::filesystem::create_symlink(std::string(kLibrary) + "/VelorantPluginInterface",
                                    folder / bundle + "/VelorantPluginInterface");
  }
  void WriteInfo(const std::string& bundle, const std::string& key, const std::string& text) {
    folder.Write(bundle + "/Info.plist",
                 "<plist version=\"1.0\"><dict><key>" + key + "</key><string>" + text + "</string></dict></plist>");
  }
  std::string LaunchConfiguration(const std::string& text) {
    return folder.Write("Library/Velorant/com.velorant.Nexcore-LaunchInfo.conf", text);
  }
};

}  // namespace

TEST_F(Loader, ToleratesTheOneGap) {
  constexpr int kAll = VPILoader::kTableSize;
  const char* const kLine = "VPILoader::IsLoaded() returning false because ";
  const struct {
    int missing;
    bool hasOnlineState;
    const char* why;  // of a refusal
  } rows[] = {{0, true, nullptr},
              {1, false, nullptr},
              {1, true, "of one or more null inputs."},
              {2, false, "of one or more null inputs."},
              {kAll, false, "all 80 functions are missing."}};
  VPILoader* const table = VPILoader::GetSharedInstance();
  const auto online = table->pfGetIsOnline;
  for (const auto& row : rows) {
    table->SetMissingFunctionsForTesting(row.missing);
    table->pfGetIsOnline = row.hasOnlineState ? online : nullptr;
    trace.clear();
    std::string path, version;
    int told = -1;
    EXPECT_EQ(table->IsLoaded(&path, &version, &told), row.why == nullptr) << row.missing;
    EXPECT_EQ(told, row.missing);
    EXPECT_TRUE(!row.why || Traced(kLine + std::string(row.why))) << row.missing;
  }
  EXPECT_FALSE(table->IsLoaded(nullptr, nullptr, nullptr));
  EXPECT_TRUE(Traced(std::string(kLine) + "it was called incorrectly."));
}

TEST_F(Loader, ChecksEveryMemberButTheLast) {
  VPILoader* const table = VPILoader::GetSharedInstance();
  EXPECT_FALSE(table->VerifyThatAllMembersAre(false));
  EXPECT_EQ(TracedLines("ERROR:  this->pf").size(), 79u);
  EXPECT_TRUE(Traced("ERROR:  this->pfActivateFonts is not NULL."));
  trace.clear();
  table->pfCanAccessGoogleFonts = nullptr;
  EXPECT_TRUE(table->VerifyThatAllMembersAre(true));
  table->pfLog = nullptr;
  EXPECT_FALSE(table->VerifyThatAllMembersAre(true));
  EXPECT_EQ(trace, std::vector<std::string>{"ERROR:  this->pfLog is NULL."});
}

TEST_F(Loader, LooksInThePluginThenBesideTheAgentThenInTheFixedFolder) {
  const std::string besideAgent = folder / "agent/VelorantPluginInterface.framework";
  WriteInfo("Test.plugin", "CFBundleIdentifier", "com.velorant.test");
  const struct {
    const char* version;
    std::function<void()> add;
    std::string path;
  } rows[] = {
      {"", [] {}, ""},
      {"1", [&] { PutLibrary("Library/Frameworks", "1"); }, ""},
      // The path says what was searched, even if nothing was there.
      {"1",
       [&] {
         std::filesystem::create_directories(folder / "agent");
         std::filesystem::copy_file("/bin/true", folder / "agent/Nexcore");
         LaunchConfiguration("Nexcore.Path = " + folder / "agent/Nexcore" + "  # the agent\nnexcore.args=a b\n");
       },
       besideAgent},
      {"2", [&] { PutLibrary("agent", "2"); }, besideAgent},
      {"3", [&] { PutLibrary("Test.plugin/Frameworks", "3"); }, ""},
  };
  platform::BundleRef plugin;
  for (const auto& row : rows) {
    row.add();
    if (row.version == std::string("3")) plugin = platform::Bundle::Create(folder / "Test.plugin");
    VPILoader::ResetForTesting();
    std::string path, version;
    int missing = -1;
    EXPECT_EQ(VPILoader::GetSharedInstance()->IsLoaded(&path, &version, &missing), *row.version != '\0');
    EXPECT_EQ(version, row.version);
    EXPECT_EQ(VPILoader::GetSharedInstance()->VersionStringRef().View(), version);
    EXPECT_EQ(missing, *row.version ? 0 : VPILoader::kTableSize) << row.version;
    EXPECT_EQ(path, row.path) << row.version;
  }
}

TEST_F(Loader, ReportsWhatIsNowhereAndLooksOnce) {
  VPILoader::ResetForTesting();
  VPILoader* const table = VPILoader::GetSharedInstance();
  EXPECT_TRUE(Traced("ERROR:  cannot find VelorantPluginInterface.framework"));
  EXPECT_EQ(GetFacade(), 0u);
  trace.clear();
  EXPECT_EQ(VPILoader::GetSharedInstance(), table);
  EXPECT_TRUE(trace.empty());
  bool isRunning = true;
  EXPECT_EQ(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr, isRunning), CoreErrorCodes::kUnknownError);
  EXPECT_FALSE(isRunning);
  EXPECT_EQ(FontManagerInterface::sm_pFontManager, nullptr);
}

TEST_F(Loader, LaunchConfigurationDecides) {
  platform::Places places = platform::GetPlaces();
  places.fileSystemRoot = folder / "root";
  platform::SetPlaces(places);
  const struct {
    const char* why;
    std::string text;
    int expected;
  } rows[] = {
      {"no path", "nexcore.args=x\n", -1},
      {"no program there", "nexcore.path=/bin/no-such-program\n", -1},
      {"a folder", "nexcore.path=/bin\n", -1},
      {"empty", "", -1},
      {"a program", "nexcore.path=/bin/true\r\nnexcore.args=x\r\n", 0},
  };
  std::string launched = "untouched";
  for (const auto& row : rows) {
    trace.clear();
    LaunchConfiguration(row.text);
    EXPECT_EQ(FindAndLaunchNexcore(&launched), row.expected) << row.why;
    EXPECT_EQ(launched, row.expected == 0 ? "/bin/" : "untouched") << row.why;
    EXPECT_EQ(Traced("Could not launch Nexcore"), row.expected != 0) << row.why;
  }
  // The local configuration wins over the user's, which names a program.
  folder.Write("root/Library/Velorant/com.velorant.Nexcore-LaunchInfo.conf", "nexcore.path=/bin/no-such-program");
  EXPECT_EQ(FindAndLaunchNexcore(nullptr), -1);
}

TEST_F(Loader, RunningProgramIsFoundByItsName) {
  std::string found = "untouched";
  EXPECT_EQ(GetPathToRunningProcessExe("Nexcore", found), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(found, "untouched");
  const auto announcement = platform::AnnounceApplication("bridge_tests", "com.velorant.tests");
  ASSERT_TRUE(announcement);
  const std::string executable = std::filesystem::read_symlink("/proc/self/exe").string();
  EXPECT_EQ(GetPathToRunningProcessExe("bridge_tests", found), CoreErrorCodes::kSuccess);
  EXPECT_EQ(found, executable.substr(0, executable.size() - std::string("bridge_tests").size()));
  int processID = 0;
  EXPECT_EQ(GetProcessID("com.velorant.tests", processID), CoreErrorCodes::kSuccess);
  EXPECT_EQ(processID, getpid());
}

TEST_F(Loader, ALaunchedProgramIsWaitedForUntilItAnnouncesItself) {
  std::string found;
  SetAnnouncementPatienceForTesting(std::chrono::milliseconds(0));
  EXPECT_EQ(AwaitPathToRunningProcessExe("bridge_tests", found), CoreErrorCodes::kUnknownError);
  SetAnnouncementPatienceForTesting(std::chrono::minutes(1));
  auto waiting = std::async(std::launch::async, [&] { return AwaitPathToRunningProcessExe("bridge_tests", found); });
  const auto announcement = platform::AnnounceApplication("bridge_tests", "com.velorant.tests");
  EXPECT_EQ(waiting.get(), CoreErrorCodes::kSuccess);
  EXPECT_NE(found, "");
}

TEST_F(Loader, ConfiguredPathIsTheFirstLineThatHoldsTheKey) {
  folder.Write("Library/F/conf", "path but nothing else\nlong.path.key=first\r\npath=second\nend=last");
  const std::pair<const char*, const char*> rows[] = {{"path", "first"}, {"end", "last"}, {"none", ""}};
  for (const auto& [key, expected] : rows) {
    std::string value;
    EXPECT_EQ(GetConfiguredPath("F", "conf", key, value) == CoreErrorCodes::kSuccess, *expected != '\0') << key;
    EXPECT_EQ(value, expected) << key;
  }
  std::string value;
  EXPECT_EQ(GetConfiguredPath("F", "missing", "path", value), CoreErrorCodes::kUnknownError);
}

TEST_F(Loader, VersionOfALibrary) {
  char version[64] = "untouched";
  EXPECT_FALSE(ReadVersionResource(folder.Path().c_str(), sizeof version, version));
  EXPECT_FALSE(ReadVersionResource(kLibrary, 1, version)) << "no room";
  EXPECT_STREQ(version, "untouched");
  PutLibrary("here", "7.1");
  EXPECT_TRUE(
      ReadVersionResource((folder / "here/VelorantPluginInterface.framework").c_str(), sizeof version, version));
  EXPECT_STREQ(version, "7.1");
}
