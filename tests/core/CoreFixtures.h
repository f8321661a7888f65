// Helpers of the core library's tests.
#pragma once

#include <string>
#include <vector>

#include "GLogger.h"
#include "support/TempFolder.h"

// Returns a long text of one letter.
inline std::string LongText(size_t length = 100'000, char letter = 'x') {
  std::string text;
  text.resize(length, letter);
  return text;
}

// Keeps what the shared logger writes while the object lives, without the time stamp.
class LogRecorder {
 public:
  explicit LogRecorder(GLogger::LoggingLevel level = GLogger::kError) {
    GLogger::GetSharedInstance()->SetDefaultLoggingLevel(level);
    GLogger::GetSharedInstance()->SetAppender("recorder", std::make_unique<Appender>(lines));
  }
  ~LogRecorder() {
    GLogger::GetSharedInstance()->SetAppender("recorder", nullptr);
    GLogger::GetSharedInstance()->ResetAllLoggingLevels();
  }

  std::vector<std::string> lines;

 private:
  class Appender : public GLogAppender {
   public:
    explicit Appender(std::vector<std::string>& lines) : mLines(lines) {}
    void Log(const std::string& line) override {
      const size_t start = line.find('\t') + 1;
      mLines.push_back(line.substr(start, line.size() - start - 1));
    }

   private:
    std::vector<std::string>& mLines;
  };
};

using test_support::TempFolder;
