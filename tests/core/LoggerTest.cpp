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

class LoggerTest : public testing::Test {
 protected:
  LoggerTest() {
    mLogger.SetAppender("a", new Appender([this](const std::string& line) { mLines.push_back(line); }));
  }
  Logger mLogger;
  std::vector<std::string> mLines;
};

TEST_F(LoggerTest, LevelsOfWords) {
  const std::pair<const char*, int> cases[] = {{"Error", 1}, {"WARN", 2},   {"warning", 2}, {"Info", 3},  {"dEbUg", 4},
                                               {"none", 0},  {"Trace", -1}, {"", -1},       {" Info", -1}};
  for (const auto& [text, level] : cases) EXPECT_EQ(GLogger::StringToLevel(text), level) << text;
  const char* names[] = {"", "None", "Error", "Warning", "Info", "Debug", ""};
  for (int level = -1; level <= 5; ++level) {
    EXPECT_EQ(GLogger::LevelToString(static_cast<GLogger::LoggingLevel>(level)), names[level + 1]);
  }
}

TEST_F(LoggerTest, WhoMayLogWhat) {
  mLogger.SetLoggingLevelForIdentifier("FileSystem", GLogger::kDebug);
  mLogger.SetLoggingLevelForIdentifier("silent", GLogger::kNone);
  struct {
    const char* identifier;
    int level;
    bool expected;
  } const cases[] = {
      {"unset", 2, true},   {"unset", 3, false},     {"unset", 1, true},      {"unset", 0, false},
      {"unset", -1, false}, {"FileSystem", 4, true}, {"filesystem", 4, true}, {"silent", 1, false},
      {"Silent", 1, false}, {"default", 2, true},    {"Default", 3, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(mLogger.ShouldLog(c.identifier, static_cast<GLogger::LoggingLevel>(c.level)), c.expected)
        << c.identifier << " " << c.level;
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

TEST_F(LoggerTest, TheBufferGrowsInStepsAndStaysGrown) {
  const std::pair<size_t, size_t> cases[] = {{10, 256},    {255, 256}, {256, 512},
                                             {1000, 1024}, {5, 1024},  {100'000'000, 100'000'256}};
  for (const auto& [length, size] : cases) {
    mLines.clear();
    mLogger.LogString("%s", std::string(length, 'x').c_str());
    EXPECT_EQ(mLogger.BufferSizeForTesting(), size);
    EXPECT_EQ(std::count(mLines[0].begin(), mLines[0].end(), 'x'), static_cast<long>(length));
  }
}

TEST_F(LoggerTest, ACallFromInsideAnAppenderIsDropped) {
  int calls = 0;
  mLogger.SetAppender("b", new Appender([&](const std::string&) {
                        ++calls;
                        mLogger.LogError("x", "again");
                        mLogger.SetAppender("c", nullptr);
                        EXPECT_EQ(mLogger.GetAppender("a"), nullptr);  // the lock is held
                        mLogger.RemoveAllAppenders();
                      }));
  mLogger.LogError("x", "one");
  mLogger.LogError("x", "two");
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(mLines.size(), 2u);
}

TEST_F(LoggerTest, AnAppenderThatThrowsDoesNotSilenceTheLog) {
  mLogger.SetAppender("b", new Appender([](const std::string&) { throw std::runtime_error("disk full"); }));
  EXPECT_THROW(mLogger.LogError("x", "one"), std::runtime_error);
  mLogger.SetAppender("b", nullptr);
  mLogger.LogError("x", "two");
  EXPECT_EQ(mLines.size(), 2u);
}

TEST_F(LoggerTest, AppendersGetLinesInOrderOfIdentifierAndAreOwned) {
  std::string order;
  auto alive = std::make_shared<int>();
  mLogger.SetAppender("B", new Appender([&order, alive](const std::string&) { order += "B"; }));
  mLogger.SetAppender("b", new Appender([&order](const std::string&) { order += "b"; }));
  mLogger.LogError("x", "one");
  EXPECT_EQ(order, "Bb");
  EXPECT_NE(mLogger.GetAppender("B"), mLogger.GetAppender("b"));
  mLogger.SetAppender("B", mLogger.GetAppender("B"));
  EXPECT_EQ(alive.use_count(), 2);
  mLogger.SetAppender("B", new Appender([](const std::string&) {}));
  EXPECT_EQ(alive.use_count(), 1);
  mLogger.RemoveAllAppenders();
  EXPECT_EQ(mLogger.GetAppender("a"), nullptr);
}

TEST_F(LoggerTest, LevelsComeFromTheTextsOfATree) {
  GKVTree tree;
  tree.SetValueForKey(GValue("debug"), "FileSystem");
  tree.SetValueForKey(GValue("loud"), "Value");
  tree.SetValueForKey(GValue(4), "KVTree");
  tree.SetValueForKey(GValue(std::vector<std::string>()), "Empty");
  mLogger.SetLoggingLevelsFromKVTree(tree);
  const std::pair<const char*, int> cases[] = {{"filesystem", 4}, {"Value", 2}, {"KVTree", 2}, {"Empty", 2}};
  for (const auto& [identifier, level] : cases) EXPECT_EQ(mLogger.GetLoggingLevelForIdentifier(identifier), level);
}

TEST_F(LoggerTest, ThreadsWriteWholeLines) {
  constexpr int kLines = 200;
  std::vector<std::thread> threads;
  for (const char c : {'p', 'q', 'r', 's'}) {
    threads.emplace_back([this, c] {
      for (int i = 0; i < kLines; ++i) mLogger.LogError("x", "%s", std::string(300, c).c_str());
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(mLines.size(), 4u * kLines);
  for (const std::string& line : mLines) {
    EXPECT_EQ(line.find_first_not_of(line[line.size() - 2], line.size() - 301), line.size() - 1);
  }
}

TEST(SharedLogger, WritesToStandardOutputOnceAsked) {
  GLogger* logger = GLogger::GetSharedInstance();
  EXPECT_EQ(logger, GLogger::GetSharedInstance());
  testing::internal::CaptureStdout();
  logger->LogError("x", "nobody listens");
  logger->OSRegisterDefaultAppender();
  logger->LogError("x", "heard");
  logger->SetAppender(GLogger::GetDefaultAppenderIdentifier(), nullptr);
  EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::EndsWith("]\t[x]\t[Error]\theard\n"));
}

}  // namespace
