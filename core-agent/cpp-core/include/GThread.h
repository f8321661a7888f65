// A thread with a name, a state, a result, and a place in the registry of all threads.
//
// A thread may be started again once it has finished. One that was asked to stop before its entry function began never
// runs it and stays at kStopRequested, for good. Nothing forces an entry function to end: it reads GetThreadState and
// leaves when it sees kStopRequested. A thread's own lock is never held while the registry's is asked for.
#pragma once

#include <pthread.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "GBarrier.h"
#include "GCondition.h"
#include "GScopedLock.h"

enum class EThreadState : int { kNotStarted = 0, kStarting = 1, kRunning = 2, kStopRequested = 3, kFinished = 4 };

class GThread {
 public:
  using EntryFunction = void* (*)(void* argument);

  GThread(EntryFunction entry, void* argument);
  // Asks the thread to stop, waits for it, and leaves the registry.
  virtual ~GThread();
  GThread(const GThread&) = delete;
  GThread& operator=(const GThread&) = delete;

  // Nothing unless it has not started yet or has finished. The thread has its name and its OS data when this returns.
  void StartThread();
  // With wait, returns once the thread has finished; not for the thread itself, which would wait for ever.
  void StopThread(bool wait);
  // Starts, waits, and gives the entry function's result. Where it did not run: null, or what an earlier run gave.
  void* RunSynchronously();

  EThreadState GetThreadState() const;
  std::string GetName() const;
  void SetName(const std::string& name);
  void* GetResult() const;

  // The object of the calling thread, or null if it is none of these.
  static GThread* GetCurrentThreadObject();

 private:
  using OSData = std::optional<pthread_t>;

  GThread();  // the object of the thread that first uses the registry
  static void OSThreadingSetup();
  static void OSThreadSetup();
  static void OSThreadCleanup();
  static void* PthreadInternal(void* thread);
  bool CreateDetachedThread();
  static bool AreThreadsEqual(const OSData& a, const OSData& b);
  void Run();
  OSData GetOSData() const;
  void SetOSData(const OSData& data);
  void SetThreadState(EThreadState state);
  void SetResult(void* result);

  friend class GThreadRegistry;

  mutable GRecursiveMutex mMutex;  // guards everything below
  EntryFunction mEntry = nullptr;
  void* mArgument = nullptr;
  std::string mName;
  OSData mOSData;
  EThreadState mState = EThreadState::kNotStarted;
  void* mResult = nullptr;
  std::shared_ptr<GCondition> mFinished;
  std::shared_ptr<GBarrier> mStartBarrier;
};
