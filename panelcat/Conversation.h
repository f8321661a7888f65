// A connection to the plug-in's panel port. Messages in both directions end with a NUL byte.
#pragma once

#include <cstdint>
#include <string>

#include "panelcat/Options.h"
#include "platform/Descriptor.h"

namespace panelcat {

class Conversation {
 public:
  // Connects to the port on the loopback address. Throws std::system_error.
  explicit Conversation(uint16_t port);

  // Sends the lines of standard input, except empty ones, and prints messages as lines until there is nothing more to
  // wait for. Returns an empty text, or one line that says what went wrong.
  std::string Run(const Options& options);

 private:
  bool ReadInput();
  bool SendSome();
  // Returns false at the end of the connection.
  bool ReceiveSome();
  bool PrintMessages(size_t most);
  std::string AtEnd(const Options& options) const;

  platform::Descriptor socket_;
  std::string line_, unsent_, received_;
  bool isInputOpen_ = true;
  size_t printed_ = 0;
};

}  // namespace panelcat
