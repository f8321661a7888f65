// The real agent process on a temporary state folder, and the built library loaded into the test, as the plug-in loads it.
#pragma once

#include <gmock/gmock.h>

#include <condition_variable>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

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
  static const Library& Get();  // with the failure of a test if a function is missing
};

// What the library told through its callback. One recorder is registered at a time.
class Recorder {
 public:
  struct Event {
    uint32_t kind;
    uint32_t fontID;
  };
  static PluginInterface::TModuleErrorCode Callback(PluginInterface::ECallbackKind kind, void* data);
  // Waits until such an event has come.
  bool Await(uint32_t kind, uint32_t fontID = 0);
  size_t Count() const;

 private:
  friend class AgentRing;
  mutable std::mutex mutex_;
  std::condition_variable came_;
  std::vector<Event> events_;
};

// A client that speaks to the agent by itself, without the library.
class RawClient {
 public:
  explicit RawClient(const std::string& runtimeFolder);
  // Sends a request and reads up to its reply; notifications on the way are kept in `notifications`.
  Json Ask(const std::string& call, const Json& arguments = Json::object());
  // The oldest notification that was not taken yet; waits for one. Null if none comes.
  Json Next();
  void SendBytes(const std::string& bytes) const;
  bool IsEnded() const;  // true once the stream ends; false if it stays silent for too long
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

  // With what the tests need to see: a library of a few Debian fonts.
  void FillLibrary();
  void WriteConfiguration(const Json& more = Json::object());
  void Launch() const;
  // Returns when the agent has announced itself, which is before it listens.
  void LaunchAndAwaitAnnouncement() const;
  // Until the agent listens. Not needed for what goes through the library, which waits for an agent that was launched.
  void AwaitListening() const;
  // Ends the agent that serves the state folder now, and waits until its process is gone.
  void End(int signal) const;
  // Fetches a new handle, as the plug-in does for each call.
  FacadeHandle Handle() const { return vpi_.GetPluginFacadeInstance(); }

  // The one font of this PostScript name; 0 if there is none or another number of them.
  uint32_t FontNamed(const char* name) const;
  std::vector<uint32_t> FontsNamed(const char* name) const;
  // How many of these could be activated; all of them, unless a test says otherwise.
  size_t Activate(const std::vector<uint32_t>& ids, uint32_t kind = 1) const;
  bool IsActive(uint32_t id) const;
  // The state of a font as its record gives it.
  std::string StateOf(uint32_t id) const;
  // Names of the links in the folder of active fonts.
  std::vector<std::string> Links() const;

  const Library& vpi_ = Library::Get();
  test_support::TempFolder state_;
  test_support::TempFolder fonts_;
  Recorder recorder_;
};

}  // namespace agent_ring
