// The host as a separate process, controlled by its arguments and standard input and observed by its output.
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
  int status = -1;  // the exit status; 128 plus the number of the signal that ended it; -1 after Kill
  std::string output;
  std::string errors;
  // The lines of the output. A line that is not a JSON object fails the test.
  std::vector<Json> Events() const;
};

enum class Streams {
  kPipes,
  kTerminal,           // input, output and errors are one terminal, which writes "\r\n"; everything counts as output
  kTerminalAndOutput,  // the output goes to a pipe; the terminal shows only the errors
};

class HostProcess {
 public:
  // Starts the program `host`, by default the one that was built. Throws on failure.
  explicit HostProcess(const std::vector<std::string>& arguments, const std::string& host = BuiltHost(),
                       Streams streams = Streams::kPipes);
  ~HostProcess();  // kills the host if it still runs
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  static std::string BuiltHost();

  void Send(const std::string& line) const { Type(line + "\n"); }
  void Type(const std::string& keys) const;
  // Reads until this text appears after the one that was awaited before.
  void AwaitOutput(const std::string& text);
  // The same. Returns the rest of its line.
  std::string AwaitLine(const std::string& start);
  // Returns the next line of the output as JSON; null at its end.
  Json NextEvent();
  // Reads until the next event of this kind and returns it; null if there is none.
  Json NextEvent(const std::string& kind);
  void Signal(int signal) const { kill(process_, signal); }
  void Kill();  // as a crash would
  // Lets the host run until it is about to make this system call (SYS_...), and kills it then. Call it while the host
  // waits. The input that causes the call was sent before, or `act` sends it.
  void KillAt(long systemCall, const std::function<void()>& act);
  // Closes the input, reads the remaining output and waits for the end.
  HostResult Finish();

 private:
  bool ReadMore();
  void Drain();

  pid_t process_ = -1;
  platform::Descriptor input_, output_, errors_;
  HostResult result_;
  size_t taken_ = 0;  // bytes of the output that were returned as events or awaited
};

HostResult RunHost(const std::vector<std::string>& arguments, const std::string& host = HostProcess::BuiltHost());

// A state folder of one host, in a temporary folder. Ends its agent, so that no agent outlives its test.
class StateFolder {
 public:
  explicit StateFolder(std::string path) : path_(std::move(path)) {}
  ~StateFolder() { EndAgent(SIGTERM); }
  StateFolder(const StateFolder&) = delete;
  StateFolder& operator=(const StateFolder&) = delete;

  const std::string& Path() const { return path_; }
  // Sends the signal to the agent and waits until it has ended. Returns false if there is no agent.
  bool EndAgent(int signal) const;
  // Only waits.
  void AwaitAgentsEnd() const;
  std::vector<std::string> Links() const;  // names of the files that make fonts active
  // Returns the PostScript names that another program finds with the folder's fontconfig file, sorted.
  std::vector<std::string> NamesByFontList() const;

 private:
  pid_t AgentProcess() const;
  std::string path_;
};

// Returns a program's standard output. Throws if the program fails.
std::string OutputOf(const std::string& command);

}  // namespace road
