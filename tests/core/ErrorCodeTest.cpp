#include <gmock/gmock.h>

#include <string>

#include "CoreFixtures.h"
#include "FailedCheck.h"

namespace {

using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::MatchesRegex;

// The lower 24 bits of every code that a class reports.
constexpr std::pair<const char*, TModuleErrorCode> kClasses[] = {{"CoreErrorCodes", 0x000000},
                                                                 {"GFile", 0x001004},
                                                                 {"GFileSystem", 0x001005},
                                                                 {"GValue", 0x001007},
                                                                 {"GLibXMLSerializable", 0x001008},
                                                                 {"GIPCReceiver", 0x001009},
                                                                 {"GIPCSender", 0x00100A},
                                                                 {"GMutex", 0x00100B},
                                                                 {"GLockable", 0x00100C},
                                                                 {"GTimedWaitable", 0x00100D},
                                                                 {"GIPCClient", 0x00100E},
                                                                 {"GLibXML", 0x00100F},
                                                                 {"GLibXMLDoc", 0x001010},
                                                                 {"GLibXMLNode", 0x001011},
                                                                 {"GSqliteDatabase", 0x001012},
                                                                 {"GSqliteDatabaseConnMgr", 0x001013},
                                                                 {"GDateTime", 0x001014},
                                                                 {"GProcessManager", 0x001015},
                                                                 {"GFileVault", 0x001016},
                                                                 {"GSqliteSimpleOperator", 0x001017},
                                                                 {"GSqliteQuery", 0x001019},
                                                                 {"GExclusionList", 0x00101A},
                                                                 {"GKVTree", 0x00101B},
                                                                 {"GHTTP", 0x00101C},
                                                                 {"GScopedLock", 0x00101D},
                                                                 {"GUuid", 0x00101E},
                                                                 {"GOperationQueue", 0x001020},
                                                                 {"GZephyneDataFacade", 0x002001},
                                                                 {"GFontManagerFacade", 0x002003},
                                                                 {"GZephyneServerFacade", 0x002004},
                                                                 {"GZephyneConfig", 0x002005},
                                                                 {"GZephyneSdk", 0x002008},
                                                                 {"GZephyneDatabaseUpgradeManager", 0x002009},
                                                                 {"GFontActivation", 0x00200A},
                                                                 {"GZephyneFacade", 0x00200B},
                                                                 {"GAgentIF", 0x00200D},
                                                                 {"GFontActivationUtils", 0x00200E},
                                                                 {"GVaultArchiver", 0x002016},
                                                                 {"GFontActivationManager", 0x004001},
                                                                 {"GActiveFontScanner", 0x004002},
                                                                 {"GKVMessageHandler_FontAdder", 0x004005},
                                                                 {"GFontToolConnector", 0x004006},
                                                                 {"GZephyneExportFonts", 0x004007},
                                                                 {"GZephyneSetManager", 0x004009},
                                                                 {"GZephyneFontManager", 0x00400A},
                                                                 {"GZephyneWorkgroupManager", 0x00400B},
                                                                 {"GZephyneAssetManager", 0x00400C},
                                                                 {"GFontToolResults", 0x00400D},
                                                                 {"GSystemFontsManager", 0x00400F},
                                                                 {"GZephyneAgentAppController", 0x004012},
                                                                 {"GWebFontReplicationManager", 0x004013},
                                                                 {"GAgentAppController", 0x004014},
                                                                 {"GKVMessageDataHandler", 0x004015},
                                                                 {"GTaskThread", 0x004016},
                                                                 {"GFontServerReplicationManager", 0x004017},
                                                                 {"GFontServerProxy", 0x004018},
                                                                 {"GMarquineSessionManager", 0x004019},
                                                                 {"GResultSpecVectorXMLParser", 0x007002},
                                                                 {"GDorvetVaultCommand", 0x007003}};

TEST(ErrorCodes, EveryCodeIsFoundInBothDirectionsAndNamesItsClass) {
  constexpr TModuleErrorCode kNamesAnotherClass = 0x07004005;  // readers of old logs know it so
  int count = 0;
  for (const auto& [name, number] : kClasses) {
    int ofClass = 0;
    for (TModuleErrorCode i = 0; i <= 0xFF; ++i) {
      const TModuleErrorCode code = i << 24 | number;
      const std::string found = GetNameForErrorCode(code);
      if (found == "Unknown error code") continue;
      ++ofClass;
      EXPECT_EQ(GetErrorCodeForName(found), code) << found;
      EXPECT_TRUE(found.starts_with(code == kNamesAnotherClass ? "GFontToolResults::k" : name + "::k"s)) << found;
    }
    EXPECT_GE(ofClass, 1) << name;
    count += ofClass;
  }
  EXPECT_EQ(count, 272);
}

TEST(ErrorCodes, CodesThatOthersCompare) {
  const std::pair<TModuleErrorCode, const char*> cases[] = {{0x00000000, "CoreErrorCodes::kSuccess"},
                                                            {0x15000000, "CoreErrorCodes::kUnknownError"},
                                                            {0x0200200D, "GAgentIF::kShutdown"},
                                                            {0x0300100E, "GIPCClient::kServiceUnavailable"},
                                                            {0x02002005, "GZephyneConfig::kAgentNotFound"},
                                                            {0x03002005, "GZephyneConfig::kAgentRunningInWrongMode"},
                                                            {0x02002008, "GZephyneSdk::kVaultInUse"},
                                                            {0x0B000000, "Unknown error code"},
                                                            {0x02005001, "Unknown error code"},
                                                            {0x02007005, "Unknown error code"},
                                                            {0x03007005, "Unknown error code"},
                                                            {0x02007008, "Unknown error code"}};
  for (const auto& [code, name] : cases) EXPECT_EQ(GetNameForErrorCode(code), name);
  for (const char* name : {"", "kShutdown", "gagentif::kshutdown"}) {
    EXPECT_EQ(GetErrorCodeForName(name), CoreErrorCodes::kUnknownError) << name;
  }
}

TModuleErrorCode Checked(TModuleErrorCode code) {
  RETURN_IF_ERROR("Miscellaneous", (code));
  RETURN_IF_AT("FileSystem", GLogger::kDebug, code == CoreErrorCodes::kSuccess, CoreErrorCodes::kNotFound);
  return CoreErrorCodes::kSuccess;
}

TEST(FailedChecks, ReportOnceAtTheirLevelAndReturnTheCode) {
  for (const GLogger::LoggingLevel level : {GLogger::kError, GLogger::kDebug}) {
    const LogRecorder log(level);
    EXPECT_EQ(Checked(CoreErrorCodes::kDatabaseError), CoreErrorCodes::kDatabaseError);
    EXPECT_THAT(log.lines,
                ElementsAre(MatchesRegex(
                    "\\[Miscellaneous\\]\t\\[Error\\]\tError='CoreErrorCodes::kDatabaseError'  "
                    "File='.*/ErrorCodeTest.cpp'  Line=[0-9]+  Expression='\\(code\\)'  Code='218103808'  ")));
    EXPECT_EQ(Checked(0), CoreErrorCodes::kNotFound);
    ASSERT_EQ(log.lines.size(), level == GLogger::kDebug ? 2u : 1u);
    EXPECT_THAT(log.lines.back(), testing::HasSubstr(level == GLogger::kDebug ? "[Debug]" : "[Error]"));
  }
}

}  // namespace
