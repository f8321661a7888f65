// The document host.
#include <csignal>

#include "host/console/Main.h"

int main(int count, char** arguments) {
  // A file that may not grow further is an error of the write, not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  return console::Main({arguments + 1, arguments + count});
}
