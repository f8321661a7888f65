// The agent's log for people. Each line goes to standard error and to a file, because an agent that a plug-in started
// has no terminal.
#pragma once

#include <string>
#include <system_error>

#include "platform/Descriptor.h"

namespace agent {

class AgentLog {
 public:
  static constexpr size_t kLongestFile = 1 << 20;

  // From now on also appends lines to the file. A file longer than kLongestFile is first renamed to path + ".old",
  // replacing an earlier one.
  std::error_code Open(const std::string& path);
  // Writes one line, given without its end. The file gets the time before it. Control characters are replaced by
  // U+FFFD.
  void Write(const std::string& text) const;

 private:
  platform::Descriptor file_;
};

}  // namespace agent
