// The messages between this library and its XMP worker, over a pair of connected sockets: one request, one answer. Both
// sides are from one build on one machine, so numbers are sent in memory order.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace platform {

// Requests, in XMPMessage::kind.
enum class XMPQuestion : uint32_t {
  kRead,    // read the metadata of the file at `path`, and whether it can grow
  kCanPut,  // test whether `packet` fits into the file
  kPut,     // write `packet` into the file in place
};
enum class XMPAnswer : uint32_t {
  kDone,       // kRead: `packet` is the metadata, empty if the file has none; `number` is 1 if it can grow
  kNotOpened,  // the library cannot open the file
  kRefused,    // failed or no room; `number` is the library's error
  kTooLarge,   // the metadata is larger than kLargestXMPText
};

struct XMPMessage {
  uint32_t kind = 0;
  uint32_t number = 0;  // request: the seconds of processor time allowed
  uint32_t scans = 0;   // request: 1 to search the whole file for a packet instead of parsing its format
  std::string path;     // absolute
  std::string packet;   // RDF without a packet wrapper
};

inline constexpr uint64_t kXMPWorkerMemory = uint64_t{1} << 30;  // bytes of address space of the worker
inline constexpr uint32_t kLargestXMPText = 64u << 20;           // of path and packet, in bytes

// Returns false if the other side is gone, the deadline has passed, or the message is too large.
bool SendXMPMessage(int socket, const XMPMessage& message);
bool ReceiveXMPMessage(int socket, XMPMessage& message, std::chrono::steady_clock::time_point deadline);

}  // namespace platform
