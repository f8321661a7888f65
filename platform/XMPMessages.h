// What this library and its XMP worker say to each other, over a pair of connected sockets: one request, one answer.
// Both ends are of one build on one machine, so that numbers cross as they are in memory.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace platform {

// Questions, in Message::kind.
enum class XMPQuestion : uint32_t {
  kRead,    // the metadata of the file at `path`; whether it can grow
  kCanPut,  // whether `packet` fits into the file
  kPut,     // writes `packet` into the file in place
};
enum class XMPAnswer : uint32_t {
  kDone,       // kRead: `packet` is the metadata, empty if the file has none; `number` is 1 if it can grow
  kNotOpened,  // the library finds no way into the file
  kRefused,    // it fails or there is no room; `number` is the library's error
  kTooLarge,   // the metadata is larger than kLargestXMPText
};

struct XMPMessage {
  uint32_t kind = 0;
  uint32_t number = 0;  // a request: the seconds of processor time that it may take
  uint32_t scans = 0;   // a request: 1 to search the whole file for a packet instead of reading its format
  std::string path;     // absolute
  std::string packet;   // RDF without a packet wrapper
};

inline constexpr uint32_t kLargestXMPText = 64u << 20;  // of path and packet, in bytes

// False if the other end is gone, the deadline is over or the message is too large.
bool SendXMPMessage(int socket, const XMPMessage& message);
bool ReceiveXMPMessage(int socket, XMPMessage& message, std::chrono::steady_clock::time_point deadline);

}  // namespace platform
