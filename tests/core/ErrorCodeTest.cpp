#include <gmock/gmock.h>

#include <set>
#include <string>

#include "CoreFixtures.h"
#include "FailedCheck.h"

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

// The lower 24 bits of a code are the number of its class, the upper ones its number in the class.
TEST(ErrorCodes, EveryCodeIsFoundInBothDirectionsAndNamesItsClass) {
  constexpr TModuleErrorCode kNamesAnotherClass = 0x07004005;  // old logs contain it
  constexpr TModuleErrorCode kGroups[] = {0x000000, 0x001000, 0x002000, 0x004000, 0x007000};
  int count = 0;
  std::set<std::string> classes;
  for (const TModuleErrorCode group : kGroups) {
    for (TModuleErrorCode number = group; number < group + 0x40; ++number) {
      std::string name;
      for (TModuleErrorCode i = 0; i <= 0xFF; ++i) {
        const TModuleErrorCode code = i << 24 | number;
        const std::string found = GetNameForErrorCode(code);
        if (found == "Unknown error code") continue;
        ++count;
        EXPECT_EQ(GetErrorCodeForName(found), code) << found;
        if (code == kNamesAnotherClass) continue;
        if (name.empty()) name = found.substr(0, found.find("::k"));
        EXPECT_TRUE(found.starts_with(name + "::k")) << found;
      }
      if (name.empty()) continue;
      EXPECT_TRUE(classes.insert(name).second) << name << " has two numbers";
    }
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
