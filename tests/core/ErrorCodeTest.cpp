#include <gmock/gmock.h>

#include <map>
#include <set>

#include "CoreFixtures.h"
#include "FailedCheck.h"
#include "TModuleErrorCodeError.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct Row {
  TModuleErrorCode code;
  const char* name;
};

constexpr Row kAllRows[] = {
#include "../../core-agent/cpp-core/src/ErrorCodeTable.inc"
};

TEST(ErrorCodes, EveryRowIsFoundInBothDirections) {
  EXPECT_EQ(std::size(kAllRows), 272u);
  for (const Row& row : kAllRows) {
    EXPECT_EQ(GetNameForErrorCode(row.code), row.name);
    EXPECT_EQ(GetErrorCodeForName(row.name), row.code);
  }
}

TEST(ErrorCodes, RowsOfOneClassShareItsNumber) {
  std::map<std::string, std::set<TModuleErrorCode>> numbers;
  for (const Row& row : kAllRows) {
    const std::string name = row.name;
    numbers[name.substr(0, name.find("::"))].insert(row.code & 0x00FFFFFF);
  }
  for (const auto& [name, found] : numbers) {
    // One row of another class goes under this name in old logs.
    EXPECT_EQ(found.size(), name == "GFontToolResults" ? 2u : 1u) << name;
  }
  EXPECT_THAT(numbers["GFontToolResults"], ElementsAre(0x004005, 0x00400D));
}

TEST(ErrorCodes, CodesThatOthersCompare) {
  const std::pair<TModuleErrorCode, const char*> cases[] = {
      {0x00000000, "CoreErrorCodes::kSuccess"},
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
      {0x02007008, "Unknown error code"},
      {0xFFFFFFFF, "Unknown error code"},
  };
  for (const auto& [code, name] : cases) EXPECT_EQ(GetNameForErrorCode(code), name);
  for (const char* name : {"", "kShutdown", "gagentif::kshutdown", "Unknown error code"}) {
    EXPECT_EQ(GetErrorCodeForName(name), CoreErrorCodes::kUnknownError) << name;
  }
}

TModuleErrorCode Checked(TModuleErrorCode code, bool& wentOn) {
  wentOn = false;
  RETURN_IF_ERROR("Miscellaneous", (code));
  wentOn = true;
  RETURN_IF_AT("FileSystem", GLogger::kDebug, code == CoreErrorCodes::kSuccess, CoreErrorCodes::kNotFound);
  return CoreErrorCodes::kSuccess;
}

TEST(FailedChecks, ReportOnceAndReturnTheCode) {
  const LogRecorder log;
  bool wentOn = true;
  EXPECT_EQ(Checked(CoreErrorCodes::kDatabaseError, wentOn), CoreErrorCodes::kDatabaseError);
  EXPECT_FALSE(wentOn);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_THAT(log.lines[0], HasSubstr("[Miscellaneous]\t[Error]\tError='CoreErrorCodes::kDatabaseError'  File='"));
  EXPECT_THAT(log.lines[0], HasSubstr("'  Line="));
  EXPECT_THAT(log.lines[0], HasSubstr("  Expression='(code)'  Code='218103808'  "));
}

TEST(FailedChecks, AQuietCheckReportsAtItsLevelOnly) {
  bool wentOn = false;
  {
    const LogRecorder log;
    EXPECT_EQ(Checked(0, wentOn), CoreErrorCodes::kNotFound);
    EXPECT_TRUE(log.lines.empty());
  }
  const LogRecorder log(GLogger::kDebug);
  EXPECT_EQ(Checked(0, wentOn), CoreErrorCodes::kNotFound);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_THAT(log.lines[0], HasSubstr("[FileSystem]\t[Debug]\tError='CoreErrorCodes::kNotFound'"));
}

TEST(FailedChecks, TheFileIsGivenFromTheProjectOn) {
  const LogRecorder log;
  ReportFailedCheck("Value", 1, "/home/someone/build/core-agent/cpp-core/src/X.cpp", 7, "x");
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_THAT(log.lines[0], HasSubstr("Error='Unknown error code'  File='core-agent/cpp-core/src/X.cpp'  Line=7  "));
}

TEST(FailedChecks, TheRestLayersExceptionCarriesTheCode) {
  try {
    throw restful_mapper::TModuleErrorCodeError(CoreErrorCodes::kStopped);
  } catch (const restful_mapper::ApiError& error) {
    EXPECT_STREQ(error.what(), "TModuleErrorCode");
    EXPECT_EQ(error.status(), 1);
    EXPECT_EQ(dynamic_cast<const restful_mapper::TModuleErrorCodeError&>(error).error(), CoreErrorCodes::kStopped);
  }
}

}  // namespace
