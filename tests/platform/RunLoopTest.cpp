// The run loop with a clock that only the loop advances.
#include "platform/RunLoop.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/Clock.h"
#include "platform/Descriptor.h"
#include "platform/Trace.h"

namespace platform {
namespace {

using testing::ElementsAre;

class RunLoopTest : public testing::Test {
 protected:
  static constexpr double kStart = 1000.0;

  RunLoopTest() { Clock::SetDriven(kStart); }
  ~RunLoopTest() override { Clock::UseSystemTime(); }

  // A timer that records its name with the time since the start.
  RunLoopTimerRef Add(const std::string& name, double first, double interval, RunLoopMode mode = RunLoopMode::kCommon,
                      const std::function<void(RunLoopTimer&)>& then = nullptr) {
    auto timer = RunLoopTimer::After(first, interval, [this, name, then](RunLoopTimer& self) {
      Note(name);
      if (then) then(self);
    });
    loop_.AddTimer(timer, mode);
    return timer;
  }
  void Note(const std::string& name) {
    const double since = Clock::Steady() - kStart;
    noted_.push_back(name + "@" + std::to_string(since).substr(0, std::to_string(since).find('.') + 2));
  }

  RunLoop loop_;
  std::vector<std::string> noted_;
};

TEST_F(RunLoopTest, TimersFireInTheOrderOfTheirDates) {
  Add("late", 2, 0);
  Add("early", 1, 0);
  Add("repeating", 0.5, 1.5);
  Add("never", 4.1, 0);
  loop_.RunFor(4);
  EXPECT_THAT(noted_, ElementsAre("repeating@0.5", "early@1.0", "late@2.0", "repeating@2.0", "repeating@3.5"));
  EXPECT_EQ(Clock::Now(), kStart + 4);
}

TEST_F(RunLoopTest, DatesThatWereMissedAreSkipped) {
  Add("slow", 1, 1, RunLoopMode::kCommon, [](RunLoopTimer& self) {
    if (Clock::Now() < kStart + 2) Clock::SetDriven(kStart + 5.5);
    EXPECT_GT(self.NextFireDate(), kStart + 1);
  });
  loop_.RunFor(6);
  EXPECT_THAT(noted_, ElementsAre("slow@1.0", "slow@5.5", "slow@6.0"));
}

TEST_F(RunLoopTest, SettingTheTimeOfDayMovesNoTimer) {
  for (const double hour : {-3600.0, 3600.0}) {
    Add("repeating", 1, 1, RunLoopMode::kCommon, [&](RunLoopTimer& self) {
      if (noted_.size() == 1) Clock::SetTimeOfDay(Clock::Now() + hour);
      if (noted_.size() == 3) self.Invalidate();
    });
    loop_.RunFor(10);
    EXPECT_THAT(noted_, ElementsAre("repeating@1.0", "repeating@2.0", "repeating@3.0"));
    EXPECT_EQ(Clock::Steady(), kStart + 10);
    EXPECT_EQ(Clock::Now(), kStart + 10 + hour);
    Add("later", 1, 0, RunLoopMode::kCommon);
    loop_.RunFor(2);
    EXPECT_EQ(noted_.back(), "later@11.0");
    noted_.clear();
    Clock::UseSystemTime();
    Clock::SetDriven(kStart);
  }
}

TEST_F(RunLoopTest, ModesHoldBackOrLetThrough) {
  Add("default", 1, 0, RunLoopMode::kDefault);
  Add("modal", 1, 0, RunLoopMode::kModal);
  Add("common", 1, 2, RunLoopMode::kCommon);
  loop_.RunFor(2, RunLoopMode::kModal);
  EXPECT_THAT(noted_, ElementsAre("modal@1.0", "common@1.0"));
  loop_.RunFor(2);
  EXPECT_THAT(noted_, ElementsAre("modal@1.0", "common@1.0", "default@2.0", "common@3.0"));
}

TEST_F(RunLoopTest, ACallbackDecidesAboutItsTimerAndTheOthersThatAreDue) {
  RunLoopTimerRef invalidated, removed, delayed;
  Add("first", 1, 1, RunLoopMode::kCommon, [&](RunLoopTimer& self) {
    if (noted_.size() > 1) self.Invalidate();
    invalidated->Invalidate();
    loop_.RemoveTimer(removed);
    if (noted_.size() == 1) delayed->FireAfter(2);
  });
  invalidated = Add("invalidated", 1, 0);
  removed = Add("removed", 1, 0);
  delayed = Add("delayed", 1, 0);
  loop_.RunFor(5);
  EXPECT_THAT(noted_, ElementsAre("first@1.0", "first@2.0", "delayed@3.0"));
}

TEST_F(RunLoopTest, ACallbackThatRunsTheLoopIsNotEnteredAgain) {
  Add("outer", 1, 1, RunLoopMode::kCommon, [&](RunLoopTimer&) {
    if (noted_.size() < 3) loop_.RunFor(2.5, RunLoopMode::kModal);
  });
  Add("inner", 2, 0);
  loop_.RunFor(4);
  EXPECT_THAT(noted_, ElementsAre("outer@1.0", "inner@2.0", "outer@3.5", "outer@4.0"));
}

TEST_F(RunLoopTest, ExceptionsAreReportedAndSurvived) {
  std::vector<std::string> traced;
  SetTraceSink([](void* context, int,
                  std::string_view line) { static_cast<std::vector<std::string>*>(context)->emplace_back(line); },
               &traced);
  Add("bad", 1, 1, RunLoopMode::kCommon, [](RunLoopTimer&) { throw std::runtime_error("a fault"); });
  Add("good", 1.5, 0);
  loop_.Post([] { throw 42; });
  testing::internal::CaptureStderr();
  loop_.RunFor(2);
  const std::string reported = testing::internal::GetCapturedStderr();
  SetTraceSink(nullptr, nullptr);
  EXPECT_THAT(noted_, ElementsAre("bad@1.0", "good@1.5", "bad@2.0"));
  EXPECT_THAT(traced, ElementsAre("Exception left a posted callback: an exception of an unknown type",
                                  "Exception left a timer: a fault", "Exception left a timer: a fault"));
  EXPECT_THAT(reported, testing::HasSubstr("a fault"));
}

TEST_F(RunLoopTest, StopEndsTheInnermostRunOnly) {
  Add("inner", 2, 0, RunLoopMode::kModal, [&](RunLoopTimer&) { loop_.Stop(); });
  Add("outer", 1, 0, RunLoopMode::kDefault, [&](RunLoopTimer&) {
    loop_.RunFor(100, RunLoopMode::kModal);
    Note("inner run ended");
  });
  Add("last", 3, 0, RunLoopMode::kDefault, [&](RunLoopTimer&) { loop_.Stop(); });
  Add("too late", 4, 0);
  loop_.RunFor(100);
  EXPECT_THAT(noted_, ElementsAre("outer@1.0", "inner@2.0", "inner run ended@2.0", "last@3.0"));
  loop_.RunFor(1);
  EXPECT_EQ(noted_.back(), "too late@4.0") << "a stop is over with the run that it ended";
}

TEST_F(RunLoopTest, PostsFromThreadsArriveEachInOrder) {
  constexpr int kThreads = 4, kPosts = 500;
  std::vector<std::vector<int>> arrived(kThreads);
  const std::thread::id here = std::this_thread::get_id();
  std::array<std::thread, kThreads> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.at(t) = std::thread([&, t] {
      for (int i = 0; i < kPosts; ++i) {
        loop_.Post([&, t, i] {
          EXPECT_EQ(std::this_thread::get_id(), here);
          arrived[t].push_back(i);
        });
      }
    });
  }
  const auto all = [&] {
    size_t count = 0;
    for (const auto& numbers : arrived) count += numbers.size();
    return count == static_cast<size_t>(kThreads) * kPosts;
  };
  EXPECT_TRUE(loop_.RunUntil(all, 60));
  for (std::thread& thread : threads) thread.join();
  for (const auto& numbers : arrived) EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
}

TEST_F(RunLoopTest, APostedCallbackMayWaitForThoseBehindItAndPostAgain) {
  bool isDone = false, wasSeen = false;
  loop_.Post([&] { wasSeen = loop_.RunUntil([&] { return isDone; }, 60, RunLoopMode::kModal); });
  loop_.Post([&] { loop_.Post([&] { isDone = true; }); });
  Clock::UseSystemTime();
  EXPECT_TRUE(loop_.RunUntil([&] { return wasSeen; }, 60));
}

TEST_F(RunLoopTest, DescriptorsAreServedUntilUnwatchedOrClosed) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  Descriptor readEnd(ends[0]);
  const Descriptor writeEnd(ends[1]);
  std::string got;
  const auto take = [&] {
    char c;
    if (read(readEnd.Get(), &c, 1) == 1) got += c;
    if (got == "ab") loop_.UnwatchDescriptor(readEnd.Get());
  };
  loop_.WatchDescriptor(readEnd.Get(), take);
  ASSERT_EQ(write(writeEnd.Get(), "abc", 3), 3);
  EXPECT_TRUE(loop_.RunUntil([&] { return got.size() >= 2; }, 60));
  loop_.RunFor(0);
  EXPECT_EQ(got, "ab");
  loop_.WatchDescriptor(readEnd.Get(), take);
  testing::internal::CaptureStderr();
  readEnd.Close();
  loop_.RunFor(0);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("is closed"));
  EXPECT_EQ(got, "ab");
}

TEST_F(RunLoopTest, AConditionThatNeverHoldsEndsInTime) {
  int asked = 0;
  EXPECT_FALSE(loop_.RunUntil([&] { return ++asked < 0; }, 0));
  EXPECT_GE(asked, 1);
  EXPECT_EQ(Clock::Now(), kStart) << "a driven clock stands still meanwhile";
}

}  // namespace
}  // namespace platform
