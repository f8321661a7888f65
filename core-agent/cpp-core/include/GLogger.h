// The core library's log: a level for each subject area, and any number of appenders that receive finished lines. It is
// separate from the plug-in's diagnostic log. Thread-safe; one line is written at a time. SetLoggingLevelsFromKVTree is
// in GLoggerLevelTree.cpp, because trees report to the logger.
#pragma once

#include <cstdarg>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "GMutex.h"

class GKVTree;

class GLogAppender {
 public:
  virtual ~GLogAppender();
  // Receives whole lines, ending in a newline, while the logger is locked. Log calls from here are dropped.
  virtual void Log(const std::string& line) = 0;
};

class GStdOutLogAppender : public GLogAppender {
 public:
  void Log(const std::string& line) override;
};

class GLogger {
 public:
  enum LoggingLevel : int { kInvalid = -1, kNone = 0, kError = 1, kWarning = 2, kInfo = 3, kDebug = 4 };

  GLogger();
  virtual ~GLogger();
  GLogger(const GLogger&) = delete;
  GLogger& operator=(const GLogger&) = delete;

  static GLogger* GetSharedInstance();

  // The formats are printf formats.
  void LogError(const std::string& identifier, std::string format, ...);
  void LogWarning(const std::string& identifier, std::string format, ...);
  void LogInfo(const std::string& identifier, std::string format, ...);
  void LogDebug(const std::string& identifier, std::string format, ...);
  void Log(const std::string& identifier, const LoggingLevel& level, std::string format, ...);
  void LogString(std::string format, ...);  // at every level
  void Logv(const std::string& identifier, LoggingLevel level, const std::string& format, va_list arguments);
  void LogvString(const std::string& format, va_list arguments);

  bool ShouldLog(const std::string& identifier, LoggingLevel level);
  void SetDefaultLoggingLevel(LoggingLevel level);
  LoggingLevel GetDefaultLoggingLevel();
  void SetLoggingLevelForIdentifier(const std::string& identifier, LoggingLevel level);
  // Returns kInvalid if neither the identifier nor the default has a level.
  LoggingLevel GetLoggingLevelForIdentifier(const std::string& identifier);
  void SetLoggingLevelsFromKVTree(const GKVTree& levels);
  void ResetAllLoggingLevels();

  // Replaces the registered appender; null removes it. Identifiers of appenders are case-sensitive. When called from an
  // appender, it only deletes the new one, because the logger is locked.
  void SetAppender(const std::string& identifier, std::unique_ptr<GLogAppender> appender);
  // Returns the registered appender, owned by the logger, or null. Always null when called from an appender.
  GLogAppender* GetAppender(const std::string& identifier);
  void RemoveAllAppenders();
  void OSRegisterDefaultAppender();
  static const std::string& GetDefaultAppenderIdentifier();
  const std::string& GetDefaultLoggingIdentifier() const { return mDefaultIdentifier; }

  static LoggingLevel StringToLevel(const std::string& text);
  static std::string LevelToString(LoggingLevel level);

 protected:
  void ClearLoggingLevels();  // also the default's

 private:
  const char* FormatIntoBuffer(const std::string& format, va_list arguments);

  GMutex mAppenderMutex;  // guards mAppenders and mBuffer
  std::map<std::string, std::unique_ptr<GLogAppender>> mAppenders;
  GMutex mLevelMutex;                           // guards mLevels
  std::map<std::string, LoggingLevel> mLevels;  // by lower-case identifier
  const std::string mDefaultIdentifier = "default";
  std::vector<char> mBuffer;  // text of the last line; never shrinks
};
