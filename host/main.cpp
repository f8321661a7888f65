// The document host.
#include <csignal>

#include "host/console/Main.h"
#include "platform/Descriptor.h"

int main(int count, char** arguments) {
  platform::ReserveStandardStreams();
  // Exceeding a file size limit should fail the write, not end the program.
  std::signal(SIGXFSZ, SIG_IGN);
  return console::Main({arguments + 1, arguments + count});
}
