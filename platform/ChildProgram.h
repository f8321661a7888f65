// A helper program that does dangerous work in a process of its own. Its standard input is one end of a pair of
// connected sockets; its standard output goes nowhere. It serves requests on the socket until the other end closes. Not
// thread-safe.
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/Descriptor.h"
#include "platform/Export.h"

namespace platform {

class PLATFORM_API ChildProgram {
 public:
  // `program` is an absolute path. Nothing is started yet.
  explicit ChildProgram(std::string program) : program_(std::move(program)) {}
  ~ChildProgram() { Kill(); }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  const std::string& Program() const { return program_; }
  // Starts the program, in its own process group: Ctrl-C at the terminal is meant for the program that started it.
  // Returns false, with a line in *problem, on failure.
  bool Start(std::string* problem);
  // False if it was not started, has ended, or was started by the process of which this one is a fork.
  bool IsRunning();
  // Our end of the pair.
  int Socket() const { return socket_.Get(); }
  pid_t Process() const { return process_; }
  void Kill();
  // Call when the child has closed its end: kills it if it still runs, waits, and stores its status as of waitpid.
  // Returns false if the status is not known.
  bool Reap(int& status);

 private:
  const std::string program_;
  pid_t process_ = 0;  // 0 if there is none
  pid_t owner_ = 0;    // the process that started it
  Descriptor socket_;
};

}  // namespace platform
