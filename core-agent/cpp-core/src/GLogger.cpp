#include "GLogger.h"

#include <cstdio>
#include <mutex>
#include <thread>

#include "GDateTime.h"
#include "GSingleton.h"
#include "GStringUtils.h"

namespace {

// A scoped lock that may fail silently. GScopedLock would report the failure to this logger.
class HeldMutex {
 public:
  explicit HeldMutex(GMutex& mutex) : mMutex(mutex), mIsHeld(mutex.Lock() == CoreErrorCodes::kSuccess) {}
  ~HeldMutex() {
    if (mIsHeld) mMutex.Unlock();
  }
  HeldMutex(const HeldMutex&) = delete;
  HeldMutex& operator=(const HeldMutex&) = delete;
  explicit operator bool() const { return mIsHeld; }

 private:
  GMutex& mMutex;
  bool mIsHeld;
};

// The thread whose appenders are running, shared by all loggers. If two loggers write at the same time, the later one
// is recorded; a call from an appender of the other ends at that logger's mutex, which its owner cannot lock twice.
struct LoggingThread {
  std::mutex mutex;
  std::thread::id thread;
};

LoggingThread& GetLoggingThread() {
  static LoggingThread sRecord;
  return sRecord;
}

bool IsLoggingOnThisThread() {
  LoggingThread& record = GetLoggingThread();
  const std::lock_guard lock(record.mutex);
  return record.thread == std::this_thread::get_id();
}

void SetLoggingThread(std::thread::id thread) {
  LoggingThread& record = GetLoggingThread();
  const std::lock_guard lock(record.mutex);
  record.thread = thread;
}

// The identifier becomes part of a format, so a "%" in it must be escaped.
std::string EscapedForFormat(const std::string& identifier) {
  return GStringUtils::StringReplace(identifier, "%", "%%");
}

}  // namespace

GLogAppender::~GLogAppender() = default;

void GStdOutLogAppender::Log(const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fflush(stdout);
}

GLogger::GLogger() { ResetAllLoggingLevels(); }
GLogger::~GLogger() = default;

GLogger* GLogger::GetSharedInstance() { return GSingleton<GLogger>::GetSharedInstance(); }

const std::string& GLogger::GetDefaultAppenderIdentifier() {
  static const std::string sIdentifier = "default";
  return sIdentifier;
}

// The formats are passed by value: va_start takes no reference.
// NOLINTBEGIN(performance-unnecessary-value-param)
#define LOG_AT(level)                         \
  va_list arguments;                          \
  va_start(arguments, format);                \
  Logv(identifier, level, format, arguments); \
  va_end(arguments)

void GLogger::LogError(const std::string& identifier, std::string format, ...) { LOG_AT(kError); }
void GLogger::LogWarning(const std::string& identifier, std::string format, ...) { LOG_AT(kWarning); }
void GLogger::LogInfo(const std::string& identifier, std::string format, ...) { LOG_AT(kInfo); }
void GLogger::LogDebug(const std::string& identifier, std::string format, ...) { LOG_AT(kDebug); }
void GLogger::Log(const std::string& identifier, const LoggingLevel& level, std::string format, ...) { LOG_AT(level); }

#undef LOG_AT

void GLogger::LogString(std::string format, ...) {
  va_list arguments;
  va_start(arguments, format);
  LogvString(format, arguments);
  va_end(arguments);
}
// NOLINTEND(performance-unnecessary-value-param)

void GLogger::Logv(const std::string& identifier, LoggingLevel level, const std::string& format, va_list arguments) {
  if (!ShouldLog(identifier, level)) return;
  LogvString("[" + EscapedForFormat(identifier) + "]\t[" + LevelToString(level) + "]\t" + format, arguments);
}

// Drops calls from an appender.
void GLogger::LogvString(const std::string& format, va_list arguments) {
  if (IsLoggingOnThisThread()) return;
  const HeldMutex lock(mAppenderMutex);
  if (!lock) return;
  SetLoggingThread(std::this_thread::get_id());
  const auto clear = [](void*) { SetLoggingThread(std::thread::id()); };
  const std::unique_ptr<GLogger, decltype(clear)> clearAtEnd(this, clear);
  if (mAppenders.empty()) return;
  const std::string line = "[" + GDateTime::Now().ToISO8601(true) + "]\t" + FormatIntoBuffer(format, arguments) + "\n";
  for (const auto& [identifier, appender] : mAppenders) appender->Log(line);
}

