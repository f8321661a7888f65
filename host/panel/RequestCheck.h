// Which requests the panel's server answers. A pure function on what a client sent, so that any bytes can be tried on
// it. Thread-safe.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace panel {

// What the server is, as its address says it.
struct ServerIdentity {
  std::string token;  // the secret part of the address; not empty
  uint16_t port = 0;
};

// The parts of a request that matter. Missing headers are empty.
struct RequestParts {
  std::string_view method;
  std::string_view target;
  std::string_view host;
  std::string_view origin;
  bool isUpgrade = false;  // asks for a WebSocket
};

enum class Wanted {
  kNothing,   // refused
  kPageFile,  // `name` is the name of one of the page's files, without a separator
  kFile,      // `name` is the absolute path of a file, which must still be one of those that pages may read
  kEvents,    // the WebSocket of the events
};

struct Decision {
  Wanted wanted = Wanted::kNothing;
  std::string name;
  unsigned status = 200;         // of HTTP, for a refused request
  const char* reason = nullptr;  // why it is refused, for the log; null if it is not
};

// Refuses everything that does not come from a page of this server: a request without the token, one to another host
// name (a page of another site that resolves to this machine), one from another origin, and one that leaves its folder.
// Compares the token in constant time. A request without the token learns nothing about what there is.
Decision CheckRequest(const RequestParts& request, const ServerIdentity& server);

// The address of the page, and what it gives as its origin.
std::string PageAddress(const ServerIdentity& server);
std::string PageOrigin(const ServerIdentity& server);

}  // namespace panel
