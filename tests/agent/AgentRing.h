// The real agent process on a temporary state folder, and the built library loaded into the test, as the plug-in loads
// it.
#pragma once

#include <gmock/gmock.h>

#include <condition_variable>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "agent/include/AgentProtocol.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/LocalSocket.h"
#include "support/TempFolder.h"

namespace agent_ring {

using Json = nlohmann::json;
using PluginInterface::FacadeHandle;

inline constexpr int kMostMilliseconds = 60000;

// The exported functions by name, resolved from the built bundle.
struct Library {
#define MEMBER(name, result, parameters) result(*name) parameters = nullptr;
  PLUGIN_INTERFACE_FUNCTIONS(MEMBER)
#undef MEMBER
  static const Library& Get();  // fails the test if a function is missing
};

// Records the library's callbacks. One recorder is registered at a time.
class Recorder {
 public:
  struct Event {
    uint32_t kind;
    uint32_t fontID;
  };
  static PluginInterface::TModuleErrorCode Callback(PluginInterface::ECallbackKind kind, void* data);
  // Waits until such an event has arrived.
  bool Await(uint32_t kind, uint32_t fontID = 0);
  size_t Count() const;

 private:
  friend class AgentRing;
  mutable std::mutex mutex_;
  std::condition_variable came_;
  std::vector<Event> events_;
};

// A client that talks to the agent without the library.
class RawClient {
 public:
  explicit RawClient(const std::string& runtimeFolder);
  // Sends a request and reads up to its reply. Stores notifications in between in `notifications`.
  Json Ask(const std::string& call, const Json& arguments = Json::object());
  // Becomes a client that wants notifications. Returns the reply.
  Json Hello(uint32_t protocol = agent_protocol::kProtocolVersion) {
    return Ask("Hello", {{"notifications", true}, {"protocol", protocol}});
  }
  // The oldest notification that was not taken yet; waits for one. Null if none comes.
  Json Next();
  void SendBytes(const std::string& bytes) const;
  bool IsEnded() const;  // true when the stream ends, false after a timeout
  int AgentProcess() const;

  std::vector<Json> notifications;

 private:
  platform::Descriptor socket_;
  uint64_t lastID_ = 0;
};

class AgentRing : public testing::Test {
 protected:
  AgentRing();
  ~AgentRing() override;

  // The folder of the agent's socket.
  std::string Runtime() const;
  // With a library of a few Debian fonts.
  void FillLibrary();
  void WriteConfiguration(const Json& more = Json::object());
  void Launch() const;
  // Returns when the agent has announced itself, which is before it listens.
  void LaunchAndAwaitAnnouncement() const;
  // Waits until the agent listens. Not needed for calls through the library, which waits for a launched agent.
  void AwaitListening() const;
  // Ends the agent that serves the state folder now, and waits until its process is gone.
  void End(int signal) const;
  // Fetches a new handle, as the plug-in does for each call.
  FacadeHandle Handle() const { return vpi_.GetPluginFacadeInstance(); }

  // Returns the font with this PostScript name; 0 unless there is exactly one.
  uint32_t FontNamed(const char* name) const;
  std::vector<uint32_t> FontsNamed(const char* name) const;
  // Returns how many of these were activated.
  size_t Activate(const std::vector<uint32_t>& ids, uint32_t kind = 1) const;
  bool IsActive(uint32_t id) const;
  // Returns the activation state in the font's record.
  std::string StateOf(uint32_t id) const;
  // Returns the names of the links in the folder of active fonts.
  std::vector<std::string> Links() const;

  const Library& vpi_ = Library::Get();
  test_support::TempFolder state_;
  test_support::TempFolder fonts_;
  Recorder recorder_;
};

}  // namespace agent_ring
