// The host as a process of its own, driven by its arguments and its standard input and watched by what it writes.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/Descriptor.h"

namespace road {

using Json = nlohmann::ordered_json;

struct HostResult {
  int status = -1;  // the exit status; 128 and the signal's number if one ended it; -1 if it was killed by Kill
  std::string output;
  std::string errors;
  // The lines of the output; a line that is no JSON object makes the test fail.
  std::vector<Json> Events() const;
};

enum class Streams {
  kPipes,
  kTerminal,           // input, output and errors are one terminal, which writes "\r\n"; all that it shows is output
  kTerminalAndOutput,  // the output goes to a pipe, and what the terminal shows is the errors
};

class HostProcess {
 public:
  // The program at `host`, by default the one that was built. Throws if it can't be started.
  explicit HostProcess(const std::vector<std::string>& arguments, const std::string& host = BuiltHost(),
                       Streams streams = Streams::kPipes);
  ~HostProcess();  // kills what still runs
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  static std::string BuiltHost();

  void Send(const std::string& line) const { Type(line + "\n"); }
  void Type(const std::string& keys) const;
  // Reads on until this comes behind what was awaited before.
  void AwaitOutput(const std::string& text);
  // The next line of the output, as JSON; null at its end.
  Json NextEvent();
  // Reads on to the next event of this kind; null if none comes.
  Json NextEvent(const std::string& kind);
  void Signal(int signal) const { kill(process_, signal); }
  void Kill();  // as a crash would
  // Lets the host run until it is about to make this system call (SYS_...), and kills it then. To be called while the host
  // waits, with what makes it do so sent already or sent by `act`.
  void KillAt(long systemCall, const std::function<void()>& act);
  // Ends the input, reads what is left and waits.
  HostResult Finish();

 private:
  bool ReadMore();
  void Drain();

  pid_t process_ = -1;
  platform::Descriptor input_, output_, errors_;
  HostResult result_;
  size_t taken_ = 0;  // bytes of the output that have been given out as events, or awaited
};

HostResult RunHost(const std::vector<std::string>& arguments, const std::string& host = HostProcess::BuiltHost());

// A folder for the state of one host, in a temporary folder. Ends the agent that serves it, so that none outlives its test.
class StateFolder {
 public:
  explicit StateFolder(std::string path) : path_(std::move(path)) {}
  ~StateFolder() { EndAgent(SIGTERM); }
  StateFolder(const StateFolder&) = delete;
  StateFolder& operator=(const StateFolder&) = delete;

  const std::string& Path() const { return path_; }
  // Sends the signal to the agent and waits until it is gone; false if there is none.
  bool EndAgent(int signal) const;
  // Without doing anything to it.
  void AwaitAgentsEnd() const;
  std::vector<std::string> Links() const;  // that make fonts active: names of files
  // The PostScript names that another program finds with the folder's fontconfig file, sorted.
  std::vector<std::string> NamesByFontList() const;

 private:
  pid_t AgentProcess() const;
  std::string path_;
};

// What a program writes to its standard output; throws if it fails.
std::string OutputOf(const std::string& command);

}  // namespace road
