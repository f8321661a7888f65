// The plug-in's log file and folder functions. Nothing here calls the agent.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <mutex>
#include <string>

#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "platform/Folders.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;

namespace {

struct OpenLog {
  std::mutex mutex;
  platform::Descriptor file;
};

OpenLog& TheLog() {
  static auto* log = new OpenLog;
  return *log;
}

bool WriteAll(int file, const char* text) {
  for (size_t left = std::strlen(text); left > 0;) {
    const ssize_t count = write(file, text, left);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    text += count;
    left -= static_cast<size_t>(count);
  }
  return true;
}

}  // namespace

// The name must not contain folders. The file is in the log folder and is appended to.
TModuleErrorCode BeginLogging(FacadeHandle, const char* logName) {
  if (!logName) return kNullPointer;
  return Guarded([&] {
    const std::string name = logName;
    if (name.empty() || name.find('/') != std::string::npos || name == "." || name == "..") return kInvalidParam;
    const std::string folder = platform::GetPlaces().logs;
    if (platform::MakeFolder(folder)) return kCouldNotMakeFolder;
    platform::Descriptor file(open((folder + "/" + name).c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    if (!file) return kCouldNotOpenFile;
    OpenLog& log = TheLog();
    const std::lock_guard lock(log.mutex);
    log.file = std::move(file);
    return kSuccess;
  });
}

TModuleErrorCode Log(FacadeHandle, const char* text) {
  if (!text) return kNullPointer;
  OpenLog& log = TheLog();
  const std::lock_guard lock(log.mutex);
  if (!log.file) return kNotInitialized;
  return WriteAll(log.file.Get(), text) ? kSuccess : kCouldNotOpenFile;
}

int32_t OSDoesDirectoryExist(const char* path) { return path && platform::FolderExists(path) ? 1 : 0; }

TModuleErrorCode OSCreateDirectory(const char* path, uint32_t) {
  if (!path) return kNullPointer;
  return platform::MakeFolder(path) ? kCouldNotMakeFolder : kSuccess;
}
