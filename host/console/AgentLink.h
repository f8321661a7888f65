// The console's own connection to the font manager agent. Starts the agent before the plug-in needs it, shows the
// progress of its first scan, asks it about font files, and notices when it is gone. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "agent/client/AgentConnection.h"

namespace console {

class Sandbox;

struct AgentProblem {
  std::string path;  // a file or folder of the library, or the agent itself
  std::string message;
};

struct LibrarySummary {
  bool isKnown = false;  // an agent answered
  size_t files = 0;
  size_t faces = 0;
  std::vector<AgentProblem> problems;
};

class AgentLink {
 public:
  explicit AgentLink(const Sandbox& sandbox);
  ~AgentLink();

  // Starts the agent if none is running, waits until it has read its library, and shows the progress. Returns an empty
  // text or one line; everything else works without an agent.
  std::string Start(LibrarySummary* summary);

  // Starts the agent again if it is gone and there is no new one. Otherwise like Start.
  std::string Restart(LibrarySummary* summary);

  // True if the connected agent is still running. Does not wait.
  bool IsConnected();

  // True if the agent answers a question now. Waits for the answer; if none comes, the agent is not connected any more.
  bool Answers();

  // The agent's reply to a call, whatever its code is. Waits for it; nothing if no agent answers.
  template <class C>
  std::optional<agent_client::Reply<C>> Call(const typename C::Arguments& arguments) {
    if (!connection_) return std::nullopt;
    auto reply = connection_->Call<C>(arguments);
    if (reply.code != agent_protocol::kAgentShutdownCode) return reply;
    Lose();
    return std::nullopt;
  }
  // The result of a call that succeeds.
  template <class C>
  std::optional<typename C::Result> Ask(const typename C::Arguments& arguments) {
    auto reply = Call<C>(arguments);
    if (!reply || reply->code != agent_protocol::kSuccess) return std::nullopt;
    return std::move(reply->result);
  }

  // Calls the observer, on the connection's thread, each time that the agent has activated a font. Null ends this: when
  // it returns, the observer is not running and is not called any more. Call no other function in between.
  void ObserveActivations(std::function<void()> observer);

  // Returns how many files contain a font with this PostScript name; 0 if the agent cannot say.
  size_t CountCandidates(const std::string& postScriptName);
  // Returns the file of a font; empty if the agent cannot say.
  std::string FileOf(uint32_t fontID);

 private:
  using NotificationHandler = std::function<void(const nlohmann::json&)>;
  std::string Launch();
  bool Connect();
  std::string ReadReport(LibrarySummary* summary);
  std::string LastWords() const;
  void Deliver(const nlohmann::json& notification);
  void Observe(NotificationHandler observer);  // one at a time
  void Lose();                                 // the agent is gone or does not answer
  std::string SilenceProblem() const;

  const Sandbox& sandbox_;
  int silentProcess_ = 0;  // an agent that did not answer
  std::mutex observing_;   // held while the observer runs
  NotificationHandler observer_;
  std::unique_ptr<agent_client::AgentConnection> connection_;  // last: its thread uses the other members
};

}  // namespace console
