#include <gmock/gmock.h>

#include <map>
#include <set>

#include "CoreFixtures.h"
#include "FailedCheck.h"

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

struct Row {
  TModuleErrorCode code;
  const char* name;
};

constexpr Row kAllRows[] = {
#include "../../core-agent/cpp-core/src/ErrorCodeTable.inc"
};

TEST(ErrorCodes, EveryRowIsFoundInBothDirectionsAndHasItsClasssNumber) {
  EXPECT_EQ(std::size(kAllRows), 272u);
  std::map<std::string, std::set<TModuleErrorCode>> numbers;
  for (const auto& [code, name] : kAllRows) {
    EXPECT_EQ(GetNameForErrorCode(code), name);
    EXPECT_EQ(GetErrorCodeForName(name), code);
    numbers[std::string(name, strstr(name, "::"))].insert(code & 0x00FFFFFF);
  }
  EXPECT_THAT(numbers["GFontToolResults"],
              ElementsAre(0x004005, 0x00400D));  // one row of another class, in old logs too
  numbers.erase("GFontToolResults");
  for (const auto& [name, found] : numbers) EXPECT_EQ(found.size(), 1u) << name;
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
