// Takes requests apart, finds who serves them and puts replies together.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "agent/Activations.h"
#include "agent/Json.h"

namespace agent {

// Result codes that the agent gives; the numbers are those of the common table of error codes.
inline constexpr uint32_t kSuccess = 0;
inline constexpr uint32_t kInvalidParam = 0x04000000;
inline constexpr uint32_t kNotFound = 0x07000000;
inline constexpr uint32_t kNotImplemented = 0x08000000;
inline constexpr uint32_t kDatabaseError = 0x0D000000;
inline constexpr uint32_t kNotSupported = 0x10000000;
inline constexpr uint32_t kNotInitialized = 0x11000000;
inline constexpr uint32_t kInvalidVault = 0x01002008;
inline constexpr uint32_t kCouldNotCopyFile = 0x04004007;
inline constexpr uint32_t kCantDeactivateSystemFonts = 0x08004001;

struct Reply {
  uint32_t code = kSuccess;
  Json result = Json::object();
};

// The arguments of one request. A read of a missing argument or of another type gives the caller kInvalidParam.
class Arguments {
 public:
  explicit Arguments(const Json& json) : json_(json) {}
  std::vector<uint32_t> Numbers(const char* key) const;  // at most agent_protocol::kMostNumbers
  uint32_t Number(const char* key) const;
  std::string Text(const char* key) const;
  bool Flag(const char* key) const;
  bool Has(const char* key) const { return json_.contains(key); }

 private:
  const Json& Get(const char* key) const;
  const Json& json_;
};

enum class Needs {
  kNothing,
  // Held back until the first scan has finished: "not found" must not mean "not yet". A client that has too much waiting
  // gets kNotInitialized at once.
  kFonts,
};

class Dispatcher {
 public:
  using Handler = std::function<Reply(ClientID, const Arguments&)>;
  struct Events {
    std::function<void(ClientID, const std::string& message)> send;
    std::function<void(ClientID)> breach;  // what came is no request
    std::function<void(const std::string& line)> report;
  };

  explicit Dispatcher(Events events) : events_(std::move(events)) {}

  void Add(const char* call, Needs needs, Handler handler);
  // What a call that nobody serves is answered with.
  void SetCodeForUnknownCalls(uint32_t code) { unknownCode_ = code; }

  // From here on every call is answered with the code, those that are held back at once.
  void RefuseAll(uint32_t code);

  void OnMessage(ClientID client, std::string_view message);
  void OnGone(ClientID client);
  // From here on nothing is held back; what was is served now, in the order of its coming.
  void Release();

 private:
  struct Entry {
    Needs needs;
    Handler handler;
  };
  struct Request {
    ClientID client;
    Json id;
    std::string call;
    Json arguments;
  };
  struct Held {
    ClientID client;
    std::string message;  // not taken apart: that would need many times its bytes
  };
  bool Hold(ClientID client, std::string_view message);
  void Serve(const Request& request);
  void Send(const Request& request, const Reply& reply);
  Reply Answer(const Request& request);

  Events events_;
  std::map<std::string, Entry, std::less<>> entries_;
  std::deque<Held> held_;
  std::map<ClientID, size_t> heldOf_;  // how many of them are of each client
  size_t heldBytes_ = 0;
  bool isReleased_ = false;
  uint32_t unknownCode_ = kNotImplemented;
};

}  // namespace agent
