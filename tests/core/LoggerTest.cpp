#include <gmock/gmock.h>

#include <functional>
#include <thread>

#include "CoreFixtures.h"
#include "GKVTree.h"
#include "platform/Clock.h"

namespace {

using testing::ElementsAre;

class Logger : public GLogger {
 public:
  using GLogger::ClearLoggingLevels;
};

class Appender : public GLogAppender {
 public:
  explicit Appender(std::function<void(const std::string&)> action) : mAction(std::move(action)) {}
  void Log(const std::string& line) override { mAction(line); }

 private:
  std::function<void(const std::string&)> mAction;
};

GLogger::LoggingLevel Level(int level) { return static_cast<GLogger::LoggingLevel>(level); }

class LoggerTest : public testing::Test {
 protected:
  LoggerTest() {
    mLogger.SetAppender("a", std::make_unique<Appender>([this](const std::string& line) { mLines.push_back(line); }));
  }
  Logger mLogger;
  std::vector<std::string> mLines;
};

TEST_F(LoggerTest, LevelsAndTheirWords) {
  const std::pair<const char*, int> cases[] = {{"Error", 1}, {"WARN", 2},   {"warning", 2}, {"Info", 3},  {"dEbUg", 4},
                                               {"none", 0},  {"Trace", -1}, {"", -1},       {" Info", -1}};
  for (const auto& [text, level] : cases) EXPECT_EQ(GLogger::StringToLevel(text), level) << text;
  const char* names[] = {"", "None", "Error", "Warning", "Info", "Debug", ""};
  for (int level = -1; level <= 5; ++level) EXPECT_EQ(GLogger::LevelToString(Level(level)), names[level + 1]);
}

TEST_F(LoggerTest, WhoMayLogWhat) {
  GKVTree tree;
  tree.SetValueForKey(GValue("debug"), "FileSystem");
  tree.SetValueForKey(GValue("None"), "silent");
  tree.SetValueForKey(GValue("loud"), "word");
  tree.SetValueForKey(GValue(4), "number");
  tree.SetValueForKey(GValue(std::vector<std::string>()), "list");
  mLogger.SetLoggingLevelsFromKVTree(tree);
  const std::tuple<const char*, int, bool> cases[] = {
      {"unset", 2, true},      {"unset", 3, false},     {"unset", 0, false},  {"unset", -1, false},
      {"FileSystem", 4, true}, {"filesystem", 4, true}, {"silent", 1, false}, {"Silent", 1, false},
      {"default", 2, true},    {"Default", 3, false},   {"word", 3, false},   {"word", 2, true},
      {"number", 3, false},    {"list", 3, false},
  };
  for (const auto& [identifier, level, expected] : cases) {
    EXPECT_EQ(mLogger.ShouldLog(identifier, Level(level)), expected) << identifier << " " << level;
  }
  mLogger.SetDefaultLoggingLevel(GLogger::kNone);
  EXPECT_FALSE(mLogger.ShouldLog("unset", GLogger::kError));
  mLogger.ClearLoggingLevels();
  for (const char* identifier : {"default", "Default", "FileSystem"}) {
    EXPECT_EQ(mLogger.GetLoggingLevelForIdentifier(identifier), GLogger::kInvalid);
  }
  mLogger.ResetAllLoggingLevels();
  EXPECT_EQ(mLogger.GetDefaultLoggingLevel(), GLogger::kWarning);
  EXPECT_EQ(mLogger.GetLoggingLevelForIdentifier("FileSystem"), GLogger::kWarning);
}

TEST_F(LoggerTest, TheLineHasTimeIdentifierLevelAndText) {
  platform::Clock::SetDriven(1764000427.25);
  mLogger.LogWarning("100% sure", "%d of %s", 3, "ten");
  mLogger.LogInfo("Value", "below the level");
  mLogger.LogString("whatever the levels: %d", 1);
  platform::Clock::UseSystemTime();
  EXPECT_THAT(mLines, ElementsAre("[2025-11-24T16:07:07.250Z]\t[100% sure]\t[Warning]\t3 of ten\n",
                                  "[2025-11-24T16:07:07.250Z]\twhatever the levels: 1\n"));
}

TEST_F(LoggerTest, ACallFromInsideAnAppenderIsDropped) {
  int calls = 0, callsOfTheOther = 0;
  Logger other;
  other.SetAppender("a", std::make_unique<Appender>([&](const std::string&) { ++callsOfTheOther; }));
  mLogger.SetAppender("b", std::make_unique<Appender>([&](const std::string&) {
                        ++calls;
                        other.LogError("x", "one record serves all loggers");
                        EXPECT_EQ(mLogger.GetAppender("a"), nullptr);  // the lock is held
                        mLogger.RemoveAllAppenders();
                        std::thread([&] { other.LogError("x", "takes the record and clears it"); }).join();
                        mLogger.LogError("x", "again");
                      }));
  mLogger.LogError("x", "one");
  EXPECT_TRUE(calls == 1 && callsOfTheOther == 1 && mLines.size() == 1u);
  mLogger.LogError("x", "two");
  EXPECT_TRUE(calls == 2 && callsOfTheOther == 2 && mLines.size() == 2u);
}

TEST_F(LoggerTest, AnAppenderThatThrowsDoesNotSilenceTheLog) {
  mLogger.SetAppender("b",
                      std::make_unique<Appender>([](const std::string&) { throw std::runtime_error("disk full"); }));
  EXPECT_THROW(mLogger.LogError("x", "one"), std::runtime_error);
  mLogger.SetAppender("b", nullptr);
  mLogger.LogError("x", "two");
  EXPECT_EQ(mLines.size(), 2u);
}

TEST_F(LoggerTest, AppendersGetLinesInOrderOfIdentifierAndAreOwned) {
  std::string order;
  const auto alive = std::make_shared<int>();
  for (const char* name : {"b", "B"}) {
    mLogger.SetAppender(name, std::make_unique<Appender>([&order, name, alive](const std::string&) { order += name; }));
  }
  mLogger.LogError("x", "one");
  EXPECT_EQ(order, "Bb");
  mLogger.SetAppender("B", std::make_unique<Appender>([](const std::string&) {}));
  EXPECT_EQ(alive.use_count(), 2);
  mLogger.RemoveAllAppenders();
  EXPECT_EQ(alive.use_count(), 1);
}

TEST_F(LoggerTest, ThreadsWriteWholeLines) {
  constexpr int kLines = 200;
  std::vector<std::thread> threads;
  for (const char c : {'p', 'q', 'r', 's'}) {
    threads.emplace_back([this, text = std::string(300, c)] {
      for (int i = 0; i < kLines; ++i) mLogger.LogError("x", "%s", text.c_str());
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(mLines.size(), 4u * kLines);
  for (const std::string& line : mLines) EXPECT_TRUE(line.ends_with(std::string(300, line[line.size() - 2]) + "\n"));
}

TEST(SharedLogger, WritesToStandardOutputOnceAsked) {
  GLogger* logger = GLogger::GetSharedInstance();
  testing::internal::CaptureStdout();
  logger->LogError("x", "nobody listens");
  logger->OSRegisterDefaultAppender();
  logger->LogError("x", "heard");
  logger->SetAppender("default", nullptr);
  EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::MatchesRegex("[^\t]*\t\\[x\\]\t\\[Error\\]\theard\n"));
}

}  // namespace
