#include "agent/store/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>

#include "agent/client/AgentConnection.h"
#include "agent/client/AgentFolders.h"
#include "platform/Files.h"
#include "platform/LastError.h"
#include "platform/LocalSocket.h"
#include "platform/Waiting.h"

namespace agent {

namespace {

// A read-only disk allows to lock a file that is there.
platform::Descriptor OpenLockFile(const std::string& path, int creation) {
  platform::Descriptor file(open(path.c_str(), O_RDWR | creation | O_CLOEXEC, 0600));
  if (file || errno != EROFS) return file;
  return platform::Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

}  // namespace

InstanceLock::Result InstanceLock::Take(const std::string& runtimeFolder, const std::string& socketName,
                                        std::error_code& error, Socket socket) {
  constexpr auto kPatience = std::chrono::seconds(10);

  error = platform::MakeFolder(runtimeFolder, 0700);
  if (error) return Result::kFailed;
  path_ = agent_client::LockFileIn(runtimeFolder);
  file_ = OpenLockFile(path_, O_CREAT);
  if (!file_) {
    error = platform::LastError();
    return Result::kFailed;
  }
  Result result = Result::kFailed;
  platform::WaitUntil(kPatience, [&] {
    if (flock(file_.Get(), LOCK_EX | LOCK_NB) == 0) {
      result = Result::kTaken;
      return true;
    }
    if (socket == Socket::kPassed) return false;
    std::error_code unreachable;
    const platform::Descriptor holder = platform::ConnectLocal(runtimeFolder, socketName, unreachable);
    if (holder && agent_client::AnswersGreeting(holder, kPatience)) result = Result::kServed;
    return result != Result::kFailed;
  });
  if (result == Result::kFailed) error = std::make_error_code(std::errc::resource_unavailable_try_again);
  return result;
}

InstanceLock::Place InstanceLock::Look() const {
  struct stat held = {}, there = {};
  if (fstat(file_.Get(), &held) != 0 || stat(path_.c_str(), &there) != 0) return Place::kRemoved;
  return held.st_dev == there.st_dev && held.st_ino == there.st_ino ? Place::kKept : Place::kReplaced;
}

bool InstanceLock::TakeFromDead(const std::string& runtimeFolder) {
  path_ = agent_client::LockFileIn(runtimeFolder);
  file_ = OpenLockFile(path_, 0);
  if (!file_) return errno == ENOENT || errno == ENOTDIR;
  return flock(file_.Get(), LOCK_EX | LOCK_NB) == 0;
}

}  // namespace agent
