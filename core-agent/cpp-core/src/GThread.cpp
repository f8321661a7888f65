#include "GThread.h"

#include <algorithm>
#include <cassert>

#include "FailedCheck.h"

// All threads that exist.
class GThreadRegistry : public GRecursiveMutex {
 public:
  static GThreadRegistry& Get() {
    static GMutex sMutex;
    static GThreadRegistry* sRegistry = nullptr;
    const GScopedLock lock(sMutex);
    if (!sRegistry) sRegistry = new GThreadRegistry;
    if (!sRegistry->mIsSetUp) sRegistry->SetUp();
    return *sRegistry;
  }

  unsigned int NextNumber() {
    const GScopedLock lock(*this);
    ReportIfUnlocked(lock);
    return ++mThreadsEverMade;
  }

  void Add(GThread* thread) {
    const GScopedLock lock(*this);
    ReportIfUnlocked(lock);
    if (std::find(mThreads.begin(), mThreads.end(), thread) == mThreads.end()) mThreads.push_back(thread);
  }

  void Remove(GThread* thread) {
    const GScopedLock lock(*this);
    ReportIfUnlocked(lock);
    std::erase(mThreads, thread);
  }

  GThread* Find(const GThread::OSData& data) {
    const GScopedLock lock(*this);
    ReportIfUnlocked(lock);
    const auto isIt = [&](const GThread* thread) { return GThread::AreThreadsEqual(thread->GetOSData(), data); };
    const auto found = std::find_if(mThreads.begin(), mThreads.end(), isIt);
    return found == mThreads.end() ? nullptr : *found;
  }

 private:
  void SetUp() {
    mIsSetUp = true;
    GThread::OSThreadingSetup();
    NextNumber();
    Add(new GThread);  // lives as long as the process
  }

  static void ReportIfUnlocked(const GScopedLock& lock) {
    if (lock.IsLocked()) return;
    ReportFailedCheck("Lockable", lock_codes::kFailedToAcquireLock, __FILE__, __LINE__, "lock.IsLocked()");
  }

  std::vector<GThread*> mThreads;
  unsigned int mThreadsEverMade = 0;
  bool mIsSetUp = false;
};

// Hooks for platforms that must prepare threads. Nothing to do here.
void GThread::OSThreadingSetup() {}
void GThread::OSThreadSetup() {}
void GThread::OSThreadCleanup() {}

GThread::GThread()
    : mName("Main Thread"),
      mOSData(pthread_self()),
      mState(EThreadState::kRunning),
      mFinished(std::make_shared<GCondition>()) {}

GThread::GThread(EntryFunction entry, void* argument)
    : mEntry(entry), mArgument(argument), mFinished(std::make_shared<GCondition>()) {
  GThreadRegistry& registry = GThreadRegistry::Get();
  mName = "Thread " + std::to_string(registry.NextNumber());
  registry.Add(this);
}

GThread::~GThread() {
  StopThread(true);
  GThreadRegistry::Get().Remove(this);
}

bool GThread::CreateDetachedThread() {
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  pthread_t made;
  const int result = pthread_create(&made, &attributes, &GThread::PthreadInternal, this);
  pthread_attr_destroy(&attributes);
  return result == 0;
}

void GThread::StartThread() {
  std::shared_ptr<GBarrier> barrier;
  {
    const GScopedLock lock(mMutex);
    if (mState != EThreadState::kNotStarted && mState != EThreadState::kFinished) return;
    if (mState == EThreadState::kFinished) mFinished->Wait();  // an earlier broadcast must not count for this run
    mState = EThreadState::kStarting;
    mStartBarrier = barrier = std::make_shared<GBarrier>(2);
    mFinished->Reset();
    if (!CreateDetachedThread()) {
      ReportFailedCheck("Lockable", lock_codes::kSystemFailure, __FILE__, __LINE__, "!CreateDetachedThread()");
      mState = EThreadState::kNotStarted;
      mResult = nullptr;
      mFinished->Broadcast();
      return;
    }
  }
  barrier->Wait();
}

void* GThread::PthreadInternal(void* thread) {
  static_cast<GThread*>(thread)->Run();
  return nullptr;
}

void GThread::Run() {
  std::shared_ptr<GCondition> finished;
  std::shared_ptr<GBarrier> barrier;
  bool isToRun = false;
  {
    const GScopedLock lock(mMutex);
    finished = mFinished;
    barrier = mStartBarrier;
    if (!mName.empty()) pthread_setname_np(pthread_self(), mName.substr(0, 15).c_str());
    mOSData = pthread_self();
    isToRun = mState == EThreadState::kStarting;
    if (isToRun) mState = EThreadState::kRunning;
  }
  barrier->Wait();
  if (isToRun) {
    OSThreadSetup();
    if (mEntry) SetResult(mEntry(mArgument));
  }
  OSThreadCleanup();
  SetOSData(std::nullopt);
  // Last, after the OS data: once the state is kFinished, the object may be destroyed at any time.
  if (isToRun) SetThreadState(EThreadState::kFinished);
  // Not Signal: a second waiter, such as the destructor after StopThread(true), would wait forever.
  finished->Broadcast();
}

void GThread::StopThread(bool wait) {
  std::shared_ptr<GCondition> finished;
  {
    const GScopedLock lock(mMutex);
    if (mState == EThreadState::kNotStarted || mState == EThreadState::kFinished) return;
    mState = EThreadState::kStopRequested;
    finished = mFinished;
  }
  if (!wait) return;
  const TModuleErrorCode code = finished->Wait();
  if (code != 0) ReportFailedCheck("Lockable", code, __FILE__, __LINE__, "finished->Wait()");
}

void* GThread::RunSynchronously() {
  StartThread();
  mFinished->Wait();
  return GetResult();
}

EThreadState GThread::GetThreadState() const {
  const GScopedLock lock(mMutex);
  return mState;
}

void GThread::SetThreadState(EThreadState state) {
  const GScopedLock lock(mMutex);
  mState = state;
}

std::string GThread::GetName() const {
  const GScopedLock lock(mMutex);
  return mName;
}

void GThread::SetName(const std::string& name) {
  const GScopedLock lock(mMutex);
  mName = name;
}

void* GThread::GetResult() const {
  const GScopedLock lock(mMutex);
  return mResult;
}

void GThread::SetResult(void* result) {
  const GScopedLock lock(mMutex);
  mResult = result;
}

GThread::OSData GThread::GetOSData() const {
  const GScopedLock lock(mMutex);
  return mOSData;
}

void GThread::SetOSData(const OSData& data) {
  const GScopedLock lock(mMutex);
  mOSData = data;
}

bool GThread::AreThreadsEqual(const OSData& a, const OSData& b) {
  if (!a || !b) return !a && !b;
  return pthread_equal(*a, *b) != 0;
}

GThread* GThread::GetCurrentThreadObject() { return GThreadRegistry::Get().Find(pthread_self()); }
