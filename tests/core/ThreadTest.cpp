#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "GCondition.h"
#include "GThread.h"

namespace {

// The argument of the entry functions.
struct Work {
  GThread* thread = nullptr;
  GCondition started;
  std::atomic<int> runs{0};
  std::atomic<bool> isIgnoringStop{false};
  std::atomic<unsigned> looks{0};  // how often the entry function looked for a stop request
  GThread* seen = nullptr;
};

void* RunOnce(void* argument) {
  auto* work = static_cast<Work*>(argument);
  work->seen = GThread::GetCurrentThreadObject();
  ++work->runs;
  return work;
}

void* RunUntilStopped(void* argument) {
  auto* work = static_cast<Work*>(argument);
  ++work->runs;
  work->started.Signal();
  while (work->isIgnoringStop || work->thread->GetThreadState() != EThreadState::kStopRequested) {
    ++work->looks;
    std::this_thread::yield();
  }
  return nullptr;
}

unsigned long NumberOf(const GThread& thread) { return std::stoul(thread.GetName().substr(7)); }

TEST(Thread, RunsAgainAndAgain) {
  Work work;
  GThread thread(RunOnce, &work);
  const GThread next(RunOnce, nullptr);
  EXPECT_EQ(thread.GetName().rfind("Thread ", 0), 0u);
  EXPECT_EQ(NumberOf(next), NumberOf(thread) + 1);
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kNotStarted);
  EXPECT_EQ(thread.GetResult(), nullptr);
  for (int run = 1; run <= 50; ++run) {
    work.seen = nullptr;
    EXPECT_EQ(thread.RunSynchronously(), &work);
    EXPECT_EQ(thread.GetThreadState(), EThreadState::kFinished);
    EXPECT_EQ(work.runs, run);
    EXPECT_EQ(work.seen, &thread);
  }
}

TEST(Thread, TheThreadThatCameFirstIsTheMainOne) {
  GThread* main = GThread::GetCurrentThreadObject();
  if (!main) GTEST_SKIP() << "another thread of this process used the registry first";
  EXPECT_EQ(main->GetName(), "Main Thread");
  EXPECT_EQ(main->GetThreadState(), EThreadState::kRunning);
  main->StartThread();  // no effect: it runs
  GThread* elsewhere = main;
  std::thread([&] { elsewhere = GThread::GetCurrentThreadObject(); }).join();
  EXPECT_EQ(elsewhere, nullptr);
}

TEST(Thread, StopsWhenItSeesTheRequest) {
  Work work;
  GThread thread(RunUntilStopped, &work);
  work.thread = &thread;
  thread.StopThread(true);  // never started
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kNotStarted);
  thread.StartThread();
  work.started.Wait();
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kRunning);
  thread.StartThread();  // nothing: it runs
  work.isIgnoringStop = true;
  // The entry function may be between its two questions. After two more looks it ignores the request.
  for (const unsigned seen = work.looks; work.looks < seen + 2;) std::this_thread::yield();
  thread.StopThread(false);
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kStopRequested);
  work.isIgnoringStop = false;
  thread.StopThread(true);
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kFinished);
  EXPECT_EQ(work.runs, 1);
  thread.StopThread(true);
  thread.StartThread();
  work.started.Wait();
  EXPECT_EQ(work.runs, 2);
}  // the destructor stops it

// The first call wins: the thread ran and has finished, or it never runs. Neither call waits forever.
TEST(Thread, AStopBeforeTheEntryFunctionKeepsItFromRunning) {
  for (int i = 0; i < 200; ++i) {
    Work work;
    GThread thread(RunOnce, &work);
    std::thread stopper([&] {
      while (thread.GetThreadState() == EThreadState::kNotStarted) std::this_thread::yield();
      thread.StopThread(true);
    });
    thread.StartThread();
    thread.StopThread(true);
    stopper.join();
    const bool hasRun = work.runs == 1;
    EXPECT_EQ(thread.GetThreadState(), hasRun ? EThreadState::kFinished : EThreadState::kStopRequested);
    EXPECT_EQ(thread.RunSynchronously(), hasRun ? &work : nullptr);
    EXPECT_EQ(work.runs, hasRun ? 2 : 0);
  }
}

}  // namespace