const char* GLogger::FormatIntoBuffer(const std::string& format, va_list arguments) {
  constexpr size_t kStep = 256;
  if (mBuffer.empty()) mBuffer.resize(kStep);
  va_list again;
  va_copy(again, arguments);
  int needed = GStringUtils::OSvsnprintf(mBuffer.data(), mBuffer.size(), format.c_str(), arguments);
  if (needed >= 0 && static_cast<size_t>(needed) >= mBuffer.size()) {
    const size_t size = static_cast<size_t>(needed) + 1;
    mBuffer.resize((size + kStep - 1) / kStep * kStep);
    needed = GStringUtils::OSvsnprintf(mBuffer.data(), mBuffer.size(), format.c_str(), again);
  }
  va_end(again);
  if (needed < 0) mBuffer[0] = '\0';
  return mBuffer.data();
}

bool GLogger::ShouldLog(const std::string& identifier, LoggingLevel level) {
  if (level == kNone || level == kInvalid) return false;
  const LoggingLevel most = GetLoggingLevelForIdentifier(identifier);
  if (most == kNone || most == kInvalid) return false;
  return most >= level;
}

void GLogger::SetDefaultLoggingLevel(LoggingLevel level) {
  SetLoggingLevelForIdentifier(GetDefaultLoggingIdentifier(), level);
}

GLogger::LoggingLevel GLogger::GetDefaultLoggingLevel() {
  return GetLoggingLevelForIdentifier(GetDefaultLoggingIdentifier());
}

void GLogger::SetLoggingLevelForIdentifier(const std::string& identifier, LoggingLevel level) {
  const HeldMutex lock(mLevelMutex);
  if (lock) mLevels[GStringUtils::OSToLowerCase(identifier)] = level;
}

GLogger::LoggingLevel GLogger::GetLoggingLevelForIdentifier(const std::string& identifier) {
  const HeldMutex lock(mLevelMutex);
  if (!lock) return kInvalid;
  const auto found = mLevels.find(GStringUtils::OSToLowerCase(identifier));
  if (found != mLevels.end()) return found->second;
  // Only this comparison is case-sensitive; the others lower the identifier first.
  if (identifier == GetDefaultLoggingIdentifier()) return kInvalid;
  const auto byDefault = mLevels.find(GetDefaultLoggingIdentifier());
  return byDefault == mLevels.end() ? kInvalid : byDefault->second;
}

void GLogger::ClearLoggingLevels() {
  const HeldMutex lock(mLevelMutex);
  if (lock) mLevels.clear();
}

void GLogger::ResetAllLoggingLevels() {
  const HeldMutex lock(mLevelMutex);
  if (lock) mLevels = {{GetDefaultLoggingIdentifier(), kWarning}};
}

void GLogger::SetAppender(const std::string& identifier, std::unique_ptr<GLogAppender> appender) {
  const HeldMutex lock(mAppenderMutex);
  if (!lock) return;
  if (appender) {
    mAppenders[identifier] = std::move(appender);
  } else {
    mAppenders.erase(identifier);
  }
}

GLogAppender* GLogger::GetAppender(const std::string& identifier) {
  const HeldMutex lock(mAppenderMutex);
  if (!lock) return nullptr;
  const auto found = mAppenders.find(identifier);
  return found == mAppenders.end() ? nullptr : found->second.get();
}

void GLogger::RemoveAllAppenders() {
  const HeldMutex lock(mAppenderMutex);
  if (lock) mAppenders.clear();
}

void GLogger::OSRegisterDefaultAppender() {
  SetAppender(GetDefaultAppenderIdentifier(), std::make_unique<GStdOutLogAppender>());
}

GLogger::LoggingLevel GLogger::StringToLevel(const std::string& text) {
  const std::string lowered = GStringUtils::OSToLowerCase(text);
  if (lowered == "error") return kError;
  if (lowered == "warning" || lowered == "warn") return kWarning;
  if (lowered == "info") return kInfo;
  if (lowered == "debug") return kDebug;
  return lowered == "none" ? kNone : kInvalid;
}

std::string GLogger::LevelToString(LoggingLevel level) {
  switch (level) {
    case kNone: return "None";
    case kError: return "Error";
    case kWarning: return "Warning";
    case kInfo: return "Info";
    case kDebug: return "Debug";
    case kInvalid: break;
  }
  return "";
}
