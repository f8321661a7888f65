// Finding the agent's library and the agent itself.
#include <unistd.h>

#include "Bridge/AgentLaunch.h"
#include "platform/Process.h"
#include "support/PluginFixture.h"

using namespace fakes;

namespace {

constexpr const char* kLibrary = APP_DIR "/agent/VelorantPluginInterface.framework";

class Loader : public PluginFixture {
 protected:
  // What IsLoaded says of a table with so many functions missing.
  bool IsLoaded(int missing, bool hasOnlineState) {
    VPILoader* const table = VPILoader::GetSharedInstance();
    table->SetMissingFunctionsForTesting(missing);
    const auto online = table->pfGetIsOnline;
    if (!hasOnlineState) table->pfGetIsOnline = nullptr;
    std::string path, version;
    int told = 0;
    const bool isLoaded = table->IsLoaded(&path, &version, &told);
    EXPECT_EQ(told, missing);
    table->pfGetIsOnline = online;
    return isLoaded;
  }
  void PutLibrary(const std::string& where) {
    std::filesystem::create_directories(std::filesystem::path(where).parent_path());
    std::filesystem::create_directory_symlink(kLibrary, where);
  }
  std::string LaunchConfiguration(const std::string& text) {
    return folder.Write("Library/Velorant/com.velorant.Nexcore-LaunchInfo.conf", text);
  }
};

}  // namespace

TEST_F(Loader, ToleratesTheOneGap) {
  constexpr int kAll = VPILoader::kTableSize;
  EXPECT_EQ(kAll, 80);
  EXPECT_TRUE(IsLoaded(0, true));
  EXPECT_TRUE(IsLoaded(1, false));
  EXPECT_FALSE(IsLoaded(1, true));
  EXPECT_TRUE(Traced("VPILoader::IsLoaded() returning false because of one or more null inputs."));
  EXPECT_FALSE(IsLoaded(2, false));
  EXPECT_FALSE(IsLoaded(kAll, false));
  EXPECT_TRUE(Traced("VPILoader::IsLoaded() returning false because all 80 functions are missing."));
  EXPECT_FALSE(VPILoader::GetSharedInstance()->IsLoaded(nullptr, nullptr, nullptr));
  EXPECT_TRUE(Traced("VPILoader::IsLoaded() returning false because it was called incorrectly."));
}

TEST_F(Loader, ChecksEveryMemberButTheLast) {
  VPILoader* const table = VPILoader::GetSharedInstance();
  EXPECT_TRUE(table->VerifyThatAllMembersAre(true));
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

TEST_F(Loader, FindsTheRealLibraryInTheFixedFolderAndLooksFunctionsUpInOrder) {
  PutLibrary(folder / "Library/Frameworks/VelorantPluginInterface.framework");
  MarquineGlobals::IdentifyPluginBundleID("com.velorant.test");
  VPILoader::ResetForTesting();
  std::string path, version;
  int missing = -1;
  EXPECT_TRUE(VPILoader::GetSharedInstance()->IsLoaded(&path, &version, &missing));
  EXPECT_EQ(missing, 0);
  EXPECT_EQ(path, "") << "no folder of an agent was known";
  EXPECT_EQ(VPILoader::GetSharedInstance()->VersionStringRef().View(), version);
  EXPECT_FALSE(version.empty());

  std::vector<std::string> names;
  for (const std::string& line : TracedLines("CFBundleGetFunctionPointerForName(")) {
    const size_t start = line.find('\'') + 1;
    names.push_back(line.substr(start, line.find('\'', start) - start));
  }
  ASSERT_EQ(names.size(), 80u);
  EXPECT_EQ(names.front(), "ActivateFonts");
  EXPECT_EQ(names.back(), "CanAccessGoogleFonts");
  const auto early = std::find(names.begin(), names.end(), "QueryForSmartListFonts");
  EXPECT_EQ(*(early - 1), "DeleteSmartList");
  EXPECT_EQ(*(early + 1), "GetSmartList");
}

TEST_F(Loader, ReportsWhatIsNowhere) {
  MarquineGlobals::IdentifyPluginBundleID("com.velorant.test");
  VPILoader::ResetForTesting();
  VPILoader* const table = VPILoader::GetSharedInstance();
  EXPECT_TRUE(Traced("ERROR:  cannot find VelorantPluginInterface.framework"));
  std::string path, version;
  int missing = 0;
  EXPECT_FALSE(table->IsLoaded(&path, &version, &missing));
  EXPECT_EQ(missing, VPILoader::kTableSize);
  EXPECT_EQ(GetFacade(), 0u);
  trace.clear();
  EXPECT_EQ(VPILoader::GetSharedInstance(), table);
  EXPECT_TRUE(trace.empty()) << "a second call does no search";
  bool isRunning = true;
  EXPECT_EQ(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr, isRunning), CoreErrorCodes::kUnknownError);
  EXPECT_FALSE(isRunning);
  EXPECT_EQ(FontManagerInterface::sm_pFontManager, nullptr);
}

TEST_F(Loader, AgentsFolderIsTriedBeforeTheFixedOne) {
  const std::string agentFolder = folder / "agent/";
  std::filesystem::create_directories(agentFolder);
  std::filesystem::copy_file("/bin/true", agentFolder + "Nexcore");
  LaunchConfiguration("Nexcore.Path = " + agentFolder + "Nexcore  # the agent\nnexcore.args=a b\n");
  MarquineGlobals::IdentifyPluginBundleID("com.velorant.test");
  // No library lies there, so the fixed folder is tried all the same; the path tells what was searched.
  PutLibrary(folder / "Library/Frameworks/VelorantPluginInterface.framework");
  for (const bool liesBesideTheAgent : {false, true}) {
    if (liesBesideTheAgent) PutLibrary(agentFolder + "VelorantPluginInterface.framework");
    VPILoader::ResetForTesting();
    std::string path, version;
    int missing = 0;
    EXPECT_TRUE(VPILoader::GetSharedInstance()->IsLoaded(&path, &version, &missing));
    EXPECT_EQ(path, agentFolder + "VelorantPluginInterface.framework");
  }
}

TEST_F(Loader, LaunchConfigurationDecides) {
  const struct {
    const char* why;
    std::string text;
    int expected;
  } rows[] = {
      {"a program", "nexcore.path=/bin/true\r\nnexcore.args=x\r\n", 0},
      {"no program there", "nexcore.path=/bin/no-such-program\n", -1},
      {"no path", "nexcore.args=x\n", -1},
      {"a folder", "nexcore.path=/bin\n", -1},
      {"empty", "", -1},
  };
  for (const auto& row : rows) {
    trace.clear();
    LaunchConfiguration(row.text);
    std::string launched = "untouched";
    EXPECT_EQ(FindAndLaunchNexcore(&launched), row.expected) << row.why;
    EXPECT_EQ(launched, row.expected == 0 ? "/bin/" : "untouched") << row.why;
    EXPECT_EQ(Traced("Could not launch Nexcore"), row.expected != 0) << row.why;
    EXPECT_EQ(FindAndLaunchNexcore(nullptr), row.expected) << row.why;
  }
}

TEST_F(Loader, LocalConfigurationWinsOverTheUsers) {
  platform::Places places = platform::GetPlaces();
  places.fileSystemRoot = folder / "root";
  platform::SetPlaces(places);
  LaunchConfiguration("nexcore.path=/bin/true");  // the user's
  EXPECT_EQ(FindAndLaunchNexcore(nullptr), 0);
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
  EXPECT_TRUE(ReadVersionResource(kLibrary, sizeof version, version));
  EXPECT_STRNE(version, "untouched");
}
