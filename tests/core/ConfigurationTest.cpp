#include <gmock/gmock.h>

#include <functional>

#include "CoreFixtures.h"
#include "GConfigurationFile.h"
#include "GFile.h"
#include "GFileSystem.h"

namespace {

using Values = GConfigurationFile::Values;

TEST(Configuration, ParsesLines) {
  const std::string large = LongText();
  const std::pair<std::string, Values> cases[] = {
      {"", {}},
      {"  NexCore.Path =  /opt/A B \t# where it is\n", {{"nexcore.path", "/opt/A B"}}},
      {"a=b=c\nb=", {{"a", "b=c"}, {"b", ""}}},
      {"a=1\r\nb=2\r\n\r\n", {{"a", "1"}, {"b", "2"}}},
      {"a=1\nb=2\rc=3", {{"a", "1"}, {"b", "2"}, {"c", "3"}}},
      {"a=x#y", {{"a", "x"}}},
      {"# a=1\n#\n \t \n", {}},
      {"a=1\nA=2", {{"a", "2"}}},
      {"=1\nnothing\n = 2\n#=1\na#=1\nz=9", {{"z", "9"}}},
      {std::string("k=\xFF\xC3\0\x01", 6), {{"k", std::string("\xFF\xC3\0\x01", 4)}}},
      {"\xC3\x84=\xC3\xA4", {{"\xC3\x84", "\xC3\xA4"}}},
      {"key = " + large + "\nnext = 1", {{"key", large}, {"next", "1"}}},
  };
  for (const auto& [text, expected] : cases) {
    Values values{{"old", "gone"}};
    EXPECT_EQ(GConfigurationFile::ParseString(text, values), 0u);
    EXPECT_TRUE(values == expected) << text.substr(0, 80);
  }
}

TEST(Configuration, LogsWhatItReads) {
  const LogRecorder log(GLogger::kDebug);
  Values values;
  GConfigurationFile::ParseString(" = 1 # x\nKey = V\n # none\nno", values);
  EXPECT_THAT(log.lines,
              testing::ElementsAre("[Miscellaneous]\t[Debug]\tConfiguration line:\n = 1 # x",
                                   "[Miscellaneous]\t[Error]\tIgnoring illegal line in configuration:\n = 1 # x",
                                   "[Miscellaneous]\t[Debug]\tConfiguration line:\nKey = V",
                                   "[Miscellaneous]\t[Info]\tConfiguration key = key, value = V",
                                   "[Miscellaneous]\t[Debug]\tConfiguration line:\n # none",
                                   "[Miscellaneous]\t[Debug]\tConfiguration line:\nno",
                                   "[Miscellaneous]\t[Error]\tIgnoring illegal line in configuration:\nno"));
}

TEST(Configuration, WrittenValuesReadBackWithLoweredKeys) {
  const TempFolder folder;
  const std::string path = folder.Write("c.conf", "longer than what comes now");
  ASSERT_EQ(GConfigurationFile::WriteFile(path, {{"b", "2"}, {"A", " x "}}), 0u);
  EXPECT_EQ(TempFolder::Content(path), "A= x \r\nb=2\r\n");
  Values values;
  ASSERT_EQ(GConfigurationFile::ParseFile(path, values), 0u);
  EXPECT_EQ(values, (Values{{"a", "x"}, {"b", "2"}}));
  ASSERT_EQ(GConfigurationFile::WriteFile(path, {}), 0u);
  EXPECT_EQ(TempFolder::Content(path), "");
}

TEST(Configuration, FailuresGiveTheFilesCodeNameTheCallAndLeaveTheMap) {
  const TempFolder folder;
  Values values{{"kept", "1"}};
  const auto parse = [&](const std::string& path) { return GConfigurationFile::ParseFile(path, values); };
  const auto write = [&](const std::string& path) { return GConfigurationFile::WriteFile(path, values); };
  const auto writeMuch = [](const std::string& path) {
    return GConfigurationFile::WriteFile(path, {{"a", std::string(100'000, 'x')}});
  };
  const std::string missing = folder.Path() + "/no/such";
  const struct {
    std::function<TModuleErrorCode(const std::string&)> operation;
    std::string path;
    TModuleErrorCode code;
    const char* expression;
  } cases[] = {
      {parse, missing, GFileSystem::kFileNotFound, "confFile.Open(confFileSpec, GFile::eRead|GFile::eBinary)"},
      {parse, folder.Path(), CoreErrorCodes::kError, "confFile.Read(configString)"},
      {write, missing, GFile::kOpenFailed,
       "confFile.Open(confFileSpec, GFile::eWrite|GFile::eBinary|GFile::eTruncate)"},
      {writeMuch, "/dev/full", CoreErrorCodes::kError, "confFile.Write(ss.str())"},
      {write, "/dev/full", CoreErrorCodes::kError, "confFile.Close()"},
  };
  for (const auto& [operation, path, code, expression] : cases) {
    const LogRecorder log;
    EXPECT_EQ(operation(path), code) << expression;
    EXPECT_THAT(log.lines.back(), testing::StartsWith("[Miscellaneous]\t[Error]\tError='"));
    EXPECT_THAT(log.lines.back(), testing::HasSubstr("Expression='" + std::string(expression) + "'"));
  }
  EXPECT_EQ(values, (Values{{"kept", "1"}}));
}

}  // namespace
