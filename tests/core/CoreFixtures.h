// Helpers of the core library's tests.
#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "GLogger.h"
#include "support/TempFolder.h"

// A text of one letter, as long as the limits of a hundred megabytes ask for.
inline std::string LongText(size_t length = 100'000'000, char letter = 'x') {
  std::string text;
  text.resize(length, letter);
  return text;
}

// Keeps what the shared logger writes while the object lives, without the time stamp.
class LogRecorder {
 public:
  explicit LogRecorder(GLogger::LoggingLevel level = GLogger::kError) {
    GLogger::GetSharedInstance()->SetDefaultLoggingLevel(level);
    GLogger::GetSharedInstance()->SetAppender("recorder", new Appender(lines));
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

struct TemporaryFolder : test_support::TempFolder {
  static std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};
