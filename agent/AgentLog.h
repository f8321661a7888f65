// What a person should know of the agent's doings: each line goes to standard error and to a file, since an agent that
// was started by a plug-in has no terminal.
#pragma once

#include <string>
#include <system_error>

#include "platform/Descriptor.h"

namespace agent {

class AgentLog {
 public:
  static constexpr size_t kLongestFile = 1 << 20;

  // From here on lines go to the file, too, at its end. A file that has grown beyond kLongestFile is put aside first as
  // path + ".old", in place of the one before.
  std::error_code Open(const std::string& path);
  // One line, without its end; the file gets the time before it. Control characters in it are shown as U+FFFD.
  void Write(const std::string& text) const;

 private:
  platform::Descriptor file_;
};

}  // namespace agent
