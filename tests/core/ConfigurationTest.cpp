#include <gmock/gmock.h>

#include "CoreFixtures.h"
#include "GConfigurationFile.h"
#include "GFile.h"

namespace {

using testing::HasSubstr;
using Values = GConfigurationFile::Values;

TEST(Configuration, ParsesLines) {
  const std::pair<std::string, Values> cases[] = {
      {"", {}},
      {"  NexCore.Path =  /opt/A B \t# where it is\n", {{"nexcore.path", "/opt/A B"}}},
      {"a=b=c", {{"a", "b=c"}}},
      {"a=", {{"a", ""}}},
      {"a=1\r\nb=2\r\n\r\n", {{"a", "1"}, {"b", "2"}}},
      {"a=1\nb=2\n\n", {{"a", "1"}, {"b", "2"}}},
      {"a=1\rb=2", {{"a", "1"}, {"b", "2"}}},
      {"a=x#y", {{"a", "x"}}},
      {"# a=1\n#\n \t \n", {}},
      {"a=1\nA=2", {{"a", "2"}}},
      {"=1\nnothing\n = 2\nz=9", {{"z", "9"}}},
      {"#=1\na#=1\nb=2", {{"b", "2"}}},
      {std::string("k=\xFF\xC3\0\x01", 6), {{"k", std::string("\xFF\xC3\0\x01", 4)}}},
      {"\xC3\x84=\xC3\xA4", {{"\xC3\x84", "\xC3\xA4"}}},
  };
  for (const auto& [text, expected] : cases) {
    Values values{{"old", "gone"}};
    EXPECT_EQ(GConfigurationFile::ParseString(text, values), 0u);
    EXPECT_EQ(values, expected) << text;
  }
}

TEST(Configuration, LogsWhatItReads) {
  const LogRecorder log(GLogger::kDebug);
  Values values;
  GConfigurationFile::ParseString(" = 1 # x\nKey = V", values);
  EXPECT_THAT(log.lines,
              testing::ElementsAre("[Miscellaneous]\t[Debug]\tConfiguration line:\n = 1 # x",
                                   "[Miscellaneous]\t[Error]\tIgnoring illegal line in configuration:\n = 1 # x",
                                   "[Miscellaneous]\t[Debug]\tConfiguration line:\nKey = V",
                                   "[Miscellaneous]\t[Info]\tConfiguration key = key, value = V"));
}

TEST(Configuration, WrittenValuesReadBackWithLoweredKeys) {
  const TemporaryFolder folder;
  const std::string path = folder.Path() + "/c.conf";
  ASSERT_EQ(GConfigurationFile::WriteFile(path, {{"b", "2"}, {"A", " x "}}), 0u);
  EXPECT_EQ(TemporaryFolder::Read(path), "A= x \r\nb=2\r\n");
  Values values;
  ASSERT_EQ(GConfigurationFile::ParseFile(path, values), 0u);
  EXPECT_EQ(values, (Values{{"a", "x"}, {"b", "2"}}));
  ASSERT_EQ(GConfigurationFile::WriteFile(path, {}), 0u);
  EXPECT_EQ(TemporaryFolder::Read(path), "");
}

TEST(Configuration, FailuresGiveTheFilesCodeAndLeaveTheMap) {
  const TemporaryFolder folder;
  Values values{{"kept", "1"}};
  const LogRecorder log;
  EXPECT_EQ(GConfigurationFile::ParseFile(folder.Path() + "/missing", values), GFile::kFileNotFound);
  EXPECT_THAT(log.lines.back(), HasSubstr("[Miscellaneous]"));
  EXPECT_THAT(log.lines.back(), HasSubstr("Expression='confFile.Open(confFileSpec, GFile::eRead|GFile::eBinary)'"));
  EXPECT_EQ(GConfigurationFile::ParseFile(folder.Path(), values), GFile::kOpenFailed);
  EXPECT_EQ(values, (Values{{"kept", "1"}}));

  EXPECT_EQ(GConfigurationFile::WriteFile(folder.Path() + "/no/such", values), GFile::kOpenFailed);
  EXPECT_THAT(log.lines.back(),
              HasSubstr("Expression='confFile.Open(confFileSpec, GFile::eWrite|GFile::eBinary|GFile::eTruncate)'"));
  EXPECT_EQ(GConfigurationFile::WriteFile("/dev/full", {{"a", std::string(100'000, 'x')}}), CoreErrorCodes::kError);
  EXPECT_THAT(log.lines.back(), HasSubstr("Expression='confFile.Write(ss.str())'"));
  EXPECT_EQ(GConfigurationFile::WriteFile("/dev/full", {{"a", "x"}}), CoreErrorCodes::kError);
  EXPECT_THAT(log.lines.back(), HasSubstr("Expression='confFile.Close()'"));
}

TEST(Configuration, ALineOfHundredMegabytesIsALine) {
  const std::string value = LongText();
  Values values;
  GConfigurationFile::ParseString("key = " + value + "\nnext = 1", values);
  EXPECT_TRUE(values["key"] == value);
  EXPECT_EQ(values["next"], "1");
}

}  // namespace
